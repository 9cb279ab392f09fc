#ifndef KELVO_SIM_JUDGE_SEQUENCES_H
#define KELVO_SIM_JUDGE_SEQUENCES_H

#include <array>
#include <cstdint>

#include "sim/common/exchange.h"
#include "sim/judge/sequence_table.h"

namespace kelvo::sim::camera {

/// Who is in the middle of which sequence. What another process sends to the same part of the camera is held
/// against it, and the sequence goes on. It ends with its last frame, with its process, or when nothing
/// has come for a while.
class Sequences {
 public:
  static constexpr Time longest_silence = std::chrono::seconds(5);

  /// Judges a frame and keeps account of it.
  void judge(Exchange& exchange, std::int32_t process, Source source, std::uint32_t key);
  /// The lens controller loses all that was sent to it.
  void reset(Exchange& exchange, std::int32_t process);

 private:
  struct Open {
    std::int32_t process = 0;  // 0: none is open
    std::uint8_t sequence = 0;
    Time last{};
  };

  Open& open(Part part) { return open_[static_cast<std::size_t>(part)]; }
  static bool in_the_way(const Open& open, Time now, std::int32_t process);
  static void complain(Exchange& exchange, const Open& open);
  void touch(Exchange& exchange, std::int32_t process, Part part, Source source, std::uint32_t key);

  std::array<Open, part_count> open_{};
};

}  // namespace kelvo::sim::camera

#endif
