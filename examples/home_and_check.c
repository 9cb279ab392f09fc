// Homes the focus of one lens module by its photo-interrupter, moves it by its counter, and runs the module's
// quality check, with nothing but the installed library.
//
//   home_and_check [--verbose] de015|df033|t5391
//
// The quality check measures the unit anew and replaces its calibration record: on a camera, run it only where
// that is meant. The library prints much on standard output; that is shown with --verbose only. Exit codes:
// 0 all is as it must be, 1 something is not, 2 wrong arguments, 3 there is no camera.
#include <errno.h>
#include <getopt.h>
#include <kelvo.h>
#include <signal.h>
#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "own_lines.h"

enum { exit_not_as_it_must_be = 1, exit_usage = 2, exit_no_camera = 3 };

static const char lens_controller[] = "/dev/spi_renesas";

// A value of a calibration record: where it stands there and which query reads it from the controller.
struct Field {
  const char *name;
  int index;
  uint8_t query;
  bool loaded;  // at boot; the others are measured alone
};

enum { copies = 3 };

struct Check {
  int32_t (*run)(void);
  const char *records[copies];  // as the check writes them; the last is read at boot
  int field_count;
  const struct Field *fields;
};

static const struct Field stabiliser_fields[] = {
    {"polarity", 0, 0xA1, true},         {"Hall offset X", 1, 0xD1, true},
    {"Hall offset Y", 2, 0xD2, true},    {"Hall gain X", 3, 0xD3, true},
    {"Hall gain Y", 4, 0xD4, true},      {"travel minimum X", 5, 0xD7, true},
    {"travel minimum Y", 6, 0xD9, true}, {"travel maximum X", 7, 0xD8, true},
    {"travel maximum Y", 8, 0xDA, true}, {"gyro zero X", 9, 0xE3, true},
    {"gyro zero Y", 14, 0xE5, true},     {"Hall noise X", 10, 0x96, false},
    {"Hall noise Y", 11, 0x97, false},   {"gyro noise X", 12, 0x9A, false},
    {"gyro noise Y", 13, 0x9B, false},
};
static const struct Field iris_fields[] = {
    {"polarity", 0, 0xA1, true},       {"Hall offset", 1, 0xD1, true},
    {"Hall gain", 2, 0xD3, true},      {"travel minimum", 3, 0xC5, true},
    {"travel maximum", 4, 0xC6, true}, {"sine", 5, 0x98, false},
};
enum { most_fields = sizeof stabiliser_fields / sizeof stabiliser_fields[0] };

struct Module {
  const char *name;
  int32_t (*boot)(void);
  uint8_t fast, slow;           // speeds of the focus, some 750 and 100 steps a second
  uint32_t counts_a_step;       // of the focus counter; 0: it cannot be read
  const struct Check *quality;  // or null
};

static const struct Check stabiliser_check = {
    OIS_Quality_Check,
    {"/mnt/nand/OIS_S_Cali.dat", "/tmp/OIS_S_Cali.dat", "/bin/OIS_S_Cali.dat"},
    most_fields,
    stabiliser_fields};
static const struct Check iris_check = {
    DC_Quality_Check,
    {"/mnt/nand/DC_S_Cali.dat", "/tmp/DC_S_Cali.dat", "/bin/DC_S_Cali.dat"},
    6,
    iris_fields};
static const struct Module modules[] = {
    {"de015", Init30516, 203, 25, 8, &stabiliser_check},
    {"df033", Init30516_DF033, 203, 25, 8, &iris_check},
    {"t5391", Init30516_T5391, 223, 31, 0, NULL},
};

enum {
  focus_sensor = 0,
  whole_travel = 4000,  // steps, and more than the focus has
  home_count = 1000,    // of the counter where the interrupter clears
  poll_ms = 2,
  most_polls = 30 * 1000 / poll_ms,  // half a minute
  check_seconds = 120,
};

// A line that tells of a step and whether it went as it must.
static bool tell(bool good, const char *step) {
  fprintf(lines, "  %-52s %s\n", step, good ? "ok" : "FAILED");
  fflush(lines);
  return good;
}

// Polls until the interrupter is in a state.
static bool wait_for_interrupter(uint32_t state) {
  for (int polls = 0; polls < most_polls; ++polls) {
    if (getPI(focus_sensor) == state) return true;
    delay_ms(poll_ms);
  }
  return false;
}

static bool wait_until_focus_stands(void) {
  for (int polls = 0; polls < most_polls; ++polls) {
    uint8_t running = 1;
    if (getFocusStatus(&running) != 0) return false;
    if (running == 0) return true;
    delay_ms(poll_ms);
  }
  return false;
}

// Into the interrupter fast, out of it slowly: where it clears is home. A move by no steps stops the motor.
static bool home_focus(const struct Module *module) {
  SetPIPower(1);
  bool good = setFocusBackward(module->fast, whole_travel) == 0 && wait_for_interrupter(1);
  good = setFocusBackward(module->fast, 0) == 0 && good;
  if (!tell(good, "focus backward until it is interrupted")) return false;
  good = setFocusForward(module->slow, whole_travel) == 0 && wait_for_interrupter(0);
  good = setFocusForward(module->slow, 0) == 0 && good;
  if (!tell(good, "focus slowly forward until it is not")) return false;
  return tell(SetFocusCount(home_count) == 0, "counter set to 1000");
}

// The focus must stand that many steps before its home, by the counter where there is one.
static bool focus_is_at(const struct Module *module, const char *step, uint32_t steps) {
  if (!wait_until_focus_stands()) return tell(false, step);
  if (module->counts_a_step == 0) return tell(true, step);
  const uint32_t wanted = home_count + steps * module->counts_a_step;
  const uint32_t count = GetFocusCount();
  char line[80];
  snprintf(line, sizeof line, "%s: counter %u, must be %u", step, (unsigned)count,
           (unsigned)wanted);
  return tell(count == wanted, line);
}

static bool move_focus(const struct Module *module) {
  bool good = focus_is_at(module, "at home", 0);
  good = setFocusForward(module->fast, 300) == 0 && good;
  good = focus_is_at(module, "300 steps forward", 300) && good;
  good = setFocusBackward(module->fast, 100) == 0 && good;
  good = focus_is_at(module, "100 steps back", 200) && good;
  good = setFocusPowerOff() == 0 && good;
  SetPIPower(0);
  return good;
}

static bool read_record(const char *path, uint32_t *record, int field_count) {
  FILE *file = fopen(path, "rb");
  if (file == NULL) return false;
  const size_t count = (size_t)field_count;
  const bool whole = fread(record, sizeof *record, count, file) == count;
  fclose(file);
  return whole;
}

// All copies must be there and the same; the one that a boot reads is left in `record`.
static bool read_copies(const struct Check *check, uint32_t *record) {
  bool good = true;
  for (int i = 0; i < copies; ++i) {
    uint32_t before[most_fields] = {0};
    memcpy(before, record, sizeof before);
    bool copy_good = read_record(check->records[i], record, check->field_count);
    if (i > 0) copy_good = memcmp(before, record, sizeof before) == 0 && copy_good;
    char line[80];
    snprintf(line, sizeof line, "record written to %s", check->records[i]);
    good = tell(copy_good, line) && good;
  }
  return good;
}

// Prints the record beside what the controller says after its boot; what was loaded must be the same.
static bool compare_record(const struct Check *check, const uint32_t *record) {
  bool good = true;
  fprintf(lines, "\n  %-20s  record  controller\n", check->records[copies - 1]);
  for (int i = 0; i < check->field_count; ++i) {
    const struct Field *field = &check->fields[i];
    uint8_t reply[4] = {0};
    RecvCommand(field->query, 0, reply);
    const uint32_t value = (uint32_t)(reply[2] << 8 | reply[3]);
    const bool same = value == record[field->index] || !field->loaded;
    fprintf(lines, "  %-20s  %04X    %04X%s\n", field->name, (unsigned)record[field->index],
            (unsigned)value, same ? "" : "  DIFFERS");
    good = good && same;
  }
  fprintf(lines, "\n");
  return good;
}

// The check of the iris has no time-out of its own.
static void give_up(int signal_number) {
  static const char line[] = "the quality check does not end\n";
  (void)signal_number;
  (void)!write(STDERR_FILENO, line, sizeof line - 1);
  _exit(exit_not_as_it_must_be);
}

static bool check_quality(const struct Check *check) {
  uint32_t record[most_fields] = {0};
  signal(SIGALRM, give_up);
  alarm(check_seconds);
  const int32_t result = check->run();
  alarm(0);
  char line[80];
  snprintf(line, sizeof line, "quality check: result %d, must be 0", (int)result);
  if (!tell(result == 0, line)) return false;
  if (!read_copies(check, record)) return false;
  return tell(compare_record(check, record), "record loaded");
}

static bool home_and_check(const struct Module *module) {
  fprintf(lines, "%s\n", module->name);
  if (!tell(module->boot() == 0, "boot")) return false;
  bool good = home_focus(module) && move_focus(module);
  if (module->quality != NULL) good = check_quality(module->quality) && good;
  return good;
}

static const struct Module *find_module(const char *name) {
  for (size_t i = 0; i < sizeof modules / sizeof modules[0]; ++i) {
    if (strcmp(modules[i].name, name) == 0) return &modules[i];
  }
  return NULL;
}

static int usage(const char *program) {
  fprintf(stderr, "usage: %s [--verbose] de015|df033|t5391\n", program);
  return exit_usage;
}

int main(int argc, char **argv) {
  static const struct option options[] = {{"verbose", no_argument, NULL, 'v'}, {NULL, 0, NULL, 0}};
  bool verbose = false;
  for (int option; (option = getopt_long(argc, argv, "v", options, NULL)) != -1;) {
    if (option != 'v') return usage(argv[0]);
    verbose = true;
  }
  const struct Module *module = optind + 1 == argc ? find_module(argv[optind]) : NULL;
  if (module == NULL) return usage(argv[0]);
  if (!device_is_there(lens_controller)) {
    fprintf(stderr, "%s: cannot open %s (%s)\n", argv[0], lens_controller, strerror(errno));
    return exit_no_camera;
  }
  lines = stdout;
  if (!verbose && !silence_library()) {
    perror(argv[0]);
    return EXIT_FAILURE;
  }
  const bool good = home_and_check(module);
  fprintf(lines, "%s: %s\n", module->name,
          good ? "all is as it must be" : "something is not as it must be");
  fflush(lines);
  return good ? EXIT_SUCCESS : exit_not_as_it_must_be;
}
