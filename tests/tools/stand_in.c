/* Devices in the place of the camera's, for a program that believes in them: each has rules of its own by which it
 * answers. Preloaded. */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <stdarg.h>
#include <stdint.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

#define TRANSFER 0xc0185201UL
#define SPEED 0xc0045202UL

struct transfer {
  const uint8_t* transmit;
  uint8_t* receive;
  uint32_t length;
  uint32_t reserved;
};

static char claimed[1024];

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  const int spi = strcmp(path, "/dev/spi_renesas") == 0;
  const int i2c = strcmp(path, "/dev/i2c-2") == 0;
  if (strcmp(path, "/dev/spi_pt5111") == 0) {
    errno = EACCES;
    return -1;
  }
  const int fd = (int)syscall(SYS_openat, AT_FDCWD, spi || i2c ? "/dev/null" : path, flags, mode);
  if (fd >= 0 && fd < (int)sizeof claimed) claimed[fd] = (char)(spi || i2c);
  return fd;
}

static int fail(int error) {
  errno = error;
  return -1;
}

/* Gives back the complement of each byte; a frame that begins with EE fails. */
static int serve_transfer(const struct transfer* transfer) {
  if (transfer->transmit[0] == 0xEE) return fail(EIO);
  for (uint32_t i = 0; i < transfer->length; ++i)
    transfer->receive[i] = (uint8_t)~transfer->transmit[i];
  return 0;
}

/* Slave 40 alone is there; it has VX in all of its registers. */
static int serve_messages(const struct i2c_rdwr_ioctl_data* request) {
  for (uint32_t i = 0; i < request->nmsgs; ++i) {
    const struct i2c_msg* const message = &request->msgs[i];
    if (message->addr != 40) return fail(ENXIO);
    for (int k = 0; (message->flags & I2C_M_RD) != 0 && k < message->len; ++k)
      message->buf[k] = (uint8_t) "VX"[k % 2];
  }
  return (int)request->nmsgs;
}

int ioctl(int fd, unsigned long request, ...) {
  va_list rest;
  va_start(rest, request);
  void* const argument = va_arg(rest, void*);
  va_end(rest);
  if (fd < 0 || fd >= (int)sizeof claimed || !claimed[fd])
    return (int)syscall(SYS_ioctl, fd, request, argument);
  if (request == TRANSFER) return serve_transfer(argument);
  if (request == SPEED) return *(const uint32_t*)argument == 0 ? fail(EINVAL) : 0;
  if (request == I2C_RDWR) return serve_messages(argument);
  return fail(ENOTTY);
}
