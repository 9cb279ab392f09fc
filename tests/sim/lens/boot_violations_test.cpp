#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::test::Bench;
using kelvo::test::Frame;
using kelvo::test::image;
using Lines = std::vector<std::string>;

class BootViolation : public testing::Test {
 protected:
  void SetUp() override { bench.reset(); }

  Bench bench;
};

TEST_F(BootViolation, AFrameWhileTheResetLineIsLow) {
  bench.shell_all({"echo 0 > /sys/class/gpio/gpio33/value"});
  EXPECT_EQ(bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0}), Frame(5, 0));
  bench.send({5, 0, 0, 0, 0, 5, 0});
  bench.send({0x85, 0, 0, 0, 1, 0x86, 0, 0, 0, 0, 0, 0});
  bench.send({1, 2});
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | F5 04 00 00 A0 | the reset line is low",
                   "lens controller | 05 00 00 00 00 05 00 | the reset line is low",
                   "lens controller | 85 00 00 00 01 86 00 00 00 00 00 00 | the reset line is low",
                   "lens controller | 01 02 | the reset line is low"}));
  bench.shell_all({"echo 1 > /sys/class/gpio/gpio33/value"});
  bench.set_clocks();
  EXPECT_EQ(bench.violation_count(), 4u);
}

TEST_F(BootViolation, ARunTimeFrameBeforeTheProgramRuns) {
  EXPECT_EQ(bench.send({5, 0, 0, 0, 0, 5, 0}), Frame(7, 0));
  EXPECT_EQ(bench.send({0x85, 0, 0, 0, 1, 0x86, 0, 0, 0, 0, 0, 0}), Frame(12, 0));
  EXPECT_EQ(
      bench.violations(),
      (Lines{"lens controller | 05 00 00 00 00 05 00 | a run-time frame before the program runs",
             "lens controller | 85 00 00 00 01 86 00 00 00 00 00 00 | a run-time frame before "
             "the program runs"}));
}

TEST_F(BootViolation, AFrameOfTheWrongLength) {
  bench.send({0xF5, 0x04, 0x00, 0x00});
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0, 0x00});
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | F5 04 00 00 | a frame of 4 bytes, must be 5",
                   "lens controller | F5 04 00 00 A0 00 | a frame of 6 bytes, must be 5"}));
}

TEST_F(BootViolation, AWrongEndByteMakesAFrameIgnored) {
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA1});
  bench.set_clocks();
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | F5 04 00 00 A1 | end byte A1, must be A0"}));
}

TEST_F(BootViolation, AnUnknownCodeIsIgnored) {
  bench.send({0xF6, 0x00, 0x00, 0x00, 0xA0});
  bench.set_clocks();
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | F6 00 00 00 A0 | the boot loader has no code F6"}));
}

TEST_F(BootViolation, AStepThatIsLeftOutIsReportedOnce) {
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  bench.send({0xF0, 0x01, 0x13, 0x03, 0xA0});
  bench.send({0xF2, 0x33, 0x92, 0x00, 0xA0});
  bench.send({0xF3, 0x01, 0x00, 0x00, 0xA0});
  bench.send({0xF0, 0x01, 0x13, 0x03, 0xA0});
  bench.send({0xF1, 0x01, 0x00, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | F0 01 13 03 A0 | F0 where F4 is due"}));
}

TEST_F(BootViolation, ARepeatedStep) {
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  bench.send({0xF4, 0x01, 0x00, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | F5 04 00 00 A0 | F5 where F4 is due"}));
}

TEST_F(BootViolation, ADownloadWithoutClocks) {
  bench.send({0xE3, 0x00, 0x02, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | E3 00 02 00 A0 | E3 where F5 is due"}));
}

TEST_F(BootViolation, SizeBeforeAddress) {
  bench.set_clocks();
  bench.send({0xE4, 0x3C, 0x00, 0x00, 0xA0});
  bench.send({0xE3, 0x00, 0x02, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | E4 3C 00 00 A0 | E4 where E3 is due",
                                       "lens controller | E3 00 02 00 A0 | E3 where E1 is due"}));
}

TEST_F(BootViolation, TheHighChecksumBeforeTheLow) {
  bench.set_clocks();
  bench.download(0x21, 0x000200, image(7, 0).bytes);
  EXPECT_EQ(bench.send({0x67, 0, 0, 0, 0xA0}), (Frame{0, 0, 0xEE, 0x50, 0}));
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 67 00 00 00 A0 | 67 where 66 is due"}));
}

TEST_F(BootViolation, AnotherDownloadWithoutReadingTheChecksum) {
  bench.set_clocks();
  bench.download(0x21, 0x000200, image(7, 0).bytes);
  bench.download(0x22, 0xFFE000, image(7, 1).bytes);
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | E3 00 E0 FF A0 | E3 where 66 is due"}));
}

TEST_F(BootViolation, TheStartWithoutTheEndOfTheDownloads) {
  bench.set_clocks();
  for (int index = 0; index < 3; ++index) {
    bench.download(image(7, index).memory, image(7, index).address, image(7, index).bytes);
    bench.read_checksum();
  }
  bench.start();
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | E2 00 00 00 A0 | E2 where E5 is due"}));
  EXPECT_TRUE(bench.camera.lens().module().has_value());
}

TEST_F(BootViolation, ADownloadAfterTheEndOfTheDownloads) {
  bench.load(7);
  bench.send({0xE3, 0x00, 0x02, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | E3 00 02 00 A0 | E3 where E2 is due"}));
}

TEST_F(BootViolation, WrongDataOfAnyFixedStep) {
  const Frame right[] = {
      {0xF5, 0x04, 0x00, 0x00, 0xA0}, {0xF4, 0x01, 0x00, 0x00, 0xA0},
      {0xF0, 0x01, 0x13, 0x03, 0xA0}, {0xF2, 0x33, 0x92, 0x00, 0xA0},
      {0xF3, 0x01, 0x00, 0x00, 0xA0}, {0xF0, 0x01, 0x13, 0x03, 0xA0},
      {0xF1, 0x01, 0x00, 0x00, 0xA0},
  };
  for (std::size_t step = 0; step < std::size(right); ++step) {
    for (std::size_t byte = 1; byte <= 3; ++byte) {
      Bench fresh;
      fresh.reset();
      for (std::size_t i = 0; i < std::size(right); ++i) {
        Frame frame = right[i];
        if (i == step) frame[byte] ^= 0x10;
        fresh.send(frame);
      }
      EXPECT_EQ(fresh.violation_count(), 1u) << step << " " << byte;
    }
  }
}

TEST_F(BootViolation, NamesTheDataThatIsDue) {
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  bench.send({0xF4, 0x01, 0x00, 0x00, 0xA0});
  bench.send({0xF0, 0x01, 0x12, 0x03, 0xA0});
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | F0 01 12 03 A0 | data of F0 must be 01 13 03"}));
}

TEST_F(BootViolation, WrongDataOfHeaderReadEndAndStart) {
  bench.set_clocks();
  bench.send({0xE3, 0x00, 0x02, 0x00, 0xA0});
  bench.send({0xE4, 0x3C, 0x00, 0x00, 0xA0});
  bench.send({0xE1, 0x12, 0x21, 0x00, 0xA0});
  bench.send(image(7, 0).bytes);
  bench.send({0x66, 0x01, 0x00, 0x00, 0xA0});
  bench.send({0x67, 0x00, 0x00, 0x01, 0xA0});
  bench.send({0xE5, 0x00, 0x00, 0x00, 0xA0});
  bench.send({0xE2, 0x01, 0x00, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | E1 12 21 00 A0 | data of E1 must be 11 21 00",
                   "lens controller | 66 01 00 00 A0 | data of 66 must be 00 00 00",
                   "lens controller | 67 00 00 01 A0 | data of 67 must be 00 00 00",
                   "lens controller | E5 00 00 00 A0 | data of E5 must be 00 02 00",
                   "lens controller | E2 01 00 00 A0 | data of E2 must be 00 00 00"}));
}

TEST_F(BootViolation, APayloadThatIsNotAsLongAsAnnounced) {
  bench.set_clocks();
  bench.announce(0x21, 0x000200, 59);
  bench.send(image(7, 0).bytes);
  const std::uint32_t answered = bench.read_checksum();
  EXPECT_EQ(
      bench.violations(),
      (Lines{"lens controller | 1F 26 2D 34 3B 42 49 50 57 5E 65 6C 73 7A 81 88 | a payload of "
             "60 bytes, 59 were announced"}));
  EXPECT_NE(answered & 0xFFFF, 0x9858u);
  EXPECT_NE(answered >> 16, 0x50EEu);
}

TEST_F(BootViolation, APayloadThatNeverComes) {
  bench.set_clocks();
  bench.announce(0x21, 0x000200, 60);
  bench.read_checksum();
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | 66 00 00 00 A0 | the payload of 60 bytes is missing"}));
}

TEST_F(BootViolation, APayloadMayLookLikeAFrameWhenItIsAsLongAsOne) {
  bench.set_clocks();
  bench.announce(0x21, 0x000200, 5);
  bench.send({0x66, 0x00, 0x00, 0x00, 0xA0});
  bench.read_checksum();
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST_F(BootViolation, FramesToAControllerThatWasStartedWithoutImages) {
  bench.set_clocks();
  bench.download(0x21, 0x000200, image(7, 0).bytes);
  bench.read_checksum();
  bench.end_downloads();
  bench.start();
  EXPECT_EQ(bench.violation_count(), 0u);
  EXPECT_EQ(bench.query(0x85), 0);
  bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  EXPECT_EQ(
      bench.violations(),
      (Lines{"lens controller | 85 00 00 00 01 86 00 00 00 00 00 00 | the controller was started "
             "without the three images of one module",
             "lens controller | F5 04 00 00 A0 | the controller was started without the three "
             "images of one module"}));
  bench.boot(7);
  EXPECT_EQ(bench.query(0x85), 0x0107);
  EXPECT_EQ(bench.violation_count(), 2u);
}

}  // namespace
