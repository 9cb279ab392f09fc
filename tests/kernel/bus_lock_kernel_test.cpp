#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/sem.h>
#include <unistd.h>

#include <cstdint>
#include <optional>

#include "kelvo.h"
#include "kernel/kernel_host.h"
#include "kernel/neighbour.h"
#include "sim/seam/real.h"

namespace {

using kelvo::test::eventually;
using kelvo::test::KernelHost;
using kelvo::test::Neighbour;
using Tell = Neighbour::Tell;

class KernelLock : public testing::Test {
 protected:
  void SetUp() override { kelvo::test::limit_waits(30); }

  std::uint32_t make() { return static_cast<std::uint32_t>(makeSem(host_.key())); }

  KernelHost host_;
};

TEST_F(KernelLock, IsMadeFreeAndOpenToEveryone) {
  const std::int32_t set = makeSem(host_.key());
  ASSERT_GE(set, 0);
  semid_ds description{};
  ASSERT_EQ(kelvo::sim::real().semctl(set, 0, IPC_STAT, &description), 0);
  EXPECT_EQ(description.sem_perm.mode & 0777, 0666U);
  EXPECT_EQ(description.sem_nsems, 1U);
  EXPECT_EQ(host_.value(), 0);
}

TEST_F(KernelLock, IsFoundAsItIsByASecondProcess) {
  const std::uint32_t set = make();
  ASSERT_EQ(lockSem(set), 0);
  Neighbour neighbour([&](const Tell& tell) { tell(makeSem(host_.key())); });
  EXPECT_EQ(neighbour.hear(), static_cast<std::int32_t>(set));
  EXPECT_TRUE(neighbour.ends());
  EXPECT_EQ(host_.value(), 1);
  EXPECT_EQ(unlockSem(set), 0);
}

TEST_F(KernelLock, MadeByASecondProcessIsFoundByTheFirst) {
  Neighbour neighbour([&](const Tell& tell) { tell(makeSem(host_.key())); });
  const std::optional<int> set = neighbour.hear();
  EXPECT_TRUE(neighbour.ends());
  ASSERT_TRUE(set.has_value());
  EXPECT_GE(*set, 0);
  EXPECT_EQ(makeSem(host_.key()), *set);
}

TEST_F(KernelLock, BlocksASecondProcessUntilTheFirstUnlocks) {
  const std::uint32_t set = make();
  ASSERT_EQ(lockSem(set), 0);
  Neighbour neighbour([&](const Tell& tell) {
    tell(lockSem(make()));
    tell(unlockSem(make()));
  });
  ASSERT_TRUE(eventually([&] { return host_.waiters() == 1; }));
  EXPECT_FALSE(neighbour.has_told());
  EXPECT_EQ(unlockSem(set), 0);
  EXPECT_EQ(neighbour.hear(), 0);
  EXPECT_EQ(neighbour.hear(), 0);
  EXPECT_TRUE(neighbour.ends());
  EXPECT_EQ(host_.waiters(), 0);
  EXPECT_EQ(host_.value(), 0);
}

TEST_F(KernelLock, BlocksUntilAHolderExitsWithoutUnlocking) {
  Neighbour holder([&](const Tell& tell) {
    tell(lockSem(make()));
    eventually([&] { return host_.waiters() == 1; });
  });
  ASSERT_EQ(holder.hear(), 0);
  EXPECT_EQ(lockSem(make()), 0);
  EXPECT_TRUE(holder.ends());
  EXPECT_EQ(host_.value(), 1);
  EXPECT_EQ(unlockSem(make()), 0);
}

TEST_F(KernelLock, OfAKilledHolderIsFreed) {
  Neighbour holder([&](const Tell& tell) {
    tell(lockSem(make()));
    pause();
  });
  ASSERT_EQ(holder.hear(), 0);
  ASSERT_EQ(host_.value(), 1);
  holder.kill();
  EXPECT_EQ(host_.value(), 0);
  EXPECT_EQ(lockSem(make()), 0);
  EXPECT_EQ(unlockSem(make()), 0);
}

TEST_F(KernelLock, OfAKilledHolderGoesToTheOneWhoWaits) {
  Neighbour holder([&](const Tell& tell) {
    tell(lockSem(make()));
    pause();
  });
  ASSERT_EQ(holder.hear(), 0);
  Neighbour waiting([&](const Tell& tell) { tell(lockSem(make())); });
  ASSERT_TRUE(eventually([&] { return host_.waiters() == 1; }));
  EXPECT_FALSE(waiting.has_told());
  holder.kill();
  EXPECT_EQ(waiting.hear(), 0);
  EXPECT_TRUE(waiting.ends());
}

TEST_F(KernelLock, IsFreedOnceByTwoUnlocksInARow) {
  const std::uint32_t set = make();
  ASSERT_EQ(lockSem(set), 0);
  EXPECT_EQ(unlockSem(set), 0);
  EXPECT_EQ(host_.value(), 0);
  EXPECT_EQ(unlockSem(set), -1);
  EXPECT_EQ(host_.value(), 0);
  EXPECT_EQ(lockSem(set), 0);
  EXPECT_EQ(unlockSem(set), 0);
}

TEST_F(KernelLock, LeavesNoDebtWithTheKernelAfterUnlocking) {
  // An adjustment that is left over would be made when this neighbour ends, under another's lock.
  Neighbour neighbour([&](const Tell& tell) {
    lockSem(make());
    tell(unlockSem(make()));
    eventually([&] { return host_.value() == 1; });
  });
  ASSERT_EQ(neighbour.hear(), 0);
  ASSERT_EQ(lockSem(make()), 0);
  EXPECT_TRUE(neighbour.ends());
  EXPECT_EQ(host_.value(), 1);
  EXPECT_EQ(unlockSem(make()), 0);
}

TEST_F(KernelLock, IsRefusedOnASetThatIsNotThere) {
  constexpr auto none = static_cast<std::uint32_t>(-1);
  EXPECT_EQ(lockSem(none), -1);
  EXPECT_EQ(unlockSem(none), -1);
  const std::uint32_t set = make();
  host_.remove_set();
  EXPECT_EQ(lockSem(set), -1);
  EXPECT_EQ(unlockSem(set), -1);
}

TEST_F(KernelLock, LetsAWaiterGoWhenItsSetIsRemoved) {
  ASSERT_EQ(lockSem(make()), 0);
  Neighbour neighbour([&](const Tell& tell) { tell(lockSem(make())); });
  ASSERT_TRUE(eventually([&] { return host_.waiters() == 1; }));
  host_.remove_set();
  EXPECT_EQ(neighbour.hear(), -1);
  EXPECT_TRUE(neighbour.ends());
}

TEST_F(KernelLock, HoldsBackACommandFrameUntilTheHolderUnlocks) {
  ASSERT_EQ(lockSem(make()), 0);
  Neighbour neighbour([&](const Tell& tell) {
    SetLensType(7);
    tell(SendCommand(1, 2, 3, 4, 5));
    tell(host_.transfers());
  });
  ASSERT_TRUE(eventually([&] { return host_.waiters() == 1; }));
  EXPECT_FALSE(neighbour.has_told());
  EXPECT_EQ(unlockSem(make()), 0);
  EXPECT_EQ(neighbour.hear(), 0);
  EXPECT_EQ(neighbour.hear(), 1);
  EXPECT_TRUE(neighbour.ends());
  EXPECT_EQ(host_.value(), 0);
}

TEST_F(KernelLock, HoldsBackALatchedCommandFrameAllTheSame) {
  ASSERT_EQ(lockSem(make()), 0);
  Neighbour neighbour([&](const Tell& tell) {
    tell(SendCommand(1, 2, 3, 4, 5));
    tell(host_.transfers());
  });
  ASSERT_TRUE(eventually([&] { return host_.waiters() == 1; }));
  EXPECT_EQ(unlockSem(make()), 0);
  EXPECT_EQ(neighbour.hear(), 0xFF);
  EXPECT_EQ(neighbour.hear(), 0);
  EXPECT_TRUE(neighbour.ends());
}

TEST_F(KernelLock, DoesNotHoldBackAQueryFrame) {
  ASSERT_EQ(lockSem(make()), 0);
  Neighbour neighbour([&](const Tell& tell) {
    SetLensType(7);
    std::uint8_t out[4] = {};
    tell(RecvCommand(0x80, 0, out));
    tell(host_.transfers());
  });
  EXPECT_EQ(neighbour.hear(), 0);
  EXPECT_EQ(neighbour.hear(), 1);
  EXPECT_TRUE(neighbour.ends());
  EXPECT_EQ(host_.value(), 1);
  EXPECT_EQ(unlockSem(make()), 0);
}

TEST_F(KernelLock, IsHeldDuringALockedTransferAndNoLonger) {
  constexpr std::uint8_t data[4] = {};
  std::uint8_t reply[5] = {};
  SetLensType(7);
  const auto held = [&] {
    EXPECT_EQ(host_.value(), 0);
    return host_.value_in_transfer();
  };
  SendCommand(1, 2, 3, 4, 5);
  EXPECT_EQ(held(), 1);
  RecvCommand(0x80, 0, reply);
  EXPECT_EQ(held(), 0);
  WriteCommand(0xF5, 4, 0, 0);
  EXPECT_EQ(held(), 1);
  ReadSpi(0x66, reply, 5);
  EXPECT_EQ(held(), 1);
  WriteData(0x21, 4, data);
  EXPECT_EQ(held(), 1);
}

TEST_F(KernelLock, WithoutItsKeyFileLocksUnderTheKeyOfTheFailure) {
  host_.lose_key();
  SetLensType(7);
  EXPECT_EQ(SendCommand(1, 2, 3, 4, 5), 0);
  EXPECT_EQ(host_.transfers(), 1);
  // Taking finds no set and makes one; giving back finds it.
  EXPECT_EQ(host_.fallbacks(), 3);
  EXPECT_EQ(host_.value_in_transfer(), 1);
  EXPECT_EQ(host_.value(), 0);
}

}  // namespace
