#include "sim/lens/counters.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::folded;
using kelvo::sim::camera::Output;
using kelvo::test::Bench;
using kelvo::test::fast_period;
using kelvo::test::focus_channel;
using kelvo::test::zoom_channel;

// Mode words.
constexpr int micro_forward = 0x600;
constexpr int micro_backward = 0x640;
constexpr int phase_forward = 0x340;
constexpr int phase_backward = 0x300;
constexpr int phase_period = 5730;  // 3.904 ms a count

void step_zoom1(Bench& bench, int direction, int count) {
  for (const auto& [code, value] :
       {std::pair{56, direction}, {58, 960}, {60, count}, {61, 100}, {62, 1}, {63, 1}}) {
    bench.command16(static_cast<std::uint8_t>(code), value);
  }
}

void step_zoom3(Bench& bench, int direction, int count) {
  for (const auto& [code, value] :
       {std::pair{22, direction}, {24, 10560}, {25, count}, {26, 100}, {27, 1}, {28, 1}}) {
    bench.command16(static_cast<std::uint8_t>(code), value);
  }
}

TEST(Folding, RunsDownInTwoHalves) {
  EXPECT_EQ(folded(0), 0x3FFF);
  EXPECT_EQ(folded(1), 0x3FFE);
  EXPECT_EQ(folded(16383), 0x0000);
  EXPECT_EQ(folded(16384), 0x7FFF);
  EXPECT_EQ(folded(32767), 0x4000);
  EXPECT_EQ(folded(32768), 0x3FFF);
  EXPECT_EQ(folded(0xFFFF), 0x4000) << "one back from 0";
}

TEST(Counters, AreZeroAfterABoot) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(bench.query32(199), 0u);
  EXPECT_EQ(bench.query32(143, 20), 0x3FFFu);
  EXPECT_EQ(bench.query32(143, 52), 0x3FFFu);
  bench.boot(8);
  EXPECT_EQ(bench.query32(135), 0u);
  EXPECT_EQ(bench.query32(58), 0u);
  EXPECT_EQ(bench.query32(140, 20), 0u);
  bench.boot(9);
  EXPECT_EQ(bench.query32(143, 52), 0x3FFFu);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Counters, StartAtZeroWhereTheMotorsStand) {
  Bench bench;
  bench.boot(8);
  bench.move_channel(focus_channel, micro_forward, 300, fast_period);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(140, 20), 300u);
  bench.boot(8);
  EXPECT_EQ(bench.position(Output::focus_channel), 300);
  EXPECT_EQ(bench.query32(140, 20), 0u);
  bench.move_channel(focus_channel, micro_backward, 40, fast_period);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(140, 20), 0xFFFFu - 39);
}

TEST(Counters, FollowAMove) {
  Bench bench;
  bench.boot(8);
  bench.move_channel(focus_channel, micro_forward, 1600, fast_period);
  bench.camera.clock.advance(std::chrono::nanoseconds(144'000 * 700 + 10));
  EXPECT_EQ(bench.query32(140, 20), 700u);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(140, 20), 1600u);
}

TEST(Counters, OfChannelsAreFoldedOnDe015) {
  Bench bench;
  bench.boot(7);
  bench.move_channel(focus_channel, micro_forward, 1600, fast_period);
  bench.move_channel(zoom_channel, micro_backward, 8, fast_period);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(143, 20), 0x3FFFu - 1600);
  EXPECT_EQ(bench.query32(143, 52), 0x4007u) << "-8 is 32760";
}

TEST(Counters, AreFoldedOrPlainByTheQueryOnT5391) {
  Bench bench;
  bench.boot(9);
  bench.move_channel(zoom_channel, phase_forward, 100, phase_period);
  bench.move_channel(focus_channel, phase_backward, 10, phase_period);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(143, 52), 0x3FFFu - 100);
  EXPECT_EQ(bench.query32(140, 52), 100u);
  EXPECT_EQ(bench.query32(140, 20), 0xFFF6u);
}

TEST(Counters, OfChannelsArePresetToTheCountItself) {
  Bench bench;
  bench.boot(7);
  bench.write_register(20, 20000);
  bench.write_register(52, 5);
  EXPECT_EQ(bench.query32(143, 20), 0x7FFFu - (20000 - 16384));
  EXPECT_EQ(bench.query32(143, 52), 0x3FFAu);
  bench.move_channel(zoom_channel, micro_forward, 8, fast_period);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(143, 52), 0x3FF2u);
  bench.boot(8);
  bench.write_register(20, 0xFFFE);
  EXPECT_EQ(bench.query32(140, 20), 0xFFFEu);
  bench.move_channel(focus_channel, micro_forward, 4, fast_period);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(140, 20), 2u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Counters, OfCommandBlocksHave32BitsWithSign) {
  Bench bench;
  bench.boot(7);
  step_zoom1(bench, 1, 5);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(199), 0xFFFFFFFBu);
  bench.boot(8);
  step_zoom3(bench, 0, 1000);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(58), 1000u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Counters, OfCommandBlocksAreCleared) {
  Bench bench;
  bench.boot(7);
  step_zoom1(bench, 0, 700);
  bench.wait_ms(1000);
  bench.command16(70, 0);
  EXPECT_EQ(bench.query32(199), 0u);
  step_zoom1(bench, 1, 30);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(199), 0xFFFFFFE2u);
  EXPECT_EQ(bench.position(Output::zoom1_block), 670);
  bench.boot(8);
  step_zoom3(bench, 1, 1000);
  bench.wait_ms(1000);
  bench.command16(35, 0);
  EXPECT_EQ(bench.query32(58), 0u);
}

TEST(Counters, OfThePt5111sZoomAreKeptByTheLensController) {
  Bench bench;
  bench.boot(8);
  bench.command32(78, 0x01020304);
  EXPECT_EQ(bench.query32(135), 0x01020304u);
  // Ten steps backward, 4.2048 ms each.
  bench.pt5111_words({0xCFC0, 0x3400, 0x7400, 0x0280, 0x040A, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(135), 0x010202FAu);
}

TEST(Counters, CanBePresetDuringAMove) {
  Bench bench;
  bench.boot(8);
  bench.move_channel(focus_channel, micro_forward, 1600, fast_period);
  bench.camera.clock.advance(std::chrono::nanoseconds(144'000 * 1000));
  bench.write_register(20, 0);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.query32(140, 20), 600u);
}

TEST(Counters, CountWhatIsDrivenAgainstAnEndStop) {
  Bench bench;
  bench.boot(7);
  step_zoom1(bench, 0, 3000);
  bench.wait_ms(10'000);
  EXPECT_EQ(bench.position(Output::zoom1_block), 2000);
  EXPECT_EQ(bench.query32(199), 3000u);
}

TEST(Running, IsAnsweredForEachMotorWhileItMoves) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(bench.query32(191), 0u);
  EXPECT_EQ(bench.query32(143, 28), 0u);
  EXPECT_EQ(bench.query32(143, 60), 0u);
  step_zoom1(bench, 0, 480);  // 500 ms
  EXPECT_EQ(bench.query32(191), 1u);
  EXPECT_EQ(bench.query32(143, 28), 0u);
  bench.move_channel(focus_channel, micro_forward, 1600, fast_period);  // 230.4 ms
  bench.wait_ms(230);
  EXPECT_EQ(bench.query32(143, 28), 0x0100u) << "in the high byte";
  EXPECT_EQ(bench.query32(143, 60), 0u);
  bench.wait_ms(1);
  EXPECT_EQ(bench.query32(143, 28), 0u);
  bench.move_channel(zoom_channel, micro_forward, 1600, fast_period);
  EXPECT_EQ(bench.query32(143, 60), 0x0100u);
  bench.wait_ms(268);
  EXPECT_EQ(bench.query32(191), 1u);
  bench.wait_ms(1);
  EXPECT_EQ(bench.query32(191), 0u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Running, IsAnsweredOnDf033) {
  Bench bench;
  bench.boot(8);
  EXPECT_EQ(bench.query32(141), 0u);
  EXPECT_EQ(bench.query32(172), 0u);
  step_zoom3(bench, 0, 660);
  EXPECT_EQ(bench.query32(172), 1u);
  EXPECT_EQ(bench.query32(141), 0u);
  bench.wait_ms(501);
  EXPECT_EQ(bench.query32(172), 0u);
  bench.pt5111_words({0xCFC0, 0x0080, 0x040A, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  EXPECT_EQ(bench.query32(141), 1u);
  bench.wait_ms(43);
  EXPECT_EQ(bench.query32(141), 0u);
  bench.move_channel(zoom_channel, micro_forward, 1600, fast_period);
  EXPECT_EQ(bench.query32(140, 60), 0x0100u);
  EXPECT_EQ(bench.query32(140, 28), 0u);
}

TEST(Running, EndsWithAHalt) {
  Bench bench;
  bench.boot(9);
  bench.move_channel(focus_channel, phase_forward, 100, phase_period);
  EXPECT_EQ(bench.query32(140, 28), 0x0100u);
  bench.write_register(24, 0x3DF);
  EXPECT_EQ(bench.query32(140, 28), 0u);
}

}  // namespace
