// The travel of the iris, as the library reads it from the unit's record.
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/by_module.h"
#include "tools/kelvoctl/common/child.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "tools/kelvoctl/records/record_file.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

constexpr Fitted looped{false, true, true};

struct Travel {
  std::int32_t result = -1;
  std::uint32_t high = 0;
  std::uint32_t low = 0;
};

Failure no_travel(LensModule module) {
  const bool measured = module == kind_of(module).checked;
  return {ExitCode::wrong_arguments,
          std::string(wire::iris_record) + ": cannot be opened: " +
              (measured ? "calibrate the iris" : "import the unit's record")};
}

/// In a child, because on T5391 each call costs the process a descriptor. The library takes zeros from a
/// record that is too short.
Json show_travel(Session& session) {
  const LensModule module = session.lens();
  refuse_unless(looped.on(module), module, "has no iris loop");
  if (!stored_record(kind_of(module), wire::iris_record)) throw no_travel(module);
  const auto read = [module] {
    SetLensType(static_cast<std::int32_t>(module));
    Travel travel;
    travel.result = Get_DC_Range(&travel.high, &travel.low);
    return travel;
  };
  const Travel travel =
      call_in_child<Travel>(session, read, [](const std::string& /*line*/) {}).result;
  if (travel.result != 0) throw no_travel(module);
  return {{"module", name_of(module)}, {"minimum", travel.low}, {"maximum", travel.high}};
}

}  // namespace

void add_iris_range(CommandTable& table) {
  CLI::App& group = CommandTable::group(table.root(), "iris");
  table.add(group, "range", "Shows the travel of the unit, from its calibration record",
            show_travel);
}

}  // namespace kelvo::ctl
