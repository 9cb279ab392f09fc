#include <gtest/gtest.h>

#include "sim/camera/bench.h"
#include "sim/lens/motor_block.h"

namespace {

using kelvo::sim::camera::MotorBlock;
using kelvo::test::Bench;

TEST(MotorRegisters, ReportsARegisterOutsideTheMap) {
  Bench bench;
  bench.boot(7);
  bench.write_register(200, 5);
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{
                "lens controller | 0F 00 C8 00 05 DC 00 | register 200 is not in the map"}));
  EXPECT_EQ(bench.camera.lens().program().motor_block().read(200), 0);
}

TEST(MotorRegisters, KnowsEveryRegisterOfItsMap) {
  for (const int reg : {0,  2,  4,  6,   20,  24,  28,  30,  32,  34,  36,  38,  52,
                        56, 60, 62, 130, 134, 136, 142, 144, 160, 182, 186, 190, 252}) {
    EXPECT_TRUE(MotorBlock::has(static_cast<std::uint8_t>(reg))) << reg;
  }
  int known = 0;
  for (int reg = 0; reg < 256; ++reg) known += MotorBlock::has(static_cast<std::uint8_t>(reg));
  EXPECT_EQ(known, 26);
}

TEST(MotorRegisters, DoesNotLetItsStatusBeWritten) {
  Bench bench;
  bench.boot(9);
  bench.write_register(28, 5);
  bench.write_register(60, 5);
  EXPECT_EQ(bench.query(140, 28), 0);
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{
                "lens controller | 0C 00 1C 00 05 2D 00 | register 28 can only be read",
                "lens controller | 0C 00 3C 00 05 4D 00 | register 60 can only be read"}));
}

TEST(MotorRegisters, IsReadByTheQueriesOfItsModule) {
  Bench bench;
  const struct {
    int module;
    std::vector<std::uint8_t> queries;
  } rows[] = {{7, {143}}, {8, {140}}, {9, {140, 143}}};
  for (const auto& row : rows) {
    bench.boot(row.module);
    bench.write_register(6, 0x1234);
    bench.write_register(136, 2);
    for (const std::uint8_t query : row.queries) {
      EXPECT_EQ(bench.query32(query, 6), 0x1234u);
      EXPECT_EQ(bench.query32(query, 136), 2u);
      EXPECT_EQ(bench.query32(query, 38), 0u);
    }
  }
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(MotorRegisters, ReportsAReadOutsideTheMap) {
  Bench bench;
  bench.boot(8);
  EXPECT_EQ(bench.query32(140, 200), 0u);
  EXPECT_EQ(bench.violations(),
            (std::vector<std::string>{"lens controller | 8C 00 C8 00 01 55 00 00 00 00 00 00 | "
                                      "register 200 is not in the map"}));
}

}  // namespace
