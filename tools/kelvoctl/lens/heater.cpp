#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/lens/lens_use.h"

namespace kelvo::ctl {
namespace {

struct HeaterOptions {
  std::int64_t level = 0;
};

Json heat(Session& session, const HeaterOptions& options) {
  use_lens(session);
  const auto level = static_cast<std::uint32_t>(options.level);
  session.send([level] { return setHeater(level); });
  session.check_lens_link();
  return {{"module", name_of(session.lens())}, {"level", level}};
}

}  // namespace

void add_heater(CommandTable& table) {
  auto [command, options] =
      table.add<HeaterOptions>(table.root(), "heater", "Sets the heater", heat);
  require(add_number(command, "LEVEL", options.level, byte_range, "0 to 255", ""));
}

}  // namespace kelvo::ctl
