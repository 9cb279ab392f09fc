// Asks a Tasmere head where it stands before it has asked what head it is; stays if it is told to.
#include <kelvo.h>
#include <stdint.h>
#include <unistd.h>

int main(int argc, char** argv) {
  (void)argv;
  Init_I2C();
  uint32_t position = 0;
  GetPanPos(&position);
  if (argc > 1) pause();
  return 0;
}
