#include "sim/lens/sensors.h"

#include <gtest/gtest.h>

#include <set>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Output;
using kelvo::test::Bench;
using kelvo::test::fast_period;
using kelvo::test::focus_channel;
using kelvo::test::zoom_channel;
using Lines = std::vector<std::string>;

void focus_to(Bench& bench, int position) {
  const int counts = position - bench.position(Output::focus_channel);
  const int phase = bench.camera.lens().program().module() == kelvo::wire::LensModule::t5391;
  const int mode = phase ? (counts < 0 ? 0x300 : 0x340) : (counts < 0 ? 0x640 : 0x600);
  bench.move_channel(focus_channel, mode, counts < 0 ? -counts : counts,
                     phase ? 5730 : fast_period);
  bench.wait_ms(20'000);
  ASSERT_EQ(bench.position(Output::focus_channel), position);
}

TEST(Interrupters, HaveALevelOnDe015WhenTheyAreSupplied) {
  Bench bench;
  bench.boot(7);
  for (const int supply : {2, 3}) {
    bench.write_register(136, supply);
    focus_to(bench, -3999);
    EXPECT_GT(bench.query32(0x81, 0), 0u);
    EXPECT_LE(bench.query32(0x81, 0), 1228u);
    focus_to(bench, -4000);
    EXPECT_GT(bench.query32(0x81, 0), 1228u);
    EXPECT_LE(bench.query32(0x81, 1), 1228u) << "another motor's";
  }
  for (const int supply : {0, 1}) {
    bench.write_register(136, supply);
    EXPECT_EQ(bench.query32(0x81, 0), 0u);
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Interrupters, HaveAStateOnTheOtherModules) {
  const struct {
    int module;
    int edge;
  } rows[] = {{8, -4400}, {9, -600}};
  for (const auto& row : rows) {
    Bench bench;
    bench.boot(row.module);
    EXPECT_EQ(bench.query32(0xA0, 0), 0u);
    focus_to(bench, row.edge + 1);
    EXPECT_EQ(bench.query32(0xA0, 0), 0u);
    focus_to(bench, row.edge);
    EXPECT_EQ(bench.query32(0xA0, 0), 1u);
    EXPECT_EQ(bench.query32(0xA0, 1), 0u);
    focus_to(bench, row.edge - 100);
    EXPECT_EQ(bench.query32(0xA0, 0), 1u);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(Interrupters, BelongToAMotorEach) {
  Bench bench;
  bench.boot(7);
  bench.write_register(136, 3);
  bench.move_channel(zoom_channel, 0x640, 5600, fast_period);
  bench.wait_ms(1000);
  EXPECT_GT(bench.query32(0x81, 1), 1228u);
  for (const auto& [code, value] :
       {std::pair{56, 1}, {58, 960}, {60, 800}, {61, 100}, {62, 1}, {63, 1}}) {
    bench.command16(static_cast<std::uint8_t>(code), value);
  }
  EXPECT_LE(bench.query32(0x81, 2), 1228u);
  bench.wait_ms(1000);
  EXPECT_GT(bench.query32(0x81, 2), 1228u);
  EXPECT_LE(bench.query32(0x81, 0), 1228u);
  EXPECT_EQ(bench.query32(0x81, 3), 0u) << "there is none";
}

TEST(Interrupters, AtThePt5111AreSuppliedByIt) {
  Bench bench;
  bench.boot(8);
  bench.pt5111_words({0xCFC0, 0x0280, 0x0784, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  bench.wait_ms(4000);
  ASSERT_EQ(bench.position(Output::pt5111_a), -900);
  EXPECT_EQ(bench.query32(0xA0, 3), 0u);
  bench.pt5111_words({0xCA00});
  EXPECT_EQ(bench.query32(0xA0, 3), 1u);
  bench.pt5111_words({0xC800});
  EXPECT_EQ(bench.query32(0xA0, 3), 0u);
}

struct Calibration {
  int module;
  std::uint8_t command;
  std::uint8_t task;
  std::vector<std::uint8_t> sensors;
};

const Calibration calibrations[] = {
    {7, 113, 99, {0, 1, 2}},
    {8, 32, 99, {0, 1, 2}},
    {9, 32, 97, {0, 1}},
};

TEST(InterrupterCalibration, TakesAWhileForEachSensor) {
  for (const Calibration& row : calibrations) {
    for (const std::uint8_t sensor : row.sensors) {
      Bench bench;
      bench.boot(row.module);
      EXPECT_EQ(bench.query32(205, sensor), 0u);
      bench.command(row.command, sensor, 0, 0, row.task);
      bench.wait_ms(499);
      EXPECT_EQ(bench.query32(205, sensor) & 1, 0u);
      bench.wait_ms(1);
      for (const std::uint8_t other : row.sensors) {
        EXPECT_EQ(bench.query32(205, other) & 1, other == sensor ? 1u : 0u);
      }
      EXPECT_EQ(bench.violation_count(), 0u);
    }
  }
}

TEST(InterrupterCalibration, FindsTheOffsets) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(bench.query32(206), 0u);
  bench.command(113, 0, 0, 0, 99);
  bench.command(113, 1, 0, 0, 99);
  bench.wait_ms(500);
  EXPECT_EQ(bench.query32(205), 37u) << "36 and the lowest bit";
  EXPECT_EQ(bench.query32(206), 42u);
  bench.boot(7);
  EXPECT_EQ(bench.query32(205), 0u);
  bench.boot(8);
  EXPECT_EQ(bench.query32(145), 0u);
  bench.command(32, 0, 0, 0, 99);
  bench.wait_ms(500);
  EXPECT_EQ(bench.query32(145), 29u);
  bench.boot(9);
  bench.command(32, 0, 0, 0, 97);
  bench.wait_ms(500);
  EXPECT_EQ(bench.query32(145), 9u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(InterrupterService, TakesAVerification) {
  Bench bench;
  bench.boot(7);
  bench.command(113, 0, 0, 0, 16);
  bench.command(113, 1, 0, 0, 16);
  for (const int module : {8, 9}) {
    bench.boot(module);
    bench.command(32, 0, 0, 0, 16);
    bench.command(32, 0, 0, 0, 0);
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(InterrupterService, ReportsWhatTheProgramDoesNotKnow) {
  Bench bench;
  bench.boot(7);
  bench.command(113, 0, 0, 0, 97);
  bench.command(32, 0, 0, 0, 99);
  bench.command(113, 3, 0, 0, 99);
  bench.boot(9);
  bench.command(32, 0, 0, 0, 99);
  bench.command(32, 2, 0, 0, 97);
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | 71 00 00 00 61 D2 00 | DE015's command 113 has no service 97",
                   "lens controller | 20 00 00 00 63 83 00 | DE015's command 32 has no service 99",
                   "lens controller | 71 03 00 00 63 D7 00 | DE015 has no photo-interrupter 3",
                   "lens controller | 20 00 00 00 63 83 00 | T5391's command 32 has no service 99",
                   "lens controller | 20 02 00 00 61 83 00 | T5391 has no photo-interrupter 2"}));
}

TEST(Converter, AnswersAfterAConversion) {
  for (const int module : {7, 8, 9}) {
    Bench bench;
    bench.boot(module);
    EXPECT_EQ(bench.query32(0x81, 1), 0u);
    bench.command(32, 0, 0, 0, 96);
    EXPECT_EQ(bench.query32(0x81, 1), 0u) << "not yet";
    bench.wait_ms(5);
    EXPECT_EQ(bench.query32(0x81, 0), 0x0A3Cu);
    EXPECT_EQ(bench.query32(0x81, 1), 0x07E1u);
    EXPECT_EQ(bench.query32(0x81, 2), 0x0C58u);
    EXPECT_EQ(bench.query32(0x81, 4), 0u) << "there is none";
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(Converter, GivesWayToTheInterruptersOfDe015WithTheirSupply) {
  Bench bench;
  bench.boot(7);
  focus_to(bench, -5000);
  bench.write_register(136, 2);
  const std::uint32_t level = bench.query32(0x81, 0);
  bench.command(32, 0, 0, 0, 96);
  bench.wait_ms(5);
  EXPECT_EQ(bench.query32(0x81, 0), 0x0A3Cu);
  bench.write_register(252, 499);
  EXPECT_EQ(bench.query32(0x81, 0), 0x0A3Cu) << "another register";
  bench.write_register(136, 2);
  EXPECT_EQ(bench.query32(0x81, 0), level);
  EXPECT_GT(level, 1228u);
}

TEST(Interrupters, AreInterruptedAndClearedAtTheSameEdge) {
  Bench bench;
  bench.boot(8);
  bench.camera.push(Output::focus_channel, -4399);
  EXPECT_EQ(bench.query32(0xA0, 0), 0u);
  bench.move_channel(0, 0x640, 1, 10 * 1024 + 500);
  bench.wait_ms(1);
  EXPECT_EQ(bench.query32(0xA0, 0), 1u);
  bench.move_channel(0, 0x600, 1, 10 * 1024 + 500);
  bench.wait_ms(1);
  EXPECT_EQ(bench.query32(0xA0, 0), 0u);
}

TEST(Interrupters, SeeOnEachSideOfTheirEdges) {
  const struct {
    int module;
    std::uint8_t sensor;
    Output output;
    int edge;
  } rows[] = {
      {8, 0, Output::focus_channel, -4400}, {8, 1, Output::zoom_channel, -4800},
      {8, 2, Output::zoom3_block, -700},    {9, 0, Output::focus_channel, -600},
      {9, 1, Output::zoom_channel, -1500},
  };
  for (const auto& row : rows) {
    Bench bench;
    bench.boot(row.module);
    bench.camera.push(row.output, row.edge + 1);
    EXPECT_EQ(bench.query32(0xA0, row.sensor), 0u) << row.edge;
    bench.camera.push(row.output, -1);
    EXPECT_EQ(bench.query32(0xA0, row.sensor), 1u) << row.edge;
    bench.camera.push(row.output, -100'000);
    EXPECT_EQ(bench.query32(0xA0, row.sensor), 1u) << row.edge;
  }
}

TEST(Converter, HasNoiseOnACameraWithASeed) {
  Bench bench;
  bench.camera.vary(2);
  bench.boot(9);
  std::set<int> seen;
  bench.command(32, 0, 0, 0, 96);
  for (int i = 0; i < 200; ++i) {
    bench.wait_ms(10);
    seen.insert(bench.query(0x81, 2));
  }
  EXPECT_EQ(*seen.begin(), 0x0C58 - 4);
  EXPECT_EQ(*seen.rbegin(), 0x0C58 + 4);
}

}  // namespace
