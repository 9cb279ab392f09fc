// The boot, in a child: it takes seconds, and a controller left half-way has no program.
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/child.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/lens/boot_progress.h"
#include "tools/kelvoctl/records/record_file.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

/// What the child found out.
struct Booted {
  std::int32_t result = 0;   // of the boot
  std::int32_t answers = 0;  // GetLensType() afterwards
  std::int32_t head = 0;     // hndl
  std::uint32_t version = 0;
};

Booted boot_module(LensModule module) {
  Booted booted;
  switch (module) {
    case LensModule::de015: booted.result = Init30516(); break;
    case LensModule::df033: booted.result = Init30516_DF033(); break;
    case LensModule::t5391: booted.result = Init30516_T5391(); break;
  }
  getVersion(&booted.version);
  booted.answers = GetLensType();
  booted.head = hndl;
  return booted;
}

Json downloads_json(const BootProgress& progress) {
  Json downloads = Json::array();
  for (const Download& download : progress.downloads()) {
    downloads.push_back({{"attempt", download.attempt},
                         {"image", download.image},
                         {"bytes", download.bytes},
                         {"expected", hexadecimal(download.expected, 8)},
                         {"received", hexadecimal(download.received, 8)},
                         {"confirmed", download.confirmed}});
  }
  return downloads;
}

/// The last attempt counts for what runs now, and the first for the boot's result.
bool last_attempt_confirmed(const BootProgress& progress) {
  for (const Download& download : progress.downloads()) {
    if (download.attempt == progress.attempts() && !download.confirmed) return false;
  }
  return !progress.downloads().empty();
}

void complain(Session& session, const Booted& booted, const BootProgress& progress) {
  if (progress.transfers_failed()) {
    session.complain(ExitCode::link_failed,
                     "transfers to the boot loader failed: see whether the controller has power");
  }
  if (progress.silent()) {
    session.complain(
        ExitCode::link_failed,
        "the controller answers nothing: see to its power, the reset line and the wires");
  } else if (booted.result != 0) {
    session.complain(ExitCode::bad_data,
                     "a download failed its checksum: " +
                         std::string(last_attempt_confirmed(progress)
                                         ? "the last of all attempts was confirmed and runs, but "
                                           "see to the wires"
                                         : "the program does not run; see that the images fit"));
  }
  if (booted.answers < 0 || booted.version == 0) {
    session.complain(ExitCode::link_failed, "the program does not answer after the boot");
  }
  if (booted.head < 0) {
    session.complain(ExitCode::no_device, std::string(wire::pan_tilt_device) +
                                              ": cannot be opened: see " + tool_name + " doctor");
  }
}

/// What the boot loads as it is, and without a word.
void complain_of_record(Session& session, LensModule module) {
  try {
    const RecordKind& kind = kind_of(module);
    if (!stored_record(kind, kind.read_at_boot()) && module == LensModule::t5391) {
      stored_record(kind, wire::iris_default_record);
    }
  } catch (const Failure& failure) {
    session.complain(static_cast<ExitCode>(failure.code()),
                     failure.what() + std::string(": the unit runs without its calibration"));
  }
}

Json boot(Session& session) {
  const LensModule module = session.lens();
  session.attach_lens();  // a boot without a device goes through all of its steps
  session.confirm("The boot resets the lens controller; whoever uses it is interrupted. Go on?");
  session.await_bus_lock();
  BootProgress progress;
  const auto on_line = [&](const std::string& line) {
    progress.take(line);
    session.progress("boot: " + progress.text());
  };
  const Outcome<Booted> outcome = call_in_child<Booted>(
      session, [module] { return boot_module(module); }, on_line);
  session.detach();
  const Booted& booted = outcome.result;
  complain(session, booted, progress);
  complain_of_record(session, module);
  if (outcome.interrupted) throw Interrupted("interrupted: the boot was carried through");
  session.attach_lens();
  return {{"module", name_of(module)},
          {"attempts", progress.attempts()},
          {"result", booted.result},
          {"version", hexadecimal(booted.version, 4)},
          {"downloads", downloads_json(progress)}};
}

}  // namespace

void add_boot(CommandTable& table) {
  table.add(table.root(), "boot",
            "Resets the lens controller, and downloads and starts its program", boot);
}

}  // namespace kelvo::ctl
