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

struct ChannelOptions {
  std::int64_t channel = 0;
};

Json convert(Session& session, const ChannelOptions& options) {
  use_lens(session);
  const auto channel = static_cast<std::uint32_t>(options.channel);
  const std::uint32_t value = session.send([channel] { return getADC(channel); });
  session.check_lens_link();
  return {{"module", name_of(session.lens())}, {"channel", channel}, {"value", value}};
}

}  // namespace

void add_adc(CommandTable& table) {
  auto [command, options] =
      table.add<ChannelOptions>(table.root(), "adc", "Reads a channel of the converter", convert);
  require(add_number(command, "CHANNEL", options.channel, byte_range, "Its number", ""));
}

}  // namespace kelvo::ctl
