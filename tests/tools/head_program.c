// Tells the controller of one axis of the head always the same, with pauses between, once its standard input
// has ended.
//
//   head_program 40|41
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <time.h>
#include <unistd.h>

enum { rounds = 300, exit_failed = 1, exit_usage = 2 };

static int tell(int device, uint16_t slave, uint8_t value) {
  uint8_t gain[] = {12, 0, value};
  struct i2c_msg message = {slave, 0, sizeof gain, gain};
  struct i2c_rdwr_ioctl_data request = {&message, 1};
  return ioctl(device, I2C_RDWR, &request) == 1;
}

static int ask(int device, uint16_t slave) {
  uint8_t reg = 4;
  uint8_t position[2] = {0};
  struct i2c_msg messages[] = {{slave, 0, 1, &reg}, {slave, I2C_M_RD, 2, position}};
  struct i2c_rdwr_ioctl_data request = {messages, 2};
  return ioctl(device, I2C_RDWR, &request) == 2;
}

int main(int argc, char** argv) {
  if (argc != 2) return exit_usage;
  const uint16_t slave = (uint16_t)atoi(argv[1]);
  const int device = open("/dev/i2c-2", O_RDWR);
  puts("ready");
  fflush(stdout);
  while (getchar() != EOF) {
  }
  for (int i = 0; i < rounds; ++i) {
    const struct timespec pause = {0, (1 + i * slave % 7) * 1000000L};
    if (!tell(device, slave, (uint8_t)i) || !ask(device, slave)) return exit_failed;
    nanosleep(&pause, NULL);
  }
  return close(device);
}
