// The library prints much on standard output. A program that wants to be read alone leads that away.
#ifndef OWN_LINES_H
#define OWN_LINES_H

#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <unistd.h>

// Where a program's own lines go: to where standard output led before silence_library().
static FILE *lines;

static inline bool silence_library(void) {
  const int own = dup(STDOUT_FILENO);
  const int nothing = open("/dev/null", O_WRONLY);
  if (own < 0 || nothing < 0 || dup2(nothing, STDOUT_FILENO) < 0) return false;
  close(nothing);
  lines = fdopen(own, "w");
  return lines != NULL;
}

// Whether a device node can be opened. Nothing may be touched without a camera, not even its reset line.
static inline bool device_is_there(const char *path) {
  const int device = open(path, O_RDWR);
  if (device < 0) return false;
  close(device);
  return true;
}

#endif
