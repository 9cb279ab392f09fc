#include <gtest/gtest.h>

#include <set>

#include "sim/head/head_bench.h"

namespace {

using kelvo::test::Frame;
using kelvo::test::pan;
using kelvo::test::TasmereBench;
using kelvo::test::tilt;

TEST(Tasmere, StandsInTheMiddleAtFirst) {
  TasmereBench bench;
  EXPECT_EQ(bench.position(pan), 32'768);
  EXPECT_EQ(bench.position(tilt), 32'768);
  EXPECT_EQ(bench.camera.head().pan().common_position({}), 32'768u);
  EXPECT_EQ(bench.camera.head().tilt().common_position({}), 32'768u);
}

TEST(Tasmere, IsAwakeCalibratedAndAtRestAtFirst) {
  TasmereBench bench;
  for (const int slave : {pan, tilt}) {
    EXPECT_EQ(bench.read(slave, 48, 1), (Frame{0}));
    EXPECT_EQ(bench.read(slave, 2, 1), (Frame{1}));
    EXPECT_EQ(bench.read(slave, 3, 1), (Frame{0}));
    EXPECT_EQ(bench.read(slave, 27, 4), (Frame{0, 0, 3, 0}));
    EXPECT_EQ(bench.read(slave, 155, 2), (Frame{0, 35}));
    EXPECT_EQ(bench.read(slave, 254, 1), (Frame{1}));
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Tasmere, HasATemperatureWithNoiseOnACameraWithASeed) {
  TasmereBench bench;
  bench.camera.vary(8);
  std::set<int> seen;
  for (int i = 0; i < 50; ++i) {
    bench.wait_ms(1);
    seen.insert(bench.read_word(pan, 155));
  }
  EXPECT_EQ(seen, (std::set<int>{34, 35, 36}));
}

TEST(Tasmere, ComesSetUpForTurningPanAndSwingingTilt) {
  TasmereBench bench;
  EXPECT_EQ(bench.read(pan, 26, 2), (Frame{0, 1}));
  EXPECT_EQ(bench.read(pan, 79, 1), (Frame{1}));
  EXPECT_EQ(bench.read(pan, 74, 2), (Frame{0, 0}));
  EXPECT_EQ(bench.read(pan, 75, 2), (Frame{0xFF, 0xFF}));
  EXPECT_EQ(bench.read(tilt, 26, 2), (Frame{0, 0}));
  EXPECT_EQ(bench.read(tilt, 79, 1), (Frame{0}));
  EXPECT_EQ(bench.read(tilt, 75, 2), (Frame{0x4E, 0x39}));
}

TEST(Tasmere, RunsByAFractionOfFullSpeed) {
  TasmereBench bench;
  bench.set(pan, 7, 32'767);  // 32768 counts a second, half a second later
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 40'960);
  EXPECT_EQ(bench.position(tilt), 32'768);
  bench.set(pan, 7, 3277);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 40'960 + 9'912);
  bench.set(pan, 7, 0);
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(51);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.position(pan), 40'960 + 9'994);
}

TEST(Tasmere, RunsBackwardsByTheOnesComplement) {
  TasmereBench bench;
  bench.set(pan, 7, 0x8000);
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 24'576);
  bench.set(pan, 7, 0xFFFF);  // 0 backwards
  bench.wait_ms(500);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.position(pan), 16'384);
  bench.set(tilt, 7, 0xF332);  // 3277 backwards
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(tilt), 32'768 - 3195);
}

TEST(Tasmere, MovesToAPositionByTheTwosComplement) {
  TasmereBench bench;
  bench.absolute(pan, 49'152, 24'575);
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 40'960);
  EXPECT_FALSE(bench.at_rest(pan));
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 49'152);
  EXPECT_TRUE(bench.at_rest(pan));
  bench.absolute(pan, 57'344, 0xA001);  // -24575: the long way
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 40'960);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 57'344);
}

TEST(Tasmere, HasNoAbsoluteSpeedAbove24575) {
  TasmereBench bench;
  bench.absolute(pan, 65'535, 32'767);
  bench.wait_ms(900);
  EXPECT_EQ(bench.position(pan), 54'067);
}

TEST(Tasmere, StaysInItsTravelWhenItIsLimited) {
  TasmereBench bench;
  bench.set(pan, 18, 30'000);
  bench.set(pan, 19, 10'000);
  EXPECT_EQ(bench.read(pan, 74, 2), (Frame{0x75, 0x30}));
  EXPECT_EQ(bench.read(pan, 75, 2), (Frame{0x27, 0x10}));
  EXPECT_EQ(bench.read(pan, 74, 4), (Frame{0x75, 0x30, 0, 0}));
  EXPECT_EQ(bench.read(pan, 75, 4), (Frame{0x27, 0x10, 0, 0}));
  bench.set(pan, 25, 2);
  EXPECT_EQ(bench.read(pan, 26, 2), (Frame{0, 2}));
  bench.set(pan, 7, 32'767);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 40'000);
  EXPECT_TRUE(bench.at_rest(pan));
  bench.absolute(pan, 20'000, 24'575);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 30'000);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Tasmere, StaysInATravelAcrossZero) {
  TasmereBench bench;
  bench.set(pan, 18, 60'000);
  bench.set(pan, 19, 10'000);
  bench.absolute(pan, 65'000, 24'575);
  bench.wait_ms(2000);
  bench.set(pan, 25, 2);
  bench.set(pan, 7, 32'767);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(pan), 4464);
}

TEST(Tasmere, TurnsFreelyInEveryOtherTravelMode) {
  for (const int mode : {0, 1, 3}) {
    TasmereBench bench;
    bench.set(tilt, 25, mode);
    bench.set(tilt, 7, 32'767);
    bench.wait_ms(1500);
    EXPECT_EQ(bench.position(tilt), 8'192);
  }
}

TEST(Tasmere, IsBoundByLimitsThatChangeInAMove) {
  TasmereBench bench;
  bench.set(tilt, 18, 30'000);
  bench.set(tilt, 25, 2);
  bench.set(tilt, 7, 32'767);
  bench.set(tilt, 19, 5000);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 35'000);
  bench.set(tilt, 18, 34'000);
  bench.set(tilt, 7, 0x8000);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 34'000);
}

TEST(Tasmere, TakesItsTiltPositionFromTheHallSensorsZero) {
  TasmereBench bench;
  bench.write(tilt, {78, 1});
  EXPECT_EQ(bench.read(tilt, 79, 1), (Frame{1}));
  EXPECT_EQ(bench.position(tilt), 32'768);
  const auto common = [&] {
    return bench.camera.head().tilt().common_position(bench.camera.clock.now());
  };
  EXPECT_EQ(common(), 4916u);
  bench.absolute(tilt, 27'851, 0xA001);
  bench.wait_ms(2000);
  EXPECT_EQ(common(), 65'534u);
  // The pan axis has no such zero.
  EXPECT_EQ(bench.read(pan, 79, 1), (Frame{1}));
  EXPECT_EQ(bench.camera.head().pan().common_position(bench.camera.clock.now()), 32'768u);
}

TEST(Tasmere, ForgetsWhatWasNotSaved) {
  TasmereBench bench;
  bench.write(tilt, {78, 1});
  bench.set(tilt, 25, 2);
  bench.set(tilt, 7, 0x8000);
  bench.wait_ms(100);
  bench.write(tilt, {1});
  EXPECT_EQ(bench.position(tilt), 32'441);
  EXPECT_TRUE(bench.at_rest(tilt));
  EXPECT_EQ(bench.read(tilt, 79, 1), (Frame{0}));
  EXPECT_EQ(bench.read(tilt, 26, 2), (Frame{0, 0}));
  bench.set(tilt, 7, 32'767);
  bench.wait_ms(2000);
  EXPECT_EQ(bench.position(tilt), 24'249);
}

TEST(Tasmere, RemembersWhatWasSaved) {
  TasmereBench bench;
  bench.write(tilt, {78, 1});
  bench.set(tilt, 18, 30'000);
  bench.set(tilt, 25, 2);
  bench.write(tilt, {35});
  bench.set(tilt, 18, 31'000);
  bench.write(tilt, {1});
  EXPECT_EQ(bench.read(tilt, 79, 1), (Frame{1}));
  EXPECT_EQ(bench.read(tilt, 74, 2), (Frame{0x75, 0x30}));
  bench.set(tilt, 7, 0x8000);
  bench.wait_ms(5000);
  EXPECT_EQ(bench.position(tilt), 30'000);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Tasmere, SleepsAfterARestartWhenThatWasSaved) {
  TasmereBench bench;
  bench.write(pan, {29, 1});
  EXPECT_EQ(bench.read(pan, 48, 1), (Frame{0}));
  bench.write(pan, {35});
  bench.write(pan, {1});
  EXPECT_EQ(bench.read(pan, 48, 1), (Frame{1}));
  EXPECT_EQ(bench.read(tilt, 48, 1), (Frame{0}));
  EXPECT_TRUE(bench.camera.head().pan().asleep());
}

class AsleepTasmere : public testing::Test {
 protected:
  AsleepTasmere() {
    bench.write(pan, {29, 1});
    bench.write(pan, {35});
    bench.write(pan, {1});
  }
  TasmereBench bench;
};

TEST_F(AsleepTasmere, DoesNotMove) {
  bench.set(pan, 7, 32'767);
  bench.absolute(pan, 100, 24'575);
  bench.wait_ms(1000);
  EXPECT_EQ(bench.position(pan), 32'768);
  EXPECT_TRUE(bench.at_rest(pan));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST_F(AsleepTasmere, TakesSettings) {
  bench.set(pan, 18, 30'000);
  EXPECT_EQ(bench.read(pan, 74, 2), (Frame{0x75, 0x30}));
}

TEST_F(AsleepTasmere, IsWokenUpByAnEmptyMessage) {
  bench.write(pan, {});
  EXPECT_EQ(bench.read(pan, 48, 1), (Frame{0}));
  EXPECT_TRUE(bench.at_rest(pan));
  bench.set(pan, 7, 32'767);
  bench.wait_ms(500);
  EXPECT_EQ(bench.position(pan), 40'960);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST_F(AsleepTasmere, IsWokenUpByTheRegisterToo) {
  bench.write(pan, {28});
  EXPECT_EQ(bench.read(pan, 48, 1), (Frame{0}));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST_F(AsleepTasmere, SleepsOnWhenTheOtherControllerIsWokenUp) {
  bench.write(tilt, {});
  EXPECT_EQ(bench.read(pan, 48, 1), (Frame{1}));
}

TEST(Tasmere, TakesItsDriveParameters) {
  TasmereBench bench;
  for (const int reg : {8, 12, 14, 16, 70, 81, 117}) {
    bench.set(pan, static_cast<std::uint8_t>(reg), 0x0102);
  }
  for (const int reg : {67, 76, 83, 86, 131, 151}) {
    bench.write(tilt, {static_cast<std::uint8_t>(reg), 1});
  }
  for (const int reg : {88, 149}) {
    bench.write(tilt, {static_cast<std::uint8_t>(reg), 0, 1, 2, 3});
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

}  // namespace
