// What the models hold against the programs that talk to them.
#ifndef KELVO_SIM_COMMON_VIOLATIONS_H
#define KELVO_SIM_COMMON_VIOLATIONS_H

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <span>

#include "sim/common/clock.h"

namespace kelvo::sim::camera {

/// The part of the camera that a violation was committed against.
enum class Unit : std::uint8_t {
  lens_controller,
  pt5111,
  reset_line,
  i2c_bus,
  pan_controller,
  tilt_controller,
  bus_lock
};

const char* name_of(Unit unit);

struct Violation {
  static constexpr std::size_t most_frame_bytes = 16;
  static constexpr std::size_t longest_reason = 95;

  Time time;
  Unit unit;
  std::uint8_t shown;    // bytes of `frame` that are filled
  std::uint32_t length;  // bytes of the whole frame
  std::int32_t process;  // 0: nobody knows
  std::array<std::uint8_t, most_frame_bytes> frame;
  std::array<char, longest_reason + 1> reason;
};

/// Keeps the first violations in order and counts them all.
class Violations {
 public:
  static constexpr std::size_t capacity = 64;

  /// Who commits what is recorded from now on.
  void blame(std::int32_t process) { process_ = process; }

  /// The reason is a printf format; a longer one is cut.
  [[gnu::format(printf, 5, 6)]] void record(Time time, Unit unit,
                                            std::span<const std::uint8_t> frame, const char* reason,
                                            ...);
  [[gnu::format(printf, 5, 0)]] void record_list(Time time, Unit unit,
                                                 std::span<const std::uint8_t> frame,
                                                 const char* reason, std::va_list arguments);

  std::uint64_t total() const { return total_; }
  std::span<const Violation> listed() const;
  /// The one that was recorded last, listed or not; of a total that is not 0.
  const Violation& last() const { return last_; }

  /// All entries. Those that are not listed yet mean nothing.
  std::span<std::byte> entries() { return std::as_writable_bytes(std::span(kept_)); }

 private:
  std::uint64_t total_ = 0;
  std::int32_t process_ = 0;
  Violation last_{};
  std::array<Violation, capacity> kept_{};
};

}  // namespace kelvo::sim::camera

#endif
