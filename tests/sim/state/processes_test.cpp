// Several processes at one camera, and processes that die at it.
#include <gtest/gtest.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "sim/state/layout.h"
#include "sim/state/named_camera.h"
#include "sim/state/object.h"

namespace {

using kelvo::sim::Extent;
using kelvo::sim::SharedCamera;
using kelvo::sim::camera::Camera;
using kelvo::test::Child;
using kelvo::test::NamedCamera;
using kelvo::test::sleep_clock;
using namespace std::chrono_literals;

/// A change that goes to many places: each of what consistent() compares grows by one.
void change_all(Camera& camera) {
  const std::array<std::uint8_t, 1> short_word{};
  std::array<std::uint8_t, 7> frame{0x12, 0x34};
  camera.transfer_pt5111(short_word, {});
  camera.clock.advance(1ns);
  camera.transfer_lens(frame, frame, {});
}

std::uint64_t steps(const Camera& camera) { return camera.pt5111_words(); }

bool consistent(const Camera& camera) {
  const auto count = static_cast<std::uint64_t>(camera.clock.now().count());
  if (count == 0) return camera.boots().total() == 0 && camera.violations().total() == 0;
  std::uint64_t frames = 0;
  for (const std::uint32_t kind : camera.boots().boot(1).frames) frames += kind;
  // One violation by the word and one by the frame.
  return camera.pt5111_words() == count && camera.violations().total() == 2 * count &&
         frames == count && camera.boots().boot(1).violations == count;
}

/// Whether somebody died in the middle of a change that nobody has taken back yet.
bool change_pending(const std::string& name) {
  using kelvo::sim::state::Object;
  Object object(name, Object::Missing::is_an_error);
  const auto* const layout = object.map();
  return layout->undo.count.load() != 0;
}

void wait_for(std::chrono::nanoseconds time) {
  const timespec length{0, time.count()};
  nanosleep(&length, nullptr);
}

TEST(SharedCameraProcesses, SeeEachOthersChanges) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  Child child([&] {
    named.use()->change()->clock.advance(7s);
    return 0;
  });
  EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(camera->snapshot().clock.now(), 7s);
}

TEST(SharedCameraProcesses, LoseNoChangeOfEachOther) {
  constexpr int changes = 2000;
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  const auto act = [&] {
    const auto own = named.use();
    for (int i = 0; i < changes; ++i) change_all(*own->change(Extent::one_call));
    return 0;
  };
  Child a(act), b(act), c(act);
  EXPECT_EQ(act(), 0);
  EXPECT_EQ(a.wait() + b.wait() + c.wait(), 0);
  EXPECT_TRUE(consistent(camera->snapshot()));
  EXPECT_EQ(steps(camera->snapshot()), 4u * changes);
}

TEST(SharedCameraProcesses, GoOnThroughAFork) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  Child child([&] {
    camera->change()->clock.advance(1s);
    return static_cast<int>(camera->processes().size());
  });
  EXPECT_EQ(child.wait(), 2);
  EXPECT_EQ(camera->snapshot().clock.now(), 1s);
  EXPECT_EQ(camera->processes().size(), 1u);
}

TEST(SharedCameraProcesses, AreNotKeptByTheirChildren) {
  NamedCamera named;
  named.use();
  // The middle one forks and dies with the lock; its child lives on.
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  Child middle([&]() -> int {
    const auto camera = named.use();
    const pid_t grandchild = fork();
    if (grandchild == 0) {
      sleep(10);
      _exit(0);
    }
    const auto change = camera->change();
    if (write(ready[1], &grandchild, sizeof grandchild) != sizeof grandchild) return 1;
    pause();
    return 1;
  });
  pid_t grandchild = 0;
  ASSERT_EQ(read(ready[0], &grandchild, sizeof grandchild), ssize_t{sizeof grandchild});
  middle.kill();
  EXPECT_EQ(middle.wait(), -SIGKILL);
  EXPECT_EQ(named.use()->processes().size(), 2u);
  kill(grandchild, SIGKILL);
}

TEST(SharedCameraProcesses, TakeAChangeBack) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  change_all(*camera->change());
  for (const Extent extent : {Extent::one_call, Extent::anything}) {
    auto change = camera->change(extent);
    change_all(*change);
    change.take_back();
  }
  EXPECT_TRUE(consistent(camera->snapshot()));
  EXPECT_EQ(steps(camera->snapshot()), 1u);
}

TEST(SharedCameraProcesses, SayForWhomTheyWaitWhenHeIsStoppedInTheMiddle) {
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  pid_t process = 0;
  Child child([&] {
    const auto change = camera->change();
    process = getpid();
    if (write(ready[1], &process, sizeof process) != sizeof process) return 1;
    return raise(SIGSTOP);
  });
  ASSERT_EQ(read(ready[0], &process, sizeof process), ssize_t{sizeof process});
  std::thread helper([&] {
    wait_for(999ms);
    wait_for(999ms);
    kill(process, SIGCONT);
  });
  testing::internal::CaptureStderr();
  camera->change()->clock.advance(1s);
  EXPECT_EQ(
      testing::internal::GetCapturedStderr(),
      "KELVO_SIM: process " + std::to_string(process) +
          " has had the camera to itself for a second: let it go on (kill -CONT), or end it\n");
  helper.join();
  EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(camera->snapshot().clock.now(), 1s);
}

TEST(SharedCameraProcesses, LeaveTheCameraAsItWasWhenTheyDieInTheMiddle) {
  for (const Extent extent : {Extent::one_call, Extent::anything}) {
    NamedCamera named;
    const auto camera = named.use(sleep_clock());
    change_all(*camera->change());
    Child child([&] {
      const auto change = camera->change(extent);
      change_all(*change);
      kill(getpid(), SIGKILL);
      return 0;
    });
    EXPECT_EQ(child.wait(), -SIGKILL);
    EXPECT_TRUE(change_pending(named.name()));
    EXPECT_EQ(steps(camera->snapshot()), 1u);
    EXPECT_TRUE(consistent(camera->snapshot()));
    EXPECT_FALSE(change_pending(named.name()));
  }
}

TEST(SharedCameraProcesses, LeaveTheCameraBeforeOrAfterAChangeWheneverTheyDie) {
  constexpr int deaths = 150;
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  std::minstd_rand random(20);
  std::uniform_int_distribution<int> moment(0, 1'500'000);
  int in_the_middle = 0;
  std::uint64_t before = 0;
  int under_way[2];
  ASSERT_EQ(pipe(under_way), 0);
  for (int i = 0; i < deaths; ++i) {
    const Extent extent = i % 2 == 0 ? Extent::one_call : Extent::anything;
    Child child([&]() -> int {
      change_all(*camera->change(extent));
      if (write(under_way[1], ".", 1) != 1) return 1;
      while (true) change_all(*camera->change(extent));
    });
    char word = 0;
    ASSERT_EQ(read(under_way[0], &word, 1), 1);
    wait_for(std::chrono::nanoseconds(moment(random)));
    child.kill();
    ASSERT_EQ(child.wait(), -SIGKILL);
    if (change_pending(named.name())) ++in_the_middle;
    const Camera now = camera->snapshot();
    ASSERT_TRUE(consistent(now)) << "death " << i;
    ASSERT_GT(steps(now), before);
    before = steps(now);
  }
  EXPECT_GT(in_the_middle, 0);
}

TEST(SharedCameraProcesses, DieWhileOthersGoOn) {
  constexpr int deaths = 40;
  NamedCamera named;
  const auto camera = named.use(sleep_clock());
  const auto forever = [&]() -> int {
    while (true) {
      const auto change = camera->change(Extent::one_call);
      change_all(*change);
      if (!consistent(*change)) return 1;
    }
  };
  Child survivor(forever);
  for (int i = 0; i < deaths; ++i) {
    Child child(forever);
    wait_for(1ms);
    child.kill();
    ASSERT_EQ(child.wait(), -SIGKILL);
  }
  const std::uint64_t before = steps(camera->snapshot());
  for (int i = 0; i < 1000 && steps(camera->snapshot()) == before; ++i) wait_for(10ms);
  EXPECT_GT(steps(camera->snapshot()), before);
  survivor.kill();
  EXPECT_EQ(survivor.wait(), -SIGKILL);
  EXPECT_TRUE(consistent(camera->snapshot()));
}

TEST(SharedCameraProcesses, MakeOneCameraTogether) {
  NamedCamera named;
  const auto act = [&] {
    const auto opened =
        SharedCamera::open_or_make(named.name(), sleep_clock(), kelvo::sim::Role::program);
    if (opened.camera == nullptr) return 2;
    change_all(*opened.camera->change());
    return opened.made ? 1 : 0;
  };
  Child a(act), b(act), c(act), d(act);
  EXPECT_EQ(a.wait() + b.wait() + c.wait() + d.wait(), 1);
  EXPECT_EQ(steps(named.use()->snapshot()), 4u);
}

TEST(SharedCameraProcesses, MayBeManyButNotTooMany) {
  NamedCamera named;
  std::vector<std::unique_ptr<SharedCamera>> all;
  for (int i = 0; i < 256; ++i) all.push_back(named.use());
  EXPECT_EQ(named.error_of(), "camera \"" + named.name() +
                                  "\" is used by 256 processes, and more cannot: end some of them");
  all.pop_back();
  EXPECT_EQ(named.error_of(), "");
}

}  // namespace
