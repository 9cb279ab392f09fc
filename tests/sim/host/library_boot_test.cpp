// The real library boots the lens modules of the simulated camera.
#include <gtest/gtest.h>
#include <kelvo.h>
#include <stdio.h>

#include <cstdint>
#include <fstream>
#include <ostream>

#include "sim/host/installed_camera.h"
#include "sim/host/library_calls.h"

namespace {

using kelvo::sim::camera::BootRecord;
using kelvo::sim::camera::FrameKind;
using kelvo::test::InstalledCamera;
using kelvo::test::read_back;
using kelvo::test::TestFolder;
using namespace std::chrono_literals;

constexpr auto byte_time = 8us;  // at 1 MHz

struct ModuleBoot {
  const char* name;
  std::int32_t (*boot)();
  std::int32_t variant;
  std::uint32_t version;
  std::chrono::nanoseconds waits;  // of the whole initialiser
  std::int64_t images;             // bytes
  std::int64_t set_up;             // bytes of all frames after the start

  /// Of one attempt: 23 frames of 5 bytes and the images.
  std::chrono::nanoseconds download_time() const { return (23 * 5 + images) * byte_time; }
  /// Of one attempt, the start and what follows.
  std::chrono::nanoseconds time() const {
    return waits + download_time() + (5 + set_up) * byte_time;
  }
};

void PrintTo(const ModuleBoot& module, std::ostream* stream) { *stream << module.name; }

// 0.6 s of reset, 2 ms of clock set-up, three downloads of 0.2 s and 0.1 s before the calibration; the
// PT5111 adds 0.5 s on DE015 and a filter pulse of 0.2 s on DF033. After the start go 17 words for the PT5111 and
// a command on DE015; 16 words in commands and two more on DF033; five commands and six queries of the
// calibration and two commands more on T5391.
const ModuleBoot modules[] = {
    {"DE015", Init30516, 7, 0x0107, 1802ms, 33276 + 1228 + 944, 17 * 2 + 7},
    {"DF033", Init30516_DF033, 8, 0x0208, 1502ms, 35000 + 1160 + 648, 18 * 7},
    {"T5391", Init30516_T5391, 9, 0x0309, 1302ms, 33000 + 1160 + 648, 7 * 7 + 6 * 12},
};

class LibraryBoot : public testing::TestWithParam<ModuleBoot> {};

TEST_P(LibraryBoot, SucceedsAtTheFirstAttemptWithoutViolations) {
  InstalledCamera camera;
  EXPECT_EQ(GetParam().boot(), 0);
  const auto state = camera.state();
  EXPECT_EQ(state.violations().total(), 0u) << camera.report();
  ASSERT_EQ(state.boots().total(), 1u);
  const BootRecord& boot = state.boots().boot(1);
  EXPECT_EQ(boot.attempts, 1u);
  EXPECT_TRUE(boot.runs);
  EXPECT_EQ(static_cast<int>(boot.module), GetParam().variant);
  EXPECT_EQ(boot.count(FrameKind::boot_command), 18u);
  EXPECT_EQ(boot.count(FrameKind::payload), 3u);
  EXPECT_EQ(boot.count(FrameKind::checksum_read), 6u);
  EXPECT_EQ(boot.up - boot.begun, 1202ms + GetParam().download_time() + 5 * byte_time);
  EXPECT_EQ(camera.now(), GetParam().time());
}

TEST_P(LibraryBoot, GivesVersionAndVariant) {
  InstalledCamera camera;
  ASSERT_EQ(GetParam().boot(), 0);
  std::uint32_t version = 0;
  EXPECT_EQ(getVersion(&version), 0);
  EXPECT_EQ(version, GetParam().version);
  EXPECT_EQ(GetLensType(), GetParam().variant);
}

TEST_P(LibraryBoot, MakesTenAttemptsAfterOneCorruptDownload) {
  InstalledCamera camera("clock=sleep corrupt=1");
  EXPECT_NE(GetParam().boot(), 0);
  const auto state = camera.state();
  EXPECT_EQ(state.violations().total(), 0u);
  ASSERT_EQ(state.boots().total(), 1u);
  const BootRecord& boot = state.boots().boot(1);
  EXPECT_EQ(boot.attempts, 10u);
  ASSERT_EQ(boot.listed().size(), 30u);
  for (std::size_t i = 0; i < 30; ++i) EXPECT_EQ(boot.listed()[i].intact(), i != 0) << i;
  EXPECT_TRUE(boot.runs) << "the last attempt was a good one";
  // Nine more attempts of 1.202 s and ten waits of a second.
  EXPECT_EQ(camera.now(), GetParam().time() + 9 * (1202ms + GetParam().download_time()) + 10s);
  std::uint32_t version = 0;
  getVersion(&version);
  EXPECT_EQ(version, GetParam().version);
}

TEST_P(LibraryBoot, TakesAsLongWhenAllTenAttemptsFail) {
  InstalledCamera camera("clock=sleep corrupt=1+4+7+10+13+16+19+22+25+28");
  EXPECT_NE(GetParam().boot(), 0);
  const auto state = camera.state();
  ASSERT_EQ(state.boots().total(), 1u);
  const BootRecord& boot = state.boots().boot(1);
  EXPECT_EQ(boot.attempts, 10u);
  ASSERT_EQ(boot.listed().size(), 30u);
  for (std::size_t i = 0; i < 30; ++i) EXPECT_EQ(boot.listed()[i].intact(), i % 3 != 0) << i;
  EXPECT_FALSE(boot.runs);
  EXPECT_EQ(camera.now(), GetParam().time() + 9 * (1202ms + GetParam().download_time()) + 10s);
}

TEST_P(LibraryBoot, LeavesADeadControllerWhenTheLastAttemptFails) {
  InstalledCamera camera("clock=sleep corrupt=1+28");
  EXPECT_NE(GetParam().boot(), 0);
  const auto state = camera.state();
  ASSERT_EQ(state.boots().total(), 1u);
  EXPECT_TRUE(state.boots().boot(1).started);
  EXPECT_FALSE(state.boots().boot(1).runs);
  EXPECT_GT(state.violations().total(), 0u);
  std::uint32_t version = 1;
  EXPECT_EQ(getVersion(&version), 0) << "the transfer itself succeeds";
  EXPECT_EQ(version, 0u);
}

TEST_P(LibraryBoot, CanBeDoneAgain) {
  InstalledCamera camera;
  EXPECT_EQ(GetParam().boot(), 0);
  EXPECT_EQ(GetParam().boot(), 0);
  EXPECT_EQ(camera.state().violations().total(), 0u);
  EXPECT_EQ(camera.state().boots().total(), 2u);
}

INSTANTIATE_TEST_SUITE_P(Modules, LibraryBoot, testing::ValuesIn(modules),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(LibraryBoots, FollowEachOtherInOneProcess) {
  InstalledCamera camera;
  for (const ModuleBoot& module : modules) EXPECT_EQ(module.boot(), 0);
  const auto state = camera.state();
  EXPECT_EQ(state.violations().total(), 0u) << camera.report();
  ASSERT_EQ(state.boots().total(), 3u);
  for (std::uint32_t i = 1; i <= 3; ++i) {
    EXPECT_EQ(static_cast<std::uint32_t>(state.boots().boot(i).module), i + 6);
  }
}

TEST(UncalibratedBoot, StartsTheProgramWithoutViolations) {
  InstalledCamera camera;
  EXPECT_EQ(InitOIS_K(), 0);
  EXPECT_EQ(static_cast<int>(camera.state().boots().boot(1).module), 7);
  SetLensType(7);
  SendCommand(5, 0, 0, 0, 0);
  EXPECT_EQ(InitDC_K(), 0);
  EXPECT_EQ(static_cast<int>(camera.state().boots().boot(2).module), 8);
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

TEST(LibraryBoot, LeavesTheBusFree) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_T5391(), 0);
  const std::int32_t set = makeSem(static_cast<std::uint32_t>(ftok("/lib/libkelvo.so", 0)));
  ASSERT_GE(set, 0);
  EXPECT_EQ(unlockSem(static_cast<std::uint32_t>(set)), -1) << "nobody holds it";
}

TEST(LibraryBoot, OpensTheI2cBusToTheHead) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_T5391(), 0);
  std::uint8_t buffer[2] = {1, 1};
  EXPECT_GT(hndl, 0);
  EXPECT_EQ(ReadI2C(40, 4, buffer, 2), 0);
  EXPECT_EQ(buffer[0], 0x80);
  EXPECT_EQ(buffer[1], 0);
  EXPECT_EQ(SendI2C(41, 28, nullptr, 0), 1);
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

TEST(LibraryCalibration, ComesFromTheDefaultRecordOnT5391) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_T5391(), 0);
  EXPECT_EQ(read_back(0xA1), 0x0001);
  EXPECT_EQ(read_back(0xD1), 0x0840);
  EXPECT_EQ(read_back(0xD3), 0x0420);
  EXPECT_EQ(read_back(0xC5), 0x0180);
  EXPECT_EQ(read_back(0xC6), 0x0E90);
}

TEST(LibraryCalibration, ComesFromTheUnitsOwnRecord) {
  const TestFolder folder;
  std::filesystem::create_directory(folder.path() / "bin");
  {
    std::ofstream record(folder.path() / "bin" / "DC_S_Cali.dat", std::ios::binary);
    const char bytes[24] = {0x34, 0x12, 0, 0, 1, 2, 0, 0, 3, 4, 0, 0,
                            5,    6,    0, 0, 7, 8, 0, 0, 9, 9, 0, 0};
    record.write(bytes, sizeof bytes);
  }
  InstalledCamera camera("clock=sleep files=" + folder.path().string());
  ASSERT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(read_back(0xA1), 0x1234);
  EXPECT_EQ(read_back(0xD1), 0x0201);
  EXPECT_EQ(read_back(0xC6), 0x0807);
  std::uint32_t max = 0;
  std::uint32_t min = 0;
  EXPECT_EQ(Get_DC_Range(&max, &min), 0);
  EXPECT_EQ(min, 0x0605u);
  EXPECT_EQ(max, 0x0807u);
}

TEST(LibraryCalibration, OfTheStabiliserIsSentOnDe015) {
  const TestFolder folder;
  std::filesystem::create_directory(folder.path() / "bin");
  {
    std::ofstream record(folder.path() / "bin" / "OIS_S_Cali.dat", std::ios::binary);
    for (char field = 1; field <= 15; ++field) record.put(field).write("\0\0\0", 3);
  }
  InstalledCamera camera("clock=sleep files=" + folder.path().string());
  ASSERT_EQ(Init30516(), 0);
  EXPECT_EQ(read_back(0xA1), 1);
  EXPECT_EQ(read_back(0xD2), 3);
  EXPECT_EQ(read_back(0xDA), 9);
  EXPECT_EQ(read_back(0xE5), 15);
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

TEST(LibraryCalibration, IsTheProgramsOwnWithoutARecord) {
  InstalledCamera camera;
  ASSERT_EQ(Init30516_DF033(), 0);
  EXPECT_EQ(Load_QC(), -1);
  std::uint32_t max = 5;
  std::uint32_t min = 6;
  EXPECT_EQ(Get_DC_Range(&max, &min), -1);
  EXPECT_EQ(max, 5u);
  EXPECT_EQ(min, 6u);
  EXPECT_EQ(read_back(0xC5), 0x0100);
}

}  // namespace
