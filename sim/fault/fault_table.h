#ifndef KELVO_SIM_FAULT_FAULT_TABLE_H
#define KELVO_SIM_FAULT_FAULT_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>

#include "sim/fault/fault.h"

namespace kelvo::sim::fault {

/// The faults of a camera in the order in which they came. A plain value.
class FaultTable {
 public:
  static constexpr std::size_t capacity = 32;

  bool empty() const { return count_ == 0; }
  std::span<const Fault> listed() const { return {faults_.data(), count_}; }

  /// Its number, which no other fault of this table ever has; nothing: there is no room.
  std::optional<std::uint32_t> add(const Fault& fault);
  /// The same unless a fault with the same text is there, whose number it is then.
  std::optional<std::uint32_t> add_once(const Fault& fault);
  /// The same, and what is there begins to count anew.
  std::optional<std::uint32_t> add_anew(const Fault& fault);
  /// Whether there was one of this number.
  bool remove(std::uint32_t number);
  void clear() { count_ = 0; }

  /// Counts a transfer, and tells what becomes of it. Of several faults that are due the first strikes.
  std::optional<Effect> strike(const Transfer& transfer);

 private:
  Fault* find(const Fault& like);

  std::uint32_t count_ = 0;
  std::uint32_t last_number_ = 0;
  std::array<Fault, capacity> faults_{};
};

static_assert(std::is_trivially_copyable_v<FaultTable>);

/// What to say when there is no room.
inline constexpr char table_is_full[] = "there is room for 32 faults: remove one first";
static_assert(FaultTable::capacity == 32);

}  // namespace kelvo::sim::fault

#endif
