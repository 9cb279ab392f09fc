// What a camera shows of its parts to who looks, with numbers by hand.
#include <gtest/gtest.h>

#include "sim/head/head_bench.h"
#include "sim/lens/lens_controller.h"

namespace {

using kelvo::sim::camera::LensController;
using kelvo::sim::camera::LensModule;
using kelvo::sim::camera::LensProgram;
using kelvo::sim::camera::Output;
using kelvo::sim::camera::Stepper;
using kelvo::test::Bench;

const LensProgram& program(const Bench& bench) { return bench.camera.lens().program(); }

const Stepper& motor(const Bench& bench, Output output) {
  return program(bench).motor(output, bench.camera.pt5111());
}

bool energised(const Bench& bench, Output output) {
  return program(bench).energised(output, bench.camera.pt5111());
}

TEST(Looking, TellsWhatTheControllerDoes) {
  Bench bench;
  EXPECT_EQ(bench.camera.lens().state(), LensController::State::boot_loader);
  EXPECT_EQ(bench.camera.lens().motors_of(), std::nullopt);
  bench.boot(8);
  EXPECT_EQ(bench.camera.lens().state(), LensController::State::running);
  EXPECT_EQ(bench.camera.lens().motors_of(), LensModule::df033);
  bench.reset();
  EXPECT_EQ(bench.camera.lens().state(), LensController::State::boot_loader);
  EXPECT_EQ(bench.camera.lens().motors_of(), LensModule::df033) << "the lens is still there";
  bench.start();
  EXPECT_EQ(bench.camera.lens().state(), LensController::State::dead);
}

TEST(Looking, TellsWhereAMoveEndsAndHowFastItGoes) {
  Bench bench;
  bench.boot(9);
  bench.move_channel(32, 0x340, 400, 5730);
  const auto now = [&] { return bench.camera.clock.now(); };
  EXPECT_EQ(motor(bench, Output::zoom_channel).target(now()), 400);
  EXPECT_NEAR(motor(bench, Output::zoom_channel).rate(now()), 256.15, 0.01);
  bench.wait_ms(1000);
  EXPECT_EQ(motor(bench, Output::zoom_channel).target(now()), 400);
  bench.wait_ms(1000);
  EXPECT_EQ(motor(bench, Output::zoom_channel).rate(now()), 0);
  EXPECT_EQ(motor(bench, Output::zoom_channel).target(now()), 400);
  EXPECT_EQ(motor(bench, Output::focus_channel).rate(now()), 0);
}

TEST(Looking, TellsThatAMoveEndsAtTheStop) {
  Bench bench;
  bench.boot(9);
  bench.move_channel(32, 0x340, 9000, 5730);
  EXPECT_EQ(motor(bench, Output::zoom_channel).target(bench.camera.clock.now()), 4000);
}

TEST(Looking, TellsWhichCoilsHaveCurrent) {
  Bench bench;
  bench.boot(8);
  EXPECT_TRUE(energised(bench, Output::focus_channel));
  EXPECT_FALSE(energised(bench, Output::zoom3_block));
  bench.write_register(24, 0x1DF);
  EXPECT_FALSE(energised(bench, Output::focus_channel));
  EXPECT_TRUE(energised(bench, Output::zoom_channel));
  bench.write_register(56, 0x1DF);
  EXPECT_FALSE(energised(bench, Output::zoom_channel));
  bench.command16(27, 1);
  EXPECT_TRUE(energised(bench, Output::zoom3_block));
  bench.command16(26, 34);
  EXPECT_FALSE(energised(bench, Output::zoom3_block)) << "they only hold";
  bench.boot(7);
  bench.command16(62, 1);
  EXPECT_TRUE(energised(bench, Output::zoom1_block));
  bench.command16(61, 20);
  EXPECT_FALSE(energised(bench, Output::zoom1_block));
}

TEST(Looking, TellsWhatThePhotoInterruptersSee) {
  Bench bench;
  bench.boot(7);
  const auto look = [&](int sensor) {
    return program(bench).interrupter(sensor, bench.camera.clock.now(), bench.camera.pt5111());
  };
  EXPECT_FALSE(look(3)) << "DE015 has three";
  ASSERT_TRUE(look(0));
  EXPECT_FALSE(look(0)->supplied);
  bench.write_register(136, 3);
  EXPECT_TRUE(look(0)->supplied);
  EXPECT_FALSE(look(0)->interrupted);
  EXPECT_FALSE(look(0)->calibrated);
  bench.camera.push(Output::focus_channel, -4000);
  EXPECT_TRUE(look(0)->interrupted);
  bench.command(113, 0, 0, 0, 99);
  bench.wait_ms(500);
  EXPECT_TRUE(look(0)->calibrated);
  EXPECT_EQ(look(0)->offset, 36);
}

TEST(Looking, TellsWhatTheConverterWouldMeasure) {
  Bench bench;
  bench.boot(7);
  const auto channel = [&](std::uint8_t number) {
    return program(bench).converter(number, bench.camera.clock.now(), bench.camera.pt5111());
  };
  EXPECT_EQ(channel(0), 0x0A3C);
  EXPECT_EQ(channel(1), 0x07E1);
  EXPECT_EQ(channel(3), 0x0004);
  EXPECT_EQ(channel(4), 0);
}

TEST(Looking, TellsWhereAnAxisGoesAndHowFast) {
  kelvo::test::VetraBench bench;
  const auto& axis = bench.camera.head().pan().axis();
  EXPECT_EQ(axis.speed(bench.camera.clock.now()), 0);
  bench.absolute(kelvo::test::pan, kelvo::test::up, 17'000, 3600);
  bench.wait_ms(1000);
  EXPECT_EQ(axis.goal(), 17'000u);
  EXPECT_NEAR(axis.speed(bench.camera.clock.now()), 4500, 1);
  bench.continuous(kelvo::test::pan, kelvo::test::down, 7200);
  bench.wait_ms(4000);
  EXPECT_EQ(axis.goal(), std::nullopt) << "it goes on until something else is asked for";
  EXPECT_NEAR(axis.speed(bench.camera.clock.now()), -9000, 1);
}

}  // namespace
