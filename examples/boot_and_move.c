// Boots lens modules and moves their zoom and focus motors, with nothing but the installed library.
//
//   boot_and_move [--verbose] [de015|df033|t5391]...
//
// Without a name all three modules are booted, one after the other. The library prints much on standard
// output; that is shown with --verbose only. Exit codes: 0 all is well, 1 some module did not boot
// cleanly, 2 wrong arguments, 3 there is no camera.
#include <errno.h>
#include <getopt.h>
#include <kelvo.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include "own_lines.h"

enum { exit_boot_failed = 1, exit_usage = 2, exit_no_camera = 3 };

static const char lens_controller[] = "/dev/spi_renesas";

typedef uint32_t (*Move)(uint8_t speed, uint32_t steps);

// One motor and how to exercise it: a long move forward and a shorter one back.
struct Motor {
  const char *name;
  Move forward;
  Move backward;
  uint8_t speed;
  uint32_t rate;  // full steps a second at that speed
};

enum { motor_count = 3, steps_forward = 400, steps_back = 150 };

struct Module {
  const char *name;
  int32_t (*boot)(void);
  struct Motor motors[motor_count];
};

// How fast a speed byte is depends on the motor's drive: zoom 1 of DE015 makes speed * 960 / 255 steps a
// second, zoom 3 of DF033 speed * 1320 / 255, the PT5111 6.25 for each 6 of the byte, a micro-stepped
// motor (speed + 1) * 960 / 255, and T5391's motors (speed + 1) * 3.125.
static const struct Module modules[] = {
    {"de015",
     Init30516,
     {{"zoom 1", setZoom1Forward, setZoom1Backward, 204, 768},
      {"zoom 2", setZoom2Forward, setZoom2Backward, 203, 768},
      {"focus", setFocusForward, setFocusBackward, 203, 768}}},
    {"df033",
     Init30516_DF033,
     {{"zoom 1", setZoom1Forward, setZoom1Backward, 234, 237},
      {"zoom 3", setZoom3Forward, setZoom3Backward, 204, 1056},
      {"focus", setFocusForward, setFocusBackward, 203, 768}}},
    {"t5391",
     Init30516_T5391,
     {{"zoom 1", setZoom1Forward, setZoom1Backward, 223, 700},
      {"focus", setFocusForward, setFocusBackward, 223, 700}}},
};
enum { module_count = sizeof modules / sizeof modules[0] };

struct Outcome {
  int32_t boot_result;
  bool version_read;
  uint32_t version;
  int32_t variant;
  uint32_t move_status[motor_count];  // of the start commands, 0 = all were sent
};

// Waits until a move must be over, with a little in hand.
static void wait_for(uint32_t steps, uint32_t rate) {
  const int64_t milliseconds = (int64_t)steps * 1050 / rate + 20;
  const struct timespec time = {milliseconds / 1000, milliseconds % 1000 * 1000000};
  nanosleep(&time, NULL);
}

static uint32_t exercise(const struct Motor *motor) {
  uint32_t status = motor->forward(motor->speed, steps_forward);
  wait_for(steps_forward, motor->rate);
  status |= motor->backward(motor->speed, steps_back);
  wait_for(steps_back, motor->rate);
  return status;
}

static bool boot_and_move(const struct Module *module, struct Outcome *outcome) {
  memset(outcome, 0, sizeof *outcome);
  fprintf(lines, "%s: booting\n", module->name);
  fflush(lines);
  outcome->boot_result = module->boot();
  outcome->version_read = getVersion(&outcome->version) == 0;
  outcome->variant = GetLensType();
  fprintf(lines, "%s: result %d, variant %d, program version %04X\n", module->name,
          (int)outcome->boot_result, (int)outcome->variant, (unsigned)outcome->version);
  bool good = outcome->boot_result == 0 && outcome->version_read;
  for (int i = 0; i < motor_count && module->motors[i].name != NULL; ++i) {
    const struct Motor *motor = &module->motors[i];
    fprintf(lines, "%s: %s, %d steps forward and %d back\n", module->name, motor->name,
            steps_forward, steps_back);
    fflush(lines);
    outcome->move_status[i] = exercise(motor);
    good = good && outcome->move_status[i] == 0;
  }
  return good;
}

static void print_outcome(const struct Module *module, const struct Outcome *outcome) {
  char version[16] = "not read";
  if (outcome->version_read) {
    snprintf(version, sizeof version, "%04X", (unsigned)(outcome->version & 0xFFFF));
  }
  fprintf(lines, "  %-6s  %-15s  %7d  %-8s  ", module->name,
          outcome->boot_result == 0 ? "ok" : "checks failed", (int)outcome->variant, version);
  const char *separator = "";
  for (int i = 0; i < motor_count && module->motors[i].name != NULL; ++i) {
    fprintf(lines, "%s%s %s", separator, module->motors[i].name,
            outcome->move_status[i] == 0 ? "moved" : "NOT MOVED");
    separator = ", ";
  }
  fprintf(lines, "\n");
}

static int usage(const char *program) {
  fprintf(stderr, "usage: %s [--verbose] [de015|df033|t5391]...\n", program);
  return exit_usage;
}

static const struct Module *find_module(const char *name) {
  for (int i = 0; i < module_count; ++i) {
    if (strcmp(modules[i].name, name) == 0) return &modules[i];
  }
  return NULL;
}

enum { most_boots = 16 };

int main(int argc, char **argv) {
  static const struct option options[] = {{"verbose", no_argument, NULL, 'v'}, {NULL, 0, NULL, 0}};
  bool verbose = false;
  for (int option; (option = getopt_long(argc, argv, "v", options, NULL)) != -1;) {
    if (option != 'v') return usage(argv[0]);
    verbose = true;
  }

  const struct Module *chosen[most_boots];
  struct Outcome outcomes[most_boots];
  int count = 0;
  for (int i = optind; i < argc; ++i) {
    const struct Module *module = find_module(argv[i]);
    if (module == NULL || count == most_boots) return usage(argv[0]);
    chosen[count++] = module;
  }
  if (count == 0) {
    for (; count < module_count; ++count) chosen[count] = &modules[count];
  }

  if (!device_is_there(lens_controller)) {
    fprintf(stderr,
            "%s: cannot open %s (%s): run it on the camera, or under the simulated one with "
            "LD_PRELOAD=libkelvo-sim.so\n",
            argv[0], lens_controller, strerror(errno));
    return exit_no_camera;
  }
  lines = stdout;
  if (!verbose && !silence_library()) {
    perror(argv[0]);
    return EXIT_FAILURE;
  }

  bool good = true;
  for (int i = 0; i < count; ++i) good = boot_and_move(chosen[i], &outcomes[i]) && good;
  fprintf(lines, "\n  module  boot             variant  version   moves\n");
  for (int i = 0; i < count; ++i) print_outcome(chosen[i], &outcomes[i]);
  fflush(lines);
  return good ? EXIT_SUCCESS : exit_boot_failed;
}
