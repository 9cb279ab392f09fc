#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/common/lens_names.h"

namespace kelvo::ctl {
namespace {

/// The lens can be used without it.
Json head_or_complain(Session& session) {
  try {
    return head_name(session.attach_head());
  } catch (const Failure& failure) {
    session.complain(static_cast<ExitCode>(failure.code()), failure.what());
    return {};
  }
}

Json attach(Session& session) {
  session.attach_lens();
  std::uint32_t version = 0;
  session.call([&version] { return getVersion(&version); });
  session.check_lens_link();
  if (version == 0) {
    session.complain(ExitCode::link_failed, "no program answers: boot the controller");
  }
  return {{"module", name_of(session.lens())},
          {"version", hexadecimal(version, 4)},
          {"head", head_or_complain(session)}};
}

}  // namespace

void add_attach(CommandTable& table) {
  table.add(table.root(), "attach",
            "Makes sure that a controller which is booted already can be used", attach);
}

}  // namespace kelvo::ctl
