#include "sim/lens/calibration_run.h"

#include <gtest/gtest.h>

#include <map>

#include "sim/camera/bench.h"

namespace {

using kelvo::test::Bench;

void start(Bench& bench) {
  bench.command16(4, 1);
  bench.command16(5, 1);
}

/// The answers to the queries of a record.
std::map<int, std::uint32_t> answers(Bench& bench, std::initializer_list<int> queries) {
  std::map<int, std::uint32_t> all;
  for (const int query : queries) all[query] = bench.query32(static_cast<std::uint8_t>(query));
  return all;
}

TEST(CalibrationRun, IsIdleAfterABoot) {
  Bench bench;
  for (const int module : {7, 8}) {
    bench.boot(module);
    bench.command16(5, 0);
    bench.wait_ms(20'000);
    EXPECT_EQ(bench.query32(0x80), 0u);
    EXPECT_EQ(bench.query32(0x82), 0u);
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(CalibrationRun, RunsForAWhileAndIsFinished) {
  const struct {
    int module;
    int milliseconds;
  } rows[] = {{7, 12'000}, {8, 8'000}};
  for (const auto& row : rows) {
    Bench bench;
    bench.boot(row.module);
    start(bench);
    EXPECT_EQ(bench.query32(0x80), 1u);
    bench.wait_ms(row.milliseconds - 1);
    EXPECT_EQ(bench.query32(0x80), 1u);
    bench.wait_ms(1);
    EXPECT_EQ(bench.query32(0x80), 4u);
    EXPECT_EQ(bench.query32(0x82), 0u);
    bench.wait_ms(100'000);
    EXPECT_EQ(bench.query32(0x80), 4u);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(CalibrationRun, DoesNotStartUnlessItIsAskedFor) {
  Bench bench;
  bench.boot(7);
  bench.command16(5, 1);
  EXPECT_EQ(bench.query32(0x80), 0u);
  bench.command16(4, 1);
  EXPECT_EQ(bench.query32(0x80), 0u);
  bench.command16(5, 1);
  EXPECT_EQ(bench.query32(0x80), 1u);
}

TEST(CalibrationRun, IsLeftForAnotherMode) {
  Bench bench;
  bench.boot(8);
  const auto before = answers(bench, {0xA1, 0xD1});
  start(bench);
  bench.wait_ms(7'000);
  bench.command16(5, 0);
  bench.wait_ms(7'000);
  EXPECT_EQ(bench.query32(0x80), 0u);
  EXPECT_EQ(answers(bench, {0xA1, 0xD1}), before);
}

TEST(CalibrationRun, IsLostInAReset) {
  Bench bench;
  bench.boot(8);
  start(bench);
  bench.wait_ms(1'000);
  bench.boot(8);
  bench.wait_ms(20'000);
  EXPECT_EQ(bench.query32(0x80), 0u);
}

TEST(CalibrationRun, MeasuresTheStabiliser) {
  Bench bench;
  bench.boot(7);
  start(bench);
  const auto queries = {0xA1, 0xD1, 0xD3, 0xD7, 0xD8, 0xE3, 0xD2, 0xD4, 0xD9, 0xDA, 0xE5};
  const auto before = answers(bench, queries);
  bench.wait_ms(12'000);
  EXPECT_EQ(answers(bench, queries), (std::map<int, std::uint32_t>{{0xA1, 0x0003},
                                                                   {0xD1, 0x07D4},
                                                                   {0xD2, 0x0823},
                                                                   {0xD3, 0x0431},
                                                                   {0xD4, 0x03EE},
                                                                   {0xD7, 0x0162},
                                                                   {0xD8, 0x0E9B},
                                                                   {0xD9, 0x014D},
                                                                   {0xDA, 0x0EB0},
                                                                   {0xE3, 0x7FE6},
                                                                   {0xE5, 0x8013}}));
  for (const auto& [query, value] : before) {
    EXPECT_NE(bench.query32(static_cast<std::uint8_t>(query)), value) << query;
  }
}

TEST(CalibrationRun, MeasuresTheIris) {
  Bench bench;
  bench.boot(8);
  start(bench);
  const auto queries = {0xA1, 0xD1, 0xD3, 0xC5, 0xC6};
  const auto before = answers(bench, queries);
  bench.wait_ms(8'000);
  EXPECT_EQ(answers(bench, queries),
            (std::map<int, std::uint32_t>{
                {0xA1, 0x0002}, {0xD1, 0x0851}, {0xD3, 0x0417}, {0xC5, 0x0193}, {0xC6, 0x0E7C}}));
  for (const auto& [query, value] : before) {
    EXPECT_NE(bench.query32(static_cast<std::uint8_t>(query)), value) << query;
  }
}

TEST(CalibrationRun, LeavesWhatIsSetAfterwards) {
  Bench bench;
  bench.boot(8);
  start(bench);
  bench.wait_ms(8'000);
  bench.command16(0x51, 0x0777);
  EXPECT_EQ(bench.query32(0xD1), 0x0777u);
}

TEST(CalibrationRun, IsNotKnownOnT5391) {
  Bench bench;
  bench.boot(9);
  bench.command16(5, 1);
  EXPECT_EQ(bench.violation_count(), 0u);
  bench.command16(4, 1);
  bench.query(0x80);
  EXPECT_EQ(bench.violation_count(), 2u);
}

}  // namespace
