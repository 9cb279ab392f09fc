#include "sim/fault/fault_table.h"

#include <algorithm>

namespace kelvo::sim::fault {

std::optional<std::uint32_t> FaultTable::add(const Fault& fault) {
  if (count_ == capacity) return {};
  Fault& added = faults_[count_];
  added = fault;
  added.number = ++last_number_;
  ++count_;
  return added.number;
}

Fault* FaultTable::find(const Fault& like) {
  Fault* const end = faults_.data() + count_;
  Fault* const found = std::find_if(
      faults_.data(), end, [&like](const Fault& fault) { return fault.text == like.text; });
  return found != end ? found : nullptr;
}

std::optional<std::uint32_t> FaultTable::add_once(const Fault& fault) {
  const Fault* const same = find(fault);
  return same != nullptr ? same->number : add(fault);
}

std::optional<std::uint32_t> FaultTable::add_anew(const Fault& fault) {
  Fault* const same = find(fault);
  if (same == nullptr) return add(fault);
  same->matches = same->struck = 0;
  return same->number;
}

bool FaultTable::remove(std::uint32_t number) {
  Fault* const end = faults_.data() + count_;
  Fault* const rest = std::remove_if(
      faults_.data(), end, [number](const Fault& fault) { return fault.number == number; });
  count_ = static_cast<std::uint32_t>(rest - faults_.data());
  return rest != end;
}

std::optional<Effect> FaultTable::strike(const Transfer& transfer) {
  Fault* first = nullptr;
  for (Fault& fault : std::span(faults_).first(count_)) {
    if (!fault.waits_for(transfer)) continue;
    ++fault.matches;
    if (first == nullptr && fault.due()) first = &fault;
  }
  if (first == nullptr) return {};
  ++first->struck;
  return first->effect;
}

}  // namespace kelvo::sim::fault
