/* Does what it can on each device and prints what came of it. With an argument it does so in a second process too. */
#include <errno.h>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

struct transfer {
  const uint8_t* transmit;
  uint8_t* receive;
  uint32_t length;
  uint32_t reserved;
};

static void tell(const char* what, int result) {
  printf("%s: %d %s\n", what, result, result < 0 ? strerror(errno) : "");
  errno = 0;
}

static void exchange(int spi, uint8_t first) {
  const uint8_t frame[7] = {first, 0, 0, 0, 1, (uint8_t)(first + 1), 0};
  uint8_t received[7] = {0};
  struct transfer transfer = {frame, received, sizeof frame, 0};
  tell("transfer", ioctl(spi, 0xc0185201UL, &transfer));
  for (int i = 0; i < 7; ++i) printf("%02X ", received[i]);
}

static void use_spi(void) {
  const int spi = open("/dev/spi_renesas", O_RDWR);
  tell("lens controller", spi < 0 ? spi : 0);
  uint32_t speed = 250000;
  tell("speed", ioctl(spi, 0xc0045202UL, &speed));
  speed = 0;
  tell("speed", ioctl(spi, 0xc0045202UL, &speed));
  exchange(spi, 0x3E);
  exchange(spi, 0xEE);
  tell("foreign request", ioctl(spi, 0x1234UL, &speed));
  tell("close", close(spi));
}

static void use_i2c(void) {
  const int i2c = open("/dev/i2c-2", O_RDWR);
  tell("head", i2c < 0 ? i2c : 0);
  for (uint16_t slave = 40; slave < 42; ++slave) {
    uint8_t reg = 240;
    uint8_t data[3] = {0};
    struct i2c_msg messages[] = {{slave, 0, 1, &reg}, {slave, I2C_M_RD, 2, data}};
    struct i2c_rdwr_ioctl_data request = {messages, 2};
    tell("request", ioctl(i2c, I2C_RDWR, &request));
    printf("%s ", (const char*)data);
  }
  uint8_t stop = 6;
  struct i2c_msg message = {40, 0, 1, &stop};
  struct i2c_rdwr_ioctl_data request = {&message, 1};
  tell("request", ioctl(i2c, I2C_RDWR, &request));
  tell("close", close(i2c));
}

int main(int argc, char** argv) {
  (void)argv;
  use_spi();
  use_i2c();
  tell("PT5111", open("/dev/spi_pt5111", O_RDWR));
  tell("shell", system("exit 3 # /sys/class/gpio"));
  fflush(stdout);
  const pid_t child = argc > 1 ? fork() : -1;
  if (child == 0) {
    use_i2c();
    return 0;
  }
  if (child > 0) wait(NULL);
  return 42;
}
