#include "sim/state/shared_camera.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "sim/state/layout.h"
#include "sim/state/named_camera.h"

namespace {

using kelvo::sim::CameraEntry;
using kelvo::sim::ClockMode;
using kelvo::sim::ClockSetting;
using kelvo::sim::Removal;
using kelvo::sim::Role;
using kelvo::sim::SharedCamera;
using kelvo::sim::WantedSettings;
using kelvo::test::Child;
using kelvo::test::NamedCamera;
using kelvo::wire::HeadFamily;

WantedSettings many_settings() {
  WantedSettings wanted;
  wanted.head = HeadFamily::vetra;
  wanted.clock = ClockSetting{ClockMode::scaled, 2.5};
  wanted.corrupt = {2, 7};
  wanted.seed = 12345678901234567890U;
  return wanted;
}

/// The entry of a camera in the list, or one without a name.
CameraEntry listed(const std::string& name) {
  for (const CameraEntry& entry : SharedCamera::list().cameras) {
    if (entry.name == name) return entry;
  }
  return {};
}

mode_t access_of(const std::filesystem::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
}

void write(const std::filesystem::path& file, std::streamoff place, std::uint32_t value) {
  std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
  stream.seekp(place);
  stream.write(reinterpret_cast<const char*>(&value), sizeof value);
  ASSERT_TRUE(stream.good());
}

TEST(SharedCamera, IsMadeByTheFirstAndOpenedByTheNext) {
  NamedCamera named;
  auto first = SharedCamera::open_or_make(named.name(), {}, Role::program);
  auto second = SharedCamera::open_or_make(named.name(), {}, Role::program);
  auto third = SharedCamera::open(named.name(), Role::observer);
  ASSERT_NE(third.camera, nullptr) << third.error;
  EXPECT_TRUE(first.made);
  EXPECT_FALSE(second.made);
  first.camera->change()->clock.advance(std::chrono::hours(1));
  EXPECT_GE(second.camera->snapshot().clock.now(), std::chrono::hours(1));
  EXPECT_EQ(third.camera->made(), first.camera->made());
}

TEST(SharedCamera, HasTheSettingsThatItWasMadeWith) {
  NamedCamera named;
  named.use(many_settings());
  const auto camera = named.use();
  EXPECT_EQ(camera->settings().head, HeadFamily::vetra);
  EXPECT_EQ(camera->settings().clock, (ClockSetting{ClockMode::scaled, 2.5}));
  EXPECT_EQ(camera->settings().corrupt, (std::vector<std::uint32_t>{2, 7}));
  EXPECT_EQ(camera->settings().seed, 12345678901234567890U);
  EXPECT_EQ(camera->snapshot().head().family(), HeadFamily::vetra);
  EXPECT_EQ(named.error_of(many_settings()), "");
}

TEST(SharedCamera, KeepsItsLens) {
  NamedCamera named;
  WantedSettings wanted;
  wanted.module = kelvo::wire::LensModule::df033;
  named.use(wanted);
  EXPECT_EQ(named.use()->settings().module, kelvo::wire::LensModule::df033);
  EXPECT_EQ(named.use()->snapshot().lens().module(), kelvo::wire::LensModule::df033);
  EXPECT_EQ(named.error_of(wanted), "");
  wanted.module = kelvo::wire::LensModule::t5391;
  EXPECT_EQ(named.error_of(wanted),
            "camera \"" + named.name() +
                "\" was made with module=df033, not module=t5391: leave module away, or remove the "
                "camera first");
}

TEST(SharedCamera, HasNoLensOfItsOwnUnlessItWasMadeWithOne) {
  NamedCamera named;
  named.use();
  WantedSettings wanted;
  wanted.module = kelvo::wire::LensModule::de015;
  EXPECT_EQ(named.error_of(wanted),
            "camera \"" + named.name() +
                "\" was made without module, not module=de015: leave module away, or remove the "
                "camera first");
}

TEST(SharedCamera, IsAnotherOneByItsSeed) {
  NamedCamera named;
  WantedSettings wanted;
  wanted.seed = 6;
  const auto camera = named.use(wanted);
  EXPECT_NE(camera->snapshot().head().pan().axis().position({}), 32'768u);
}

TEST(SharedCamera, DoesNotTakeOtherSettingsLater) {
  NamedCamera named;
  named.use(many_settings());
  const std::string begin = "camera \"" + named.name() + "\" was made with ";
  const std::string end = " away, or remove the camera first";
  WantedSettings wanted;
  wanted.clock = ClockSetting{ClockMode::sleep, 1};
  EXPECT_EQ(named.error_of(wanted), begin + "clock=2.5, not clock=sleep: leave clock" + end);
  wanted = {};
  wanted.head = HeadFamily::tasmere;
  EXPECT_EQ(named.error_of(wanted), begin + "head=vetra, not head=tasmere: leave head" + end);
  wanted = {};
  wanted.corrupt = {2};
  EXPECT_EQ(named.error_of(wanted), begin + "corrupt=2+7, not corrupt=2: leave corrupt" + end);
  wanted = {};
  wanted.files = "/some/where";
  EXPECT_EQ(named.error_of(wanted), begin + "files=" + named.use()->settings().files +
                                        ", not files=/some/where: leave files" + end);
}

TEST(SharedCamera, IsItsUsersAlone) {
  NamedCamera named;
  const auto camera = named.use();
  EXPECT_EQ(access_of(named.file()), 0600u);
  EXPECT_EQ(access_of(camera->settings().files), 0700u);
}

class ForeignCamera : public testing::Test {
  void TestBody() override;
};

// There for root alone, who has the right to give a file away.
[[maybe_unused]] const bool foreign_camera_added =
    geteuid() == 0 &&
    testing::RegisterTest("ForeignCamera", "IsRefused", nullptr, nullptr, __FILE__, __LINE__,
                          [] { return new ForeignCamera; }) != nullptr;

void ForeignCamera::TestBody() {
  NamedCamera named;
  named.use();
  ASSERT_EQ(chown(named.file().c_str(), 12345, 12345), 0);
  const std::string error = "camera \"" + named.name() + "\", shared memory " + named.object() +
                            ": it belongs to another user: choose another name";
  EXPECT_EQ(named.error_of(), error);
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::even_in_use), error);
  EXPECT_EQ(listed(named.name()).error, error);
  ASSERT_EQ(chown(named.file().c_str(), 0, 0), 0);
}

TEST(SharedCamera, IsNotThereUntilItIsMade) {
  NamedCamera named;
  const std::string error = "there is no camera \"" + named.name() +
                            "\": a program makes it that runs with name=" + named.name();
  EXPECT_EQ(SharedCamera::open(named.name(), Role::observer).error, error);
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), error);
  EXPECT_EQ(listed(named.name()).name, "");
}

TEST(SharedCamera, HasANameOfLettersAndDigits) {
  for (const char* const name : {"", "a/b", "../a", "a b", "a.b"}) {
    EXPECT_EQ(SharedCamera::open_or_make(name, {}, Role::program).error,
              std::string("there is no camera of the name \"") + name +
                  "\": a name has up to 32 letters, digits, - and _");
  }
}

TEST(SharedCamera, OfAnotherVersionIsRefusedAndCanBeRemoved) {
  using kelvo::sim::state::Header;
  NamedCamera named;
  named.use();
  std::filesystem::path folder = named.use()->settings().files;
  write(named.file(), offsetof(Header, version), 0);
  const std::string error = "camera \"" + named.name() + "\", shared memory " + named.object() +
                            ": another version of the simulated camera has made it: remove it with "
                            "kelvo-sim remove " +
                            named.name() + ", or choose another name";
  EXPECT_EQ(named.error_of(), error);
  EXPECT_EQ(SharedCamera::open(named.name(), Role::observer).error, error);
  EXPECT_EQ(listed(named.name()).error, error);
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), "");
  EXPECT_FALSE(std::filesystem::exists(folder));
  EXPECT_EQ(named.error_of(), "");
}

TEST(SharedCamera, IsNotMistakenForSomethingElse) {
  NamedCamera named;
  std::ofstream(named.file()) << std::string(100'000, 'x');
  EXPECT_NE(named.error_of().find(": it is no camera: "), std::string::npos) << named.error_of();
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), "");
}

TEST(SharedCamera, ThatWasNotFinishedIsMadeAnew) {
  NamedCamera named;
  std::ofstream(named.file()) << std::string(100'000, '\0');
  EXPECT_NE(SharedCamera::open(named.name(), Role::program).error.find(": it is not finished: "),
            std::string::npos);
  EXPECT_TRUE(SharedCamera::open_or_make(named.name(), {}, Role::program).made);
}

TEST(SharedCamera, NeedsRoomForAllOfIt) {
  NamedCamera named;
  Child child([&] {
    // In the place of a full file system.
    signal(SIGXFSZ, SIG_IGN);
    const rlimit little{4096, 4096};
    setrlimit(RLIMIT_FSIZE, &little);
    const std::string error = named.error_of();
    return error.find(": no room for ") != std::string::npos &&
                   error.ends_with("): make room in /dev/shm") &&
                   !std::filesystem::exists(named.file())
               ? 0
               : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST(SharedCamera, KeepsItsPrivateFolderUntilItIsRemoved) {
  NamedCamera named;
  const std::filesystem::path folder = named.use()->settings().files;
  EXPECT_EQ(folder, named.place() / named.object().substr(1));
  std::ofstream(folder / "record") << "kept";
  EXPECT_TRUE(std::filesystem::exists(folder / "record"));
  EXPECT_EQ(named.use()->settings().files, folder);
  EXPECT_TRUE(std::filesystem::exists(folder / "record"));
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), "");
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST(SharedCamera, BeginsWithAnEmptyPrivateFolder) {
  NamedCamera named;
  const std::filesystem::path folder = named.place() / named.object().substr(1);
  std::filesystem::create_directories(folder / "of an earlier one");
  EXPECT_EQ(named.use()->settings().files, folder);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST(SharedCamera, DoesNotTakeAFolderThatIsNotItsUsers) {
  NamedCamera named;
  const std::filesystem::path folder = named.place() / named.object().substr(1);
  std::filesystem::create_directory_symlink(named.place(), folder);
  EXPECT_EQ(named.error_of(), "camera \"" + named.name() + "\": cannot make its folder " +
                                  folder.string() +
                                  ": File exists: make way for it, or name another place with "
                                  "XDG_RUNTIME_DIR");
  EXPECT_FALSE(std::filesystem::exists(named.file()));
}

TEST(SharedCamera, LeavesAFolderAloneThatWasNamed) {
  NamedCamera named;
  WantedSettings wanted;
  wanted.files = named.place().string();
  named.use(wanted);
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), "");
  EXPECT_TRUE(std::filesystem::exists(named.place()));
}

TEST(SharedCamera, IsRemovedFromUnderThoseWhoOnlyLookIn) {
  NamedCamera named;
  named.use();
  const auto observed = SharedCamera::open(named.name(), kelvo::sim::Role::observer).camera;
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), "");
  EXPECT_FALSE(observed->exists());
}

TEST(SharedCamera, IsNotRemovedFromUnderThoseWhoUseIt) {
  NamedCamera named;
  const auto camera = named.use();
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused),
            "camera \"" + named.name() + "\" is in use by process " + std::to_string(getpid()) +
                ": end that first, or remove it by force");
  EXPECT_TRUE(camera->exists());
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::even_in_use), "");
  EXPECT_FALSE(camera->exists());
  camera->change()->clock.advance(std::chrono::hours(1));
  EXPECT_LT(named.use()->snapshot().clock.now(), std::chrono::hours(1));
}

TEST(SharedCamera, HasOneBusLockThatGoesWithIt) {
  NamedCamera named;
  auto camera = named.use();
  const key_t key = camera->bus_key();
  ASSERT_GT(key, 0);
  EXPECT_EQ(named.use()->bus_key(), key);
  EXPECT_EQ(ftok(camera->settings().files.c_str(), 'k'), key);
  ASSERT_GE(semget(key, 1, IPC_CREAT | 0600), 0);
  camera.reset();
  EXPECT_EQ(SharedCamera::remove(named.name(), Removal::if_unused), "");
  EXPECT_EQ(semget(key, 0, 0), -1);
}

TEST(CameraList, TellsWhoUsesACamera) {
  NamedCamera named;
  const auto camera = named.use();
  const auto observer = SharedCamera::open(named.name(), Role::observer);
  const CameraEntry entry = listed(named.name());
  EXPECT_EQ(entry.name, named.name());
  EXPECT_EQ(entry.error, "");
  EXPECT_EQ(entry.made, camera->made());
  const auto age = std::chrono::system_clock::now() - entry.made;
  EXPECT_TRUE(age >= age.zero() && age < std::chrono::minutes(5));
  ASSERT_EQ(entry.processes.size(), 2u);
  EXPECT_EQ(entry.processes[0].process, getpid());
  EXPECT_EQ(entry.processes[0].role, Role::program);
  EXPECT_EQ(entry.processes[1].role, Role::observer);
  EXPECT_EQ(camera->processes().size(), 2u);
}

TEST(CameraList, IsInTheOrderOfTheNames) {
  NamedCamera named;
  named.use();
  const std::string other = named.name() + "-b";
  SharedCamera::open_or_make(other, {}, Role::program);
  const auto cameras = SharedCamera::list().cameras;
  EXPECT_TRUE(std::is_sorted(cameras.begin(), cameras.end(),
                             [](const auto& a, const auto& b) { return a.name < b.name; }));
  EXPECT_EQ(listed(other).name, other);
  EXPECT_TRUE(listed(other).processes.empty());
  EXPECT_EQ(SharedCamera::remove(other, Removal::if_unused), "");
}

}  // namespace
