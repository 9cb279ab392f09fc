#include "tools/kelvoctl/prompt/line.h"

#include <nlohmann/json.hpp>

#include "tools/common/output.h"
#include "tools/kelvoctl/common/results.h"
#include "tools/kelvoctl/common/signals.h"

namespace kelvo::ctl {
namespace {

/// The modes of a line come on top of those of the session.
class LineModes {
 public:
  LineModes(Session& session, const Modes& modes) : session_(session), before_(session.modes) {
    session.modes.json |= modes.json;
    session.modes.verbose |= modes.verbose;
    session.modes.yes |= modes.yes;
    if (modes.patience) session.modes.patience = modes.patience;
  }
  ~LineModes() { session_.modes = before_; }
  LineModes(const LineModes&) = delete;
  LineModes& operator=(const LineModes&) = delete;

 private:
  Session& session_;
  Modes before_;
};

}  // namespace

void perform(Session& session, const Line& line) {
  if (!line.action) return;
  const LineModes modes(session, line.modes);
  session.begin_command();
  try {
    const Json result = line.action(session);
    if (!result.is_null()) {
      tools::print(session.modes.json ? result_json(line.command, result) : result_text(result));
    }
    session.end_command();
    end_if_interrupted();
  } catch (const tools::OutputFailure& failure) {
    throw Failure(ExitCode::no_output, failure.what());
  } catch (const Interrupted& interrupted) {
    const std::string stopped = session.stop_motion();
    throw Interrupted(line.command + ": " + interrupted.what() +
                      (stopped.empty() ? "" : ": " + stopped));
  } catch (const Failure& failure) {
    throw Failure(failure.code(), line.command + ": " + failure.what());
  }
}

void perform_words(Session& session, const std::vector<std::string>& words) {
  if (words.empty()) return;
  CommandTable table(Place::line);
  perform(session, table.read(words));
}

}  // namespace kelvo::ctl
