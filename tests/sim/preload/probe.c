// A program that knows nothing of the simulated camera: opens a device, and ends in one way or another.
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
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

int main(int argc, char** argv) {
  const char* ending = argc > 1 ? argv[1] : "";
  if (strcmp(ending, "idle") == 0) return 0;
  if (strcmp(ending, "fork") == 0) return end_after_a_child();
  if (strcmp(ending, "elsewhere") == 0) return open_device() < 0 || chdir("/") != 0;
  if (strcmp(ending, "exit") == 0) exit(open_device() < 0);
  if (strcmp(ending, "return") == 0) return open_device() < 0;
  return 7;
}
