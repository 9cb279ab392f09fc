#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

constexpr std::uint32_t bus_key = 0x4b454c56;

TEST(MakeSem, AttachesToAnExistingSetAndLeavesItsValueAlone) {
  Script script;
  script.semaphore(true, 1);
  EXPECT_GE(makeSem(bus_key), 0);
  EXPECT_EQ(script.transcript(), "semget 0x4b454c56 0 0\n");
  EXPECT_EQ(script.semaphore_value(), 1);
}

TEST(MakeSem, TakesIdentifierZeroForAnExistingSet) {
  Script script;
  script.result(Call::semget, 1, 0);
  EXPECT_EQ(makeSem(bus_key), 0);
  EXPECT_EQ(script.transcript(), "semget 0x4b454c56 0 0 -> 0\n");
}

TEST(MakeSem, CreatesAMissingSetWithOneFreeMember) {
  Script script;
  script.semaphore(false, 0);
  script.fail(Call::semget, 1, 1, ENOENT);
  EXPECT_GE(makeSem(bus_key), 0);
  EXPECT_EQ(script.transcript(),
            R"(semget 0x4b454c56 0 0 -> ENOENT
semget 0x4b454c56 1 01666
semctl SETVAL 0
)");
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(MakeSem, GivesTheSameIdentifierWhenItCreatesAndWhenItAttaches) {
  Script script;
  script.semaphore(false, 0);
  const int32_t created = makeSem(bus_key);
  script.transcript();
  EXPECT_EQ(makeSem(bus_key), created);
  EXPECT_EQ(script.transcript(), "semget 0x4b454c56 0 0\n");
}

TEST(MakeSem, TriesToCreateWhateverTheReasonForNotAttaching) {
  Script script;
  script.fail(Call::semget, 1, 1, EACCES);
  EXPECT_GE(makeSem(bus_key), 0);
  EXPECT_EQ(script.transcript(),
            R"(semget 0x4b454c56 0 0 -> EACCES
semget 0x4b454c56 1 01666
semctl SETVAL 0
)");
}

TEST(MakeSem, GivesMinusOneWhenTheSetCannotBeCreated) {
  Script script;
  script.semaphore(false, 0);
  script.fail(Call::semget, 1, forever, ENOSPC);
  EXPECT_EQ(makeSem(bus_key), -1);
  EXPECT_EQ(script.transcript(),
            R"(semget 0x4b454c56 0 0 -> ENOSPC
semget 0x4b454c56 1 01666 -> ENOSPC
)");
}

TEST(MakeSem, GivesMinusOneWhenTheNewSetCannotBeInitialised) {
  Script script;
  script.semaphore(false, 0);
  script.fail(Call::semget, 1, 1, ENOENT);
  script.fail(Call::semctl, 1, 1, EACCES);
  EXPECT_EQ(makeSem(bus_key), -1);
  EXPECT_EQ(script.transcript(),
            R"(semget 0x4b454c56 0 0 -> ENOENT
semget 0x4b454c56 1 01666
semctl SETVAL 0 -> EACCES
)");
}

TEST(LockSem, WaitsForZeroAndTakesInOneUndoableRequest) {
  Script script;
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  EXPECT_EQ(lockSem(semid), 0);
  EXPECT_EQ(script.transcript(), "semop 0/UNDO +1/UNDO\n");
  EXPECT_EQ(script.semaphore_value(), 1);
}

TEST(LockSem, ReturnsAFailedRequestWithoutAnotherTry) {
  Script script;
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  script.fail(Call::semop, 1, 1, EINTR);
  EXPECT_EQ(lockSem(semid), -1);
  EXPECT_EQ(script.transcript(), "semop 0/UNDO +1/UNDO -> EINTR\n");
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(UnlockSem, GivesBackAHeldLock) {
  Script script;
  script.semaphore(true, 1);
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  EXPECT_EQ(unlockSem(semid), 0);
  EXPECT_EQ(script.transcript(), "semctl GETVAL\nsemop -1/UNDO\n");
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(UnlockSem, TakesOneFromAnyPositiveValue) {
  Script script;
  script.semaphore(true, 2);
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  EXPECT_EQ(unlockSem(semid), 0);
  EXPECT_EQ(script.transcript(), "semctl GETVAL\nsemop -1/UNDO\n");
  EXPECT_EQ(script.semaphore_value(), 1);
}

TEST(UnlockSem, RefusesAFreeLock) {
  Script script;
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  EXPECT_EQ(unlockSem(semid), -1);
  EXPECT_EQ(script.transcript(), "semctl GETVAL\n");
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(UnlockSem, TwiceInARowFreesTheBusOnceAndLeavesItFree) {
  Script script;
  const int32_t semid = makeSem(bus_key);
  EXPECT_EQ(lockSem(semid), 0);
  script.transcript();
  EXPECT_EQ(unlockSem(semid), 0);
  EXPECT_EQ(script.semaphore_value(), 0);
  EXPECT_EQ(unlockSem(semid), -1);
  EXPECT_EQ(script.semaphore_value(), 0);
  EXPECT_EQ(script.transcript(), "semctl GETVAL\nsemop -1/UNDO\nsemctl GETVAL\n");
}

TEST(UnlockSem, DoesNotTouchALockWhoseValueCannotBeRead) {
  Script script;
  script.semaphore(true, 1);
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  script.fail(Call::semctl, 1, 1, EACCES);
  EXPECT_EQ(unlockSem(semid), -1);
  EXPECT_EQ(script.transcript(), "semctl GETVAL -> EACCES\n");
  EXPECT_EQ(script.semaphore_value(), 1);
}

TEST(UnlockSem, ReturnsAFailedRequestWithoutAnotherTry) {
  Script script;
  script.semaphore(true, 1);
  const int32_t semid = makeSem(bus_key);
  script.transcript();
  script.fail(Call::semop, 1, 1, EINVAL);
  EXPECT_EQ(unlockSem(semid), -1);
  EXPECT_EQ(script.transcript(), "semctl GETVAL\nsemop -1/UNDO -> EINVAL\n");
  EXPECT_EQ(script.semaphore_value(), 1);
}

TEST(Delay, OfNothingAsksForNoTime) {
  Script script;
  EXPECT_EQ(delay_ms(0), 0);
  EXPECT_EQ(script.transcript(), "usleep 0\n");
}

TEST(Delay, SleepsAThousandMicrosecondsForEachMillisecond) {
  Script script;
  EXPECT_EQ(delay_ms(1), 0);
  EXPECT_EQ(delay_ms(500), 0);
  EXPECT_EQ(delay_ms(2000), 0);
  EXPECT_EQ(script.transcript(), "usleep 1000\nusleep 500000\nusleep 2000000\n");
}

TEST(Delay, FormsTheMicrosecondsInThirtyTwoBits) {
  Script script;
  EXPECT_EQ(delay_ms(4294967), 0);
  EXPECT_EQ(delay_ms(4294968), 0);
  EXPECT_EQ(delay_ms(4294967295U), 0);
  EXPECT_EQ(script.transcript(), "usleep 4294967000\nusleep 704\nusleep 4294966296\n");
}

TEST(Delay, ReturnsTheResultOfTheSleep) {
  Script script;
  script.fail(Call::usleep, 1, 1, EINTR);
  EXPECT_EQ(delay_ms(7), -1);
  EXPECT_EQ(delay_ms(7), 0);
  EXPECT_EQ(script.transcript(), "usleep 7000 -> EINTR\nusleep 7000\n");
}

}  // namespace
