#include "tools/kelvoctl/lens/motor_table.h"

#include "kelvo.h"

namespace kelvo::ctl {
namespace {

using Steps = ByModule<std::uint32_t>;

constexpr std::uint32_t bits_16 = 0xFFFF;
constexpr std::uint32_t bits_17 = 0x1FFFF;  // of 20, eighth steps
constexpr std::uint32_t bits_19 = 0x7FFFF;  // of 20, half steps
constexpr std::uint32_t bits_20 = 0xFFFFF;

/// Those that take a signed count.
template <std::uint32_t (*move)(std::uint8_t, std::int32_t)>
std::uint32_t with_sign(std::uint8_t speed, std::uint32_t steps) {
  return move(speed, static_cast<std::int32_t>(steps));
}

constexpr MoveWays both(std::uint32_t (*forward)(std::uint8_t, std::uint32_t),
                        std::uint32_t (*backward)(std::uint8_t, std::uint32_t), Steps most) {
  return {{forward, most}, {backward, most}};
}

constexpr Preset none = Preset::none;
constexpr Preset zero = Preset::zero;
constexpr Preset word = Preset::word;
constexpr Preset folded = Preset::folded;
constexpr Preset whole = Preset::whole;

constexpr std::uint32_t fold_bit = 0x4000;
constexpr std::uint32_t all_folded = 0x7FFF;
constexpr std::uint32_t raw_zero = 0x3FFF;

}  // namespace

// Each row of three is DE015, DF033, T5391.
// clang-format off
constexpr std::array<Motor, motors> motor_table{
    Motor{
        .name = "zoom1",
        .title = "zoom 1",
        .ways = {both(setZoom1Forward, setZoom1Backward,                   {bits_16, bits_16, bits_19}),
                 both(setZoom1uForward, with_sign<setZoom1uBackward>,      {bits_16, bits_16, 0}),
                 MoveWays{{setZoom1Forward2_2,                             {bits_16, 0,       0}},
                          {setZoom1Backward2_2,                            {bits_16, bits_16, bits_19}}}},
        .count = GetZoom1Count,
        .preset = SetZoom1Count,
        .status = getZoom1Status,
        .power_off = setZoom1PowerOff,
        .counted                                                         = {true,    true,    true},
        .presets                                                         = {zero,    whole,   folded},
        .sensor                                                          = {2,       3,       1},
        .slow                                                            = {27,      97,      31},
        .interrupter_at_pt5111                                           = {false,   true,    false},
    },
    Motor{
        .name = "zoom2",
        .title = "zoom 2",
        .ways = {both(setZoom2Forward, setZoom2Backward,                   {bits_17, bits_17, 0}),
                 both(with_sign<setZoom2Forward512>,
                      with_sign<setZoom2Backward512>,                      {bits_20, bits_20, 0}),
                 MoveWays{}},
        .count = GetZoom2Count,
        .preset = SetZoom2Count,
        .status = getZoom2Status,
        .power_off = setZoom2PowerOff,
        .counted                                                         = {true,    false,   false},
        .presets                                                         = {folded,  none,    none},
        .sensor                                                          = {1,       1,       no_sensor},
        .slow                                                            = {25,      25,      0},
        .interrupter_at_pt5111                                           = {},
    },
    Motor{
        .name = "zoom3",
        .title = "zoom 3",
        .ways = {both(setZoom3Forward, setZoom3Backward,                   {0,       bits_16, 0}),
                 MoveWays{},
                 MoveWays{}},
        .count = GetZoom3Count,
        .preset = SetZoom3Count,
        .status = getZoom3Status,
        .power_off = setZoom3PowerOff,
        .counted                                                         = {false,   true,    false},
        .presets                                                         = {none,    zero,    none},
        .sensor                                                          = {no_sensor, 2,     no_sensor},
        .slow                                                            = {0,       20,      0},
        .interrupter_at_pt5111                                           = {},
    },
    Motor{
        .name = "focus",
        .title = "the focus",
        .ways = {both(setFocusForward, setFocusBackward,                   {bits_17, bits_17, bits_20}),
                 MoveWays{},
                 MoveWays{}},
        .count = GetFocusCount,
        .preset = SetFocusCount,
        .status = getFocusStatus,
        .power_off = setFocusPowerOff,
        .counted                                                         = {true,    true,    false},
        .presets                                                         = {folded,  word,    word},
        .sensor                                                          = {0,       0,       0},
        .slow                                                            = {25,      25,      31},
        .interrupter_at_pt5111                                           = {},
    },
};
// clang-format on

std::uint32_t greatest_count(Preset preset) {
  switch (preset) {
    case Preset::word: return bits_16;
    case Preset::folded: return all_folded;
    case Preset::whole: return 0x7FFFFFFF;
    case Preset::none:
    case Preset::zero: break;
  }
  return 0;
}

std::uint32_t folded_count(std::uint32_t count) {
  return count < fold_bit ? raw_zero - count : (count - fold_bit) ^ all_folded;
}

}  // namespace kelvo::ctl
