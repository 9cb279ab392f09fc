// The second motor chip, whose words are also sent one by one.
#include "tools/kelvoctl/lens/pt5111.h"

#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/common/lens_names.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "tools/kelvoctl/lens/lens_use.h"
#include "wire/paths.h"

namespace kelvo::ctl {
namespace {

struct WordOptions {
  std::int64_t word = 0;
};

Json done(Session& session, const char* what, std::int64_t (*operation)()) {
  const LensModule module = session.lens();
  refuse_unless(with_pt5111.on(module), module, "has no PT5111");
  use_lens(session);
  check_word(session, session.send(operation));
  return {{"module", name_of(module)}, {"pt5111", what}};
}

Json send_word(Session& session, const WordOptions& options) {
  const LensModule module = session.lens();
  refuse_unless(with_pt5111.on(module), module, "has no PT5111");
  use_lens(session);
  const auto word = static_cast<std::int32_t>(options.word);
  check_word(session, session.send([word] { return SendPT5111CMD(word); }));
  return {{"module", name_of(module)},
          {"word", hexadecimal(static_cast<std::uint32_t>(word), 4)},
          {"register", word >> 10},
          {"value", word & 0x3FF}};
}

}  // namespace

void check_word(Session& session, std::int64_t result) {
  session.check_lens_link();
  if (result == 0) return;
  if (session.lens() == LensModule::de015) {
    throw Failure(ExitCode::no_device, std::string(wire::pt5111_device) + ": takes no words: see " +
                                           tool_name + " doctor");
  }
  check_sent(session, static_cast<std::uint32_t>(result));
}

void add_pt5111(CommandTable& table) {
  CLI::App& group =
      CommandTable::add_group(table.root(), "pt5111", "Reaches the second motor chip");
  table.add(group, "init", "Initialises it, as a boot does",
            [](Session& session) { return done(session, "initialised", PT5111_Initialize); });
  table.add(group, "stop", "Stops its motors and cuts their power",
            [](Session& session) { return done(session, "stopped", ::stop); });
  auto [command, options] = table.add<WordOptions>(group, "send", "Sends it one word", send_word);
  require(add_number(command, "WORD", options.word, word_range,
                     "Register in bits 15 to 10, then the value", ""));
}

}  // namespace kelvo::ctl
