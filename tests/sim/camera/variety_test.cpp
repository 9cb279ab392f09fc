// Cameras that differ by their seed.
#include "sim/common/variety.h"

#include <gtest/gtest.h>

#include <set>

#include "sim/camera/bench.h"
#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::FilterPlace;
using kelvo::sim::camera::HeadFamily;
using kelvo::sim::camera::noisy;
using kelvo::sim::camera::Output;
using kelvo::sim::camera::Positions;
using kelvo::sim::camera::Subject;
using kelvo::sim::camera::Time;
using kelvo::sim::camera::Variety;
using kelvo::test::Bench;
using kelvo::test::HeadBench;
using kelvo::wire::LensModule;

Positions positions(std::uint64_t seed, LensModule module) {
  Bench bench;
  bench.camera.vary(seed);
  bench.camera.fit_module(module);
  return bench.camera.positions();
}

TEST(Variety, IsNoneWithoutASeed) {
  const Variety none;
  for (std::size_t i = 0; i < 100; ++i) {
    EXPECT_EQ(none.around(Subject::motor, i, 1000), 0);
    EXPECT_EQ(none.noise(Subject::hall, i, Time(i), 1000), 0);
  }
}

TEST(Variety, IsTheSameForTheSameSeed) {
  EXPECT_EQ(Variety(7).around(Subject::motor, 3, 1000), Variety(7).around(Subject::motor, 3, 1000));
  EXPECT_EQ(Variety(7).seed(), 7u);
}

TEST(Variety, ReachesBothEndsAndNothingBeyond) {
  const Variety variety(1);
  std::set<std::int64_t> drawn;
  for (std::size_t i = 0; i < 200; ++i) drawn.insert(variety.around(Subject::axis, i, 2));
  EXPECT_EQ(drawn, (std::set<std::int64_t>{-2, -1, 0, 1, 2}));
  EXPECT_EQ(variety.around(Subject::axis, 0, 0), 0);
}

TEST(Variety, DiffersBySeedSubjectAndNumber) {
  constexpr std::int64_t most = 1'000'000'000'000;
  std::set<std::int64_t> drawn;
  for (const std::uint64_t seed : {1U, 2U}) {
    for (const Subject subject : {Subject::motor, Subject::gyro}) {
      for (const std::size_t number : {0U, 1U}) {
        drawn.insert(Variety(seed).around(subject, number, most));
      }
    }
  }
  EXPECT_EQ(drawn.size(), 8u);
}

TEST(Variety, IsNoiseThatChangesEachMillisecond) {
  constexpr std::int64_t most = 1'000'000'000'000;
  const Variety variety(5);
  const std::int64_t first = variety.noise(Subject::hall, 0, Time(0), most);
  EXPECT_EQ(variety.noise(Subject::hall, 0, Time(999'999), most), first);
  EXPECT_NE(variety.noise(Subject::hall, 0, Time(1'000'000), most), first);
}

TEST(Variety, KeepsMeasuredValuesWithinTheirBits) {
  EXPECT_EQ(noisy(3, -5), 0);
  EXPECT_EQ(noisy(0xFFFE, 5), 0xFFFF);
  EXPECT_EQ(noisy(100, -5), 95);
}

TEST(Seed, LeavesAllMotorsInTheMiddleWhenItIs0) {
  for (const LensModule module : {LensModule::de015, LensModule::df033, LensModule::t5391}) {
    EXPECT_EQ(positions(0, module), Positions{});
  }
}

TEST(Seed, PutsMotorsSomewhereInTheirTravel) {
  for (std::uint64_t seed = 1; seed < 40; ++seed) {
    const Positions stand = positions(seed, LensModule::de015);
    EXPECT_LE(std::abs(stand[0]), 2'000);   // zoom 1
    EXPECT_LE(std::abs(stand[3]), 16'000);  // zoom 2
    EXPECT_LE(std::abs(stand[2]), 16'000);  // focus
    EXPECT_LE(std::abs(stand[4]), 200);     // IR-cut filter
    EXPECT_EQ(stand[1], 0) << "there is no zoom 3";
    EXPECT_EQ(stand, positions(seed, LensModule::de015));
    EXPECT_NE(stand, positions(seed + 1, LensModule::de015));
  }
}

TEST(Seed, ThrowsSomeFiltersOverAndOthersNot) {
  std::set<FilterPlace> places;
  for (std::uint64_t seed = 1; seed < 40; ++seed) {
    Bench bench;
    bench.camera.vary(seed);
    bench.boot(9);
    places.insert(bench.camera.lens_summary().filter);
  }
  EXPECT_EQ(places, (std::set<FilterPlace>{FilterPlace::off, FilterPlace::on}));
}

TEST(Seed, TurnsTheHeadWhicheverComesFirst) {
  for (const HeadFamily family : {HeadFamily::vetra, HeadFamily::tasmere}) {
    HeadBench first(family);
    first.camera.vary(9);
    HeadBench second(family);
    second.camera.vary(9);
    second.camera.fit_head(family);
    HeadBench other(family);
    other.camera.vary(10);
    const auto stands = [](const Bench& bench) {
      return bench.camera.head().pan().axis().position({});
    };
    EXPECT_EQ(stands(first), stands(second));
    EXPECT_NE(stands(first), stands(other));
    EXPECT_NE(stands(first), first.camera.head().tilt().axis().position({}));
  }
}

TEST(Seed, MovesALensThatIsOnAlready) {
  Bench bench;
  bench.camera.fit_module(LensModule::t5391);
  bench.camera.vary(3);
  EXPECT_EQ(bench.camera.positions(), positions(3, LensModule::t5391));
}

}  // namespace
