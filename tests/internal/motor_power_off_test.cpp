// What a power-off makes of the motors' state.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "lens/motors/motor_state.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

/// A power-off, its motor's busy bit and started flag, and the modules on which it clears the bit.
struct PowerOff {
  const char* name;
  uint32_t (*run)();
  int32_t busy_bit;
  int32_t* started;
  bool (*clears_bit_on)(int32_t variant);
};
const PowerOff power_offs[] = {
    {"setZoom1PowerOff", setZoom1PowerOff, 1, &giZoom1Started, [](int32_t) { return true; }},
    {"setZoom2PowerOff", setZoom2PowerOff, 2, &giZoom2Started,
     [](int32_t variant) { return variant == 7 || variant == 8; }},
    {"setZoom3PowerOff", setZoom3PowerOff, 32, &giZoom3Started,
     [](int32_t variant) { return variant == 7 || variant == 8; }},
    {"setFocusPowerOff", setFocusPowerOff, 4, &giFocusStarted,
     [](int32_t variant) { return variant >= 7 && variant <= 9; }},
};

constexpr int32_t variants[] = {7, 8, 9, 6, 10, 0, -1};
constexpr int32_t every_bit = -1;

void start_everything() {
  giMotorBusy = every_bit;
  giZoom1Started = giZoom2Started = giZoom3Started = giFocusStarted = 1;
}

void expect_powered_off(const PowerOff& row, int32_t variant) {
  EXPECT_EQ(giMotorBusy, row.clears_bit_on(variant) ? every_bit & ~row.busy_bit : every_bit)
      << row.name << " on " << variant;
  for (const int32_t* const started :
       {&giZoom1Started, &giZoom2Started, &giZoom3Started, &giFocusStarted}) {
    EXPECT_EQ(*started, started == row.started ? 0 : 1) << row.name << " on " << variant;
  }
}

TEST(PowerOffState, HasTheMotorsBitClearedWhereItIsKeptAndItsFlagEverywhere) {
  Script script;
  for (const PowerOff& row : power_offs) {
    for (const int32_t variant : variants) {
      SetLensType(variant);
      start_everything();
      row.run();
      expect_powered_off(row, variant);
    }
  }
}

TEST(PowerOffState, IsTheSameWhileTheLatchHoldsEveryFrameBack) {
  Script script;
  for (const PowerOff& row : power_offs) {
    for (const int32_t variant : variants) {
      gi30516Ver = variant;
      start_everything();
      row.run();
      expect_powered_off(row, variant);
    }
  }
  EXPECT_EQ(script.count(Call::transfer), 0);
}

TEST(PowerOffState, IsTheSameWhicheverFrameFails) {
  for (const PowerOff& row : power_offs) {
    for (const int32_t variant : {7, 8, 9}) {
      for (int nth = 1; nth <= 3; ++nth) {
        Script script;
        SetLensType(variant);
        start_everything();
        script.fail(Call::transfer, nth, forever, EIO);
        row.run();
        expect_powered_off(row, variant);
      }
    }
  }
}

TEST(PowerOffState, StaysClearWhenTheMotorIsOffAlready) {
  Script script;
  for (const PowerOff& row : power_offs) {
    SetLensType(7);
    giMotorBusy = 0;
    *row.started = 0;
    row.run();
    EXPECT_EQ(giMotorBusy, 0) << row.name;
    EXPECT_EQ(*row.started, 0) << row.name;
  }
}

TEST(PowerOffState, OfZoom3IsClearedOnDe015WithoutAFrame) {
  Script script;
  SetLensType(7);
  start_everything();
  setZoom3PowerOff();
  EXPECT_EQ(giMotorBusy, every_bit & ~32);
  EXPECT_EQ(giZoom3Started, 0);
  EXPECT_EQ(script.transcript(), "");
}

TEST(PowerOffState, OfZoom1OnDe015HasItsBitClearedFirstAndItsFlagLast) {
  Script script;
  SetLensType(7);
  start_everything();
  script.at(Call::transfer, 1, [] { EXPECT_EQ(giMotorBusy, every_bit & ~1); });
  script.at(Call::transfer, 3, [] { EXPECT_EQ(giZoom1Started, 1); });
  setZoom1PowerOff();
  EXPECT_EQ(script.count(Call::transfer), 3);
  EXPECT_EQ(giZoom1Started, 0);
}

TEST(PowerOffState, IsUndoneByTheNextMove) {
  Script script;
  SetLensType(8);
  for (int round = 0; round < 2; ++round) {
    setFocusForward(9, 9);
    setZoom2Forward(9, 9);
    setZoom3Forward(9, 9);
    EXPECT_EQ(giMotorBusy, 2 | 4 | 32);
    setFocusPowerOff();
    EXPECT_EQ(giMotorBusy, 2 | 32);
    setZoom3PowerOff();
    EXPECT_EQ(giMotorBusy, 2);
    setZoom2PowerOff();
    EXPECT_EQ(giMotorBusy, 0);
  }
}

TEST(PowerOffState, IsNotTouchedByCountersStatusAndTheFourStubs) {
  Script script;
  for (const int32_t variant : variants) {
    SetLensType(variant);
    start_everything();
    std::uint8_t running = 0;
    for (const auto read : {GetZoom1Count, GetZoom2Count, GetZoom3Count, GetFocusCount}) read();
    for (const auto set : {SetZoom1Count, SetZoom2Count, SetZoom3Count, SetFocusCount}) set(1);
    for (const auto ask : {getZoom1Status, getZoom2Status, getZoom3Status, getFocusStatus,
                           getIrisStatus, getICRStatus}) {
      ask(&running);
    }
    for (const auto stub : {setIrisPowerOff, setICRPowerOff}) stub(1);
    EXPECT_EQ(giMotorBusy, every_bit) << variant;
    EXPECT_EQ(giZoom1Started + giZoom2Started + giZoom3Started + giFocusStarted, 4) << variant;
  }
}

}  // namespace
