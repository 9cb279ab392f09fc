#include "sim/trace/situation.h"

#include <algorithm>
#include <string_view>

#include "wire/boot_loader.h"
#include "wire/pan_tilt_registers.h"
#include "wire/paths.h"
#include "wire/program_images.h"

namespace kelvo::sim::trace {
namespace {

/// The module that alone has an image of this size, or 0.
std::uint8_t module_of_image(std::uint32_t size) {
  std::uint8_t module = 0;
  for (const wire::ProgramImage& image : wire::program_images) {
    if (static_cast<std::uint32_t>(image.size) != size) continue;
    if (module != 0) return 0;
    module = static_cast<std::uint8_t>(image.module);
  }
  return module;
}

bool starts_program(const Event& event) {
  namespace loader = wire::boot_loader;
  return event.sent_length == loader::frame_length && event.sent[0] == loader::start_program &&
         event.sent[loader::frame_length - 1] == loader::end_byte;
}

bool resets(const Event& event) {
  constexpr std::string_view command = wire::reset_line_assert;
  return event.sent_length == command.size() &&
         std::equal(command.begin(), command.end(), event.sent.begin());
}

}  // namespace

void Situation::follow(Event& event) {
  const std::int8_t family = family_.load();
  event.module = module_.load();
  event.family = family != 0 ? family : static_cast<std::int8_t>(wire::HeadFamily::unknown);
  if (event.result < 0) return;
  if (event.act == Act::shell && resets(event)) {
    module_.store(0);
    downloaded_.store(0);
  }
  if (event.act != Act::transfer) return;
  if (event.wire == Wire::lens) learn_from_lens(event);
  if (event.wire == Wire::head) learn_from_head(event);
}

void Situation::learn_from_lens(const Event& event) {
  if (starts_program(event)) return module_.store(downloaded_.load());
  if (const std::uint8_t module = module_of_image(event.sent_length)) downloaded_.store(module);
}

void Situation::learn_from_head(const Event& event) {
  const bool asked = event.slave == wire::pan_slave && event.messages == 2 &&
                     event.sent_length == 1 && event.sent[0] == wire::vetra::family &&
                     event.received_length >= std::size(wire::vetra_signature);
  if (!asked) return;
  const bool is_vetra = std::equal(std::begin(wire::vetra_signature),
                                   std::end(wire::vetra_signature), event.received.begin());
  family_.store(
      static_cast<std::int8_t>(is_vetra ? wire::HeadFamily::vetra : wire::HeadFamily::tasmere));
}

}  // namespace kelvo::sim::trace
