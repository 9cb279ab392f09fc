// Everything that can be read without changing anything.
#include <fcntl.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/head/head_status.h"
#include "tools/kelvoctl/lens/lens_status.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

/// What stands in the table where a device is not there; the command fails afterwards.
Json missing(Session& session, const Failure& failure) {
  session.complain(static_cast<ExitCode>(failure.code()), failure.what());
  return failure.what();
}

Json status(Session& session) {
  Json result{{"module", name_of(session.lens())}};
  try {
    session.attach_lens();
    result["lens"] = wire::lens_controller_device;
    result.update(lens_status(session));
    session.check_lens_link();
  } catch (const Failure& failure) {
    result["lens"] = missing(session, failure);
  }
  try {
    const int family = session.attach_head();
    result["head"] = head_name(family);
    result["axes"] = head_status(session, family);
  } catch (const Failure& failure) {
    result["head"] = missing(session, failure);
  }
  return result;
}

}  // namespace

void add_status(CommandTable& table) {
  table.add(table.root(), "status", "Shows everything that can be read without changing anything",
            status);
}

}  // namespace kelvo::ctl
