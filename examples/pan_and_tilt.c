// Pans and tilts the head, to positions and continuously, with nothing but the installed library.
//
//   pan_and_tilt [--verbose]
//
// Prints the way as a table. The library prints much on standard output; that is shown with --verbose
// only. Exit codes: 0 every target was reached, 1 some target was not, 2 wrong arguments, 3 there is no
// head.
#include <kelvo.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "own_lines.h"
#include "tuning_table.h"

enum { exit_missed = 1, exit_usage = 2, exit_no_head = 3 };
enum { poll_ms = 50, row_ms = 500, time_out_ms = 10000 };
enum { full_range = 65536, tolerance = 40 };  // of the common position scale
enum { up = 0, down = 1 };                    // directions
enum { top_speed = 7200 };

struct Range {
  int32_t start;
  int32_t end;
};

// Neither axis leaves its range; inside it there is one way to a position.
static const struct Range pan_range = {10000, 55000};
static const struct Range tilt_range = {20000, 45000};

struct Positions {
  uint32_t pan;
  uint32_t tilt;
};

// What the program has waited. The clock on the wall would do as well, on a camera.
static int waited_ms;

static struct Positions positions(void) {
  struct Positions now = {0, 0};
  GetPanPos(&now.pan);
  GetTiltPos(&now.tilt);
  return now;
}

// One row of the table, with what has ended there and how.
static void print_row(const char *step, const char *outcome) {
  const struct Positions now = positions();
  fprintf(lines, "  %5.2f s  %5u  %5u%s%s%s%s\n", waited_ms / 1000.0, (unsigned)now.pan,
          (unsigned)now.tilt, *step ? "  " : "", step, *outcome ? ": " : "", outcome);
  fflush(lines);
}

static bool at_rest(void) { return GetPanStatus() == 0 && GetTiltStatus() == 0; }

// Waits until both axes are at rest, at most so long; whether they are.
static bool wait_for_rest(int milliseconds) {
  for (int waited = 0; waited < milliseconds; waited += poll_ms) {
    delay_ms(poll_ms);
    waited_ms += poll_ms;
    if (at_rest()) return true;
    if (waited_ms % row_ms == 0) print_row("", "");
  }
  return false;
}

// The range is a circle.
static bool is_near(uint32_t position, uint32_t target) {
  const uint32_t apart = (position - target) % full_range;
  return apart <= tolerance || full_range - apart <= tolerance;
}

static bool arrive(const char *step, struct Positions target) {
  const bool rests = wait_for_rest(time_out_ms);
  const struct Positions now = positions();
  const bool reached = rests && is_near(now.pan, target.pan) && is_near(now.tilt, target.tilt);
  if (!rests) {
    PanStop();
    TiltStop();
  }
  print_row(step, reached ? "reached" : "NOT REACHED");
  return reached;
}

static bool go_to(const char *step, int32_t speed, uint32_t pan, uint32_t tilt) {
  const struct Positions now = positions();
  PanABSMove(pan > now.pan ? up : down, speed, pan);
  TiltABSMove(tilt > now.tilt ? up : down, speed, tilt);
  return arrive(step, (struct Positions){pan, tilt});
}

// Runs both axes up until their limits stop them.
static bool run_to_limits(const char *step, int32_t speed) {
  PanContinuousMove(up, speed);
  TiltContinuousMove(up, speed);
  return arrive(step, (struct Positions){(uint32_t)pan_range.end, (uint32_t)tilt_range.end});
}

// Runs both axes down for a while and stops them.
static bool run_and_stop(const char *step, int32_t speed, int milliseconds) {
  const struct Positions begin = positions();
  PanContinuousMove(down, speed);
  TiltContinuousMove(down, speed);
  const bool ended_early = wait_for_rest(milliseconds);
  PanStop();
  TiltStop();
  Set_stop_PID();
  const bool stopped = !ended_early && wait_for_rest(time_out_ms);
  const struct Positions end = positions();
  const bool moved = end.pan < begin.pan && end.tilt < begin.tilt;
  print_row(step, stopped && moved ? "stopped" : "NOT STOPPED");
  return stopped && moved;
}

// A controller that does not answer reads as one of the Tasmere family, with a sleep mode of -1.
static bool head_is_there(void) {
  return Init_I2C() == 0 && GetMotorType() > 0 && GetPanSleepMode() >= 0 && GetTiltSleepMode() >= 0;
}

static void prepare(void) {
  Init_Setup_PID((const uint8_t *)tuning_table);
  SetPanWakeUp();  // their results say nothing
  SetTiltWakeUp();
  PanLimitSet(pan_range.start, pan_range.end);
  PanLimitEn(1);
  TiltLimit((uint32_t)tilt_range.start, (uint32_t)tilt_range.end);
  TiltLimitEn(1);
}

static bool show(void) {
  fprintf(lines, "%s head, pan from %d to %d, tilt from %d to %d\n\n",
          GetMotorType() == 1 ? "Vetra" : "Tasmere", (int)pan_range.start, (int)pan_range.end,
          (int)tilt_range.start, (int)tilt_range.end);
  fprintf(lines, "   waited    pan   tilt\n");
  print_row("begin", "");
  bool good = go_to("to 20000 and 40000 at half speed", top_speed / 2, 20000, 40000);
  good = go_to("to 50000 and 25000 at top speed", top_speed, 50000, 25000) && good;
  good = run_to_limits("up to the limits at a quarter", top_speed / 4) && good;
  good = run_and_stop("down for a second", top_speed / 8, 1000) && good;
  good = go_to("to the middle", top_speed, full_range / 2, full_range / 2) && good;
  return good;
}

int main(int argc, char **argv) {
  const bool verbose = argc == 2 && strcmp(argv[1], "--verbose") == 0;
  if (argc > 1 && !verbose) {
    fprintf(stderr, "usage: %s [--verbose]\n", argv[0]);
    return exit_usage;
  }
  lines = stdout;
  if (!verbose && !silence_library()) {
    perror(argv[0]);
    return EXIT_FAILURE;
  }
  if (!head_is_there()) {
    fprintf(stderr,
            "%s: no head answers on /dev/i2c-2: run it on the camera, or under the simulated one "
            "with LD_PRELOAD=libkelvo-sim.so\n",
            argv[0]);
    return exit_no_head;
  }
  prepare();
  const bool good = show();
  Release_I2C();
  fflush(lines);
  return good ? EXIT_SUCCESS : exit_missed;
}
