#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

/// A sequence and its words, the last of which gives the result.
struct Sequence {
  const char* name;
  int64_t (*run)();
  int words_on_7;
  int words_on_8;
};
constexpr Sequence sequences[] = {
    {"SteppingMove", [] { return SteppingMove(0, 0, 9, 9); }, 9, 9},
    {"uSteppingMove", [] { return uSteppingMove(0x4000, 512, 9, 9); }, 9, 9},
    {"SteppingMove of another block", [] { return SteppingMove(0x2000, 0, 9, 9); }, 6, 6},
    {"stop", stop, 3, 3},
    {"piris_open", [] { return piris_open(9); }, 9, 9},
    {"piris_close", [] { return piris_close(9); }, 9, 9},
    {"ICR_ON", [] { return ICR_ON(9); }, 9, 5},
    {"ICR_OFF", [] { return ICR_OFF(9); }, 9, 5},
    {"PT5111_Initialize", PT5111_Initialize, 17, 16},
    {"PT5111Zoom1Forward", [] { return PT5111Zoom1Forward(9, 9); }, 9, 9},
    {"PT5111Zoom1Backward", [] { return PT5111Zoom1Backward(9, 9); }, 9, 9},
    {"uPT5111Zoom1Forward", [] { return uPT5111Zoom1Forward(9, 9); }, 9, 9},
    {"uPT5111Zoom1Backward", [] { return uPT5111Zoom1Backward(9, 9); }, 9, 9},
};

TEST(PT5111Failure, OfOneWordOnDe015ShowsOnlyIfItIsTheLast) {
  for (const Sequence& sequence : sequences) {
    for (int nth = 1; nth <= sequence.words_on_7; ++nth) {
      Script script;
      SetLensType(7);
      script.fail(Call::transfer, nth, 1, EIO);
      EXPECT_EQ(sequence.run(), nth == sequence.words_on_7 ? -1 : 0) << sequence.name << nth;
      EXPECT_EQ(script.count(Call::transfer), sequence.words_on_7) << sequence.name << nth;
      EXPECT_EQ(GetLensType(), 7);
    }
  }
}

TEST(PT5111Failure, OfEveryWordOnDe015StopsNoSequence) {
  for (const Sequence& sequence : sequences) {
    Script script;
    SetLensType(7);
    script.fail(Call::transfer, 1, forever, EIO);
    EXPECT_EQ(sequence.run(), -1) << sequence.name;
    EXPECT_EQ(script.count(Call::transfer), sequence.words_on_7) << sequence.name;
  }
}

TEST(PT5111Failure, ToOpenTheDeviceIsTriedAgainWithEachWord) {
  for (const Sequence& sequence : sequences) {
    Script script;
    SetLensType(7);
    script.fail(Call::open, 1, forever, ENOENT);
    EXPECT_EQ(sequence.run(), 26) << sequence.name;
    EXPECT_EQ(script.count(Call::open), sequence.words_on_7) << sequence.name;
    EXPECT_EQ(script.count(Call::transfer), 0) << sequence.name;
  }
}

TEST(PT5111Failure, OfOneWordOnDf033IsMendedByItsRetry) {
  for (const Sequence& sequence : sequences) {
    for (int nth = 1; nth <= sequence.words_on_8; ++nth) {
      Script script;
      SetLensType(8);
      script.fail(Call::transfer, nth, 1, EIO);
      EXPECT_EQ(sequence.run(), 0) << sequence.name << nth;
      EXPECT_EQ(script.count(Call::transfer), sequence.words_on_8 + 1) << sequence.name << nth;
      EXPECT_EQ(GetLensType(), 8);
    }
  }
}

TEST(PT5111Failure, OfARetryOnDf033HoldsBackTheRestAndShowsInTheResult) {
  for (const Sequence& sequence : sequences) {
    for (int nth = 1; nth <= sequence.words_on_8; ++nth) {
      Script script;
      SetLensType(8);
      script.fail(Call::transfer, nth, 2, EIO);
      EXPECT_EQ(sequence.run(), 255) << sequence.name << nth;
      EXPECT_EQ(script.count(Call::transfer), nth + 1) << sequence.name << nth;
      EXPECT_EQ(GetLensType(), -1);
    }
  }
}

}  // namespace
