// A camera without power, and what is left when it comes back.
#include <gtest/gtest.h>

#include <cerrno>

#include "sim/camera/bench.h"
#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::FilterPlace;
using kelvo::sim::camera::Output;
using kelvo::test::Bench;
using kelvo::test::focus_channel;
using kelvo::test::Frame;
using kelvo::test::pan;
using kelvo::test::slow_period;
using kelvo::test::TasmereBench;
using kelvo::test::tilt;
using kelvo::test::VetraBench;

using Lines = std::vector<std::string>;

TEST(Power, IsOnAtFirst) {
  const Bench bench;
  EXPECT_TRUE(bench.camera.powered());
}

TEST(Power, IsMissedByEveryDeviceWhenItIsOff) {
  TasmereBench bench;
  bench.boot(7);
  bench.camera.power_off();
  EXPECT_FALSE(bench.camera.powered());
  EXPECT_EQ(bench.send({0x85, 0, 0, 0, 1, 0x86, 0, 0, 0, 0, 0, 0}), Frame(12, 0));
  EXPECT_EQ(bench.send_word({0xCF, 0xC0}), (Frame{0, 0}));
  EXPECT_EQ(bench.write(pan, {7, 0, 0}), -ENXIO);
  EXPECT_EQ(bench.read(tilt, 48, 1), Frame{});
  EXPECT_EQ(bench.camera.shell("echo 33 > /sys/class/gpio/export"), 256);
}

TEST(Power, LeavesNobodyToHoldAnythingAgainstAProgram) {
  TasmereBench bench;
  bench.camera.power_off();
  bench.send({1, 2, 3});
  bench.send_word({1, 2, 3});
  bench.write(pan, {200});
  bench.camera.shell("nonsense");
  EXPECT_EQ(bench.violation_count(), 0u);
  EXPECT_EQ(bench.camera.boots().total(), 0u);
}

TEST(Power, FindsTheLensControllerInItsBootLoader) {
  Bench bench;
  bench.boot(7);
  bench.command16(0x57, 0x1234);
  bench.camera.power_off();
  bench.camera.power_on();
  EXPECT_EQ(bench.query(0xD7), 0);
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | D7 00 00 00 01 D8 00 00 00 00 00 00 | "
                                       "a run-time frame before the program runs"}));
  bench.boot(7);
  EXPECT_EQ(bench.query(0xD7), 0x0100);
  EXPECT_EQ(bench.violation_count(), 1u);
}

TEST(Power, LosesADownloadThatIsUnderWay) {
  Bench bench;
  bench.load(8);
  bench.camera.power_off();
  bench.camera.power_on();
  bench.start();
  EXPECT_EQ(bench.send({0x86, 0, 0, 0, 1, 0x87, 0, 0, 0, 0, 0, 0}), Frame(12, 0));
  EXPECT_EQ(bench.camera.lens().module(), std::nullopt);
}

TEST(Power, LeavesTheMotorsWhereTheyWere) {
  Bench bench;
  bench.boot(8);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(800);
  bench.camera.power_off();
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(Output::focus_channel), 1000);
  bench.camera.power_on();
  bench.boot(8);
  EXPECT_EQ(bench.position(Output::focus_channel), 1000);
  EXPECT_EQ(bench.query(0x8C, 20), 0);
  EXPECT_EQ(bench.query(0x8C, 6), 0);
}

TEST(Power, LosesTheRegistersOfThePt5111) {
  Bench bench;
  bench.boot(7);
  bench.pt5111_words({0xCFC0, 0x7400, 0x4080, 0x45F4, 0x4801, 0x4E91, 0x51C0, 0x7E80});
  EXPECT_TRUE(bench.camera.pt5111().powered());
  bench.wait_ms(100);
  const std::int32_t stands = bench.position(Output::pt5111_b);
  EXPECT_GT(stands, 0);
  bench.camera.power_off();
  bench.camera.power_on();
  bench.wait_ms(1000);
  EXPECT_FALSE(bench.camera.pt5111().powered());
  EXPECT_EQ(bench.camera.pt5111().read(17), 0);
  EXPECT_EQ(bench.position(Output::pt5111_b), stands);
}

TEST(Power, LeavesTheFilterWhereItWas) {
  Bench bench;
  bench.boot(8);
  bench.pt5111_words({0xCFC0, 0x4140, 0x73EF, 0x7E00});
  bench.wait_ms(100);
  bench.camera.power_off();
  bench.camera.power_on();
  bench.boot(8);
  EXPECT_EQ(bench.camera.lens_summary().filter, FilterPlace::on);
}

TEST(Power, CutShortOfItsTimeDoesNotThrowTheFilterOver) {
  Bench bench;
  bench.boot(8);
  bench.pt5111_words({0xCFC0, 0x4140, 0x73EF, 0x7E00});
  bench.wait_ms(99);
  bench.camera.power_off();
  bench.wait_ms(500);
  EXPECT_EQ(bench.camera.lens_summary().filter, FilterPlace::off);
}

TEST(Power, TakesTheHeadsSettingsAndLeavesItsFlash) {
  TasmereBench bench;
  bench.set(pan, 81, 0x0380);
  bench.write(pan, {35});
  bench.set(pan, 81, 0x0700);
  bench.set(tilt, 81, 0x0700);
  bench.camera.power_off();
  bench.camera.power_on();
  EXPECT_EQ(bench.camera.peek_head(kelvo::sim::camera::HeadAxis::pan, 81), 0x0380u);
  EXPECT_EQ(bench.camera.peek_head(kelvo::sim::camera::HeadAxis::tilt, 81), 0u);
}

TEST(Power, PutsAHeadToSleepThatWasSavedSo) {
  TasmereBench bench;
  bench.write(tilt, {29, 1});
  bench.write(tilt, {35});
  EXPECT_EQ(bench.read(tilt, 48, 1), Frame{0});
  bench.camera.power_off();
  bench.camera.power_on();
  EXPECT_EQ(bench.read(tilt, 48, 1), Frame{1});
  EXPECT_EQ(bench.read(pan, 48, 1), Frame{0});
}

TEST(Power, StopsTheHeadWhereItIs) {
  VetraBench bench;
  bench.continuous(pan, 0, 7200);
  bench.wait_ms(500);
  const int stands = bench.position(pan);
  bench.camera.power_off();
  bench.wait_ms(5000);
  bench.camera.power_on();
  EXPECT_EQ(bench.position(pan), stands);
  EXPECT_TRUE(bench.at_rest(pan));
}

TEST(Power, UnexportsTheResetLine) {
  Bench bench;
  const std::string line = "echo 33 > /sys/class/gpio/export";
  EXPECT_EQ(bench.camera.shell(line), 0);
  EXPECT_EQ(bench.camera.shell(line), 256);
  bench.camera.power_off();
  bench.camera.power_on();
  EXPECT_EQ(bench.camera.shell(line), 0);
}

TEST(Power, EndsABoot) {
  Bench bench;
  bench.boot(9);
  bench.command16(0x57, 1);
  bench.camera.power_off();
  bench.camera.power_on();
  bench.boot(9);
  ASSERT_EQ(bench.camera.boots().total(), 2u);
  EXPECT_TRUE(bench.camera.boots().boot(1).cut);
  EXPECT_EQ(bench.camera.boots().boot(2).attempts, 1u);
  EXPECT_FALSE(bench.camera.boots().boot(2).cut);
}

TEST(Power, GoesOffAndOnOnlyOnce) {
  Bench bench;
  bench.boot(9);
  bench.camera.power_on();
  EXPECT_EQ(bench.query(0x86), 0x0309);
  bench.camera.power_off();
  bench.camera.power_off();
  bench.camera.power_on();
  bench.camera.power_on();
  EXPECT_EQ(bench.camera.boots().total(), 1u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

}  // namespace
