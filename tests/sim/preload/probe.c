// A program that knows nothing of the simulated camera: opens a device, and ends in one way or another.
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

static int open_device(void) {
  const int device = open("/dev/spi_renesas", O_RDWR);
  if (device < 0) {
    perror("/dev/spi_renesas");
    exit(9);
  }
  return device;
}

static int end_after_a_child(void) {
  open_device();
  const pid_t child = fork();
  if (child == 0) exit(0);
  int status = -1;
  if (child < 0 || waitpid(child, &status, 0) != child) return 8;
  return status == 0 ? 0 : 8;
}

/* What a device has not, and no file of the machine in its place. */
static int look_for_bytes(void) {
  char bytes[4];
  const int device = open_device();
  FILE* const stream = fopen("/dev/i2c-2", "r");
  if (stream == NULL || fread(bytes, 1, 4, stream) != 0 || !ferror(stream)) return 8;
  if (pread(device, bytes, 4, 0) != -1 || errno != EINVAL) return 8;
  return mkdir("/dev/i2c-2", 0700) == -1 && errno == EEXIST ? 0 : 8;
}

static int wait_for_nobody(void) {
  struct pollfd nobody = {-1, POLLIN, 0};
  open_device();
  return poll(&nobody, 1, 2000) == 0 ? 0 : 8;
}

int main(int argc, char** argv) {
  const char* ending = argc > 1 ? argv[1] : "";
  if (strcmp(ending, "idle") == 0) return 0;
  if (strcmp(ending, "bytes") == 0) return look_for_bytes();
  if (strcmp(ending, "nobody") == 0) return wait_for_nobody();
  if (strcmp(ending, "fork") == 0) return end_after_a_child();
  if (strcmp(ending, "elsewhere") == 0) return open_device() < 0 || chdir("/") != 0;
  if (strcmp(ending, "exit") == 0) exit(open_device() < 0);
  if (strcmp(ending, "return") == 0) return open_device() < 0;
  return 7;
}
