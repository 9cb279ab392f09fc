#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/limits.h"
#include "pantilt/motion/distance_rules.h"
#include "pantilt/motion/freeze.h"
#include "pantilt/motion/schedule.h"
#include "pantilt/motion/tilt_targets.h"
#include "wire/pan_tilt_registers.h"

std::int32_t iTiltVETRA_Motor_Reg[7] = {};
std::int32_t iTiltTASMERE_PID[7] = {};

namespace {

using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::Pair;
using kelvo::pantilt::renew;
using kelvo::pantilt::TiltCounts;
using kelvo::pantilt::Triple;
using kelvo::pantilt::tuning_pair;
using kelvo::pantilt::tuning_word;
namespace slot = kelvo::pantilt::slot;
namespace tuning = kelvo::pantilt::tuning;

constexpr std::uint32_t position_words = tuning::vetra_tilt + slot::position_gains;
constexpr std::uint32_t speed_words = tuning::vetra_tilt + slot::speed_gains;
constexpr std::uint32_t current_word = tuning::vetra_tilt + slot::current;
constexpr std::uint32_t ramp_words = tuning::vetra_tilt + slot::ramps;

void set_position_gains(const Pair& gains) {
  if (!renew(&iTiltVETRA_Motor_Reg[slot::position_gains], gains)) return;
  std::printf("pos 1************Tilt P:0x%x I:0x%x\n", gains[0], gains[1]);
  TiltPosPIDsetup(gains.low(0), gains.low(1));
}

void set_speed_gains(const char* line, const Pair& gains) {
  if (!renew(&iTiltVETRA_Motor_Reg[slot::speed_gains], gains)) return;
  std::printf(line, gains[0], gains[1]);
  TiltPIDsetup(gains[0], gains[1], 0);
}

void set_current(std::int32_t current) {
  if (!renew(&iTiltVETRA_Motor_Reg[slot::current], kelvo::pantilt::Group<1>{{current}})) return;
  std::printf("cur 1************Tilt :0x%x\n", static_cast<std::uint32_t>(current));
  SetTILTCurrent(static_cast<std::uint32_t>(current));
}

void set_ramps(const Pair& ramps) {
  if (!renew(&iTiltVETRA_Motor_Reg[slot::ramps], ramps)) return;
  std::printf("gain 1************Tilt Acc:0x%x Dec:0x%x\n", ramps[0], ramps[1]);
  Tilt_AccDec_setup(ramps.values[0], ramps.values[1]);
}

/// The way from a count to a target around the forbidden side.
std::int32_t way(const TiltCounts& limits, std::int32_t count, std::int32_t target) {
  const std::int32_t range = *kelvo::pantilt::tilt.full_step;
  if (count > limits.end && limits.start > target) return target + (range - count);
  if (limits.end >= std::min(target, count) && limits.end < target && count < limits.start) {
    return range - target + count;
  }
  return std::abs(count - target);
}

Pair absolute_gains(std::int32_t pos) {
  namespace pantilt = kelvo::pantilt;
  constexpr std::int32_t absolute = 1;
  const auto count = static_cast<std::int32_t>(
      pantilt::read(pantilt::tilt, kelvo::wire::vetra::position, 2).u16());
  const TiltCounts limits;
  std::printf("@@@@@@@@@@@@@@@@@11111 iStart:%d iEnd:%d istep:%d\n", limits.end, limits.start, pos);
  // Whether the limits are set is not asked here, unlike in the move itself (deliberate).
  const std::int32_t target = limits.target(pos, giTiltLimitEn == 1);
  const std::int32_t distance = way(limits, count, target);
  Pair gains = tuning_pair(position_words, absolute);
  if (distance <= pantilt::near_distance && distance != 0) {
    gains.values[0] = pantilt::near_tilt_gain(distance);
  }
  return gains;
}

/// Slow continuous moves are overridden after the table's row has been written: two writes in each call
/// (deliberate).
void override_slow(std::uint32_t speed) {
  constexpr std::int32_t slow_position_p = 40;
  constexpr std::int32_t slow_speed_p = 3000;
  Pair gains = tuning_pair(speed_words, 0);
  if (speed - 1 <= 148) {
    set_position_gains({{slow_position_p, tuning_word(position_words + 1, 0)}});
    gains.values[0] = slow_speed_p;
  }
  set_speed_gains("spd 3************Tilt P:0x%x I:0x%x\n", gains);
}

void retune_vetra(std::int32_t mode, std::uint32_t speed, std::int32_t pos) {
  set_position_gains(mode == 1 ? absolute_gains(pos) : tuning_pair(position_words, mode));
  set_current(tuning_word(current_word, mode));  // before the speed gains, unlike pan (deliberate)
  set_speed_gains("spd 1************Tilt P:0x%x I:0x%x\n", tuning_pair(speed_words, mode));
  set_ramps(tuning_pair(ramp_words, mode));
  if (mode == 0) override_slow(speed);
}

void retune_tasmere(std::int32_t mode) {
  const Triple gains = kelvo::pantilt::tuning_triple(tuning::tasmere_tilt, mode);
  if (!renew(&iTiltTASMERE_PID[1], gains)) return;
  // The line shows what pan was given last (deliberate).
  std::printf("TASMERE #####################tilt P:0x%x I:0x%x D:0x%x\n",
              static_cast<std::uint32_t>(iPanTASMERE_PID[1]),
              static_cast<std::uint32_t>(iPanTASMERE_PID[2]),
              static_cast<std::uint32_t>(iPanTASMERE_PID[3]));
  TiltPIDsetup(gains[0], gains[1], gains.low(2));
}

}  // namespace

std::int32_t Tilt_Setup_PID(std::int32_t mode, std::int32_t speed, std::int32_t pos) {
  if (giPID_Debug_En == 1) return 0;
  if (is_tasmere()) {
    retune_tasmere(mode);
  } else {
    retune_vetra(mode, kelvo::pantilt::magnitude(speed), pos);
  }
  return 0;
}

std::int32_t Set_stop_PID() {
  Pan_Setup_PID(0, 0, 0);
  Tilt_Setup_PID(0, 0, 0);
  return 0;
}
