// Values of the head that take several writes.
#include <gtest/gtest.h>
#include <unistd.h>

#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::Caller;
using kelvo::sim::camera::HeadFamily;
using kelvo::test::Frame;
using kelvo::test::HeadBench;
using kelvo::test::pan;
using kelvo::test::tilt;

struct HeadSequenceRow {
  const char* name;
  HeadFamily family;
  int slave;
  const char* what;
  Frame begin;
  Frame end;
};

void PrintTo(const HeadSequenceRow& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const HeadSequenceRow head_sequence_rows[] = {
  {"LimitsOfPan",  HeadFamily::tasmere, pan,  "the limits of pan",  {18, 0, 1}, {19, 0, 1}},
  {"LimitsOfTilt", HeadFamily::tasmere, tilt, "the limits of tilt", {18, 0, 1}, {19, 0, 1}},
  {"GainsOfPan",   HeadFamily::tasmere, pan,  "the gains of pan",   {12, 0, 1}, {16, 0, 1}},
  {"GainsOfTilt",  HeadFamily::tasmere, tilt, "the gains of tilt",  {12, 0, 1}, {16, 0, 1}},
  {"RampsOfPan",   HeadFamily::vetra,   pan,  "the ramps of pan",   {19, 0, 0, 0, 1}, {21, 0, 0, 0, 1}},
  {"RampsOfTilt",  HeadFamily::vetra,   tilt, "the ramps of tilt",  {19, 0, 0, 0, 1}, {21, 0, 0, 0, 1}},
};
// clang-format on

class HeadSequence : public testing::TestWithParam<HeadSequenceRow> {};

TEST_P(HeadSequence, IsNotToBeInterrupted) {
  const HeadSequenceRow& row = GetParam();
  HeadBench head(row.family);
  const Caller own{getpid(), false, 0};
  const Caller other{1, false, 0};
  head.camera.set_caller(own);
  head.write(row.slave, row.begin);
  head.camera.set_caller(other);
  head.write(row.slave == pan ? tilt : pan, row.end);
  EXPECT_EQ(head.violation_count(), 0u) << "the other axis";
  head.write(row.slave, row.end);
  ASSERT_EQ(head.violation_count(), 1u);
  EXPECT_EQ(head.camera.violations().listed()[0].process, 1);
  EXPECT_EQ(
      head.camera.violations().listed()[0].reason.data(),
      "in the middle of " + std::string(row.what) + " by process " + std::to_string(getpid()));
  head.camera.set_caller(own);
  head.write(row.slave, row.end);
  head.camera.set_caller(other);
  head.write(row.slave, row.end);
  EXPECT_EQ(head.violation_count(), 1u) << "it is over";
}

INSTANTIATE_TEST_SUITE_P(Rows, HeadSequence, testing::ValuesIn(head_sequence_rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
