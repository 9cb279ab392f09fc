// Which path each move takes on which lens module.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

/// The first and the last frame of a move tell its path, its channel and its direction.
struct Path {
  const char* first;
  const char* last;
  int transfers;
};
constexpr Path nothing = {"", "", 0};
constexpr Path zoom1_block_forward = {"38 00 00 00 00 38 00", "3F 00 00 00 01 40 00", 8};
constexpr Path zoom1_block_backward = {"38 00 00 00 01 39 00", "3F 00 00 00 01 40 00", 8};
constexpr Path zoom3_block_forward = {"16 00 00 00 00 16 00", "1C 00 00 00 01 1D 00", 8};
constexpr Path zoom3_block_backward = {"16 00 00 00 01 17 00", "1C 00 00 00 01 1D 00", 8};
constexpr Path pt5111 = {"2F 02 CF C0 00 C0 00", "2F 02 3E 80 00 EF 00", 9};
constexpr Path focus_by_15 = {"0F 00 86 00 01 96 00", "0F 00 1E 0F 0A 46 00", 11};
constexpr Path focus_by_12 = {"0C 00 86 00 01 93 00", "0C 00 1E 0F 0A 43 00", 11};
constexpr Path zoom_by_15 = {"0F 00 86 00 01 96 00", "0F 00 3E 0F 0A 66 00", 11};
constexpr Path zoom_by_12 = {"0C 00 86 00 01 93 00", "0C 00 3E 0F 0A 63 00", 11};

struct Operation {
  const char* name;
  uint32_t (*run)();
  Path on_7;
  Path on_8;
  Path on_9;
};
constexpr Operation operations[14] = {
    {"setZoom1Forward", [] { return setZoom1Forward(9, 9); }, zoom1_block_forward, pt5111,
     zoom_by_12},
    {"setZoom1Backward", [] { return setZoom1Backward(9, 9); }, zoom1_block_backward, pt5111,
     zoom_by_12},
    {"setZoom1Forward2_2", [] { return setZoom1Forward2_2(9, 9); }, zoom1_block_forward, nothing,
     nothing},
    {"setZoom1Backward2_2", [] { return setZoom1Backward2_2(9, 9); }, zoom1_block_backward, pt5111,
     zoom_by_12},
    {"setZoom1uForward", [] { return setZoom1uForward(9, 9); }, zoom1_block_forward, pt5111,
     nothing},
    {"setZoom1uBackward", [] { return setZoom1uBackward(9, 9); }, zoom1_block_backward, pt5111,
     nothing},
    {"setFocusForward", [] { return setFocusForward(9, 9); }, focus_by_15, focus_by_12,
     focus_by_12},
    {"setFocusBackward", [] { return setFocusBackward(9, 9); }, focus_by_15, focus_by_12,
     focus_by_12},
    {"setZoom2Forward", [] { return setZoom2Forward(9, 9); }, zoom_by_15, zoom_by_12, nothing},
    {"setZoom2Backward", [] { return setZoom2Backward(9, 9); }, zoom_by_15, zoom_by_12, nothing},
    {"setZoom2Forward512", [] { return setZoom2Forward512(9, 9); }, zoom_by_15, zoom_by_12,
     nothing},
    {"setZoom2Backward512", [] { return setZoom2Backward512(9, 9); }, zoom_by_15, zoom_by_12,
     nothing},
    {"setZoom3Forward", [] { return setZoom3Forward(9, 9); }, nothing, zoom3_block_forward,
     nothing},
    {"setZoom3Backward", [] { return setZoom3Backward(9, 9); }, nothing, zoom3_block_backward,
     nothing},
};

const std::string line_begin = "spi_renesas: ";

void expect_path(const Operation& operation, int32_t variant, const Path& path) {
  Script script;
  SetLensType(variant);
  EXPECT_EQ(operation.run(), 0U) << operation.name;
  const std::string text = script.transcript();
  EXPECT_EQ(script.count(Call::transfer), path.transfers) << operation.name;
  if (path.transfers == 0) {
    EXPECT_EQ(text, "") << operation.name;
    return;
  }
  const std::size_t first = text.find(line_begin);
  const std::size_t last = text.rfind(line_begin);
  ASSERT_NE(first, std::string::npos) << operation.name;
  EXPECT_EQ(text.substr(first + line_begin.size(), 20), path.first) << operation.name;
  EXPECT_EQ(text.substr(last + line_begin.size(), 20), path.last) << operation.name;
}

TEST(SteppingPath, IsEachOperationsOwnOnDe015) {
  for (const Operation& operation : operations) expect_path(operation, 7, operation.on_7);
}

TEST(SteppingPath, IsEachOperationsOwnOnDf033) {
  for (const Operation& operation : operations) expect_path(operation, 8, operation.on_8);
}

TEST(SteppingPath, IsEachOperationsOwnOnT5391) {
  for (const Operation& operation : operations) expect_path(operation, 9, operation.on_9);
}

TEST(SteppingPath, DoesNotExistOnAnyOtherModule) {
  for (const int32_t variant : {0, 1, 5, 6, 10, 15, 263, -1, -7}) {
    for (const Operation& operation : operations) expect_path(operation, variant, nothing);
  }
  EXPECT_EQ(fd, -1);
}

TEST(SteppingPath, ThatDoesNothingReturnsZeroThoughTheLatchIsSet) {
  Script script;
  gi30516Ver = 5;
  for (const Operation& operation : operations) EXPECT_EQ(operation.run(), 0U) << operation.name;
  gi30516Ver = 9;
  EXPECT_EQ(setZoom2Forward(9, 9), 0U);
  EXPECT_EQ(setZoom3Forward(9, 9), 0U);
  EXPECT_EQ(setZoom1Forward2_2(9, 9), 0U);
  EXPECT_EQ(script.transcript(), "");
}

/// A move of 1500 steps at speed 234; `first_word` is the word in which the moves differ.
std::string pt5111_move(const std::string& first_word) {
  return R"(open /dev/spi_renesas
spi_renesas: 2F 02 CF C0 00 C0 00
spi_renesas: 2F 02 34 00 00 65 00
spi_renesas: 2F 02 74 00 00 A5 00
spi_renesas: )" +
         first_word + R"(
spi_renesas: 2F 02 05 DC 00 12 00
spi_renesas: 2F 02 08 01 00 3A 00
spi_renesas: 2F 02 0E 91 00 D0 00
spi_renesas: 2F 02 11 C0 00 02 00
spi_renesas: 2F 02 3E 80 00 EF 00
)";
}

void expect_pt5111_move(uint32_t (*move)(), const char* first_word) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(move(), 0U);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}), pt5111_move(first_word));
}

TEST(Pt5111Path, MovesZoom1Forward) {
  expect_pt5111_move([] { return setZoom1Forward(234, 1500); }, "2F 02 00 80 00 B1 00");
}

TEST(Pt5111Path, MovesZoom1Backward) {
  expect_pt5111_move([] { return setZoom1Backward(234, 1500); }, "2F 02 02 80 00 B3 00");
}

TEST(Pt5111Path, MovesZoom1BackwardTheSameForTwoTwo) {
  expect_pt5111_move([] { return setZoom1Backward2_2(234, 1500); }, "2F 02 02 80 00 B3 00");
}

TEST(Pt5111Path, MovesZoom1ForwardInTheOtherSteppingMode) {
  expect_pt5111_move([] { return setZoom1uForward(234, 1500); }, "2F 02 00 00 00 31 00");
}

TEST(Pt5111Path, MovesZoom1BackwardInTheOtherSteppingMode) {
  expect_pt5111_move([] { return setZoom1uBackward(234, 1500); }, "2F 02 02 00 00 33 00");
}

TEST(Pt5111Path, TakesTheAbsoluteValueOfAMicroCountBackward) {
  expect_pt5111_move([] { return setZoom1uBackward(234, -1500); }, "2F 02 02 00 00 33 00");
}

TEST(Pt5111Path, AsksForThreeHundredStepsWhenToldMinusThreeHundred) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom1uBackward(234, -300), 0U);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: 2F 02 CF C0 00 C0 00
unlock
lock
spi_renesas: 2F 02 34 00 00 65 00
unlock
lock
spi_renesas: 2F 02 74 00 00 A5 00
unlock
lock
spi_renesas: 2F 02 02 00 00 33 00
unlock
lock
spi_renesas: 2F 02 05 2C 00 62 00
unlock
lock
spi_renesas: 2F 02 08 00 00 39 00
unlock
lock
spi_renesas: 2F 02 0E 91 00 D0 00
unlock
lock
spi_renesas: 2F 02 11 C0 00 02 00
unlock
lock
spi_renesas: 2F 02 3E 80 00 EF 00
unlock
)");
}

TEST(Pt5111Path, SendsNoCountBitForTheMostNegativeCount) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(setZoom1uBackward(234, std::numeric_limits<int32_t>::min()), 0U);
  const std::string text = script.transcript();
  EXPECT_NE(text.find("spi_renesas: 2F 02 04 00 00 35 00\n"), std::string::npos);
  EXPECT_NE(text.find("spi_renesas: 2F 02 08 00 00 39 00\n"), std::string::npos);
}

TEST(Pt5111Path, NeverWaitsNorCountsAsTheFirstMoveOfZoom1) {
  Script script;
  SetLensType(8);
  setZoom1Forward(9, 9);
  EXPECT_EQ(script.count(Call::usleep), 0);
  SetLensType(9);
  setZoom1Forward(9, 9);
  EXPECT_EQ(script.count(Call::usleep), 1);
}

TEST(Pt5111Path, ReturnsZeroWhicheverWordFails) {
  for (int nth = 1; nth <= 9; ++nth) {
    for (const Operation& operation : operations) {
      if (operation.on_8.transfers != 9) continue;
      Script script;
      SetLensType(8);
      script.fail(Call::transfer, nth, 2, EIO);
      EXPECT_EQ(operation.run(), 0U) << operation.name << ": " << nth;
      EXPECT_EQ(script.count(Call::transfer), nth + 1) << operation.name << ": " << nth;
      EXPECT_EQ(GetLensType(), -1) << operation.name << ": " << nth;
      EXPECT_EQ(SendCommand(1, 0, 0, 0, 0), 0xFF);
    }
  }
}

TEST(Pt5111Path, ReturnsZeroWithoutADeviceAndBeforeTheLinkIsUsable) {
  Script script;
  gi30516Ver = 8;
  EXPECT_EQ(setZoom1Forward(9, 9), 0U);
  EXPECT_EQ(script.count(Call::transfer), 0);
  SetLensType(8);
  CloseSPI();
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(setZoom1uBackward(9, 9), 0U);
  EXPECT_EQ(GetLensType(), -1);
}

}  // namespace
