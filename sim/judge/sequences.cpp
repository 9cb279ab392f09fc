#include "sim/judge/sequences.h"

#include <algorithm>

#include "sim/judge/caller.h"

namespace kelvo::sim::camera {
namespace {

using sequence_keys::sequences;
using sequence_keys::touching;

bool closes(const Sequence& sequence, std::uint32_t key) {
  return std::any_of(sequence.closes.begin(), sequence.closes.end(),
                     [&](const Keys& keys) { return keys.has(key); });
}

}  // namespace

void Sequences::judge(Exchange& exchange, std::int32_t process, Source source, std::uint32_t key) {
  for (const Touching& row : touching) {
    if (row.source == source && row.keys.has(key)) {
      touch(exchange, process, row.part, source, key);
    }
  }
}

void Sequences::reset(Exchange& exchange, std::int32_t process) {
  for (std::size_t part = 0; part <= static_cast<std::size_t>(Part::filter_coil); ++part) {
    if (in_the_way(open_[part], exchange.now, process)) complain(exchange, open_[part]);
    open_[part] = {};
  }
  judge(exchange, process, Source::boot, reset_key);
}

/// Asks the kernel last: it is the dearest question, and only for who would be blamed.
bool Sequences::in_the_way(const Open& open, Time now, std::int32_t process) {
  return open.process != 0 && open.process != process && now - open.last < longest_silence &&
         !gone(open.process);
}

void Sequences::complain(Exchange& exchange, const Open& open) {
  exchange.violation("in the middle of %s by process %d", sequences[open.sequence].name,
                     static_cast<int>(open.process));
}

void Sequences::touch(Exchange& exchange, std::int32_t process, Part part, Source source,
                      std::uint32_t key) {
  Open& current = open(part);
  if (in_the_way(current, exchange.now, process)) return complain(exchange, current);
  const bool own = current.process == process;
  if (own) current.last = exchange.now;
  if (own && closes(sequences[current.sequence], key)) {
    current = {};
    return;
  }
  for (std::size_t i = 0; i < sequences.size(); ++i) {
    const Sequence& row = sequences[i];
    const bool opens = row.part == part && row.source == source && row.opens.has(key);
    if (!opens || (own && row.part == Part::pt5111)) continue;
    current = {process, static_cast<std::uint8_t>(i), exchange.now};
    return;
  }
}

}  // namespace kelvo::sim::camera
