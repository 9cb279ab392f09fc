/* Closes all descriptors but the standard ones, as daemons do, and says so. */
#define _GNU_SOURCE
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

static int close_one_by_one(void) {
  int result = 0;
  for (int i = 3; i < 2048; ++i) {
    if (close(i) == 0 || errno != EBADF) result = 1;
  }
  return result;
}

int main(int argc, char** argv) {
  const char* way = argc > 1 ? argv[1] : "";
  if (strcmp(way, "close") == 0 && close_one_by_one() != 0) return 1;
  if (strcmp(way, "close_range") == 0 && close_range(3, ~0U, 0) != 0) return 2;
  if (strcmp(way, "closefrom") == 0) closefrom(3);
  puts("closed");
  fflush(stdout);
  for (;;) pause();
}
