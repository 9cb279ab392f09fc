// Two processes that come between each other's frames.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ostream>
#include <string>
#include <vector>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Caller;
using kelvo::test::Bench;
using kelvo::test::Frame;

constexpr int other = 1;  // lives as long as the machine

/// Two processes at a camera, each with the bus lock when it sends.
class Desk : public Bench {
 public:
  explicit Desk(int module) {
    boot(module);
    wait_ms(1000);
  }
  Desk& by(int process) {
    camera.set_caller(Caller{process, true, process});
    return *this;
  }
  Desk& own() { return by(getpid()); }
  Desk& others() { return by(other); }
};

std::string between(const std::string& device, const std::string& frame, const std::string& what) {
  return device + " | " + frame + " | in the middle of " + what + " by process " +
         std::to_string(getpid());
}

struct LensSequenceRow {
  const char* name;
  int module;
  const char* what;
  std::vector<Frame> begin;
  Frame intruder;
  const char* shown;
  std::vector<Frame> rest;
};

void PrintTo(const LensSequenceRow& row, std::ostream* stream) { *stream << row.name; }

// clang-format off
const LensSequenceRow lens_sequence_rows[] = {
  {"Zoom1Move", 7, "a zoom-1 move",
   {{56, 0, 0, 0, 0, 56, 0}, {57, 0, 0, 0, 1, 58, 0}},
   {58, 0, 0, 1, 0, 59, 0}, "3A 00 00 01 00 3B 00",
   {{62, 0, 0, 0, 1, 63, 0}, {63, 0, 0, 0, 1, 64, 0}}},
  {"Zoom1PowerOff", 7, "powering off zoom 1",
   {{62, 0, 0, 0, 0, 62, 0}},
   {63, 0, 0, 0, 1, 64, 0}, "3F 00 00 00 01 40 00",
   {{61, 0, 0, 0, 20, 81, 0}, {62, 0, 0, 0, 1, 63, 0}}},
  {"Zoom3Move", 8, "a zoom-3 move",
   {{22, 0, 0, 0, 0, 22, 0}, {29, 0, 0, 25, 0, 54, 0}},
   {25, 0, 0, 0, 9, 34, 0}, "19 00 00 00 09 22 00",
   {{28, 0, 0, 0, 1, 29, 0}}},
  {"FocusMove", 7, "a move of the focus",
   {{15, 0, 0, 6, 0, 21, 0}, {15, 0, 2, 2, 64, 83, 0}},
   {15, 0, 4, 0, 1, 20, 0}, "0F 00 04 00 01 14 00",
   {{15, 0, 30, 15, 10, 70, 0}}},
  {"ZoomMove", 9, "a move of the zoom",
   {{12, 0, 32, 3, 64, 111, 0}},
   {12, 0, 62, 0, 0, 74, 0}, "0C 00 3E 00 00 4A 00",
   {{12, 0, 62, 15, 10, 99, 0}}},
  {"FilterCoil", 9, "driving the filter coil",
   {{12, 0, 252, 1, 240, 249, 0}},
   {12, 0, 252, 1, 243, 252, 0}, "0C 00 FC 01 F3 FC 00",
   {{12, 0, 130, 0, 3, 145, 0}}},
  {"Pt5111Move", 8, "a move of the PT5111",
   {{47, 2, 0xCF, 0xC0, 0, 0xC0, 0}, {47, 2, 0x34, 0x00, 0, 0x65, 0}},
   {47, 2, 0x41, 0x40, 0, 0xB2, 0}, "2F 02 41 40 00 B2 00",
   {{47, 2, 0x3E, 0x80, 0, 0xEF, 0}}},
  {"Pt5111SetUp", 8, "setting up the PT5111",
   {{47, 2, 0xE3, 0x80, 0, 0x94, 0}, {47, 2, 0xCF, 0xC0, 0, 0xC0, 0}},
   {47, 2, 0x3E, 0x80, 0, 0xEF, 0}, "2F 02 3E 80 00 EF 00",
   {{47, 2, 0x7C, 0x00, 0, 0xAD, 0}}},
  {"Pt5111Stop", 8, "stopping the PT5111",
   {{47, 2, 0xCC, 0x00, 0, 0xFD, 0}},
   {47, 2, 0x3C, 0x00, 0, 0x6D, 0}, "2F 02 3C 00 00 6D 00",
   {{47, 2, 0x7C, 0x00, 0, 0xAD, 0}}},
};
// clang-format on

class LensSequence : public testing::TestWithParam<LensSequenceRow> {};

TEST_P(LensSequence, IsNotToBeInterrupted) {
  const LensSequenceRow& row = GetParam();
  Desk desk(row.module);
  for (const Frame& frame : row.begin) desk.own().send(frame);
  EXPECT_EQ(desk.violation_count(), 0u);
  desk.others().send(row.intruder);
  EXPECT_EQ(desk.violations(),
            (std::vector<std::string>{between("lens controller", row.shown, row.what)}));
  EXPECT_EQ(desk.camera.violations().listed()[0].process, other);
  for (const Frame& frame : row.rest) desk.own().send(frame);
  EXPECT_EQ(desk.violation_count(), 1u) << "whoever is interrupted does nothing wrong";
  desk.others().send(row.intruder);
  EXPECT_EQ(desk.violation_count(), 1u) << "it is over";
}

INSTANTIATE_TEST_SUITE_P(Rows, LensSequence, testing::ValuesIn(lens_sequence_rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(Sequences, OfTheBootLastFromTheResetToTheStart) {
  Desk desk(7);
  desk.own().reset();
  desk.wait_ms(1);
  desk.own().send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  desk.others().send({0xF4, 0x01, 0x00, 0x00, 0xA0});
  EXPECT_EQ(desk.violations(),
            (std::vector<std::string>{between("lens controller", "F4 01 00 00 A0", "a boot")}));
}

TEST(Sequences, AreAllCutOffByAReset) {
  Desk desk(7);
  desk.own().send({15, 0, 0, 6, 0, 21, 0});
  desk.others().shell_all(
      {"echo 33 > /sys/class/gpio/export", "echo \"out\" > /sys/class/gpio/gpio33/direction",
       "echo 1 > /sys/class/gpio/gpio33/value", "echo 0 > /sys/class/gpio/gpio33/value"});
  EXPECT_EQ(desk.violations(),
            (std::vector<std::string>{between("reset line", "", "a move of the focus")}));
}

TEST(Sequences, OfWordsAreWatchedOnThePt5111sOwnDeviceToo) {
  Desk desk(7);
  desk.own().send_word({0xCF, 0xC0});
  desk.others().send_word({0x34, 0x00});
  EXPECT_EQ(desk.violations(),
            (std::vector<std::string>{between("PT5111", "34 00", "a move of the PT5111")}));
}

TEST(Sequences, AreNotDisturbedByQueriesAndByOtherParts) {
  Desk desk(8);
  desk.own().send({12, 0, 0, 6, 0, 18, 0});
  desk.own().send({47, 2, 0xCF, 0xC0, 0, 0xC0, 0});
  desk.others().query(0x8C, 28);
  desk.others().send({12, 0, 32, 6, 0, 50, 0});         // the other channel
  desk.others().send({22, 0, 0, 0, 0, 22, 0});          // another motor
  desk.others().send({47, 2, 0xCA, 0x00, 0, 0xFB, 0});  // the interrupter's supply
  EXPECT_EQ(desk.violations(), std::vector<std::string>{});
}

TEST(Sequences, MayBeBegunAnewByTheirOwnProcess) {
  Desk desk(7);
  for (int i = 0; i < 3; ++i) desk.own().send({56, 0, 0, 0, 0, 56, 0});
  EXPECT_EQ(desk.violation_count(), 0u);
}

TEST(Sequences, EndAfterFiveSecondsOfSilence) {
  Desk desk(7);
  desk.own().send({56, 0, 0, 0, 0, 56, 0});
  desk.wait_ms(4999);
  desk.others().send({57, 0, 0, 0, 1, 58, 0});
  EXPECT_EQ(desk.violation_count(), 1u);
  desk.wait_ms(1);
  desk.others().send({57, 0, 0, 0, 1, 58, 0});
  EXPECT_EQ(desk.violation_count(), 1u);
}

TEST(Sequences, EndWithTheirProcess) {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  Desk desk(7);
  desk.by(child).send({56, 0, 0, 0, 0, 56, 0});
  desk.own().send({57, 0, 0, 0, 1, 58, 0});
  EXPECT_EQ(desk.violation_count(), 0u);
}

}  // namespace
