#include "sim/lens/lens_program.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::test::Bench;
using kelvo::test::Frame;
using Lines = std::vector<std::string>;

TEST(Program, AnswersItsVersionInReplyBytesTwoAndThree) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(bench.send({0x85, 0, 0, 0, 1, 0x86, 0, 0, 0, 0, 0, 0}),
            (Frame{0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01, 0x07, 0}));
  bench.boot(8);
  EXPECT_EQ(bench.query(0x86), 0x0208);
  bench.boot(9);
  EXPECT_EQ(bench.query(0x86), 0x0309);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Program, HasItsOwnVersionQuery) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(bench.query(0x86), 0);
  bench.boot(8);
  EXPECT_EQ(bench.query(0x85), 0);
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | 86 00 00 00 01 87 00 00 00 00 00 00 | DE015's program has no "
                   "query 86",
                   "lens controller | 85 00 00 00 01 86 00 00 00 00 00 00 | DF033's program has no "
                   "query 85"}));
}

TEST(Program, ReadsBackEachSettingOfTheStabiliser) {
  Bench bench;
  bench.boot(7);
  int value = 0x1200;
  for (const int code : {33, 81, 82, 83, 84, 87, 88, 89, 90, 99, 101}) {
    bench.command16(static_cast<std::uint8_t>(code), ++value);
  }
  value = 0x1200;
  for (const int code : {0xA1, 0xD1, 0xD2, 0xD3, 0xD4, 0xD7, 0xD8, 0xD9, 0xDA, 0xE3, 0xE5}) {
    EXPECT_EQ(bench.query(static_cast<std::uint8_t>(code)), ++value) << code;
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Program, ReadsBackEachSettingOfTheIris) {
  for (const int module : {8, 9}) {
    Bench bench;
    bench.boot(module);
    bench.command16(0x21, 0x1234);
    bench.command16(0x51, 0x2345);
    bench.command16(0x53, 0x3456);
    bench.command16(0x57, 0x4567);
    bench.command16(0x58, 0x5678);
    EXPECT_EQ(bench.query(0xA1), 0x1234);
    EXPECT_EQ(bench.query(0xD1), 0x2345);
    EXPECT_EQ(bench.query(0xD3), 0x3456);
    EXPECT_EQ(bench.query(0xC5), 0x4567);
    EXPECT_EQ(bench.query(0xC6), 0x5678);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(Program, MeasuresPlausibleValues) {
  Bench bench;
  bench.boot(7);
  for (const int code : {0x96, 0x97, 0x9A, 0x9B}) {
    EXPECT_GT(bench.query(static_cast<std::uint8_t>(code)), 0) << code;
  }
  bench.boot(9);
  EXPECT_GT(bench.query(0x98), 0);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Program, StartsWithSettingsOfItsOwn) {
  Bench bench;
  bench.boot(9);
  const int travel_min = bench.query(0xC5);
  const int travel_max = bench.query(0xC6);
  EXPECT_GT(travel_min, 0);
  EXPECT_GT(travel_max, travel_min);
  bench.command16(0x57, 1);
  bench.boot(9);
  EXPECT_EQ(bench.query(0xC5), travel_min);
}

TEST(Program, ReportsAWrongChecksumAndIgnoresTheCommand) {
  Bench bench;
  bench.boot(9);
  bench.send({0x57, 0, 0, 0x12, 0x34, 0x9E, 0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 57 00 00 12 34 9E 00 | checksum 9E, must "
                                       "be 9D"}));
  EXPECT_NE(bench.query(0xC5), 0x1234);
}

TEST(Program, SumsModulo256) {
  Bench bench;
  bench.boot(9);
  bench.send({0x57, 0xFF, 0xFF, 0xFF, 0xFF, 0x53, 0});
  EXPECT_EQ(bench.query(0xC5), 0xFFFF);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Program, ReportsAWrongChecksumOfAQueryAndAnswersZeros) {
  Bench bench;
  bench.boot(9);
  EXPECT_EQ(bench.send({0x86, 0, 0, 0, 1, 0x86, 0, 0, 0, 0, 0, 0}), Frame(12, 0));
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 86 00 00 00 01 86 00 00 00 00 00 00 | "
                                       "checksum 86, must be 87"}));
}

TEST(Program, ReportsBytesAfterTheChecksum) {
  Bench bench;
  bench.boot(9);
  bench.send({0x57, 0, 0, 0x12, 0x34, 0x9D, 1});
  EXPECT_EQ(bench.send({0x86, 0, 0, 0, 1, 0x87, 0, 0, 0, 0, 0, 2}), Frame(12, 0));
  EXPECT_EQ(bench.violations(),
            (Lines{"lens controller | 57 00 00 12 34 9D 01 | 01 after the checksum, must be 00",
                   "lens controller | 86 00 00 00 01 87 00 00 00 00 00 02 | 02 after the checksum, "
                   "must be 00"}));
  EXPECT_NE(bench.query(0xC5), 0x1234);
}

TEST(Program, ReportsACommandThatItDoesNotKnow) {
  Bench bench;
  bench.boot(9);
  bench.command16(127, 1);
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 7F 00 00 00 01 80 00 | T5391's program "
                                       "has no command 127"}));
}

TEST(Program, KnowsOnlyTheCommandsOfItsModule) {
  // Register write, zoom 3, zoom 1, stabiliser, PT5111, loop: who knows them.
  const struct {
    std::uint8_t code;
    bool de015, df033, t5391;
  } rows[] = {
      {5, true, true, true},     {12, false, true, true},  {15, true, false, false},
      {25, false, true, false},  {33, true, true, true},   {39, false, true, true},
      {47, false, true, false},  {63, true, false, false}, {82, true, false, false},
      {101, true, false, false},
  };
  for (const auto& row : rows) {
    for (const int module : {7, 8, 9}) {
      const bool known = module == 7 ? row.de015 : module == 8 ? row.df033 : row.t5391;
      Bench bench;
      bench.boot(module);
      bench.command(row.code, row.code == 47 ? 2 : 0, 0, 0, 0);
      EXPECT_EQ(bench.violation_count(), known ? 0u : 1u) << int{row.code} << " " << module;
    }
  }
}

TEST(Program, KnowsNoCommandWithTheCodeOfAQuery) {
  Bench bench;
  bench.boot(9);
  bench.command16(0x86, 0);
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 86 00 00 00 00 86 00 | T5391's program "
                                       "has no command 134"}));
}

TEST(Program, KnowsNoQueryWithTheCodeOfACommand) {
  Bench bench;
  bench.boot(9);
  EXPECT_EQ(bench.query(0x57), 0);
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 57 00 00 00 01 58 00 00 00 00 00 00 | "
                                       "T5391's program has no query 57"}));
}

TEST(Program, ReportsFramesOfAnyOtherLength) {
  Bench bench;
  bench.boot(9);
  bench.send({0x57, 0, 0, 0, 0, 0x57});
  bench.send({0x57, 0, 0, 0, 0, 0x57, 0, 0});
  bench.send({});
  EXPECT_EQ(
      bench.violations(),
      (Lines{"lens controller | 57 00 00 00 00 57 | a frame of 6 bytes, must be 7 or 12",
             "lens controller | 57 00 00 00 00 57 00 00 | a frame of 8 bytes, must be 7 or 12",
             "lens controller |  | a frame of 0 bytes, must be 7 or 12"}));
}

TEST(Program, ReportsABootLoaderFrame) {
  Bench bench;
  bench.boot(9);
  bench.send({0xE5, 0x00, 0x02, 0x00, 0xA0});
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | E5 00 02 00 A0 | a boot-loader frame "
                                       "while the program runs"}));
}

TEST(Program, PassesWordsOnToNoOtherChip) {
  Bench bench;
  bench.boot(8);
  bench.command(47, 3, 0xD5, 0x78, 0);
  EXPECT_EQ(bench.violations(), (Lines{"lens controller | 2F 03 D5 78 00 7F 00 | a PT5111 word for "
                                       "chip 3, must be 2"}));
  EXPECT_EQ(bench.camera.pt5111().read(53), 0);
  bench.command(47, 2, 0xD5, 0x78, 0);
  EXPECT_EQ(bench.camera.pt5111().read(53), 0x178);
}

}  // namespace
