// The iris: stepped on DE015, a loop of the controller's program elsewhere.
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/lens/pt5111.h"

namespace kelvo::ctl {
namespace {

constexpr Fitted stepped_iris{true, false, false};

struct IrisStepOptions {
  std::int64_t steps = 0;
};

struct LevelOptions {
  std::int64_t level = 0;
};

Json step(Session& session, const char* what, std::int64_t (*move)(std::uint32_t),
          const IrisStepOptions& options) {
  const LensModule module = session.lens();
  refuse_unless(stepped_iris.on(module), module, "has no stepped iris: see iris set");
  use_lens(session);
  const auto steps = static_cast<std::uint32_t>(options.steps);
  check_word(session, session.send([&] { return move(steps); }));
  return {{"module", name_of(module)}, {"iris", what}, {"steps", steps}};
}

Json set_level(Session& session, const LevelOptions& options) {
  use_lens(session);
  const auto level = static_cast<std::uint32_t>(options.level);
  session.send([level] { return setDCIrisABS(level); });
  session.check_lens_link();
  return {{"module", name_of(session.lens())}, {"level", level}};
}

Json stop_motors(Session& session) {
  const LensModule module = session.lens();
  refuse_unless(stepped_iris.on(module), module, "has no stepped iris");
  use_lens(session);
  check_word(session, session.send(::stop));
  return {{"module", name_of(module)}, {"iris", "stopped"}, {"power", "off"}};
}

void add_step(CommandTable& table, CLI::App& group, const char* name,
              std::int64_t (*move)(std::uint32_t)) {
  auto [command, options] = table.add<IrisStepOptions>(
      group, name, std::string("Steps the iris ") + name + "; DE015 alone",
      [name, move](Session& session, const IrisStepOptions& given) {
        return step(session, name, move, given);
      });
  require(add_number(command, "STEPS", options.steps, word_range, "Motor steps", ""));
}

}  // namespace

void add_iris(CommandTable& table) {
  CLI::App& group = CommandTable::add_group(table.root(), "iris", "Opens and closes the iris");
  add_step(table, group, "open", piris_open);
  add_step(table, group, "close", piris_close);
  table.add(group, "stop", "Stops the motors of iris and IR-cut filter, and cuts their power",
            stop_motors);
  auto [command, options] =
      table.add<LevelOptions>(group, "set", "Sets the target of the iris loop", set_level);
  require(
      add_number(command, "LEVEL", options.level, word_range, "Within the travel of the unit", ""));
}

}  // namespace kelvo::ctl
