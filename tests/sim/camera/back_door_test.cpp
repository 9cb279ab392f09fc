// What tools do to a camera past its wires.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <span>

#include "sim/camera/bench.h"
#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::Camera;
using kelvo::sim::camera::HeadAxis;
using kelvo::sim::camera::HeadFamily;
using kelvo::sim::camera::Output;
using kelvo::sim::camera::Violation;
using kelvo::test::Bench;
using kelvo::test::focus_channel;
using kelvo::test::Frame;
using kelvo::test::HeadBench;
using kelvo::test::pan;
using kelvo::test::slow_period;
using kelvo::test::TasmereBench;
using kelvo::test::tilt;
using kelvo::test::VetraBench;

std::string reason(const std::optional<Violation>& violation) {
  return violation ? violation->reason.data() : "";
}

TEST(Push, MovesAMotorPastItsCounter) {
  Bench bench;
  bench.boot(8);
  EXPECT_TRUE(bench.camera.push(Output::focus_channel, -300));
  EXPECT_EQ(bench.position(Output::focus_channel), -300);
  EXPECT_EQ(bench.query(0x8C, 20), 0);
}

TEST(Push, EndsAtTheEndsOfTheTravel) {
  Bench bench;
  bench.boot(8);
  bench.camera.push(Output::focus_channel, 20'000);
  EXPECT_EQ(bench.position(Output::focus_channel), 16'000);
  bench.camera.push(Output::focus_channel, -1);
  EXPECT_EQ(bench.position(Output::focus_channel), 15'999);
  bench.camera.push(Output::focus_channel, -2'147'483'647 - 1);
  EXPECT_EQ(bench.position(Output::focus_channel), -16'000);
}

TEST(Push, ShiftsAMoveThatIsUnderWay) {
  Bench bench;
  bench.boot(8);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(800);
  bench.camera.push(Output::focus_channel, 50);
  EXPECT_EQ(bench.position(Output::focus_channel), 1050);
  bench.wait_ms(800);
  EXPECT_EQ(bench.position(Output::focus_channel), 2050);
  EXPECT_EQ(bench.query(0x8C, 20), 2000);
}

TEST(Push, InterruptsAPhotoInterrupter) {
  Bench bench;
  bench.boot(8);
  bench.camera.push(Output::focus_channel, -4'399);
  EXPECT_EQ(bench.query(0xA0, 0), 0);
  bench.camera.push(Output::focus_channel, -1);
  EXPECT_EQ(bench.query(0xA0, 0), 1);
}

TEST(Push, FindsNoMotorWhereThereIsNone) {
  Bench bench;
  EXPECT_FALSE(bench.camera.push(Output::focus_channel, 1)) << "no lens";
  bench.boot(9);
  EXPECT_FALSE(bench.camera.push(Output::zoom1_block, 1));
  EXPECT_FALSE(bench.camera.push(Output::pt5111_b, 1));
  EXPECT_TRUE(bench.camera.push(Output::zoom_channel, 1));
}

TEST(Push, MovesAMotorOfThePt5111) {
  Bench bench;
  bench.boot(7);
  EXPECT_TRUE(bench.camera.push(Output::pt5111_b, -20));
  EXPECT_EQ(bench.position(Output::pt5111_b), -20);
}

TEST(Push, TurnsAnAxisAroundItsCircle) {
  VetraBench bench;
  bench.camera.push(HeadAxis::pan, 8'999);
  EXPECT_EQ(bench.position(pan), 17'999);
  bench.camera.push(HeadAxis::pan, 1);
  EXPECT_EQ(bench.position(pan), 0);
  bench.camera.push(HeadAxis::pan, -40'000);
  EXPECT_EQ(bench.position(pan), 14'000);
  EXPECT_EQ(bench.position(tilt), 12'500);
}

TEST(Push, DoesNotKeepAnAxisFromItsTarget) {
  TasmereBench bench;
  bench.absolute(pan, 60'000, 0x5FFF);
  bench.wait_ms(300);
  bench.camera.push(HeadAxis::pan, -2'000);
  bench.wait_ms(5'000);
  EXPECT_EQ(bench.position(pan), 60'000);
}

TEST(Peek, SeesCommandsAndQueriesOfTheProgramThatRuns) {
  Bench bench;
  EXPECT_EQ(bench.camera.peek_command(0x57), std::nullopt) << "no program";
  EXPECT_EQ(bench.camera.peek_query(0x86, 0), std::nullopt);
  bench.boot(8);
  bench.command16(0x57, 0x1234);
  EXPECT_EQ(bench.camera.peek_command(0x57), 0x1234u);
  EXPECT_EQ(bench.camera.peek_query(0xC5, 0), 0x1234u);
  EXPECT_EQ(bench.camera.peek_query(0x86, 0), 0x0208u);
  EXPECT_EQ(bench.camera.peek_command(0x58 + 1), std::nullopt) << "not DF033's";
  EXPECT_EQ(bench.camera.peek_query(0xD7, 0), std::nullopt) << "not DF033's";
}

TEST(Peek, SeesRegisters) {
  Bench bench;
  EXPECT_EQ(bench.camera.peek_register(6), std::nullopt);
  bench.boot(7);
  bench.move_channel(focus_channel, 0x600, 2000, slow_period);
  bench.wait_ms(800);
  EXPECT_EQ(bench.camera.peek_register(6), slow_period);
  EXPECT_EQ(bench.camera.peek_register(20), 1000) << "the count itself, on every module";
  EXPECT_EQ(bench.camera.peek_register(28), 0x0100);
  EXPECT_EQ(bench.camera.peek_register(3), std::nullopt);
  bench.pt5111_words({0xCFC0});
  EXPECT_EQ(bench.camera.peek_pt5111(51), 0x3C0);
  EXPECT_EQ(bench.camera.peek_pt5111(64), std::nullopt);
}

TEST(Peek, SeesTheHeadAndWhatCanOnlyBeWritten) {
  VetraBench bench;
  bench.write(pan, {18, 1, 0xF4});
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::pan, 18), 500u);
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::tilt, 18), 0u);
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::pan, 50), 9'000u);
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::pan, 7), std::nullopt);
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::pan, 240), 0x5658u);
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::tilt, 240), std::nullopt);
}

TEST(Peek, LeavesNoTrace) {
  Bench bench;
  bench.boot(7);
  Camera before;
  std::memcpy(static_cast<void*>(&before), &bench.camera, sizeof(Camera));
  bench.camera.peek_query(0x00, 0);
  bench.camera.peek_query(0xF7, 0);
  bench.camera.peek_register(99);
  bench.camera.peek_head(HeadAxis::pan, 4);
  const auto bytes_of = [](const Camera& camera) { return std::as_bytes(std::span(&camera, 1)); };
  EXPECT_TRUE(std::ranges::equal(bytes_of(before), bytes_of(bench.camera)));
}

TEST(Peek, SeesNothingWithoutPower) {
  Bench bench;
  bench.boot(7);
  bench.camera.power_off();
  EXPECT_EQ(bench.camera.peek_command(0x57), std::nullopt);
  EXPECT_EQ(bench.camera.peek_register(6), std::nullopt);
  EXPECT_EQ(bench.camera.peek_pt5111(51), std::nullopt);
  EXPECT_EQ(bench.camera.peek_head(HeadAxis::pan, 4), std::nullopt);
}

TEST(Poke, DoesWhatTheWireDoes) {
  Bench bench;
  bench.boot(8);
  EXPECT_EQ(reason(bench.camera.poke_command(0x57, 0x1234)), "");
  EXPECT_EQ(bench.query(0xC5), 0x1234);
  EXPECT_EQ(reason(bench.camera.poke_register(20, 77)), "");
  EXPECT_EQ(bench.query(0x8C, 20), 77);
  EXPECT_EQ(reason(bench.camera.poke_pt5111(51, 0x3C0)), "");
  EXPECT_TRUE(bench.camera.pt5111().powered());
}

TEST(Poke, ReachesTheRegistersOfEveryModule) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(reason(bench.camera.poke_register(6, 0x1234)), "");
  EXPECT_EQ(bench.camera.peek_register(6), 0x1234);
}

TEST(Poke, MovesTheHead) {
  TasmereBench bench;
  const std::uint8_t move[] = {0xEA, 0x60, 0x5F, 0xFF};
  EXPECT_EQ(reason(bench.camera.poke_head(HeadAxis::tilt, 66, move)), "");
  bench.wait_ms(5'000);
  EXPECT_EQ(bench.position(tilt), 60'000);
}

TEST(Poke, SaysWhatIsWrongAndHoldsItAgainstNobody) {
  Bench bench;
  const std::uint8_t byte[] = {1};
  EXPECT_EQ(reason(bench.camera.poke_command(0x57, 0)), "no program runs");
  bench.boot(8);
  EXPECT_EQ(reason(bench.camera.poke_command(10, 0)), "DF033's program has no command 10");
  EXPECT_EQ(reason(bench.camera.poke_register(3, 0)), "register 3 is not in the map");
  EXPECT_EQ(reason(bench.camera.poke_register(28, 0)), "register 28 can only be read");
  EXPECT_EQ(reason(bench.camera.poke_pt5111(64, 0)), "there is no register 64");
  EXPECT_EQ(reason(bench.camera.poke_pt5111(1, 1024)), "a value of more than ten bits");
  EXPECT_EQ(reason(bench.camera.poke_head(HeadAxis::pan, 4, byte)),
            "register 4 (position) can only be read");
  EXPECT_EQ(reason(bench.camera.poke_head(HeadAxis::pan, 12, byte)),
            "1 bytes for register 12 (set_p), must be 2");
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Poke, DoesNotReachAPayload) {
  Bench bench;
  bench.reset();
  bench.set_clocks();
  bench.announce(0x21, 0x200, 7);
  EXPECT_EQ(reason(bench.camera.poke_command(0x57, 0)), "no program runs");
  EXPECT_EQ(bench.camera.peek_query(0x86, 0), std::nullopt);
  bench.send(Frame(7, 0x11));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Poke, DoesNothingWithoutPower) {
  Bench bench;
  const std::uint8_t byte[] = {1};
  bench.camera.power_off();
  EXPECT_EQ(reason(bench.camera.poke_pt5111(51, 0x3C0)), "the power is off");
  EXPECT_EQ(reason(bench.camera.poke_head(HeadAxis::pan, 29, byte)), "the power is off");
  EXPECT_FALSE(bench.camera.pt5111().powered());
}

}  // namespace
