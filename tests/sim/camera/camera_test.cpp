#include "sim/camera/camera.h"

#include <gtest/gtest.h>

#include <cstring>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::BootLog;
using kelvo::sim::camera::BootRecord;
using kelvo::sim::camera::Camera;
using kelvo::sim::camera::Output;
using kelvo::sim::camera::Time;
using kelvo::test::Bench;
using kelvo::test::Frame;
using kelvo::test::image;

TEST(Camera, IsWhereItWasAfterBeingCopiedByteByByte) {
  Bench bench;
  bench.boot(7);
  bench.command16(0x57, 0x1234);
  Bench copy;
  std::memcpy(static_cast<void*>(&copy.camera), &bench.camera, sizeof(Camera));
  EXPECT_EQ(copy.query(0xD7), 0x1234);
  EXPECT_EQ(copy.violation_count(), 0u);
}

TEST(Camera, FillsOnlyAsMuchOfAReplyAsWasAskedFor) {
  Bench bench;
  bench.boot(9);
  const Frame sent{0x86, 0, 0, 0, 1, 0x87, 0, 0, 0, 0, 0, 0};
  Frame received(10, 0xEE);
  bench.camera.transfer_lens(sent, received, kelvo::test::carried());
  EXPECT_EQ(received, (Frame{0, 0, 0, 0, 0, 0, 0, 0, 0, 0x03}));
}

TEST(Camera, ReportsAShellCommandThatItDoesNotKnow) {
  Bench bench;
  EXPECT_EQ(bench.camera.shell("cat /sys/class/gpio/gpio33/value"), 256);
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{
                "reset line |  | unknown shell command: cat /sys/class/gpio/gpio33/value"}));
}

TEST(Camera, TakesAShellCommandThatTheKernelRefusesForNoViolation) {
  Bench bench;
  EXPECT_EQ(bench.camera.shell("echo 1 > /sys/class/gpio/gpio33/value"), 256);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Camera, StampsViolationsWithItsTime) {
  Bench bench;
  bench.reset();
  bench.send({1});
  EXPECT_EQ(bench.camera.violations().listed()[0].time, Time(600'000'000));
}

TEST(Boots, AreNoneWithoutReset) { EXPECT_EQ(Camera{}.boots().total(), 0u); }

TEST(Boots, BeginWithTheResetAndAreUpWithTheStart) {
  Bench bench;
  bench.wait_ms(1000);
  bench.load(7);
  bench.wait_ms(7);
  bench.start();
  ASSERT_EQ(bench.camera.boots().total(), 1u);
  const BootRecord& boot = bench.camera.boots().boot(1);
  EXPECT_EQ(boot.begun, Time(1'000'000'000));
  EXPECT_EQ(boot.up, Time(1'607'000'000));
  EXPECT_TRUE(boot.started);
  EXPECT_TRUE(boot.runs);
  EXPECT_EQ(static_cast<int>(boot.module), 7);
  EXPECT_EQ(boot.version, 0x0107);
  EXPECT_EQ(boot.attempts, 1u);
}

TEST(Boots, TakeResetsTogetherUntilAFrameComes) {
  Bench bench;
  for (int attempt = 0; attempt < 10; ++attempt) bench.load(8);
  bench.start();
  ASSERT_EQ(bench.camera.boots().total(), 1u);
  EXPECT_EQ(bench.camera.boots().boot(1).attempts, 10u);
  EXPECT_EQ(bench.camera.boots().boot(1).download_count, 30u);
  bench.command16(5, 0);
  bench.boot(9);
  ASSERT_EQ(bench.camera.boots().total(), 2u);
  EXPECT_EQ(bench.camera.boots().boot(1).attempts, 10u);
  EXPECT_EQ(bench.camera.boots().boot(2).attempts, 1u);
  EXPECT_EQ(static_cast<int>(bench.camera.boots().boot(2).module), 9);
}

TEST(Boots, EndWithTheFirstFrameWhenNoProgramRunsToo) {
  Bench bench;
  bench.reset();
  bench.start();
  bench.command16(5, 0);
  bench.boot(9);
  ASSERT_EQ(bench.camera.boots().total(), 2u);
  EXPECT_TRUE(bench.camera.boots().boot(1).started);
  EXPECT_FALSE(bench.camera.boots().boot(1).runs);
  EXPECT_EQ(bench.camera.boots().boot(1).violations, 2u);
  EXPECT_EQ(bench.camera.boots().boot(2).violations, 0u);
}

TEST(Boots, HaveNoAttemptWhenNobodyResets) {
  Bench bench;
  bench.set_clocks();
  ASSERT_EQ(bench.camera.boots().total(), 1u);
  EXPECT_EQ(bench.camera.boots().boot(1).attempts, 0u);
  EXPECT_EQ(bench.violation_count(), 0u);
  bench.boot(7);
  EXPECT_EQ(bench.camera.boots().total(), 1u);
  EXPECT_EQ(bench.camera.boots().boot(1).attempts, 1u);
}

TEST(Boots, KeepTheFirstDownloadsAndCountThemAll) {
  Bench bench;
  for (int attempt = 0; attempt < 17; ++attempt) bench.load(9);
  const BootRecord& boot = bench.camera.boots().boot(1);
  EXPECT_EQ(boot.download_count, 51u);
  ASSERT_EQ(boot.listed().size(), 48u);
  EXPECT_EQ(boot.listed().back().attempt, 16u);
}

TEST(Boots, KeepTheLatest) {
  Bench bench;
  for (int i = 0; i < 18; ++i) {
    bench.boot(7 + i % 3);
    bench.command16(5, i);
  }
  const BootLog& boots = bench.camera.boots();
  EXPECT_EQ(boots.total(), 18u);
  EXPECT_EQ(boots.first(), 3u);
  EXPECT_EQ(static_cast<int>(boots.boot(3).module), 9);
  EXPECT_EQ(static_cast<int>(boots.boot(18).module), 9);
  EXPECT_EQ(static_cast<int>(boots.boot(17).module), 8);
}

void move_focus(Bench& bench, int count) {
  bench.write_register(0, 0x600);
  bench.write_register(2, count);
  bench.write_register(6, 10330);
  bench.write_register(30, 3842);
  bench.write_register(30, 3850);
  bench.wait_ms(1000);
}

TEST(Boots, RememberWhereTheMotorsStood) {
  Bench bench;
  bench.boot(7);
  move_focus(bench, 100);
  bench.boot(8);
  move_focus(bench, 30);
  const auto focus = static_cast<std::size_t>(Output::focus_channel);
  EXPECT_EQ(bench.camera.lens_summary(1).positions[focus], 100);
  EXPECT_EQ(bench.camera.lens_summary(2).positions[focus], 30);
}

TEST(Boots, OfTheSameModuleFindTheMotorsWhereTheyWere) {
  Bench bench;
  bench.boot(7);
  move_focus(bench, 100);
  bench.boot(7);
  EXPECT_EQ(bench.position(Output::focus_channel), 100);
  move_focus(bench, 20);
  EXPECT_EQ(bench.position(Output::focus_channel), 120);
}

TEST(Boots, OfAnotherModuleFindOtherMotors) {
  Bench bench;
  bench.boot(7);
  move_focus(bench, 100);
  bench.boot(9);
  EXPECT_EQ(bench.position(Output::focus_channel), 0);
}

}  // namespace
