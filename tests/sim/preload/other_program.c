// A program that meets a lens controller which another one has booted: takes the module's code and how often
// to ask, and prints the version and where zoom 1 and focus stand.
#include <inttypes.h>
#include <kelvo.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>

int main(int argc, char** argv) {
  if (argc != 3) return 7;
  signal(SIGPIPE, SIG_IGN); /* what runs beside it may end first */
  SetLensType(atoi(argv[1]));
  uint32_t version = 0;
  for (int i = atoi(argv[2]); i > 0; --i) {
    if (SetZoom1Count(500) != 0) return 1;
    getVersion(&version);
    if (version == 0) return 2;
  }
  printf("version %04" PRIX32 ", zoom 1 at %" PRIu32 ", focus at %" PRIu32 "\n", version,
         GetZoom1Count(), GetFocusCount());
  return GetLensType() == atoi(argv[1]) ? 0 : 3;
}
