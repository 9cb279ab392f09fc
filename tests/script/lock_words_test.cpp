#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/sem.h>

#include <cerrno>
#include <string>
#include <vector>

#include "script/script.h"
#include "script/transcript.h"

namespace {

using kelvo::test::Call;
using kelvo::test::Script;
using kelvo::test::with_lock_words;
using Lines = std::vector<std::string>;

constexpr key_t key = 0x4b454c56;

int take(int set) {
  sembuf operations[2] = {{0, 0, SEM_UNDO}, {0, 1, SEM_UNDO}};
  return semop(set, operations, 2);
}

int give_back(int set) {
  sembuf operation = {0, -1, SEM_UNDO};
  return semop(set, &operation, 1);
}

int find() { return semget(ftok("/lib/libkelvo.so", 0), 0, 0); }

TEST(LockWords, StandForTheWholeOfTakingAndGivingBack) {
  Script script;
  EXPECT_EQ(take(find()), 0);
  EXPECT_EQ(script.semaphore_value(), 1);
  const int set = find();
  EXPECT_EQ(semctl(set, 0, GETVAL), 1);
  EXPECT_EQ(give_back(set), 0);
  EXPECT_EQ(script.semaphore_value(), 0);
  EXPECT_EQ(script.transcript(), "lock\nunlock\n");
}

TEST(LockWords, DoNotHideAFailedStep) {
  Script script;
  script.fail(Call::semop, 1);
  EXPECT_EQ(take(find()), -1);
  EXPECT_EQ(script.transcript(), R"(ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0
semop 0/UNDO +1/UNDO -> EIO
)");
}

TEST(LockWords, StandForUnbrokenRunsOnly) {
  const Lines broken = {"ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0", "usleep 1",
                        "semop 0/UNDO +1/UNDO"};
  EXPECT_EQ(with_lock_words(broken), broken);
  const Lines turned = {"semget 0x4b454c56 0 0", "ftok /lib/libkelvo.so 0", "semop 0/UNDO +1/UNDO"};
  EXPECT_EQ(with_lock_words(turned), turned);
  const Lines cut_short = {"ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0"};
  EXPECT_EQ(with_lock_words(cut_short), cut_short);
}

TEST(LockWords, StandForNoOtherKeyFlagsOrOperations) {
  const Lines other_key = {"ftok /lib/libkelvo.so 0", "semget 0xffffffff 0 0",
                           "semop 0/UNDO +1/UNDO"};
  EXPECT_EQ(with_lock_words(other_key), other_key);
  const Lines other_project = {"ftok /lib/libkelvo.so 1", "semget 0x4b454c56 0 0",
                               "semop 0/UNDO +1/UNDO"};
  EXPECT_EQ(with_lock_words(other_project), other_project);
  const Lines no_undo = {"ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0", "semop 0 +1"};
  EXPECT_EQ(with_lock_words(no_undo), no_undo);
  const Lines unasked = {"ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0", "semop -1/UNDO"};
  EXPECT_EQ(with_lock_words(unasked), unasked);
}

TEST(LockWords, LeaveTheirNeighboursAlone) {
  const Lines lines = {
      "ftok /lib/libkelvo.so 0", "ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0",
      "semop 0/UNDO +1/UNDO",    "ftok /lib/libkelvo.so 0", "semget 0x4b454c56 0 0",
      "semctl GETVAL",           "semop -1/UNDO",           "semctl GETVAL"};
  EXPECT_EQ(with_lock_words(lines),
            (Lines{"ftok /lib/libkelvo.so 0", "lock", "unlock", "semctl GETVAL"}));
}

TEST(ScriptedSemaphore, IsMadeWhenItIsMissing) {
  Script script;
  script.semaphore(false, 0);
  EXPECT_EQ(semget(key, 0, 0), -1);
  EXPECT_EQ(errno, ENOENT);
  const int set = semget(key, 1, IPC_CREAT | 0666);
  EXPECT_GE(set, 0);
  EXPECT_EQ(semctl(set, 0, SETVAL, 3), 0);
  EXPECT_EQ(semctl(set, 0, GETVAL), 3);
  EXPECT_EQ(semget(key, 0, 0), set);
  EXPECT_EQ(script.transcript(), R"(semget 0x4b454c56 0 0 -> ENOENT
semget 0x4b454c56 1 01666
semctl SETVAL 3
semctl GETVAL
semget 0x4b454c56 0 0
)");
}

TEST(ScriptedSemaphore, RefusesAWaitThatNobodyWouldEnd) {
  Script script;
  script.semaphore(true, 1);
  const int set = semget(key, 0, 0);
  EXPECT_EQ(take(set), -1);
  EXPECT_EQ(errno, EDEADLK);
  EXPECT_EQ(script.semaphore_value(), 1);
  EXPECT_EQ(give_back(set), 0);
  EXPECT_EQ(give_back(set), -1);
  EXPECT_EQ(errno, EDEADLK);
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(ScriptedSemaphore, KnowsItsOwnSetAlone) {
  Script script;
  EXPECT_EQ(take(-1), -1);
  EXPECT_EQ(errno, EINVAL);
  EXPECT_EQ(semctl(-1, 0, GETVAL), -1);
  EXPECT_EQ(semctl(-1, 0, SETVAL, 1), -1);
  EXPECT_EQ(script.semaphore_value(), 0);
}

}  // namespace
