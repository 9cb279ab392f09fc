#include "sim/state/storage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "sim/state/named_camera.h"

namespace {

namespace fs = std::filesystem;
namespace storage = kelvo::sim::storage;
using kelvo::test::NamedCamera;

constexpr char record[] = "/bin/DC_S_Cali.dat";
constexpr char copy_of_record[] = "/mnt/nand/DC_S_Cali.dat";

class Storage : public testing::Test {
 protected:
  NamedCamera named;
  fs::path folder = named.place() / "files";

  void write(const std::string& path, const std::string& text) {
    const fs::path place = storage::place_of(folder, path);
    fs::create_directories(place.parent_path());
    std::ofstream(place, std::ios::binary) << text;
  }
  std::string content(const std::string& path) const {
    std::ifstream stream(storage::place_of(folder, path), std::ios::binary);
    if (!stream) return "missing";
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
};

TEST_F(Storage, LosesAFileThatNobodySynchronised) {
  ASSERT_FALSE(storage::begin(folder));
  write(record, "new");
  EXPECT_FALSE(storage::cut(folder));
  EXPECT_EQ(content(record), "missing");
}

TEST_F(Storage, GoesBackToWhatWasLastSynchronised) {
  ASSERT_FALSE(storage::begin(folder));
  write(record, "first");
  EXPECT_FALSE(storage::synchronise(folder, record));
  write(record, "second");
  EXPECT_FALSE(storage::synchronise(folder, record));
  write(record, "third, and longer");
  EXPECT_FALSE(storage::cut(folder));
  EXPECT_EQ(content(record), "second");
}

TEST_F(Storage, SynchronisesOneFileAtATime) {
  ASSERT_FALSE(storage::begin(folder));
  write(record, "one");
  write(copy_of_record, "other");
  EXPECT_FALSE(storage::synchronise(folder, copy_of_record));
  EXPECT_FALSE(storage::cut(folder));
  EXPECT_EQ(content(record), "missing");
  EXPECT_EQ(content(copy_of_record), "other");
}

TEST_F(Storage, BringsAFileBackThatWasTruncatedOrRemoved) {
  write(record, "kept");
  write(copy_of_record, "kept too");
  ASSERT_FALSE(storage::begin(folder));
  write(record, "");
  fs::remove(storage::place_of(folder, copy_of_record));
  EXPECT_FALSE(storage::cut(folder));
  EXPECT_EQ(content(record), "kept");
  EXPECT_EQ(content(copy_of_record), "kept too");
}

TEST_F(Storage, ForgetsAtTheBeginningWhatAnEarlierCameraHad) {
  write(record, "old");
  ASSERT_FALSE(storage::begin(folder));
  fs::remove(storage::place_of(folder, record));
  ASSERT_FALSE(storage::begin(folder));
  EXPECT_FALSE(storage::cut(folder));
  EXPECT_EQ(content(record), "missing");
}

TEST_F(Storage, LeavesOtherFilesAlone) {
  ASSERT_FALSE(storage::begin(folder));
  write("/bin/other", "mine");
  EXPECT_FALSE(storage::cut(folder));
  EXPECT_EQ(content("/bin/other"), "mine");
}

TEST_F(Storage, DoesNotTouchWhatSomebodyStillHasOpen) {
  write(record, "kept");
  ASSERT_FALSE(storage::begin(folder));
  std::ofstream open(storage::place_of(folder, record), std::ios::binary);
  open << "early";
  open.flush();
  EXPECT_FALSE(storage::cut(folder));
  open << "late";
  open.close();
  EXPECT_EQ(content(record), "kept");
}

TEST_F(Storage, SaysWhenItsFolderCannotBeUsed) {
  fs::create_directories(folder / "bin");
  write(record, "some");
  std::ofstream(folder / ".synchronised") << "a file in the way";
  EXPECT_TRUE(storage::begin(folder));
  EXPECT_TRUE(storage::synchronise(folder, record));
}

TEST_F(Storage, HasTheCamerasFilesAndNoOthers) {
  EXPECT_TRUE(storage::has("/tmp/OIS_S_Cali.dat"));
  EXPECT_FALSE(storage::has("/tmp/other"));
  EXPECT_FALSE(storage::has(""));
}

class SharedPower : public Storage {};

TEST_F(SharedPower, IsCutForAllProcesses) {
  const auto one = named.use();
  const auto other = named.use();
  folder = one->settings().files;
  write(record, "never synchronised");
  EXPECT_EQ(one->power_off(), "");
  EXPECT_FALSE(other->snapshot().powered());
  EXPECT_EQ(content(record), "missing");
  other->power_on();
  EXPECT_TRUE(one->snapshot().powered());
}

TEST_F(SharedPower, LeavesFilesAloneWhenItIsOffAlready) {
  const auto camera = named.use();
  folder = camera->settings().files;
  EXPECT_EQ(camera->power_off(), "");
  write(record, "put there by hand");
  EXPECT_EQ(camera->power_off(), "");
  EXPECT_EQ(content(record), "put there by hand");
}

TEST_F(SharedPower, TakesTheFilesOfANamedFolderForSynchronised) {
  write(record, "of the unit");
  kelvo::sim::WantedSettings wanted;
  wanted.files = folder.string();
  const auto camera = named.use(wanted);
  write(record, "changed");
  EXPECT_EQ(camera->power_off(), "");
  EXPECT_EQ(content(record), "of the unit");
}

TEST_F(SharedPower, SaysWhenFilesCannotGoBack) {
  const auto camera = named.use();
  folder = camera->settings().files;
  write(record, "kept");
  ASSERT_FALSE(storage::synchronise(folder, record));
  fs::remove_all(folder / "bin");
  std::ofstream(folder / "bin") << "a file in the way";
  const std::string error = camera->power_off();
  EXPECT_EQ(error.find("camera \"" + named.name() + "\", folder " + folder.string() + ": "), 0u)
      << error;
  EXPECT_FALSE(camera->snapshot().powered());
}

}  // namespace
