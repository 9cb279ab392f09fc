#include "sim/lens/filter_coil.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::FilterCoil;
using kelvo::sim::camera::FilterPlace;
using kelvo::sim::camera::Time;
using kelvo::test::Bench;
using namespace std::chrono_literals;

FilterPlace place(const Bench& bench) { return bench.camera.lens_summary().filter; }

TEST(FilterCoil, IsThrownOverInATenthOfASecond) {
  FilterCoil coil;
  EXPECT_EQ(coil.place(0ms), FilterPlace::off);
  coil.drive(10ms, FilterPlace::on);
  EXPECT_EQ(coil.place(109ms), FilterPlace::off);
  EXPECT_EQ(coil.place(110ms), FilterPlace::on);
  coil.release(150ms);
  EXPECT_EQ(coil.place(1h), FilterPlace::on);
}

TEST(FilterCoil, StaysWhenItIsReleasedTooSoon) {
  FilterCoil coil;
  coil.drive(10ms, FilterPlace::on);
  coil.release(109ms);
  EXPECT_EQ(coil.place(1h), FilterPlace::off);
}

TEST(FilterCoil, BeginsAnewInTheOtherDirectionOnly) {
  FilterCoil coil;
  coil.drive(0ms, FilterPlace::on);
  coil.drive(60ms, FilterPlace::on);
  EXPECT_EQ(coil.place(100ms), FilterPlace::on);
  coil.drive(120ms, FilterPlace::off);
  EXPECT_EQ(coil.place(219ms), FilterPlace::on);
  EXPECT_EQ(coil.place(220ms), FilterPlace::off);
}

TEST(Filter, OfDf033IsThrownByAPulse) {
  Bench bench;
  bench.boot(8);
  EXPECT_EQ(place(bench), FilterPlace::off);
  bench.pt5111_words({0xCFC0, 0x4140, 0x73EF, 0x7E00});
  bench.wait_ms(200);
  bench.pt5111_words({0x7C00});
  EXPECT_EQ(place(bench), FilterPlace::on);
  bench.pt5111_words({0xCFC0, 0x4140, 0x71EF, 0x7E00});
  bench.wait_ms(99);
  bench.pt5111_words({0x7C00});
  bench.wait_ms(1000);
  EXPECT_EQ(place(bench), FilterPlace::on) << "too short";
  bench.pt5111_words({0x7E00});
  bench.wait_ms(100);
  EXPECT_EQ(place(bench), FilterPlace::off);
}

TEST(Filter, OfDf033NeedsPowerSetUpAndDirection) {
  for (const std::vector<int>& words :
       {std::vector{0x4140, 0x73EF, 0x7E00}, {0xCFC0, 0x73EF, 0x7E00}, {0xCFC0, 0x4140, 0x7E00}}) {
    Bench bench;
    bench.boot(8);
    bench.pt5111_words(words);
    bench.wait_ms(1000);
    EXPECT_EQ(place(bench), FilterPlace::off);
  }
}

TEST(Filter, OfDf033StaysWhenThePowerGoes) {
  Bench bench;
  bench.boot(8);
  bench.pt5111_words({0xCFC0, 0x4140, 0x73EF, 0x7E00});
  bench.wait_ms(50);
  bench.pt5111_words({0xCC00});
  bench.wait_ms(1000);
  EXPECT_EQ(place(bench), FilterPlace::off);
}

TEST(Filter, OfT5391IsThrownByItsCoil) {
  Bench bench;
  bench.boot(9);
  const auto drive = [&](int direction, int milliseconds) {
    bench.write_register(186, direction);
    bench.write_register(130, 3);
    bench.wait_ms(milliseconds);
    bench.write_register(130, 1);
    bench.wait_ms(10);
    bench.write_register(130, 0);
  };
  drive(255, 99);
  EXPECT_EQ(place(bench), FilterPlace::off);
  drive(255, 100);
  EXPECT_EQ(place(bench), FilterPlace::on);
  drive(500, 1000);
  EXPECT_EQ(place(bench), FilterPlace::on) << "no direction";
  drive(767, 100);
  EXPECT_EQ(place(bench), FilterPlace::off);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Filter, OfT5391IsReleasedByAReset) {
  Bench bench;
  bench.boot(9);
  bench.write_register(186, 255);
  bench.write_register(130, 3);
  bench.wait_ms(50);
  bench.boot(9);
  bench.wait_ms(1000);
  EXPECT_EQ(place(bench), FilterPlace::off);
}

TEST(Filter, OfDe015IsWhereItsMotorIs) {
  Bench bench;
  bench.boot(7);
  EXPECT_EQ(place(bench), FilterPlace::between);
  bench.pt5111_words({0xCFC0, 0x0080, 0x0414, 0x0800, 0x0E91, 0x11C0, 0x3E80});
  bench.wait_ms(1000);
  EXPECT_EQ(place(bench), FilterPlace::on);
  bench.pt5111_words({0x0280, 0x0428, 0x3E80});
  bench.wait_ms(1000);
  EXPECT_EQ(place(bench), FilterPlace::off);
}

}  // namespace
