#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "kelvo/pantilt.h"
#include "pantilt/controller/axis.h"
#include "pantilt/controller/position_scale.h"
#include "pantilt/motion/distance_rules.h"
#include "pantilt/motion/freeze.h"
#include "pantilt/motion/schedule.h"
#include "wire/pan_tilt_registers.h"

std::int32_t iPanVETRA_Motor_Reg[7] = {};
std::int32_t iPanTASMERE_PID[7] = {};

namespace {

using kelvo::pantilt::is_tasmere;
using kelvo::pantilt::Pair;
using kelvo::pantilt::renew;
using kelvo::pantilt::Triple;
using kelvo::pantilt::tuning_word;
namespace slot = kelvo::pantilt::slot;
namespace tuning = kelvo::pantilt::tuning;

/// Where a value of a case comes from.
struct Source {
  enum class Kind : std::uint8_t { fixed, table, distance } kind;
  std::int32_t value;  // fixed: the value; else the word of the tuning table
};
constexpr Source fixed(std::int32_t value) { return {Source::Kind::fixed, value}; }
constexpr Source word(std::int32_t number) { return {Source::Kind::table, number}; }
/// By the distance rules, or this word where no way is left.
constexpr Source by_distance(std::int32_t number) { return {Source::Kind::distance, number}; }

enum class CurrentLine : std::uint8_t { shows_new, shows_outgoing, comes_after };

/// What a Vetra pan axis gets for one kind of move, and the lines that announce it. The lines are kept as
/// they are, blanks and capitals included.
struct PanCase {
  Source position_p, position_i, speed_p, speed_i, current, acceleration, deceleration;
  const char* position_line;
  const char* speed_line;
  CurrentLine current_shows;
  const char* current_line;
  const char* ramps_line;
};

// clang-format off
constexpr PanCase absolute_table{
    by_distance(56), word(57), word(58), word(59), word(60), word(61), word(62),
    "pos 2@@@@@@@@@@@@@pan iDiff_Pos:%d = iPos_data:%d - i_step:%d P:%d I:0x%x\n",
    "spd 2@@@@@@@@@@@@@pan P:0x%x I:0x%x\n",
    CurrentLine::shows_new, "cur 2@@@@@@@@@@@@@pan :0x%x\n",
    "gain 2@@@@@@@@@@@@@pan acc:0x%x dec:0x%x\n"};
constexpr PanCase absolute_slow{
    fixed(20), fixed(0), fixed(1152), fixed(100), word(60), fixed(4'000'000), fixed(4'000'000),
    "pos 1@@@@@@@@@@@@@pan P:0x%x I:0x%x\n",
    "spd 1@@@@@@@@@@@@@pan P:0x%x I:0x%x\n",
    CurrentLine::shows_outgoing, "cur 1@@@@@@@@@@@@@pan cur:0x%x \n",
    "Gain 1@@@@@@@@@@@@@pan acc:0x%x dec:0x%x\n"};
constexpr PanCase creep{
    fixed(20), fixed(0), fixed(5000), fixed(5000), word(60), fixed(40'000), fixed(40'000),
    "pos 1#####################pan P:0x%x I:0x%x\n",
    "spd 1#####################pan P:0x%x I:0x%x\n",
    CurrentLine::comes_after, "cur 1#####################pan cur:0x%x\n",
    "Gain 1#####################pan acc:0x%x dec:0x%x\n"};
constexpr PanCase slow{
    fixed(20), fixed(0), fixed(4000), fixed(3000), word(60), fixed(40'000), fixed(40'000),
    "pos 2#####################pan P:0x%x I:0x%x\n",
    "spd 2#####################pan P:0x%x I:0x%x\n",
    CurrentLine::shows_new, "cur 2#####################pan cur:0x%x \n",
    "Gain 2#####################pan acc:0x%x dec:0x%x\n"};
constexpr PanCase cruise{
    word(56), word(57), word(58), word(59), word(60), word(61), word(62),
    "pos 3#####################pan P:0x%x I:0x%x\n",
    "spd 3#####################pan P:0x%x I:0x%x\n",
    CurrentLine::shows_new, "cur 3#####################pan cur:0x%x \n",
    "Gain 3#####################pan acc:0x%x dec:0x%x\n"};
// clang-format on

/// Speed 0 belongs to the last case of its mode: a stop loads the table's own row.
const PanCase& choose(std::int32_t mode, std::uint32_t speed) {
  if (mode != 0) return speed - 1 <= 1508 ? absolute_slow : absolute_table;
  if (speed - 1 <= 28) return creep;
  return speed - 30 <= 69 ? slow : cruise;
}

struct Distance {
  std::int32_t left = 0;
  std::int32_t count = 0;
  std::int32_t target = 0;
};

Distance distance_to(std::int32_t pos) {
  namespace pantilt = kelvo::pantilt;
  const auto count =
      static_cast<std::int32_t>(pantilt::read(pantilt::pan, kelvo::wire::vetra::position, 2).u16());
  const std::int32_t target = pantilt::pan_count(static_cast<float>(pos));
  return {std::abs(count - target), count, target};
}

std::int32_t gain_for(const Distance& distance, std::int32_t gain_at_target) {
  if (distance.left > kelvo::pantilt::near_distance) {
    return kelvo::pantilt::far_pan_gain(distance.left);
  }
  return distance.left == 0 ? gain_at_target : kelvo::pantilt::near_pan_gain(distance.left);
}

/// One call for a Vetra pan axis.
class VetraPan {
 public:
  VetraPan(std::int32_t mode, std::uint32_t speed, std::int32_t pos)
      : mode_(mode), pos_(pos), case_(choose(mode, speed)) {}

  void retune() const {
    set_position_gains();
    set_speed_gains();
    set_current();
    set_ramps();
  }

 private:
  std::int32_t value(const Source& source) const {
    if (source.kind == Source::Kind::fixed) return source.value;
    return tuning_word(static_cast<std::uint32_t>(source.value), mode_);
  }

  Pair pair(const Source& first, const Source& second) const {
    return {{value(first), value(second)}};
  }

  void set_position_gains() const {
    Pair gains = pair(case_.position_p, case_.position_i);
    Distance distance;
    const bool by_distance = case_.position_p.kind == Source::Kind::distance;
    if (by_distance) {
      distance = distance_to(pos_);
      gains.values[0] = gain_for(distance, gains.values[0]);
    }
    if (!renew(&iPanVETRA_Motor_Reg[slot::position_gains], gains)) return;
    if (by_distance) {
      std::printf(case_.position_line, distance.left, distance.count, distance.target,
                  gains.values[0], gains[1]);
    } else {
      std::printf(case_.position_line, gains[0], gains[1]);
    }
    PanPosPIDsetup(gains.low(0), gains.low(1));
  }

  void set_speed_gains() const {
    const Pair gains = pair(case_.speed_p, case_.speed_i);
    if (!renew(&iPanVETRA_Motor_Reg[slot::speed_gains], gains)) return;
    std::printf(case_.speed_line, gains[0], gains[1]);
    PanPIDsetup(gains[0], gains[1], 0);
  }

  void set_current() const {
    std::int32_t& cached = iPanVETRA_Motor_Reg[slot::current];
    const std::int32_t outgoing = cached;
    const std::int32_t current = value(case_.current);
    if (current == outgoing) return;
    cached = current;
    if (case_.current_shows == CurrentLine::comes_after) SetPanCurrent(current);
    const bool old = case_.current_shows == CurrentLine::shows_outgoing;
    std::printf(case_.current_line, static_cast<std::uint32_t>(old ? outgoing : current));
    if (case_.current_shows != CurrentLine::comes_after) SetPanCurrent(current);
  }

  void set_ramps() const {
    const Pair ramps = pair(case_.acceleration, case_.deceleration);
    if (!renew(&iPanVETRA_Motor_Reg[slot::ramps], ramps)) return;
    std::printf(case_.ramps_line, ramps[0], ramps[1]);
    Pan_AccDec_setup(ramps.values[0], ramps.values[1]);
  }

  std::int32_t mode_;
  std::int32_t pos_;
  const PanCase& case_;
};

void retune_tasmere(std::uint32_t first_word, std::int32_t mode, const char* line) {
  const Triple gains = kelvo::pantilt::tuning_triple(first_word, mode);
  if (!renew(&iPanTASMERE_PID[1], gains)) return;
  std::printf(line, gains[0], gains[1], gains[2]);
  PanPIDsetup(gains[0], gains[1], gains.low(2));
}

}  // namespace

std::int32_t Pan_Setup_PID(std::int32_t mode, std::int32_t speed, std::int32_t pos) {
  if (giPID_Debug_En == 1) return 0;
  if (is_tasmere()) {
    retune_tasmere(tuning::tasmere_pan, mode,
                   "TASMERE #####################pan P:0x%x I:0x%x D:0x%x\n");
    if (mode == 0 && speed == 0) {
      retune_tasmere(tuning::tasmere_pan_stop, mode,
                     "TASMERE @@@@@@@@@@@@@@@@@pan P:0x%x I:0x%x D:0x%x\n");
    }
  } else {
    VetraPan(mode, kelvo::pantilt::magnitude(speed), pos).retune();
  }
  return 0;
}
