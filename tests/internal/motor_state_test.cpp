#include "lens/motors/motor_state.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

/// A move, its motor's busy bit, and its motor's started flag on each module (null: not looked at).
struct Operation {
  const char* name;
  uint32_t (*run)();
  int32_t busy_bit;
  int32_t* flag_on_7;
  int32_t* flag_on_8;
  int32_t* flag_on_9;
};
const Operation operations[14] = {
    {"setZoom1Forward", [] { return setZoom1Forward(9, 9); }, 1, &giZoom1Started, nullptr,
     &giZoom1Started},
    {"setZoom1Backward", [] { return setZoom1Backward(9, 9); }, 1, &giZoom1Started, nullptr,
     &giZoom1Started},
    {"setZoom1Forward2_2", [] { return setZoom1Forward2_2(9, 9); }, 1, &giZoom1Started, nullptr,
     nullptr},
    {"setZoom1Backward2_2", [] { return setZoom1Backward2_2(9, 9); }, 1, &giZoom1Started, nullptr,
     &giZoom1Started},
    {"setZoom1uForward", [] { return setZoom1uForward(9, 9); }, 1, &giZoom1Started, nullptr,
     nullptr},
    {"setZoom1uBackward", [] { return setZoom1uBackward(9, 9); }, 1, &giZoom1Started, nullptr,
     nullptr},
    {"setFocusForward", [] { return setFocusForward(9, 9); }, 4, &giFocusStarted, &giFocusStarted,
     &giFocusStarted},
    {"setFocusBackward", [] { return setFocusBackward(9, 9); }, 4, &giFocusStarted, &giFocusStarted,
     &giFocusStarted},
    {"setZoom2Forward", [] { return setZoom2Forward(9, 9); }, 2, &giZoom2Started, &giZoom2Started,
     nullptr},
    {"setZoom2Backward", [] { return setZoom2Backward(9, 9); }, 2, &giZoom2Started, &giZoom2Started,
     nullptr},
    {"setZoom2Forward512", [] { return setZoom2Forward512(9, 9); }, 2, &giZoom2Started,
     &giZoom2Started, nullptr},
    {"setZoom2Backward512", [] { return setZoom2Backward512(9, 9); }, 2, &giZoom2Started,
     &giZoom2Started, nullptr},
    {"setZoom3Forward", [] { return setZoom3Forward(9, 9); }, 32, nullptr, &giZoom3Started,
     nullptr},
    {"setZoom3Backward", [] { return setZoom3Backward(9, 9); }, 32, nullptr, &giZoom3Started,
     nullptr},
};

bool is_the_exception(const Operation& operation, int32_t variant) {
  return std::string(operation.name) == "setZoom1uBackward" && (variant == 7 || variant == 8);
}

int32_t* flag_of(const Operation& operation, int32_t variant) {
  if (variant == 7) return operation.flag_on_7;
  if (variant == 8) return operation.flag_on_8;
  if (variant == 9) return operation.flag_on_9;
  return nullptr;
}

void forget_everything() {
  giMotorBusy = 0;
  giZoom1Started = 0;
  giZoom2Started = 0;
  giZoom3Started = 0;
  giFocusStarted = 0;
}

TEST(MotorState, IsAllZeroAtLoad) {
  EXPECT_EQ(giMotorBusy, 0);
  EXPECT_EQ(giZoom1Started, 0);
  EXPECT_EQ(giZoom2Started, 0);
  EXPECT_EQ(giZoom3Started, 0);
  EXPECT_EQ(giFocusStarted, 0);
}

TEST(MotorBusy, GetsTheMotorsBitOnEveryPathAndWhereNothingIsSent) {
  Script script;
  for (const int32_t variant : {7, 8, 9, 0, 5, 10, -1}) {
    for (const Operation& operation : operations) {
      if (is_the_exception(operation, variant)) continue;
      forget_everything();
      SetLensType(variant);
      operation.run();
      EXPECT_EQ(giMotorBusy, operation.busy_bit) << operation.name << " on " << variant;
    }
  }
}

TEST(MotorBusy, KeepsTheOtherMotorsBits) {
  Script script;
  for (const int32_t variant : {7, 8, 9, 0, 5, 10, -1}) {
    for (const Operation& operation : operations) {
      if (is_the_exception(operation, variant)) continue;
      SetLensType(variant);
      giMotorBusy = 0x700000C8;
      operation.run();
      EXPECT_EQ(giMotorBusy, 0x700000C8 | operation.busy_bit)
          << operation.name << " on " << variant;
      operation.run();
      EXPECT_EQ(giMotorBusy, 0x700000C8 | operation.busy_bit)
          << operation.name << " on " << variant;
    }
  }
}

TEST(MotorBusy, IsLeftAloneByAMicroMoveBackwardOfZoom1ThatIsSent) {
  Script script;
  for (const int32_t variant : {7, 8}) {
    SetLensType(variant);
    for (const int32_t before : {0, 1, 6, 39}) {
      giMotorBusy = before;
      setZoom1uBackward(9, 9);
      EXPECT_EQ(giMotorBusy, before) << variant;
      setZoom1uBackward(9, -300);
      EXPECT_EQ(giMotorBusy, before) << variant;
    }
  }
}

TEST(MotorBusy, IsSetByAMicroMoveBackwardOfZoom1ThatIsNotSent) {
  Script script;
  for (const int32_t variant : {9, 5, 0}) {
    SetLensType(variant);
    giMotorBusy = 38;
    EXPECT_EQ(setZoom1uBackward(9, -300), 0U);
    EXPECT_EQ(giMotorBusy, 39) << variant;
  }
  EXPECT_EQ(script.transcript(), "");
}

TEST(MotorBusy, IsSetWhileTheLatchHoldsEveryFrameBack) {
  Script script;
  for (const int32_t variant : {7, 8, 9, 5}) {
    for (const Operation& operation : operations) {
      if (is_the_exception(operation, variant)) continue;
      forget_everything();
      gi30516Ver = variant;
      operation.run();
      EXPECT_EQ(giMotorBusy, operation.busy_bit) << operation.name << " on " << variant;
    }
  }
  EXPECT_EQ(script.count(Call::transfer), 0);
}

TEST(MotorBusy, IsSetWhicheverFrameFails) {
  for (const int32_t variant : {7, 8, 9}) {
    for (const Operation& operation : operations) {
      if (is_the_exception(operation, variant)) continue;
      for (int nth = 1; nth <= 11; ++nth) {
        Script script;
        forget_everything();
        SetLensType(variant);
        script.fail(Call::transfer, nth, forever, EIO);
        operation.run();
        EXPECT_EQ(giMotorBusy, operation.busy_bit) << operation.name << " on " << variant;
      }
    }
  }
}

TEST(MotorStarted, IsSetForTheMovesOwnMotorAlone) {
  Script script;
  int32_t* const flags[4] = {&giZoom1Started, &giZoom2Started, &giZoom3Started, &giFocusStarted};
  for (const int32_t variant : {7, 8, 9, 0, 5, 10, -1}) {
    for (const Operation& operation : operations) {
      forget_everything();
      SetLensType(variant);
      operation.run();
      for (int32_t* const flag : flags) {
        const int32_t expected = flag == flag_of(operation, variant) ? 1 : 0;
        EXPECT_EQ(*flag, expected) << operation.name << " on " << variant;
      }
    }
  }
}

TEST(MotorStarted, IsSetThoughTheMoveFails) {
  for (const int32_t variant : {7, 8, 9}) {
    for (const Operation& operation : operations) {
      int32_t* const flag = flag_of(operation, variant);
      if (flag == nullptr) continue;
      Script script;
      forget_everything();
      SetLensType(variant);
      script.fail(Call::transfer, 1, forever, EIO);
      EXPECT_EQ(operation.run(), 255U) << operation.name << " on " << variant;
      EXPECT_EQ(*flag, 1) << operation.name << " on " << variant;
    }
  }
}

/// The waits of one move.
std::string waits(Script& script, const Operation& operation) {
  script.transcript();
  operation.run();
  return script.transcript_without({"lock", "unlock", "spi_renesas", "spi_pt5111", "open"});
}

TEST(MotorStarted, MakesTheFirstMoveWaitAndTheNextOnlyAfterPowerOff) {
  Script script;
  for (const int32_t variant : {7, 8, 9}) {
    for (const Operation& operation : operations) {
      int32_t* const flag = flag_of(operation, variant);
      if (flag == nullptr) continue;
      forget_everything();
      SetLensType(variant);
      const std::string first = waits(script, operation);
      EXPECT_NE(first, "") << operation.name << " on " << variant;
      EXPECT_EQ(waits(script, operation), "") << operation.name << " on " << variant;
      *flag = 0;  // what a power-off does
      EXPECT_EQ(waits(script, operation), first) << operation.name << " on " << variant;
      EXPECT_EQ(*flag, 1) << operation.name << " on " << variant;
    }
  }
}

TEST(MotorStarted, OfAnotherMotorSparesNoWait) {
  Script script;
  int32_t* const flags[4] = {&giZoom1Started, &giZoom2Started, &giZoom3Started, &giFocusStarted};
  for (const int32_t variant : {7, 8, 9}) {
    for (const Operation& operation : operations) {
      int32_t* const own = flag_of(operation, variant);
      if (own == nullptr) continue;
      forget_everything();
      for (int32_t* const flag : flags) *flag = flag == own ? 0 : 1;
      SetLensType(variant);
      EXPECT_NE(waits(script, operation), "") << operation.name << " on " << variant;
    }
  }
}

TEST(MotorStarted, TellsTheLengthOfEachFirstWait) {
  struct Row {
    int32_t variant;
    uint32_t (*run)();
    const char* wait;
  };
  const Row rows[] = {
      {7, [] { return setZoom1Forward(9, 9); }, "usleep 50000\n"},
      {7, [] { return setZoom1Backward2_2(9, 9); }, "usleep 50000\n"},
      {7, [] { return setZoom1uForward(9, 9); }, "usleep 50000\nusleep 50000\n"},
      {7, [] { return setZoom1uBackward(9, 9); }, "usleep 100000\nusleep 50000\n"},
      {9, [] { return setZoom1Backward(9, 9); }, "usleep 5000\n"},
      {7, [] { return setFocusForward(9, 9); }, "usleep 50000\n"},
      {8, [] { return setFocusBackward(9, 9); }, "usleep 10000\n"},
      {9, [] { return setFocusForward(9, 9); }, "usleep 10000\n"},
      {7, [] { return setZoom2Backward(9, 9); }, "usleep 50000\n"},
      {8, [] { return setZoom2Forward512(9, 9); }, "usleep 5000\n"},
      {8, [] { return setZoom3Backward(9, 9); }, "usleep 5000\n"},
  };
  Script script;
  for (const Row& row : rows) {
    forget_everything();
    SetLensType(row.variant);
    script.transcript();
    row.run();
    EXPECT_EQ(script.transcript_without({"lock", "unlock", "spi_renesas", "open"}), row.wait);
  }
}

}  // namespace
