// What a program that runs holds against a frame.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "sim/camera/bench.h"

namespace {

using kelvo::test::Bench;
using kelvo::test::Frame;

struct Row {
  const char* name;
  std::vector<Frame> frames;  // to DF033's program
  const char* violation;      // the last one's
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const Row rows[] = {
  {"CommandOfAnotherModule", {{70, 0, 0, 0, 0, 70, 0}},
   "lens controller | 46 00 00 00 00 46 00 | DF033's program has no command 70"},
  {"WordForAnotherChip", {{47, 3, 0xCF, 0xC0, 0, 0xC1, 0}},
   "lens controller | 2F 03 CF C0 00 C1 00 | a PT5111 word for chip 3, must be 2"},
  {"BootLoaderFrame", {{0xF5, 0x04, 0x00, 0x00, 0xA0}},
   "lens controller | F5 04 00 00 A0 | a boot-loader frame while the program runs"},
  {"ModeWord", {{12, 0, 0, 0x01, 0x23, 0x30, 0}, {12, 0, 30, 0x0F, 0x02, 0x3B, 0}, {12, 0, 30, 0x0F, 0x0A, 0x43, 0}},
   "lens controller | 0C 00 1E 0F 0A 43 00 | mode word 0x123 is no drive mode"},
};
// clang-format on

class ProgramViolation : public testing::TestWithParam<Row> {};

TEST_P(ProgramViolation, IsListed) {
  Bench bench;
  bench.boot(8);
  for (const Frame& frame : GetParam().frames) bench.send(frame);
  EXPECT_EQ(bench.violations(), (std::vector<std::string>{GetParam().violation}));
}

INSTANTIATE_TEST_SUITE_P(Rows, ProgramViolation, testing::ValuesIn(rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
