// The tuning table, and gains that do not follow the moves.
#include <array>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/head/tuning.h"

namespace kelvo::ctl {
namespace {

struct TuningFileOptions {
  std::string file;
};

Json show_tuning(Session& /*session*/, const TuningFileOptions& options) {
  if (!options.file.empty()) return tuning_json(read_tuning_file(options.file));
  if (!tuning_loaded()) {
    throw Failure(ExitCode::refused, "no tuning table is loaded in this process: name its file");
  }
  Json result{{"frozen", gains_frozen()}};
  result.update(tuning_json(loaded_tuning()));
  return result;
}

Json load_tuning(Session& session, const TuningFileOptions& options) {
  load_tuning(session, read_tuning_file(options.file));
  return {};
}

Json set_frozen(Session& session, bool frozen) {
  freeze_gains(session, frozen);
  return {};
}

Json stop_gains(Session& session, const TuningFileOptions& options) {
  if (!options.file.empty()) load_tuning(session, read_tuning_file(options.file));
  for (const HeadAxis& axis : head_axes) {
    require_gains(axis, attach_axis(session, axis), Motion::continuous);
  }
  session.call([] { return Set_stop_PID(); });
  Json gains = Json::array();
  const int family = session.attach_head();
  for (const HeadAxis& axis : head_axes) {
    check_answers(session, axis, family);
    gains.push_back(written_json(axis, family));
  }
  return {{"written", gains}};
}

/// What acts on this process alone is of no use on a command line, which ends with it.
void require_lasting(Place place, const std::string& instead) {
  if (place == Place::line) return;
  throw Failure(ExitCode::refused,
                "it would end with this command: " + instead + ", or use a script or a shell");
}

struct FreezeCommand {
  const char* name;
  const char* description;
  bool frozen;
};

constexpr std::array freeze_commands{
    FreezeCommand{"freeze", "From now on moves leave the gains as they are", true},
    FreezeCommand{"thaw", "From now on the gains follow the moves again", false}};

}  // namespace

void add_pid(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "pid", "The gains of the head's moves");
  auto [show_command, shown] =
      table.add<TuningFileOptions>(group, "show", "Shows a tuning table", show_tuning);
  add_text(show_command, "FILE", shown.file, "Its file; without it what this process has loaded");
  const Place place = table.place();
  auto [load_command, loaded] = table.add<TuningFileOptions>(
      group, "load", "Loads a tuning table for the moves of this process",
      [place](Session& session, const TuningFileOptions& options) {
        require_lasting(place, "give --pid FILE with the move");
        return load_tuning(session, options);
      });
  require(add_text(load_command, "FILE", loaded.file,
                   "Twelve rows of seven numbers, or the 336 bytes"));
  for (const FreezeCommand& command : freeze_commands) {
    table.add(group, command.name, command.description,
              [place, frozen = command.frozen](Session& session) {
                require_lasting(place, "give --freeze with the move");
                return set_frozen(session, frozen);
              });
  }
  auto [stop_command, stopped] = table.add<TuningFileOptions>(
      group, "stop", "Sets the gains for standing still, of both axes; stops nothing", stop_gains);
  add_text(stop_command, "--pid", stopped.file, "The file of the tuning table", "FILE");
}

}  // namespace kelvo::ctl
