// The PT5111's moves.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

/// What one call sends to the driver's own device.
template <typename Run>
std::string sent(Run run) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(run(), 0);
  return script.transcript_without({"open"});
}

TEST(SteppingMove, SendsThreeOpeningWordsAndSixMoveWords) {
  Script script;
  SetLensType(7);
  EXPECT_EQ(SteppingMove(0, 512, 234, 1500), 0);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_pt5111
spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 02 80
spi_pt5111: 05 DC
spi_pt5111: 08 01
spi_pt5111: 0E 91
spi_pt5111: 11 C0
spi_pt5111: 3E 80
)");
}

TEST(SteppingMove, AddsTheBlockToEachMoveWord) {
  EXPECT_EQ(sent([] { return SteppingMove(0x4000, 0, 100, 40); }), R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 40 80
spi_pt5111: 44 28
spi_pt5111: 48 00
spi_pt5111: 4F 0D
spi_pt5111: 51 80
spi_pt5111: 7E 80
)");
}

TEST(SteppingMove, GoesThroughTheLensControllerOnDf033) {
  Script script;
  SetLensType(8);
  EXPECT_EQ(SteppingMove(0, 512, 234, 1500), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock"}), R"(open /dev/spi_renesas
spi_renesas: 2F 02 CF C0 00 C0 00
spi_renesas: 2F 02 34 00 00 65 00
spi_renesas: 2F 02 74 00 00 A5 00
spi_renesas: 2F 02 02 80 00 B3 00
spi_renesas: 2F 02 05 DC 00 12 00
spi_renesas: 2F 02 08 01 00 3A 00
spi_renesas: 2F 02 0E 91 00 D0 00
spi_renesas: 2F 02 11 C0 00 02 00
spi_renesas: 2F 02 3E 80 00 EF 00
)");
}

TEST(SteppingMove, SendsNothingOnOtherModulesAndReturnsTheVariant) {
  Script script;
  SetLensType(9);
  EXPECT_EQ(SteppingMove(0, 0, 100, 10), 9);
  EXPECT_EQ(uSteppingMove(0, 0, 100, 10), 9);
  SetLensType(5);
  EXPECT_EQ(SteppingMove(0, 0, 100, 10), 5);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(cMotorPower, 1);
}

TEST(SteppingMove, DividesTheSpeedBySixAndStopsAtLevelThirtyEight) {
  struct Row {
    uint16_t speed;
    const char* period_and_divider;
  };
  constexpr Row rows[] = {
      {0, "spi_pt5111: 0C 00\nspi_pt5111: 10 00\n"},
      {5, "spi_pt5111: 0C 00\nspi_pt5111: 10 00\n"},
      {6, "spi_pt5111: 0F 0D\nspi_pt5111: 10 80\n"},
      {11, "spi_pt5111: 0F 0D\nspi_pt5111: 10 80\n"},
      {12, "spi_pt5111: 0F 0D\nspi_pt5111: 10 C0\n"},
      {100, "spi_pt5111: 0F 0D\nspi_pt5111: 11 80\n"},
      {227, "spi_pt5111: 0E A3\nspi_pt5111: 11 C0\n"},
      {228, "spi_pt5111: 0E 91\nspi_pt5111: 11 C0\n"},
      {233, "spi_pt5111: 0E 91\nspi_pt5111: 11 C0\n"},
      {234, "spi_pt5111: 0E 91\nspi_pt5111: 11 C0\n"},
      {255, "spi_pt5111: 0E 91\nspi_pt5111: 11 C0\n"},
      {65535, "spi_pt5111: 0E 91\nspi_pt5111: 11 C0\n"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(sent([&] { return SteppingMove(0, 0, row.speed, 1); }),
              std::string("spi_pt5111: CF C0\nspi_pt5111: 34 00\nspi_pt5111: 74 00\n"
                          "spi_pt5111: 00 80\nspi_pt5111: 04 01\nspi_pt5111: 08 00\n") +
                  row.period_and_divider + "spi_pt5111: 3E 80\n")
        << row.speed;
  }
}

TEST(SteppingMove, SendsTheLowTenBitsOfTheCountAndThenTheUpperSix) {
  EXPECT_EQ(sent([] { return SteppingMove(0, 0, 0, 65535); }), R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 00 80
spi_pt5111: 07 FF
spi_pt5111: 08 3F
spi_pt5111: 0C 00
spi_pt5111: 10 00
spi_pt5111: 3E 80
)");
}

TEST(SteppingMove, OfAnotherBlockTakesTheSpeedForTheLevelAndSendsNoOpening) {
  EXPECT_EQ(sent([] { return SteppingMove(0x2000, 0, 200, 5); }), R"(spi_pt5111: 20 80
spi_pt5111: 24 05
spi_pt5111: 28 00
spi_pt5111: 2D F4
spi_pt5111: 32 40
spi_pt5111: 3E 80
)");
  EXPECT_EQ(sent([] { return SteppingMove(0x8000, 512, 255, 5); }), R"(spi_pt5111: 82 80
spi_pt5111: 84 05
spi_pt5111: 88 00
spi_pt5111: 8F 10
spi_pt5111: 92 80
spi_pt5111: BE 80
)");
  EXPECT_EQ(sent([] { return uSteppingMove(0x8000, 0, 1, 5); }), R"(spi_pt5111: 80 00
spi_pt5111: 84 05
spi_pt5111: 88 00
spi_pt5111: 8F 0D
spi_pt5111: 90 80
spi_pt5111: BE 80
)");
}

TEST(SteppingMove, OfAnotherBlockReadsZerosBeyondTheSpeedTable) {
  for (const uint16_t speed : {0, 256, 257, 300, 511, 512, 32768, 65535}) {
    EXPECT_EQ(sent([&] { return SteppingMove(0x8000, 0, speed, 5); }), R"(spi_pt5111: 80 80
spi_pt5111: 84 05
spi_pt5111: 88 00
spi_pt5111: 8C 00
spi_pt5111: 90 00
spi_pt5111: BE 80
)") << speed;
  }
}

TEST(uSteppingMove, DiffersOnlyInTheModeBitOfItsFirstMoveWord) {
  EXPECT_EQ(sent([] { return uSteppingMove(0, 512, 234, 1500); }), R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 02 00
spi_pt5111: 05 DC
spi_pt5111: 08 01
spi_pt5111: 0E 91
spi_pt5111: 11 C0
spi_pt5111: 3E 80
)");
  EXPECT_EQ(sent([] { return uSteppingMove(0x4000, 0, 100, 40); }), R"(spi_pt5111: CF C0
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: 40 00
spi_pt5111: 44 28
spi_pt5111: 48 00
spi_pt5111: 4F 0D
spi_pt5111: 51 80
spi_pt5111: 7E 80
)");
}

/// A zoom-1 move of 1500 steps at speed 100; `first_word` is the word in which the four differ.
std::string zoom1_move(const std::string& first_word) {
  return "spi_pt5111: CF C0\nspi_pt5111: 34 00\nspi_pt5111: 74 00\nspi_pt5111: " + first_word +
         "\nspi_pt5111: 05 DC\nspi_pt5111: 08 01\nspi_pt5111: 0F 0D\nspi_pt5111: 11 80\n"
         "spi_pt5111: 3E 80\n";
}

TEST(PT5111Zoom1, MovesBlockZeroEitherWayAndInEitherMode) {
  EXPECT_EQ(sent([] { return PT5111Zoom1Forward(100, 1500); }), zoom1_move("00 80"));
  EXPECT_EQ(sent([] { return PT5111Zoom1Backward(100, 1500); }), zoom1_move("02 80"));
  EXPECT_EQ(sent([] { return uPT5111Zoom1Forward(100, 1500); }), zoom1_move("00 00"));
  EXPECT_EQ(sent([] { return uPT5111Zoom1Backward(100, 1500); }), zoom1_move("02 00"));
}

TEST(PT5111Zoom1, CutsItsCountToSixteenBits) {
  EXPECT_EQ(sent([] { return PT5111Zoom1Forward(100, 67036); }), zoom1_move("00 80"));
  EXPECT_EQ(sent([] { return PT5111Zoom1Backward(100, 0xFFFF05DC); }), zoom1_move("02 80"));
  EXPECT_EQ(sent([] { return uPT5111Zoom1Forward(100, 67036); }), zoom1_move("00 00"));
  EXPECT_EQ(sent([] { return uPT5111Zoom1Backward(100, 0x800005DC); }), zoom1_move("02 00"));
}

TEST(PIris, MovesTheOtherBlockAtSpeedOneHundred) {
  const std::string opening = "spi_pt5111: CF C0\nspi_pt5111: 34 00\nspi_pt5111: 74 00\n";
  const std::string rest = "spi_pt5111: 4F 0D\nspi_pt5111: 51 80\nspi_pt5111: 7E 80\n";
  EXPECT_EQ(sent([] { return piris_open(40); }),
            opening + "spi_pt5111: 42 80\nspi_pt5111: 44 28\nspi_pt5111: 48 00\n" + rest);
  EXPECT_EQ(sent([] { return piris_close(40); }),
            opening + "spi_pt5111: 40 80\nspi_pt5111: 44 28\nspi_pt5111: 48 00\n" + rest);
  EXPECT_EQ(sent([] { return piris_open(70000); }),
            opening + "spi_pt5111: 42 80\nspi_pt5111: 45 70\nspi_pt5111: 48 04\n" + rest);
  EXPECT_EQ(sent([] { return piris_close(70000); }),
            opening + "spi_pt5111: 40 80\nspi_pt5111: 45 70\nspi_pt5111: 48 04\n" + rest);
}

}  // namespace
