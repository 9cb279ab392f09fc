#ifndef KELVO_PANTILT_MOTION_SCHEDULE_H
#define KELVO_PANTILT_MOTION_SCHEDULE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "kelvo/pantilt.h"

// What the schedules of pan and tilt share.
namespace kelvo::pantilt {

/// Slots of the Vetra caches, and the words of a Vetra row in the tuning table.
namespace slot {
inline constexpr std::size_t position_gains = 0;  // P, I
inline constexpr std::size_t speed_gains = 2;     // P, I
inline constexpr std::size_t current = 4;
inline constexpr std::size_t ramps = 5;  // acceleration, deceleration
}  // namespace slot

/// Words of the tuning table: mode 0 of each kind; mode 1 uses the next row.
namespace tuning {
inline constexpr std::uint32_t tasmere_pan = 1;
inline constexpr std::uint32_t tasmere_tilt = 15;
inline constexpr std::uint32_t tasmere_pan_stop = 29;
inline constexpr std::uint32_t vetra_pan = 56;
inline constexpr std::uint32_t vetra_tilt = 70;
inline constexpr std::uint32_t row_words = 7;
}  // namespace tuning

/// A word of the row that belongs to a mode; beyond the table words are 0.
inline std::int32_t tuning_word(std::uint32_t word, std::int32_t mode) {
  const std::uint32_t index = word + tuning::row_words * static_cast<std::uint32_t>(mode);
  return index < std::size(giMOTOR_Init_Reg) ? giMOTOR_Init_Reg[index] : 0;
}

/// Values that are written together, when one of them changes.
template <std::size_t size>
struct Group {
  std::int32_t values[size];

  std::uint32_t operator[](std::size_t index) const {
    return static_cast<std::uint32_t>(values[index]);
  }
  std::int16_t low(std::size_t index) const { return static_cast<std::int16_t>(values[index]); }
};
using Pair = Group<2>;
using Triple = Group<3>;

inline Pair tuning_pair(std::uint32_t word, std::int32_t mode) {
  return {{tuning_word(word, mode), tuning_word(word + 1, mode)}};
}

inline Triple tuning_triple(std::uint32_t word, std::int32_t mode) {
  return {{tuning_word(word, mode), tuning_word(word + 1, mode), tuning_word(word + 2, mode)}};
}

/// Whether a group differs from what was written last; the cache then holds the new one.
template <std::size_t size>
bool renew(std::int32_t* cached, const Group<size>& group) {
  if (std::equal(cached, cached + size, group.values)) return false;
  std::copy_n(group.values, size, cached);
  return true;
}

/// |speed|; its lowest value stays what it is, as an unsigned number.
inline std::uint32_t magnitude(std::int32_t speed) {
  const auto bits = static_cast<std::uint32_t>(speed);
  return speed < 0 ? 0U - bits : bits;
}

}  // namespace kelvo::pantilt

#endif
