// The sequences of frames that nobody may come between: what opens each, what closes it, and which frames
// touch the same part of the camera.
#ifndef KELVO_SIM_JUDGE_SEQUENCE_TABLE_H
#define KELVO_SIM_JUDGE_SEQUENCE_TABLE_H

#include <array>
#include <cstdint>

#include "wire/boot_loader.h"
#include "wire/lens_program.h"
#include "wire/motor_channels.h"
#include "wire/pan_tilt_registers.h"
#include "wire/pt5111.h"

namespace kelvo::sim::camera {

/// What a sequence has to itself.
enum class Part : std::uint8_t {
  boot,
  zoom1_block,
  zoom3_block,
  focus_channel,
  zoom_channel,
  filter_coil,
  pt5111,
  pan_limits,
  tilt_limits,
  pan_gains,
  tilt_gains,
  pan_ramps,
  tilt_ramps,
};
inline constexpr std::size_t part_count = 13;

/// Where a key comes from.
enum class Source : std::uint8_t {
  boot,       // on the lens controller's device: a boot-loader code, or any_frame
  command,    // code and last two arguments
  reg,        // 16-bit register and value
  word,       // of the PT5111
  vetra_pan,  // register
  vetra_tilt,
  tasmere_pan,
  tasmere_tilt,
};

struct Keys {
  std::uint32_t first;
  std::uint32_t last;

  constexpr bool has(std::uint32_t key) const { return first <= key && key <= last; }
};
constexpr Keys just(std::uint32_t code, std::uint32_t value) {
  return {code << 16 | value, code << 16 | value};
}
constexpr Keys all_of(std::uint32_t first, std::uint32_t last) {
  return {first << 16, last << 16 | 0xFFFF};
}
constexpr Keys all_of(std::uint32_t code) { return all_of(code, code); }
constexpr Keys the_word(std::uint32_t word) { return {word, word}; }

/// A frame that is none of the boot loader's; the reset line going low.
inline constexpr std::uint32_t any_frame = 0x100;
inline constexpr std::uint32_t reset_key = 0x101;

struct Sequence {
  const char* name;
  Part part;
  Source source;
  Keys opens;
  std::array<Keys, 3> closes;  // the last ones may be repeated
};

/// Frames that touch a part.
struct Touching {
  Part part;
  Source source;
  Keys keys;
};

constexpr Sequence until(const char* name, Part part, Source source, Keys opens, Keys closes) {
  return {name, part, source, opens, {closes, closes, closes}};
}

namespace sequence_keys {
namespace boot = wire::boot_loader;
namespace command = wire::command;
namespace pt5111 = wire::pt5111;
namespace tasmere = wire::tasmere;
namespace vetra = wire::vetra;
using wire::filter_coil;
using wire::focus_channel;
using wire::zoom_channel;

constexpr Keys runs(const wire::MotorChannel& channel) {
  return just(channel.control, static_cast<std::uint32_t>(wire::motor_control::run));
}
constexpr Keys pt_word(std::int32_t word) { return the_word(static_cast<std::uint32_t>(word)); }
inline constexpr Keys run_a = pt_word(pt5111::motor_a | pt5111::run);
inline constexpr Keys run_b = pt_word(pt5111::motor_b | pt5111::run);
inline constexpr Keys halt_b = pt_word(pt5111::halt_b);

// clang-format off
// Of two that a frame opens, the one that is open goes on.
inline constexpr std::array sequences{
    until("a boot",                  Part::boot,          Source::boot,    the_word(reset_key),              the_word(boot::start_program)),
    until("a zoom-1 move",           Part::zoom1_block,   Source::command, all_of(command::zoom1_direction), all_of(command::zoom1_start)),
    until("powering off zoom 1",     Part::zoom1_block,   Source::command, just(command::zoom1_enable, 0),   just(command::zoom1_enable, 1)),
    until("a zoom-3 move",           Part::zoom3_block,   Source::command, all_of(command::zoom3_direction), all_of(command::zoom3_start)),
    until("a move of the focus",     Part::focus_channel, Source::reg,     all_of(focus_channel.mode),       runs(focus_channel)),
    until("a move of the zoom",      Part::zoom_channel,  Source::reg,     all_of(zoom_channel.mode),        runs(zoom_channel)),
    until("driving the filter coil", Part::filter_coil,   Source::reg,     just(252, 496),                   just(filter_coil, wire::filter_drive::driven)),
    until("setting up the PT5111",   Part::pt5111,        Source::word,    pt_word(pt5111::chip_setup),      halt_b),
    Sequence{"a move of the PT5111", Part::pt5111,        Source::word,    pt_word(pt5111::power_on),        {run_a, run_b, halt_b}},
    until("stopping the PT5111",     Part::pt5111,        Source::word,    pt_word(pt5111::power_off),       halt_b),
    until("the limits of pan",       Part::pan_limits,    Source::tasmere_pan,  the_word(tasmere::set_limit_start),  the_word(tasmere::set_limit_length)),
    until("the limits of tilt",      Part::tilt_limits,   Source::tasmere_tilt, the_word(tasmere::set_limit_start),  the_word(tasmere::set_limit_length)),
    until("the gains of pan",        Part::pan_gains,     Source::tasmere_pan,  the_word(tasmere::set_p),            the_word(tasmere::set_d)),
    until("the gains of tilt",       Part::tilt_gains,    Source::tasmere_tilt, the_word(tasmere::set_p),            the_word(tasmere::set_d)),
    until("the ramps of pan",        Part::pan_ramps,     Source::vetra_pan,    the_word(vetra::set_acceleration),   the_word(vetra::set_deceleration)),
    until("the ramps of tilt",       Part::tilt_ramps,    Source::vetra_tilt,   the_word(vetra::set_acceleration),   the_word(vetra::set_deceleration)),
};

inline constexpr std::array touching{
    Touching{Part::boot,          Source::boot,    {0, reset_key}},
    Touching{Part::zoom1_block,   Source::command, all_of(command::zoom1_direction, command::zoom1_start)},
    Touching{Part::zoom3_block,   Source::command, all_of(command::zoom3_direction, command::zoom3_profile)},
    Touching{Part::focus_channel, Source::reg,     all_of(focus_channel.mode, focus_channel.control)},
    Touching{Part::zoom_channel,  Source::reg,     all_of(zoom_channel.mode, zoom_channel.control)},
    Touching{Part::filter_coil,   Source::reg,     all_of(filter_coil)},
    Touching{Part::filter_coil,   Source::reg,     all_of(144)},
    Touching{Part::filter_coil,   Source::reg,     all_of(160)},
    Touching{Part::filter_coil,   Source::reg,     all_of(182, 190)},
    Touching{Part::filter_coil,   Source::reg,     all_of(252)},
    // All but the supply of a photo-interrupter, register 50.
    Touching{Part::pt5111,        Source::word,    {0, 0xC7FF}},
    Touching{Part::pt5111,        Source::word,    {0xCC00, 0xFFFF}},
    Touching{Part::pan_limits,    Source::tasmere_pan,  {tasmere::set_limit_start, tasmere::set_limit_length}},
    Touching{Part::tilt_limits,   Source::tasmere_tilt, {tasmere::set_limit_start, tasmere::set_limit_length}},
    Touching{Part::pan_gains,     Source::tasmere_pan,  {tasmere::set_p, tasmere::set_d}},
    Touching{Part::tilt_gains,    Source::tasmere_tilt, {tasmere::set_p, tasmere::set_d}},
    Touching{Part::pan_ramps,     Source::vetra_pan,    {vetra::set_acceleration, vetra::set_deceleration}},
    Touching{Part::tilt_ramps,    Source::vetra_tilt,   {vetra::set_acceleration, vetra::set_deceleration}},
};
// clang-format on
}  // namespace sequence_keys

}  // namespace kelvo::sim::camera

#endif
