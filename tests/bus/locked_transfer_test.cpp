#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

const std::vector<std::string> lock_steps = {"ftok", "semget", "semctl", "semop"};

void fail_every_lock_call(Script& script) {
  script.fail(Call::ftok, 1, forever, ENOENT);
  script.fail(Call::semget, 1, forever, EACCES);
  script.fail(Call::semctl, 1, forever, EINVAL);
  script.fail(Call::semop, 1, forever, EINVAL);
}

TEST(LockedTransfer, FindsTheLockAnewForEveryLockAndUnlock) {
  Script script;
  WriteCommand(0xE2, 1, 2, 3);
  WriteCommand(0xE2, 1, 2, 3);
  EXPECT_EQ(script.count(Call::ftok), 4);
  EXPECT_EQ(script.count(Call::semget), 4);
  EXPECT_EQ(script.count(Call::semctl), 2);
  EXPECT_EQ(script.count(Call::semop), 4);
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(LockedTransfer, CreatesTheLockOnAFreshSystem) {
  Script script;
  script.semaphore(false, 0);
  script.fail(Call::semget, 1, 1, ENOENT);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0 -> ENOENT
semget 0x4b454c56 1 01666
semctl SETVAL 0
semop 0/UNDO +1/UNDO
spi_renesas: 31 01 02 03 A0
unlock
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(LockedTransfer, IsMadeUnlockedWhenTheLockCannotBeTaken) {
  Script script;
  script.fail(Call::semop, 1, 1, EINTR);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0
semop 0/UNDO +1/UNDO -> EINTR
spi_renesas: 31 01 02 03 A0
ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0
semctl GETVAL
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
  EXPECT_EQ(script.semaphore_value(), 0);
}

TEST(LockedTransfer, UsesTheFallbackKeyWhenTheLibraryLiesElsewhere) {
  Script script;
  script.fail(Call::ftok, 1, forever, ENOENT);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
ftok /lib/libkelvo.so 0 -> ENOENT
semget 0xffffffff 0 0
semop 0/UNDO +1/UNDO
spi_renesas: 31 01 02 03 A0
ftok /lib/libkelvo.so 0 -> ENOENT
semget 0xffffffff 0 0
semctl GETVAL
semop -1/UNDO
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(LockedTransfer, IsMadeUnlockedWhenTheSetCannotBeHad) {
  Script script;
  script.fail(Call::semget, 1, forever, EACCES);
  script.fail(Call::semctl, 1, forever, EINVAL);
  script.fail(Call::semop, 1, forever, EINVAL);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0 -> EACCES
semget 0x4b454c56 1 01666 -> EACCES
semop 0/UNDO +1/UNDO -> EINVAL
spi_renesas: 31 01 02 03 A0
ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0 -> EACCES
semget 0x4b454c56 1 01666 -> EACCES
semctl GETVAL -> EINVAL
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
}

TEST(LockedTransfer, LeavesTheLockTakenWhenItCannotBeGivenBack) {
  Script script;
  script.fail(Call::semop, 2, 1, EINVAL);
  EXPECT_EQ(WriteCommand(0x31, 1, 2, 3), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 31 01 02 03 A0
ftok /lib/libkelvo.so 0
semget 0x4b454c56 0 0
semctl GETVAL
semop -1/UNDO -> EINVAL
out "Addr:31 0x00 0x00 0x00 0x00 0x00 \n"
)");
  EXPECT_EQ(script.semaphore_value(), 1);
}

TEST(LockedTransfer, OfACommandFrameDoesWithoutTheLock) {
  Script script;
  SetLensType(7);
  fail_every_lock_call(script);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 5), 0);
  EXPECT_EQ(script.transcript_without(lock_steps),
            "open /dev/spi_renesas\n"
            "spi_renesas: 01 02 03 04 05 0F 00\n");
  EXPECT_EQ(GetLensType(), 7);
}

TEST(LockedTransfer, OfABootLoaderReadDoesWithoutTheLock) {
  Script script;
  script.reply({0xC3}, {0, 0, 0x12, 0x34, 0});
  fail_every_lock_call(script);
  std::uint8_t rx[5] = {};
  EXPECT_EQ(ReadSpi(0xC3, rx, 5), -1);
  EXPECT_EQ(script.transcript_without(lock_steps),
            "open /dev/spi_renesas\n"
            "spi_renesas: C3 00 00 00 A0\n");
  EXPECT_EQ(rx[2], 0x12);
  EXPECT_EQ(rx[3], 0x34);
}

TEST(LockedTransfer, OfAPayloadDoesWithoutTheLock) {
  Script script;
  fail_every_lock_call(script);
  const std::uint8_t data[3] = {7, 8, 9};
  EXPECT_EQ(WriteData(0x21, 3, data), 0);
  EXPECT_EQ(script.transcript_without({"ftok", "semget", "semctl", "semop", "out", "usleep"}),
            "open /dev/spi_renesas\n"
            "spi_renesas: E1 11 21 00 A0\n"
            "spi_renesas: 07 08 09\n");
}

TEST(LockedTransfer, OfASpeedRequestDoesWithoutTheLock) {
  Script script;
  script.fail(Call::open, 1, 1, ENOENT);
  fail_every_lock_call(script);
  EXPECT_EQ(setSPISpeed(250000), 0);
  EXPECT_EQ(script.transcript_without(lock_steps),
            R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
fd -1: speed 250000 -> EBADF
)");
}

}  // namespace
