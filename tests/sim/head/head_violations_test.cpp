// Registers that a controller does not have, or not so.
#include <gtest/gtest.h>

#include <ostream>

#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::HeadFamily;
using kelvo::test::Frame;
using kelvo::test::HeadBench;
using kelvo::test::pan;
using kelvo::test::tilt;

constexpr auto vetra = HeadFamily::vetra;
constexpr auto tasmere = HeadFamily::tasmere;

struct Row {
  HeadFamily family;
  int slave;
  Frame bytes;
  std::size_t read;  // bytes to read; 0 is a write
  const char* violation;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.violation; }

// clang-format off
const Row rows[] = {
  {vetra,   pan,  {2, 0},           0, "pan controller | 02 00 | there is no register 2"},
  {vetra,   tilt, {50, 0, 0},       0, "tilt controller | 32 00 00 | register 50 (position) can only be read"},
  {vetra,   pan,  {3, 0, 0},        0, "pan controller | 03 00 00 | 2 bytes for register 3 (continuous_move), must be 3"},
  {vetra,   pan,  {6, 0},           0, "pan controller | 06 00 | 1 bytes for register 6 (stop), must be 0"},
  {vetra,   pan,  {4},              0, "pan controller | 04 | 0 bytes for register 4 (set_limit_enable), must be 1"},
  {vetra,   tilt, {},               0, "tilt controller |  | an empty message"},
  {vetra,   pan,  {66},             2, "pan controller | 42 | there is no register 66"},
  {vetra,   pan,  {5},              4, "pan controller | 05 | register 5 (set_limits) can only be written"},
  {vetra,   pan,  {34},             1, "pan controller | 22 | register 34 (reset) can only be written"},
  {vetra,   pan,  {50},             4, "pan controller | 32 | 4 bytes read from register 50 (position), must be 2"},
  {vetra,   pan,  {51},             4, "pan controller | 33 | 4 bytes read from register 51 (limit_enable), must be 1"},
  {vetra,   pan,  {16},             2, "pan controller | 10 | 2 bytes read from register 16 (set_position_gains), must be 4"},
  {vetra,   tilt, {240},            2, "tilt controller | F0 | there is no register 240"},
  {tasmere, pan,  {6},              0, "pan controller | 06 | there is no register 6"},
  {tasmere, tilt, {4, 0, 0},        0, "tilt controller | 04 00 00 | register 4 (position) can only be read"},
  {tasmere, pan,  {12, 0},          0, "pan controller | 0C 00 | 1 bytes for register 12 (set_p), must be 2"},
  {tasmere, pan,  {35, 1},          0, "pan controller | 23 01 | 1 bytes for register 35 (save), must be 0"},
  {tasmere, pan,  {19, 0, 0, 0, 0}, 0, "pan controller | 13 00 00 00 00 | 4 bytes for register 19 (set_limit_length), must be 2"},
  {tasmere, pan,  {50},             2, "pan controller | 32 | there is no register 50"},
  {tasmere, pan,  {12},             2, "pan controller | 0C | register 12 (set_p) can only be written"},
  {tasmere, pan,  {4},              4, "pan controller | 04 | 4 bytes read from register 4 (position), must be 2"},
  {tasmere, pan,  {27},             2, "pan controller | 1B | 2 bytes read from register 27 (version), must be 4"},
  {tasmere, pan,  {75},             3, "pan controller | 4B | 3 bytes read from register 75 (limit_length), must be 2"},
  {tasmere, tilt, {240},            2, "tilt controller | F0 | there is no register 240"},
};
// clang-format on

class HeadViolation : public testing::TestWithParam<Row> {};

TEST_P(HeadViolation, IsRecordedAndReadAsZeros) {
  const Row& row = GetParam();
  HeadBench bench(row.family);
  if (row.read == 0) {
    EXPECT_EQ(bench.write(row.slave, row.bytes), 1);
  } else {
    EXPECT_EQ(bench.read(row.slave, row.bytes[0], row.read), Frame(row.read, 0));
  }
  EXPECT_EQ(bench.violations(), (std::vector<std::string>{row.violation}));
}

INSTANTIATE_TEST_SUITE_P(Rows, HeadViolation, testing::ValuesIn(rows));

TEST(HeadViolations, ChangesNothing) {
  kelvo::test::VetraBench bench;
  bench.write(pan, {3, 0, 0x1C});
  bench.write(pan, {4, 1, 1});
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 9000);
  EXPECT_EQ(bench.read(pan, 51, 1), (Frame{0}));
}

}  // namespace
