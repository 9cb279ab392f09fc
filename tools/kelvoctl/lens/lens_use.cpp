#include "tools/kelvoctl/lens/lens_use.h"

#include "kelvo.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "wire/paths.h"

namespace kelvo::ctl {

void use_lens(Session& session) {
  session.attach_lens();
  std::uint32_t version = 0;
  session.call([&version] { return getVersion(&version); });
  session.check_lens_link();
  if (version == 0) {
    throw Failure(ExitCode::link_failed, "no program answers: boot the controller");
  }
}

void refuse_unless(bool served, LensModule module, const std::string& what) {
  if (!served) throw Failure(ExitCode::refused, name_of(module) + " " + what);
}

void check_sent(Session& session, std::uint32_t status) {
  session.check_lens_link();
  if (status == 0) return;
  throw Failure(ExitCode::link_failed, std::string(wire::lens_controller_device) +
                                           ": a transfer failed: status " + std::to_string(status));
}

}  // namespace kelvo::ctl
