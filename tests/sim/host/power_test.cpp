// The camera's power behind the real library: what answers, and what its files keep.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <kelvo.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>

#include "sim/host/installed_camera.h"

namespace {

namespace fs = std::filesystem;
using kelvo::test::InstalledCamera;
using kelvo::test::TestFolder;

class Files : public testing::Test {
 protected:
  TestFolder folder;
  InstalledCamera camera{"clock=sleep files=" + folder.path().string()};

  std::string content(const char* path) const {
    std::ifstream stream(folder.path() / fs::path(path).relative_path(), std::ios::binary);
    if (!stream) return "missing";
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  void cut() {
    camera.host().power_off();
    camera.host().power_on();
  }
};

/// Writes a text to a camera file; with the synchronisation that the library offers, or without.
void write_file(const char* path, const char* text, bool synchronised) {
  FILE* const stream = fopen(path, "wb");
  ASSERT_NE(stream, nullptr);
  fputs(text, stream);
  if (synchronised) {
    EXPECT_EQ(FileSync(stream), 0);
  }
  fclose(stream);
}

TEST_F(Files, ThatAreNotSynchronisedAreLost) {
  write_file("/bin/DC_S_Cali.dat", "new", false);
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), "new");
  cut();
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), "missing");
  EXPECT_EQ(fopen("/bin/DC_S_Cali.dat", "rb"), nullptr);
}

TEST_F(Files, ThatAreSynchronisedAreKept) {
  write_file("/bin/DC_S_Cali.dat", "new", true);
  cut();
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), "new");
}

/// Another way to make sure that what was written stays.
struct Synchronisation {
  const char* name;
  int open_flags;
  int (*synchronise)(int descriptor);
  bool keeps;
};
void PrintTo(const Synchronisation& way, std::ostream* stream) { *stream << way.name; }

const Synchronisation every_synchronisation[] = {
    {"None", 0, [](int) { return 0; }, false},
    {"Fsync", 0, fsync, true},
    {"Fdatasync", 0, fdatasync, true},
    {"Sync", 0, [](int) { return sync(), 0; }, true},
    {"Syncfs", 0, syncfs, true},
    {"OpenedForIt", O_SYNC, [](int) { return 0; }, true},
    {"OpenedForDataAlone", O_DSYNC, [](int) { return 0; }, true},
};

class EverySynchronisation : public Files, public testing::WithParamInterface<Synchronisation> {};

TEST_P(EverySynchronisation, KeepsWhatWasWritten) {
  const Synchronisation& way = GetParam();
  const int record = open("/bin/DC_S_Cali.dat", O_WRONLY | O_CREAT | way.open_flags, 0600);
  ASSERT_GE(record, 0);
  EXPECT_EQ(::write(record, "new", 3), 3);
  EXPECT_EQ(way.synchronise(record), 0);
  close(record);
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), "new");
  cut();
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), way.keeps ? "new" : "missing");
}

INSTANTIATE_TEST_SUITE_P(Calls, EverySynchronisation, testing::ValuesIn(every_synchronisation),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_F(Files, AreKeptByEveryWriteToOneThatWasOpenedForIt) {
  static ssize_t (*const every_write[])(int, const iovec&) = {
      [](int file, const iovec& text) { return pwrite(file, text.iov_base, text.iov_len, 0); },
      [](int file, const iovec& text) { return writev(file, &text, 1); },
      [](int file, const iovec& text) { return pwritev(file, &text, 1, 0); },
  };
  std::string text = "0";
  for (const auto write : every_write) {
    const int record = open("/bin/DC_S_Cali.dat", O_RDWR | O_CREAT | O_DSYNC, 0600);
    ++text[0];
    EXPECT_EQ(write(record, {text.data(), 1}), 1);
    close(record);
    cut();
    EXPECT_EQ(content("/bin/DC_S_Cali.dat"), text);
  }
}

TEST_F(Files, AreNotSynchronisedByTheFileSystemOfAnother) {
  write_file("/bin/DC_S_Cali.dat", "new", false);
  const int elsewhere = open("/dev/null", O_RDWR);
  EXPECT_EQ(syncfs(elsewhere), 0);
  EXPECT_EQ(fdatasync(elsewhere), -1);
  close(elsewhere);
  cut();
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), "missing");
}

TEST_F(Files, AreWhatWasLastSynchronised) {
  write_file("/bin/DC_S_Cali.dat", "first", true);
  write_file("/bin/DC_S_Cali.dat", "second", false);
  cut();
  EXPECT_EQ(content("/bin/DC_S_Cali.dat"), "first");
}

TEST_F(Files, LoseWhatIsWrittenBehindTheSynchronisation) {
  FILE* const stream = fopen("/tmp/DC_S_Cali.dat", "wb");
  ASSERT_NE(stream, nullptr);
  fputs("safe", stream);
  FileSync(stream);
  fputs(" and not", stream);
  fclose(stream);
  EXPECT_EQ(content("/tmp/DC_S_Cali.dat"), "safe and not");
  cut();
  EXPECT_EQ(content("/tmp/DC_S_Cali.dat"), "safe");
}

TEST_F(Files, AreNotSynchronisedByAnotherFile) {
  FILE* const stream = fopen("/bin/OIS_S_Cali.dat", "wb");
  ASSERT_NE(stream, nullptr);
  write_file("/bin/DC_S_Cali.dat", "new", true);
  fputs("lost", stream);
  fclose(stream);
  cut();
  EXPECT_EQ(content("/bin/OIS_S_Cali.dat"), "missing");
}

TEST_F(Files, KeepTheDefaultRecordThatTheCameraCameWith) {
  write_file("/bin/DC_S_Cali.dat", "new", true);
  const std::string record = content("/bin/DC_S_Cali_T5391.dat");
  EXPECT_EQ(record.size(), 24u);
  write_file("/bin/DC_S_Cali_T5391.dat", "spoilt", false);
  cut();
  EXPECT_EQ(content("/bin/DC_S_Cali_T5391.dat"), record);
}

TEST_F(Files, CannotBeOpenedWithoutPower) {
  write_file("/bin/DC_S_Cali.dat", "new", true);
  camera.host().power_off();
  errno = 0;
  EXPECT_EQ(fopen("/bin/DC_S_Cali.dat", "rb"), nullptr);
  EXPECT_EQ(errno, EIO);
}

TEST_F(Files, OfAQualityCheckSurviveAPowerCut) {
  SetLensType(7);  // frees the link
  ASSERT_EQ(OIS_Quality_Check(), 0);
  const std::string record = content("/bin/OIS_S_Cali.dat");
  EXPECT_EQ(record.size(), 60u);
  cut();
  for (const char* const path :
       {"/mnt/nand/OIS_S_Cali.dat", "/tmp/OIS_S_Cali.dat", "/bin/OIS_S_Cali.dat"}) {
    EXPECT_EQ(content(path), record) << path;
  }
  EXPECT_EQ(Load_QC(), 0);
}

TEST(PowerOff, MakesABootFailAndTheNextOneSucceed) {
  InstalledCamera camera;
  camera.host().power_off();
  EXPECT_EQ(Init30516_T5391(), 1);
  EXPECT_EQ(camera.state().violations().total(), 0u);
  camera.host().power_on();
  EXPECT_EQ(Init30516_T5391(), 0);
  unsigned version = 0;
  EXPECT_EQ(getVersion(&version), 0);
  EXPECT_EQ(version, 0x0309u);
}

TEST(PowerOff, LeavesTheHeadSilent) {
  InstalledCamera camera;
  Init_I2C();
  EXPECT_EQ(GetMotorType(), 2);
  unsigned position = 0;
  GetPanPos(&position);
  EXPECT_EQ(position, 32'768u);
  camera.host().power_off();
  EXPECT_EQ(GetPanSleepMode(), -1);
  camera.host().power_on();
  EXPECT_EQ(GetPanSleepMode(), 0);
  Release_I2C();
}

TEST(FittedModule, NeedsNoBoot) {
  InstalledCamera camera("clock=sleep module=df033");
  EXPECT_EQ(SetLensType(8), 0);
  unsigned version = 0;
  EXPECT_EQ(getVersion(&version), 0);
  EXPECT_EQ(version, 0x0208u);
  EXPECT_EQ(setFocusForward(100, 200), 0);
  std::uint8_t running = 0;
  EXPECT_EQ(getFocusStatus(&running), 0);
  EXPECT_EQ(running, 1);
  EXPECT_EQ(camera.state().violations().total(), 0u);
}

TEST(FittedModule, IsHeldAgainstAnotherModulesBoot) {
  InstalledCamera camera("clock=sleep module=df033");
  EXPECT_EQ(Init30516_T5391(), 0);
  const auto state = camera.state();
  ASSERT_EQ(state.violations().total(), 1u);
  EXPECT_STREQ(state.violations().listed()[0].reason.data(),
               "T5391's program is started, and the lens is DF033: nothing moves");
}

TEST(Seed, PutsTheHeadElsewhere) {
  InstalledCamera camera("clock=sleep seed=4");
  Init_I2C();
  EXPECT_EQ(GetMotorType(), 2);
  unsigned position = 0;
  GetPanPos(&position);
  EXPECT_NE(position, 32'768u);
  EXPECT_EQ(position, camera.state().head().pan().axis().position({}));
  Release_I2C();
}

}  // namespace
