#include "sim/trace/decoder.h"

#include <string.h>
#include <sys/wait.h>

#include <array>
#include <cstring>
#include <string_view>

#include "sim/trace/frames.h"
#include "sim/trace/names.h"
#include "wire/pan_tilt.h"
#include "wire/paths.h"

namespace kelvo::sim::trace {
namespace {

struct ShellCommand {
  std::string_view command;
  const char* name;
};
constexpr std::array shell_commands{
    ShellCommand{wire::reset_line_export, "export"},
    ShellCommand{wire::reset_line_output, "output"},
    ShellCommand{wire::reset_line_assert, "assert"},
    ShellCommand{wire::reset_line_release, "release"},
};

std::string device_of(const Event& event) {
  switch (event.wire) {
    case Wire::lens: return "spi";
    case Wire::pt5111: return "pt5111";
    case Wire::reset_line: return "reset";
    case Wire::head: break;
  }
  if (event.act != Act::transfer || event.messages == 0) return "i2c";
  if (event.slave == wire::pan_slave) return "i2c pan";
  if (event.slave == wire::tilt_slave) return "i2c tilt";
  return "i2c slave " + std::to_string(event.slave);
}

void decode_word(const Event& event, Decoded& decoded) {
  if (event.sent_length != 2) return decode_bytes(event, decoded);
  const auto word = static_cast<std::uint16_t>(high_first(sent_of(event)));
  decoded.kind = "word";
  decoded.code = word;
  decoded.shown_code = hex(word, 4);
  decoded.name = pt5111_word(word);
}

void decode_speed(const Event& event, Decoded& decoded) {
  std::uint32_t hertz = 0;
  std::memcpy(&hertz, event.sent.data(), sizeof hertz);
  decoded.kind = "speed";
  decoded.value = std::to_string(hertz);
}

void decode_shell(const Event& event, Decoded& decoded) {
  const Bytes kept = sent_of(event);
  const std::string command(kept.begin(), kept.end());
  decoded.kind = "shell";
  decoded.value = event.sent_length > kept.size() ? command + "..." : command;
  for (const ShellCommand& row : shell_commands) {
    if (row.command != decoded.value) continue;
    decoded.kind = row.name;
    decoded.value.clear();
  }
}

void decode_transfer(const Event& event, Decoded& decoded) {
  if (event.wire == Wire::head) return decode_head_request(event, decoded);
  if (event.wire == Wire::pt5111) return decode_word(event, decoded);
  decode_lens_frame(event, decoded);
}

std::string error_of(const Event& event) {
  if (event.result < 0) {
    const char* const name = strerrorname_np(-event.result);
    return name != nullptr ? name : "error " + std::to_string(-event.result);
  }
  if (event.act != Act::shell || event.result == 0) return {};
  if (WIFEXITED(event.result)) return "exit code " + std::to_string(WEXITSTATUS(event.result));
  return "signal " + std::to_string(WTERMSIG(event.result));
}

}  // namespace

Decoded decode(const Event& event) {
  Decoded decoded;
  decoded.device = device_of(event);
  switch (event.act) {
    case Act::open: decoded.kind = "open"; break;
    case Act::close: decoded.kind = "close"; break;
    case Act::speed: decode_speed(event, decoded); break;
    case Act::transfer: decode_transfer(event, decoded); break;
    case Act::shell: decode_shell(event, decoded); break;
  }
  decoded.error = error_of(event);
  if (event.result < 0) decoded.answer.clear();
  return decoded;
}

std::string text_of(const Decoded& decoded) {
  std::string text =
      joined({decoded.device, decoded.kind, decoded.shown_code, decoded.name, decoded.value});
  if (!decoded.answer.empty()) text += " -> " + decoded.answer;
  if (!decoded.error.empty()) text += " failed: " + decoded.error;
  return text;
}

}  // namespace kelvo::sim::trace
