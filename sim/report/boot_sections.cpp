// What a camera remembers of its boots.
#include "sim/lens/wiring.h"
#include "sim/report/report.h"
#include "sim/report/sections.h"

namespace kelvo::sim {
namespace {

using camera::BootRecord;
using camera::Camera;
using camera::Download;
using camera::FrameKind;
using camera::name_of;

template <typename Add>
void for_each_boot(const Camera& camera, Add add) {
  for (std::uint32_t number = camera.boots().first(); number <= camera.boots().total(); ++number) {
    add(number, camera.boots().boot(number));
  }
}

/// The image that a download was, or was meant to be: that of the module, if it is known.
Value image_name(const BootRecord& boot, const Download& download) {
  for (const wire::ProgramImage& image : wire::program_images) {
    const bool of_module = boot.runs ? image.module == boot.module
                                     : (download.modules & camera::set_of(image.module)) != 0;
    if (of_module && image.memory == download.memory) return image.symbol;
  }
  return {};
}

}  // namespace

Section boots_section(const Camera& camera) {
  Section section{"boots",
                  {{"boot", "boot"},
                   {"module", "module"},
                   {"version", "version", Format::hex4},
                   {"attempts", "attempts"},
                   {"program", "program"},
                   {"boot_time_ns", "boot time", Format::seconds},
                   {"violations", "violations"}}};
  for_each_boot(camera, [&](std::uint32_t number_of, const BootRecord& boot) {
    section.rows.push_back({number(number_of), boot.runs ? Value(name_of(boot.module)) : Value(),
                            boot.runs ? Value(number(boot.version)) : Value(),
                            number(boot.attempts), state_of(boot),
                            boot.started ? Value(number((boot.up - boot.begun).count())) : Value(),
                            number(boot.violations)});
  });
  return section;
}

Section frames_section(const Camera& camera) {
  Section section{"frames",
                  {{"boot", "boot"},
                   {"boot_loader", "boot loader"},
                   {"payloads", "payloads"},
                   {"checksum_reads", "checksum reads"},
                   {"commands", "commands"},
                   {"queries", "queries"},
                   {"other", "other"}}};
  for_each_boot(camera, [&](std::uint32_t number_of, const BootRecord& boot) {
    const auto count = [&](FrameKind kind) { return number(boot.count(kind)); };
    section.rows.push_back({number(number_of), count(FrameKind::boot_command),
                            count(FrameKind::payload), count(FrameKind::checksum_read),
                            count(FrameKind::command), count(FrameKind::query),
                            count(FrameKind::malformed)});
  });
  return section;
}

/// The downloads of each boot's last attempt, and all that did not arrive intact.
Section images_section(const Camera& camera) {
  Section section{"images",
                  {{"boot", "boot"},
                   {"attempt", "attempt"},
                   {"memory", "memory", Format::hex2},
                   {"image", "image"},
                   {"checksum", "checksum answered", Format::hex8},
                   {"download", "download"}}};
  for_each_boot(camera, [&](std::uint32_t number_of, const BootRecord& boot) {
    for (const Download& download : boot.listed()) {
      if (download.attempt != boot.attempts && download.intact()) continue;
      section.rows.push_back({number(number_of), number(download.attempt), number(download.memory),
                              image_name(boot, download), number(download.checksum),
                              download.intact() ? "intact" : "NOT INTACT"});
    }
  });
  return section;
}

Section boot_motors_section(const Camera& camera) {
  Section section{"boot_motors",
                  {{"boot", "boot"},
                   {"motor", "motor"},
                   {"position", "position", Format::position},
                   {"counter", "counter"},
                   {"in", "in"}}};
  for_each_boot(camera, [&](std::uint32_t number_of, const BootRecord& boot) {
    const camera::LensSummary lens = camera.lens_summary(number_of);
    for (const camera::Wire& wire : camera::wiring) {
      if (!boot.runs || wire.module != boot.module) continue;
      const std::size_t output = index(wire.output);
      section.rows.push_back({number(number_of), wire.motor, number(lens.positions[output]),
                              wire.counted ? Value(number(lens.counts[output])) : Value(),
                              wire.count});
    }
  });
  return section;
}

Section boot_devices_section(const Camera& camera) {
  Section section{"boot_devices",
                  {{"boot", "boot"},
                   {"filter", "IR-cut filter"},
                   {"dc_iris", "DC iris"},
                   {"heater", "heater"},
                   {"stabiliser", "stabiliser"}}};
  for_each_boot(camera, [&](std::uint32_t number_of, const BootRecord& boot) {
    if (!boot.runs) return;
    const camera::LensSummary lens = camera.lens_summary(number_of);
    section.rows.push_back({number(number_of), name_of(lens.filter), number(lens.iris_target),
                            number(lens.heater), lens.stabiliser_on ? "on" : "off"});
  });
  return section;
}

}  // namespace kelvo::sim
