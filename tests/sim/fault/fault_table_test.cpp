// The faults of a camera: their numbers, what they count, and when they strike.
#include "sim/fault/fault_table.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "sim/fault/fault_of.h"

namespace {

using kelvo::sim::fault::Effect;
using kelvo::sim::fault::FaultTable;
using kelvo::sim::fault::pt5111_transfer;
using kelvo::sim::fault::shell_command;
using kelvo::test::fault;

/// How ten shell commands fare: x where the fault strikes.
std::string pattern(const std::string& words) {
  FaultTable faults;
  faults.add(fault("gpio error=EIO " + words));
  std::string marks;
  for (int i = 0; i < 10; ++i) marks += faults.strike(shell_command()) ? 'x' : '.';
  return marks;
}

TEST(FaultTable, StrikesInTheOrderThatAFaultSays) {
  EXPECT_EQ(pattern(""), "xxxxxxxxxx");
  EXPECT_EQ(pattern("nth=1"), "x.........");
  EXPECT_EQ(pattern("nth=3"), "..x.......");
  EXPECT_EQ(pattern("nth=3 times=2"), "..xx......");
  EXPECT_EQ(pattern("every=3"), "..x..x..x.");
  EXPECT_EQ(pattern("every=3 times=2"), "..x..x....");
  EXPECT_EQ(pattern("nth=2 every=4"), ".x...x...x");
  EXPECT_EQ(pattern("nth=2 every=4 times=1"), ".x........");
  EXPECT_EQ(pattern("times=3"), "xxx.......");
  EXPECT_EQ(pattern("nth=11"), "..........");
}

TEST(FaultTable, IsEmptyUntilThereIsAFault) {
  FaultTable faults;
  EXPECT_TRUE(faults.empty());
  EXPECT_FALSE(faults.strike(shell_command()));
  faults.add(fault("gpio kill"));
  EXPECT_FALSE(faults.empty());
  faults.clear();
  EXPECT_TRUE(faults.empty());
}

TEST(FaultTable, GivesNumbersThatStay) {
  FaultTable faults;
  EXPECT_EQ(faults.add(fault("gpio kill")), 1u);
  EXPECT_EQ(faults.add(fault("gpio kill")), 2u);
  EXPECT_EQ(faults.add(fault("spi kill")), 3u);
  EXPECT_TRUE(faults.remove(2));
  EXPECT_FALSE(faults.remove(2));
  EXPECT_FALSE(faults.remove(0));
  EXPECT_EQ(faults.add(fault("i2c kill")), 4u);
  ASSERT_EQ(faults.listed().size(), 3u);
  EXPECT_EQ(faults.listed()[0].number, 1u);
  EXPECT_STREQ(faults.listed()[1].text.data(), "spi kill");
  EXPECT_EQ(faults.listed()[1].number, 3u);
  faults.clear();
  EXPECT_EQ(faults.add(fault("gpio kill")), 5u);
}

TEST(FaultTable, HasRoomFor32) {
  FaultTable faults;
  for (std::uint32_t i = 1; i <= 32; ++i) EXPECT_EQ(faults.add(fault("gpio kill")), i);
  EXPECT_EQ(faults.add(fault("gpio kill")), std::nullopt);
  EXPECT_EQ(faults.add_once(fault("spi kill")), std::nullopt);
  EXPECT_EQ(faults.add_anew(fault("spi kill")), std::nullopt);
  EXPECT_EQ(faults.add_once(fault("gpio kill")), 1u);
  EXPECT_TRUE(faults.remove(32));
  EXPECT_EQ(faults.add(fault("gpio kill")), 33u);
}

TEST(FaultTable, CountsMatchesAndStrikes) {
  FaultTable faults;
  faults.add(fault("gpio error=EIO nth=2"));
  for (int i = 0; i < 5; ++i) faults.strike(shell_command());
  faults.strike(pt5111_transfer({}));
  EXPECT_EQ(faults.listed()[0].matches, 5u);
  EXPECT_EQ(faults.listed()[0].struck, 1u);
}

TEST(FaultTable, AddsTheSameTextOnceOrAnew) {
  FaultTable faults;
  EXPECT_EQ(faults.add_once(fault("gpio error=EIO nth=1")), 1u);
  EXPECT_TRUE(faults.strike(shell_command()));
  EXPECT_EQ(faults.add_once(fault("gpio:error=EIO:nth=1")), 1u);
  EXPECT_FALSE(faults.strike(shell_command()));
  EXPECT_EQ(faults.add_anew(fault("gpio error=EIO nth=1")), 1u);
  EXPECT_TRUE(faults.strike(shell_command()));
  EXPECT_EQ(faults.listed().size(), 1u);
  EXPECT_EQ(faults.add_anew(fault("gpio error=5 nth=1")), 2u);
}

TEST(FaultTable, LetsTheFirstOfSeveralStrike) {
  FaultTable faults;
  faults.add(fault("gpio error=EIO nth=2"));
  faults.add(fault("gpio error=EBUSY every=2 times=1"));
  EXPECT_FALSE(faults.strike(shell_command()));
  EXPECT_EQ(faults.strike(shell_command())->error, EIO);
  EXPECT_FALSE(faults.strike(shell_command()));
  EXPECT_EQ(faults.strike(shell_command())->error, EBUSY) << "it waited for its next turn";
  EXPECT_EQ(faults.listed()[1].matches, 4u);
}

}  // namespace
