// The IR-cut filter: a stepping motor on DE015, elsewhere a coil that gets a pulse.
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/lens/pt5111.h"

namespace kelvo::ctl {
namespace {

constexpr Fitted stepped_filter{true, false, false};

struct FilterOptions {
  std::optional<std::int64_t> steps;
};

struct Side {
  const char* name;
  std::int64_t (*by_pt5111)(std::uint32_t steps);  // tells whether its words got through
  std::uint32_t (*any)(std::uint8_t speed, std::uint32_t steps);
};
constexpr Side sides[] = {{"on", ICR_ON, setICRon}, {"off", ICR_OFF, setICRoff}};

void check_steps(LensModule module, const FilterOptions& options) {
  if (stepped_filter.on(module) == options.steps.has_value()) return;
  throw Failure(ExitCode::wrong_arguments,
                options.steps
                    ? "--steps: the filter of " + name_of(module) + " has no stepping motor"
                    : "how far? The filter of " + name_of(module) +
                          " has a stepping motor: say so with --steps");
}

Json move(Session& session, const Side& side, const FilterOptions& options) {
  const LensModule module = session.lens();
  check_steps(module, options);
  use_lens(session);
  const auto steps = static_cast<std::uint32_t>(options.steps.value_or(0));
  if (with_pt5111.on(module)) {
    check_word(session, session.send([&] { return side.by_pt5111(steps); }));
  } else {
    session.send([&] { return side.any(0, steps); });
    session.check_lens_link();
  }
  Json result{{"module", name_of(module)}, {"filter", side.name}};
  if (options.steps) result["steps"] = steps;
  return result;
}

}  // namespace

void add_filter(CommandTable& table) {
  CLI::App& group =
      CommandTable::add_group(table.root(), "filter", "Moves the IR-cut filter in and out");
  for (const Side& side : sides) {
    auto [command, options] = table.add<FilterOptions>(
        group, side.name, std::string("Moves the filter into its ") + side.name + " position",
        [&side](Session& session, const FilterOptions& given) {
          return move(session, side, given);
        });
    add_number(command, "--steps", options.steps, word_range, "Motor steps; DE015 alone");
  }
}

}  // namespace kelvo::ctl
