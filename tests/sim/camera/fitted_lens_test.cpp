// A lens that stays on the camera, whatever program is started.
#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Camera;
using kelvo::sim::camera::FilterPlace;
using kelvo::sim::camera::Output;
using kelvo::test::Bench;
using kelvo::test::focus_channel;
using kelvo::test::slow_period;
using kelvo::wire::LensModule;

using Lines = std::vector<std::string>;

TEST(FittedLens, IsNoneOfItsOwnAtFirst) {
  const Camera camera;
  EXPECT_EQ(camera.lens().lens(), std::nullopt);
  EXPECT_EQ(camera.lens().module(), std::nullopt);
}

TEST(FittedLens, HasItsProgramRunningAtOnce) {
  const int versions[] = {0x0107, 0x0208, 0x0309};
  for (const LensModule module : {LensModule::de015, LensModule::df033, LensModule::t5391}) {
    Bench bench;
    bench.camera.fit_module(module);
    EXPECT_EQ(bench.camera.lens().module(), module);
    const auto code = static_cast<std::uint8_t>(module == LensModule::de015 ? 0x85 : 0x86);
    EXPECT_EQ(bench.query(code), versions[static_cast<int>(module) - 7]);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(FittedLens, IsAsABootLeavesIt) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  EXPECT_EQ(bench.camera.peek_command(39), 1u);
  EXPECT_EQ(bench.camera.lens_summary().filter, FilterPlace::on);
  ASSERT_EQ(bench.camera.boots().total(), 1u);
  EXPECT_EQ(bench.camera.boots().boot(1).attempts, 0u);
  EXPECT_TRUE(bench.camera.boots().boot(1).runs);
}

TEST(FittedLens, MovesWithoutABoot) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(800);
  EXPECT_EQ(bench.position(Output::focus_channel), 1000);
}

TEST(FittedLens, KeepsItsPlaceThroughABootOfItsOwnProgram) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(2000);
  bench.boot(8);
  EXPECT_EQ(bench.position(Output::focus_channel), 2000);
  EXPECT_EQ(bench.violation_count(), 0u);
  ASSERT_EQ(bench.camera.boots().total(), 2u);
}

TEST(FittedLens, HoldsAnotherModulesProgramAgainstWhoStartsIt) {
  Bench bench;
  bench.camera.fit_module(LensModule::t5391);
  bench.boot(7);
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | E2 00 00 00 A0 | "
                   "DE015's program is started, and the lens is T5391: nothing moves"}));
  EXPECT_EQ(bench.query(0x85), 0x0107);
}

TEST(FittedLens, IsNotMovedByAnotherModulesProgram) {
  Bench bench;
  bench.camera.fit_module(LensModule::t5391);
  ASSERT_TRUE(bench.camera.push(Output::focus_channel, 70));
  bench.boot(8);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(800);
  EXPECT_EQ(bench.position(Output::focus_channel), 0);
  EXPECT_EQ(bench.query(0x8C, 20), 1000) << "a counter counts what is driven";
  bench.wait_ms(2000);
  bench.boot(9);
  EXPECT_EQ(bench.position(Output::focus_channel), 70);
}

TEST(FittedLens, IsMovedAgainByItsOwnProgram) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  bench.boot(9);
  bench.boot(8);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(800);
  EXPECT_EQ(bench.position(Output::focus_channel), 1000);
  EXPECT_EQ(bench.violation_count(), 1u);
}

TEST(FittedLens, KeepsItsFilterFromAnotherModulesProgram) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  bench.boot(9);
  bench.write_register(186, 767);
  bench.write_register(130, 3);
  bench.wait_ms(500);
  bench.write_register(130, 0);
  bench.boot(8);
  EXPECT_EQ(bench.camera.lens_summary().filter, FilterPlace::on);
}

TEST(FittedLens, WithoutAPt5111OfItsOwnSaysSoBeforeAProgramRuns) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  bench.reset();
  bench.send_word({0xCF, 0xC0});
  EXPECT_EQ(bench.violations(),
            (Lines{"PT5111 | CF C0 | this module has no PT5111 on a device of its own"}));
}

TEST(FittedLens, StaysThroughAPowerCut) {
  Bench bench;
  bench.camera.fit_module(LensModule::df033);
  bench.camera.power_off();
  bench.camera.power_on();
  EXPECT_EQ(bench.camera.lens().module(), std::nullopt) << "the program is lost";
  bench.boot(9);
  EXPECT_EQ(bench.violation_count(), 1u);
}

}  // namespace
