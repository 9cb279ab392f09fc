#include "sim/report/report.h"

#include <cstdio>
#include <string>

#include "sim/lens/wiring.h"
#include "sim/report/table.h"

namespace kelvo::sim {
namespace {

using camera::BootRecord;
using camera::Camera;
using camera::Download;
using camera::FrameKind;
using camera::Violation;

template <typename... Arguments>
std::string format(const char* pattern, Arguments... arguments) {
  char text[160];
  std::snprintf(text, sizeof text, pattern, arguments...);
  return text;
}

}  // namespace

const char* state_of(const BootRecord& boot) {
  if (boot.runs) return "runs";
  return boot.started ? "none to start" : "not started";
}

const char* state_of(const camera::HeadController& controller, camera::Time now) {
  if (controller.asleep()) return "asleep";
  return controller.axis().moving(now) ? "moves" : "at rest";
}

std::string frame_text(const Violation& violation) {
  std::string text;
  for (std::size_t i = 0; i < violation.shown; ++i) text += format("%02X ", violation.frame[i]);
  if (violation.length > violation.shown) return text + format("... (%u bytes)", violation.length);
  if (!text.empty()) text.pop_back();
  return text.empty() ? "-" : text;
}

namespace {

std::string seconds(camera::Time time) {
  const long long milliseconds = time.count() / 1'000'000;
  return format("%lld.%03lld s", milliseconds / 1000, milliseconds % 1000);
}

std::string boots_table(const Camera& camera) {
  Table table({"boot", "module", "version", "attempts", "program", "boot time", "violations"});
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    const BootRecord& boot = camera.boots().boot(number);
    table.add({format("%u", number), boot.runs ? camera::name_of(boot.module) : "-",
               boot.runs ? format("%04X", boot.version) : "-", format("%u", boot.attempts),
               state_of(boot), boot.started ? seconds(boot.up - boot.begun) : "-",
               format("%llu", static_cast<unsigned long long>(boot.violations))});
  }
  return table.text();
}

std::string frames_table(const Camera& camera) {
  Table table(
      {"boot", "boot loader", "payloads", "checksum reads", "commands", "queries", "other"});
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    const BootRecord& boot = camera.boots().boot(number);
    const auto count = [&](FrameKind kind) { return format("%u", boot.count(kind)); };
    table.add({format("%u", number), count(FrameKind::boot_command), count(FrameKind::payload),
               count(FrameKind::checksum_read), count(FrameKind::command), count(FrameKind::query),
               count(FrameKind::malformed)});
  }
  return table.text();
}

/// The image that a download was, or was meant to be: that of the module, if it is known.
std::string image_name(const BootRecord& boot, const Download& download) {
  for (const wire::ProgramImage& image : wire::program_images) {
    const bool of_module = boot.runs ? image.module == boot.module
                                     : (download.modules & camera::set_of(image.module)) != 0;
    if (of_module && image.memory == download.memory) return image.symbol;
  }
  return "-";
}

/// The downloads of each boot's last attempt, and all that did not arrive intact.
std::string images_table(const Camera& camera) {
  Table table({"boot", "attempt", "memory", "image", "checksum answered", "download"});
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    const BootRecord& boot = camera.boots().boot(number);
    for (const Download& download : boot.listed()) {
      if (download.attempt != boot.attempts && download.intact()) continue;
      table.add({format("%u", number), format("%u", download.attempt),
                 format("0x%02X", download.memory), image_name(boot, download),
                 format("%08X", download.checksum), download.intact() ? "intact" : "NOT INTACT"});
    }
  }
  return table.empty() ? "" : table.text();
}

std::string loops_table(const Camera& camera) {
  Table table({"boot", "IR-cut filter", "DC iris", "heater", "stabiliser"});
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    if (!camera.boots().boot(number).runs) continue;
    const camera::LensSummary lens = camera.lens_summary(number);
    table.add({format("%u", number), name_of(lens.filter), format("%u", lens.iris_target),
               format("%u", lens.heater), lens.stabiliser_on ? "on" : "off"});
  }
  return table.empty() ? "" : table.text();
}

std::string position_text(std::int32_t position) {
  return position == 0 ? "0" : format("%+d", position);
}

std::string motors_table(const Camera& camera) {
  Table table({"boot", "motor", "position", "counter", "in"});
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    const BootRecord& boot = camera.boots().boot(number);
    const camera::LensSummary lens = camera.lens_summary(number);
    for (const camera::Wire& wire : camera::wiring) {
      if (!boot.runs || wire.module != boot.module) continue;
      const std::size_t output = index(wire.output);
      table.add({format("%u", number), wire.motor, position_text(lens.positions[output]),
                 wire.counted ? format("%d", lens.counts[output]) : "-", wire.count});
    }
  }
  return table.empty() ? "" : table.text();
}

/// Positions on the scale of the interface, counts as the controllers have them.
std::string head_table(const Camera& camera) {
  const camera::Time now = camera.clock.now();
  Table table({"head", "family", "position", "count", "limits", "state"});
  const auto add = [&](camera::HeadAxis axis, const camera::HeadController& controller) {
    table.add({camera::name_of(axis), camera::name_of(camera.head().family()),
               format("%u", controller.common_position(now)),
               format("%u", controller.axis().position(now)),
               controller.axis().bound() ? "on" : "off", state_of(controller, now)});
  };
  add(camera::HeadAxis::pan, camera.head().pan());
  add(camera::HeadAxis::tilt, camera.head().tilt());
  return table.text();
}

}  // namespace

std::string violations_table(const Camera& camera) {
  const std::span<const Violation> listed = camera.violations().listed();
  if (listed.empty()) return {};
  Table table({"time", "to", "frame", "reason"});
  for (const Violation& violation : listed) {
    table.add({seconds(violation.time), name_of(violation.unit), frame_text(violation),
               violation.reason.data()});
  }
  std::string text = table.text();
  const std::uint64_t unlisted = camera.violations().total() - listed.size();
  if (unlisted != 0) {
    text += format("  and %llu more\n", static_cast<unsigned long long>(unlisted));
  }
  return text;
}

std::string summary(const Camera& camera) {
  std::string text;
  if (camera.boots().first() > 1) {
    text += format("  %u earlier boots are not listed\n", camera.boots().first() - 1);
  }
  if (camera.boots().total() != 0) {
    for (const std::string& table :
         {boots_table(camera), frames_table(camera), images_table(camera), motors_table(camera),
          loops_table(camera)}) {
      if (!table.empty()) text += table + "\n";
    }
  }
  if (camera.pt5111_words() != 0) {
    text += format("  words on the PT5111's own device: %u\n", camera.pt5111_words());
  }
  if (camera.head().transfers() != 0) text += head_table(camera) + "\n";
  text += format("  time simulated: %s\n", seconds(camera.clock.now()).c_str());
  text += format("  protocol violations: %llu\n",
                 static_cast<unsigned long long>(camera.violations().total()));
  return text;
}

std::string report(const Camera& camera, const std::string& name) {
  const std::string heading = "\nSimulated camera" + (name.empty() ? "" : " " + name) + "\n\n";
  return heading + summary(camera) + violations_table(camera);
}

}  // namespace kelvo::sim
