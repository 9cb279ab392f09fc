// The private folder of a shared camera.
#include "sim/state/folder.h"

#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "sim/state/bus_key.h"
#include "sim/state/named_camera.h"

namespace {

namespace fs = std::filesystem;
namespace state = kelvo::sim::state;
using kelvo::test::NamedCamera;

std::size_t entries(const fs::path& folder) {
  const fs::directory_iterator all(folder);
  return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

class PrivateFolder : public testing::Test {
 protected:
  NamedCamera named;
  fs::path place = named.place();
  fs::path folder = place / "private";
};

TEST_F(PrivateFolder, IsItsUsersAloneAndEmpty) {
  fs::create_directories(folder / "old");
  EXPECT_EQ(state::make_private_folder(folder, [](const std::string&) { return false; }), "");
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(PrivateFolder, IsMadeAgainWhileItIsTaken) {
  std::set<ino_t> seen;
  const auto taken = [&](const std::string& made) {
    struct stat status {};
    EXPECT_EQ(stat(made.c_str(), &status), 0);
    seen.insert(status.st_ino);
    return seen.size() < 4;
  };
  EXPECT_EQ(state::make_private_folder(folder, taken), "");
  EXPECT_EQ(seen.size(), 4U);
  struct stat status {};
  ASSERT_EQ(stat(folder.c_str(), &status), 0);
  EXPECT_TRUE(seen.contains(status.st_ino));
  EXPECT_EQ(entries(place), 1U);
}

TEST_F(PrivateFolder, IsTakenAfterAllWhenNoneIsFree) {
  int asked = 0;
  const auto taken = [&](const std::string&) { return ++asked > 0; };
  EXPECT_EQ(state::make_private_folder(folder, taken), "");
  EXPECT_EQ(asked, 16);
  EXPECT_EQ(entries(place), 1U);
}

TEST_F(PrivateFolder, IsRefusedWhereItCannotBe) {
  std::ofstream(folder) << "a file";
  EXPECT_EQ(state::make_private_folder(folder, [](const std::string&) { return false; }),
            "cannot make its folder " + folder.string() +
                ": File exists: make way for it, or name another place with XDG_RUNTIME_DIR");
}

TEST_F(PrivateFolder, HasABusLockOnceThereIsASetOfItsKey) {
  ASSERT_EQ(state::make_private_folder(folder, kelvo::sim::has_bus_lock), "");
  const key_t key = kelvo::sim::bus_key_of(folder);
  EXPECT_FALSE(kelvo::sim::has_bus_lock(folder));
  ASSERT_GE(semget(key, 1, IPC_CREAT | 0600), 0);
  EXPECT_TRUE(kelvo::sim::has_bus_lock(folder));
  kelvo::sim::remove_bus_lock(key);
  EXPECT_FALSE(kelvo::sim::has_bus_lock(folder));
  EXPECT_FALSE(kelvo::sim::has_bus_lock(folder / "none"));
}

}  // namespace
