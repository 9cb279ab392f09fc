#ifndef KELVO_SIM_COMMON_PARTS_H
#define KELVO_SIM_COMMON_PARTS_H

#include <array>
#include <cstddef>
#include <span>

namespace kelvo::sim::camera {

/// Parts of a camera as the memory that they lie in.
class Parts {
 public:
  static constexpr std::size_t most = 8;

  void add(std::span<std::byte> part) {
    if (!part.empty()) kept_[count_++] = part;
  }
  const std::span<std::byte>* begin() const { return kept_.data(); }
  const std::span<std::byte>* end() const { return kept_.data() + count_; }
  std::size_t size() const { return count_; }

 private:
  std::size_t count_ = 0;
  std::array<std::span<std::byte>, most> kept_{};
};

}  // namespace kelvo::sim::camera

#endif
