// The real library works the stabiliser of the simulated camera and runs its quality checks.
#include <gtest/gtest.h>
#include <kelvo.h>
#include <time.h>

#include <cstdint>
#include <fstream>
#include <vector>

#include "sim/host/installed_camera.h"
#include "sim/host/library_calls.h"

namespace {

using kelvo::sim::camera::FrameKind;
using kelvo::test::InstalledCamera;
using kelvo::test::read_back;
using kelvo::test::TestFolder;
using namespace std::chrono_literals;

TEST(LibraryStabiliser, ReadsItsSettingsBack) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  Set_X_GyroGain(0x01020304);
  Set_Y_GyroGain(-2);
  OIS_Pause(1);
  Set_Coma(5);
  Stationary_detection(9);
  Gyro_stability(-1);
  EXPECT_EQ(Read_X_GyroGain(), 0x01020304u);
  EXPECT_EQ(Read_Y_GyroGain(), 0xFFFFFFFEu);
  EXPECT_EQ(Read_OIS_Pause(), 1u);
  EXPECT_EQ(Read_Coma(), 5u);
  EXPECT_EQ(Read_Stationary_detection(), 3u) << "with coma 5";
  EXPECT_EQ(Read_Gyro_stability(), 0xFFFFu);
  Set_Coma(9);
  Stationary_detection(1);
  EXPECT_EQ(Read_Stationary_detection(), 4u);
  Set_Coma(0);
  Stationary_detection(1);
  EXPECT_EQ(Read_Stationary_detection(), 2u);
  Stationary_detection(0);
  EXPECT_EQ(Read_Stationary_detection(), 0u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryStabiliser, IsSwitchedWithTheRangeOfBothAxes) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  EXPECT_FALSE(camera.state().lens_summary().stabiliser_on);
  Set_XY_Definition(4);
  OIS_En(5);
  EXPECT_TRUE(camera.state().lens_summary().stabiliser_on);
  EXPECT_EQ(camera.state().lens().program().value(108), 1u);
  Set_X_Definition(2);
  Set_Y_Definition(3);
  EXPECT_EQ(camera.state().lens().program().value(108), 2u);
  EXPECT_EQ(camera.state().lens().program().value(109), 3u);
  OIS_En(0);
  EXPECT_FALSE(camera.state().lens_summary().stabiliser_on);
}

TEST(LibraryStabiliser, SeesGyrosAndHallSensorsMove) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  EXPECT_EQ(Get_HallXY_Data(&x, &y), 0x0800u);
  EXPECT_EQ(x, 0x0800u);
  OIS_En(1);
  constexpr int moved = 2;  // in the time of the queries between
  std::uint32_t least = 0xFFFF;
  std::uint32_t most = 0;
  for (int i = 0; i < 100; ++i) {
    const timespec time{0, 100'000'000};
    nanosleep(&time, nullptr);
    Get_XY_Data(&x, &y);
    least = std::min(least, x);
    most = std::max(most, x);
    std::uint32_t hall_x = 0;
    std::uint32_t hall_y = 0;
    EXPECT_EQ(Get_HallX_Data(&hall_x), 0);
    EXPECT_EQ(Get_HallY_Data(&hall_y), 0);
    EXPECT_NEAR(hall_x, 0x0800 - (x - 0x8000), moved) << "against the gyro";
    EXPECT_NEAR(hall_y, 0x0800 - (y - 0x8000), moved);
    EXPECT_NEAR(Get_HallXY_Data(&x, &y), hall_y, moved);
    EXPECT_NEAR(x, hall_x, moved);
  }
  EXPECT_LT(least, 0x8000u);
  EXPECT_GT(most, 0x8000u);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

TEST(LibraryStabiliser, TellsWhenTheGyroIsStable) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516(), 0);
  EXPECT_EQ(Get_gyro_stable_flag(), 1u);
  Gyro_stability(1);
  EXPECT_EQ(Get_gyro_stable_flag(), 0u);
}

std::vector<std::uint32_t> record(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  std::vector<std::uint32_t> fields;
  for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    std::uint32_t field = 0;
    for (std::size_t k = 0; k < 4; ++k) {
      field |= std::uint32_t{static_cast<std::uint8_t>(bytes[i + k])} << (8 * k);
    }
    fields.push_back(field);
  }
  return fields;
}

/// Of two boots with the images of one module, and of what was counted besides.
std::chrono::nanoseconds time_on_wires(InstalledCamera& camera) {
  const auto state = camera.state();
  const bool de015 = GetLensType() == 7;
  std::uint64_t bytes = 2 * (de015 ? 33276 + 1228 + 944 : 35000 + 1160 + 648);
  for (const std::uint32_t number : {1U, 2U}) {
    const auto& boot = state.boots().boot(number);
    bytes += 24 * 5 + 7 * boot.count(FrameKind::command) + 12 * boot.count(FrameKind::query);
  }
  return (bytes + 2 * state.pt5111_words()) * 8us;
}

TEST(QualityCheck, OfTheStabiliserMeasuresWritesAndLoads) {
  const TestFolder folder;
  InstalledCamera camera("clock=sleep files=" + folder.path().string());
  ASSERT_EQ(SetLensType(7), 0);
  EXPECT_EQ(OIS_Quality_Check(), 0);
  const std::vector<std::uint32_t> wanted{0x0003, 0x07D4, 0x0823, 0x0431, 0x03EE,
                                          0x0162, 0x014D, 0x0E9B, 0x0EB0, 0x7FE6,
                                          0x0003, 0x0004, 0x0005, 0x0006, 0x8013};
  for (const char* const place : {"mnt/nand", "tmp", "bin"}) {
    EXPECT_EQ(record(folder.path() / place / "OIS_S_Cali.dat"), wanted) << place;
  }
  // The program runs with them: they are not its own.
  EXPECT_EQ(read_back(0xD2), 0x0823);
  EXPECT_EQ(read_back(0xE5), 0x8013);
  EXPECT_EQ(GetLensType(), 7);
  const auto state = camera.state();
  EXPECT_EQ(state.violations().total(), 0u) << camera.report();
  EXPECT_EQ(state.boots().total(), 2u);
  // The two boots, twelve seconds and the poll that sees the end.
  EXPECT_EQ(camera.now(), 1302ms + 13s + 1802ms + time_on_wires(camera));
}

TEST(QualityCheck, OfTheIrisMeasuresWritesAndLoads) {
  const TestFolder folder;
  InstalledCamera camera("clock=sleep files=" + folder.path().string());
  ASSERT_EQ(SetLensType(8), 0);
  EXPECT_EQ(DC_Quality_Check(), 0);
  const std::vector<std::uint32_t> wanted{0x0002, 0x0851, 0x0417, 0x0193, 0x0E7C, 0x0212};
  for (const char* const place : {"mnt/nand", "tmp", "bin"}) {
    EXPECT_EQ(record(folder.path() / place / "DC_S_Cali.dat"), wanted) << place;
  }
  EXPECT_EQ(read_back(0xD1), 0x0851);
  std::uint32_t max = 0;
  std::uint32_t min = 0;
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(min, 0x0193u);
  EXPECT_EQ(max, 0x0E7Cu);
  EXPECT_EQ(GetLensType(), 8);
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
  EXPECT_EQ(camera.now(), 1302ms + 9s + 1502ms + time_on_wires(camera));
}

TEST(QualityCheck, OfTheStabiliserFailsWhenTheLatchIsSet) {
  InstalledCamera camera;
  EXPECT_EQ(OIS_Quality_Check(), -1) << "before anything has cleared it";
  EXPECT_EQ(GetLensType(), 7);
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

}  // namespace
