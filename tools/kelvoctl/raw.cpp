// Frames of the lens controller's program by their numbers.
#include <algorithm>
#include <array>
#include <cctype>
#include <nlohmann/json.hpp>

#include "kelvo.h"
#include "tools/kelvoctl/common/command_table.h"
#include "tools/kelvoctl/common/commands.h"
#include "tools/kelvoctl/common/hexadecimal.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/options.h"
#include "wire/lens_program.h"

namespace kelvo::ctl {
namespace {

constexpr std::size_t frame_bytes = 5;  // code and arguments; the rest is made
constexpr std::size_t reply_bytes = 4;

struct FrameOptions {
  std::array<std::int64_t, frame_bytes> bytes{};
};

struct QueryOptions {
  std::int64_t code = 0;
  std::int64_t argument = 0;
};

using Frame = std::array<std::uint8_t, frame_bytes>;

Frame frame_of(const FrameOptions& options) {
  Frame frame{};
  std::ranges::transform(options.bytes, frame.begin(),
                         [](std::int64_t byte) { return static_cast<std::uint8_t>(byte); });
  return frame;
}

Json send_frame(Session& session, const FrameOptions& options) {
  session.attach_lens();
  const Frame frame = frame_of(options);
  session.send([&] { return SendCommand(frame[0], frame[1], frame[2], frame[3], frame[4]); });
  session.check_lens_link();
  return {{"sent", hexadecimal_bytes(frame)}};
}

Json send_query(Session& session, const QueryOptions& options) {
  session.attach_lens();
  std::array<std::uint8_t, reply_bytes> reply{};
  session.call([&] {
    return RecvCommand(static_cast<std::uint8_t>(options.code),
                       static_cast<std::uint8_t>(options.argument), reply.data());
  });
  session.check_lens_link();
  return {{"query", hexadecimal(static_cast<std::uint32_t>(options.code), 2)},
          {"argument", options.argument},
          {"reply", hexadecimal_bytes(reply)},
          {"value", reply[2] << 8 | reply[3]}};
}

/// What the library has printed of a reply: "Recv:0x00 0x00 0x03 0x12 ".
Json printed_reply(const std::string& printed) {
  constexpr std::string_view before = "Recv:";
  const std::size_t at = printed.find(before);
  if (at == std::string::npos) return {};
  const std::size_t begin = at + before.size();
  std::string reply = printed.substr(begin, printed.find_last_not_of(" \n") + 1 - begin);
  for (std::size_t prefix = reply.find("0x"); prefix != std::string::npos;
       prefix = reply.find("0x")) {
    reply.erase(prefix, 2);
  }
  for (char& digit : reply) digit = static_cast<char>(std::toupper(digit));
  return reply;
}

Json frame(Session& session, const FrameOptions& options) {
  session.attach_lens();
  const Frame bytes = frame_of(options);
  if (bytes[0] < wire::first_query) session.await_bus_lock();
  session.call([&] { return CommTest(bytes.data(), static_cast<std::int32_t>(bytes.size())); });
  const Json reply = printed_reply(session.printed());
  session.check_lens_link();
  return {{"sent", hexadecimal_bytes(bytes)}, {"reply", reply}};
}

void add_bytes(CLI::App& command, FrameOptions& options, bool all_required) {
  struct Byte {
    const char* name;
    const char* description;
  };
  constexpr std::array<Byte, frame_bytes> bytes{{{"CODE", "Code, 0 to 255"},
                                                 {"A1", "First argument"},
                                                 {"A2", "Second argument"},
                                                 {"A3", "Third; of 16 bits the high ones"},
                                                 {"A4", "Fourth; of 16 bits the low ones"}}};
  for (std::size_t i = 0; i < frame_bytes; ++i) {
    CLI::Option* const option =
        add_number(command, bytes[i].name, options.bytes[i], byte_range, bytes[i].description, "");
    if (all_required || i == 0) require(option);
  }
}

}  // namespace

void add_raw(CommandTable& table) {
  CLI::App& group =
      CommandTable::add_group(table.root(), "raw", "The lens controller's frames, by number");
  auto [send_command, sent] =
      table.add<FrameOptions>(group, "send", "Sends a command; no argument is 0", send_frame);
  add_bytes(send_command, sent, false);
  auto [query_command, asked] =
      table.add<QueryOptions>(group, "query", "Asks a question", send_query);
  require(add_number(query_command, "CODE", asked.code, byte_range, "Code, 0 to 255", ""));
  add_number(query_command, "ARGUMENT", asked.argument, byte_range, "Argument; none is 0", "");
}

void add_frame(CommandTable& table) {
  auto [command, options] = table.add<FrameOptions>(
      table.root(), "frame",
      "Sends the five bytes of a service tool, as a query where the code is one", frame);
  add_bytes(command, options, true);
}

}  // namespace kelvo::ctl
