#include "sim/trace/recording.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

namespace {

using kelvo::sim::trace::Act;
using kelvo::sim::trace::Event;
using kelvo::sim::trace::OpenedRecording;
using kelvo::sim::trace::Reader;
using kelvo::sim::trace::Recording;
using kelvo::sim::trace::Wire;

Event opening() {
  Event event{};
  event.wire = Wire::head;
  event.act = Act::open;
  return event;
}

/// A shared memory object that goes away with the test.
class Object {
 public:
  explicit Object(long size) : name_("/kelvo-test-" + std::to_string(getpid())) {
    const int descriptor = shm_open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL, 0600);
    EXPECT_EQ(ftruncate(descriptor, size), 0);
    close(descriptor);
  }
  ~Object() { shm_unlink(name_.c_str()); }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

TEST(Recording, IsReadByItsMakerAndWrittenByOthers) {
  const OpenedRecording made = Recording::make();
  ASSERT_EQ(made.error, "");
  const pid_t child = fork();
  if (child == 0) {
    const OpenedRecording opened = Recording::open(made.recording->name());
    opened.recording->record(opening());
    _exit(0);
  }
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  made.recording->record(opening());
  Reader reader(made.recording->ring());
  Event event{};
  ASSERT_TRUE(reader.next(event));
  EXPECT_EQ(event.pid, child);
  EXPECT_EQ(event.process, 1u);
  EXPECT_EQ(event.wire, Wire::head);
  EXPECT_EQ(event.family, -1);
  ASSERT_TRUE(reader.next(event));
  EXPECT_EQ(event.pid, getpid());
  EXPECT_EQ(event.process, 2u);
  EXPECT_FALSE(reader.next(event));
}

TEST(Recording, GivesAForkedProcessANumberOfItsOwn) {
  const OpenedRecording made = Recording::make();
  made.recording->record(opening());
  const pid_t child = fork();
  if (child == 0) {
    made.recording->record(opening());
    made.recording->record(opening());
    _exit(0);
  }
  ASSERT_EQ(waitpid(child, nullptr, 0), child);
  made.recording->record(opening());
  Reader reader(made.recording->ring());
  std::string numbers;
  for (Event event{}; reader.next(event);) numbers += std::to_string(event.process);
  EXPECT_EQ(numbers, "1221");
}

TEST(Recording, HasOneNumberForAllThreads) {
  const OpenedRecording made = Recording::make();
  made.recording->record(opening());
  std::thread([&] { made.recording->record(opening()); }).join();
  Reader reader(made.recording->ring());
  for (Event event{}; reader.next(event);) EXPECT_EQ(event.process, 1u);
}

TEST(Recording, GoesAwayWithItsMaker) {
  std::string name;
  {
    const OpenedRecording made = Recording::make();
    name = made.recording->name();
    EXPECT_EQ(Recording::open(name).error, "");
    EXPECT_EQ(Recording::open(name).error, "");
  }
  const OpenedRecording gone = Recording::open(name);
  EXPECT_EQ(gone.recording, nullptr);
  EXPECT_EQ(gone.error, "shared memory " + name + ": No such file or directory");
}

TEST(Recording, IsNothingThatOnlyHasItsName) {
  const Object empty(0);
  EXPECT_EQ(Recording::open(empty.name()).error,
            "shared memory " + empty.name() + ": it is no recording");
}

TEST(Recording, IsNothingThatOnlyHasItsSize) {
  const OpenedRecording made = Recording::make();
  const int descriptor = shm_open(made.recording->name().c_str(), O_RDWR, 0);
  const long size = lseek(descriptor, 0, SEEK_END);
  close(descriptor);
  const Object zeros(size);
  EXPECT_EQ(Recording::open(zeros.name()).error,
            "shared memory " + zeros.name() + ": it is a recording of another version");
}

}  // namespace
