#include "sim/lens/boot_log.h"

#include <algorithm>

namespace kelvo::sim::camera {

void BootRecord::add(const Download& download) {
  if (download_count < most_downloads) downloads[download_count] = download;
  ++download_count;
}

std::span<const Download> BootRecord::listed() const {
  return {downloads.data(), std::min<std::size_t>(download_count, most_downloads)};
}

void BootLog::attempt(Time begun, const LensSummary& lens) {
  BootRecord* boot = &current(begun);
  if (boot->settled) {
    boot->lens = lens;
    boot = &begin(begun);
  }
  ++boot->attempts;
}

BootRecord& BootLog::current(Time now) { return total_ == 0 || last().cut ? begin(now) : last(); }

void BootLog::cut(const LensSummary& lens) {
  if (total_ == 0 || last().cut) return;
  last().cut = true;
  last().lens = lens;
}

void BootLog::add_entries_at_risk(Parts& parts) {
  if (total_ != 0) parts.add(std::as_writable_bytes(std::span(&last(), 1)));
  parts.add(std::as_writable_bytes(std::span(&kept_[total_ % capacity], 1)));
}

BootRecord& BootLog::begin(Time begun) {
  BootRecord& boot = kept_[total_++ % capacity];
  boot = {};
  boot.begun = begun;
  return boot;
}

}  // namespace kelvo::sim::camera
