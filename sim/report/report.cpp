#include "sim/report/report.h"

#include <cstdio>
#include <string>

#include "sim/report/sections.h"
#include "sim/report/table.h"

namespace kelvo::sim {
namespace {

using camera::BootRecord;
using camera::Camera;
using camera::Violation;

template <typename... Arguments>
std::string format(const char* pattern, Arguments... arguments) {
  char text[160];
  std::snprintf(text, sizeof text, pattern, arguments...);
  return text;
}

}  // namespace

const char* state_of(const BootRecord& boot) {
  if (boot.cut) return "power cut";
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

/// Nobody knows a caller of the models themselves.
std::string process_text(const Violation& violation) {
  return violation.process == 0 ? "-" : format("%d", static_cast<int>(violation.process));
}

std::string earlier_boots(const Camera& camera) {
  if (camera.boots().first() <= 1) return {};
  return format("  %u earlier boots are not listed\n", camera.boots().first() - 1);
}

std::string totals(const Camera& camera) {
  std::string text;
  if (camera.pt5111_words() != 0) {
    text += format("  words on the PT5111's own device: %u\n", camera.pt5111_words());
  }
  if (!camera.powered()) text += "  the power is off\n";
  text += format("  time simulated: %s\n",
                 text_of(number(camera.clock.now().count()), Format::seconds).c_str());
  text += format("  protocol violations: %llu\n",
                 static_cast<unsigned long long>(camera.violations().total()));
  return text;
}

/// Tables with a line between them.
std::string tables(const std::vector<Section>& sections) {
  std::string text;
  for (const Section& section : sections) {
    const std::string table = text_of(section);
    if (!table.empty()) text += table + "\n";
  }
  return text;
}

}  // namespace

std::string violation_line(const Violation& violation) {
  return "violation at " + text_of(number(violation.time.count()), Format::seconds) +
         " by process " + process_text(violation) + " against the " + name_of(violation.unit) +
         ": " + frame_text(violation) + ": " + violation.reason.data();
}

std::string violations_table(const Camera& camera) {
  const std::span<const Violation> listed = camera.violations().listed();
  if (listed.empty()) return {};
  Table table({"time", "process", "to", "frame", "reason"});
  for (const Violation& violation : listed) {
    table.add({text_of(number(violation.time.count()), Format::seconds), process_text(violation),
               name_of(violation.unit), frame_text(violation), violation.reason.data()});
  }
  std::string text = table.text();
  const std::uint64_t unlisted = camera.violations().total() - listed.size();
  if (unlisted != 0) {
    text += format("  and %llu more\n", static_cast<unsigned long long>(unlisted));
  }
  return text;
}

std::string status_text(const Camera& camera, const std::vector<Section>& more) {
  return earlier_boots(camera) + tables(all_sections(camera)) + tables(more) + totals(camera);
}

std::string summary(const Camera& camera) {
  std::vector<Section> sections{boots_section(camera), frames_section(camera),
                                images_section(camera), boot_motors_section(camera),
                                boot_devices_section(camera)};
  if (camera.head().transfers() != 0) sections.push_back(head_section(camera));
  return earlier_boots(camera) + tables(sections) + totals(camera);
}

std::string report(const Camera& camera, const std::string& name) {
  const std::string heading = "\nSimulated camera" + (name.empty() ? "" : " " + name) + "\n\n";
  return heading + summary(camera) + violations_table(camera);
}

}  // namespace kelvo::sim
