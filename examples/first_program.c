/* Boots a DF033 lens module and moves its focus by 200 steps. */
#include <kelvo.h>
#include <stdio.h>

int main(void) {
  if (Init30516_DF033() != 0) {
    fputs("The lens controller's program could not be verified.\n", stderr);
    return 1;
  }
  uint32_t version = 0;
  getVersion(&version);
  if (setFocusForward(100, 200) != 0) { /* speed level 100: some 380 steps a second */
    fputs("The focus did not start.\n", stderr);
    return 1;
  }
  delay_ms(600);
  printf("Module %d, program version %u: focus moved.\n", (int)GetLensType(), (unsigned)version);
  return 0;
}
