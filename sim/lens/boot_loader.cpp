#include "sim/lens/boot_loader.h"

#include <algorithm>

#include "sim/lens/payload.h"
#include "wire/boot_loader.h"

namespace kelvo::sim::camera {
namespace {

namespace codes = wire::boot_loader;

constexpr int any = -1;

/// One frame of a boot and its three data bytes.
struct Step {
  std::uint8_t code;
  std::array<int, 3> data;
};

// A boot in order. The steps of a download come once for each image.
// clang-format off
constexpr std::array steps{
  Step{codes::pll_mode,         {0x04, 0x00, 0x00}},
  Step{codes::pll_control,      {0x01, 0x00, 0x00}},
  Step{codes::clock_supply,     {0x01, 0x13, 0x03}},
  Step{codes::division_ratio,   {0x33, 0x92, 0x00}},
  Step{codes::divider_start,    {0x01, 0x00, 0x00}},
  Step{codes::clock_supply,     {0x01, 0x13, 0x03}},
  Step{codes::clock_source,     {0x01, 0x00, 0x00}},
  Step{codes::download_address, {any,  any,  any}},
  Step{codes::download_size,    {any,  any,  any}},
  Step{codes::payload_header,   {codes::payload_mode, any, 0x00}},
  Step{codes::checksum_low,     {0x00, 0x00, 0x00}},
  Step{codes::checksum_high,    {0x00, 0x00, 0x00}},
  Step{codes::download_end,     {0x00, 0x02, 0x00}},
  Step{codes::start_program,    {0x00, 0x00, 0x00}},
};
// clang-format on

constexpr std::size_t step_of(std::uint8_t code) {
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (steps[i].code == code) return i;
  }
  return steps.size();
}
constexpr std::size_t first_download_step = step_of(codes::download_address);
constexpr std::size_t end_of_download = step_of(codes::download_end);

/// The step that a code stands for: the next one of that code from the one that is due.
std::size_t step_from(std::size_t due, std::uint8_t code) {
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const std::size_t step = (due + i) % steps.size();
    if (steps[step].code == code) return step;
  }
  return steps.size();
}

bool is_frame(std::span<const std::uint8_t> sent) {
  return sent.size() == codes::frame_length && sent.back() == codes::end_byte;
}

std::uint32_t number(std::span<const std::uint8_t> frame) {
  return frame[1] | std::uint32_t{frame[2]} << 8 | std::uint32_t{frame[3]} << 16;
}

void judge_data(Exchange& exchange, const Step& step) {
  bool right = true;
  std::array<unsigned, 3> wanted{};
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const std::uint8_t came = exchange.sent[i + 1];
    wanted[i] = step.data[i] == any ? came : static_cast<unsigned>(step.data[i]);
    right = right && came == wanted[i];
  }
  if (right) return;
  exchange.violation("data of %02X must be %02X %02X %02X", step.code, wanted[0], wanted[1],
                     wanted[2]);
}

FrameKind kind_of(std::uint8_t code) {
  const bool read = code == codes::checksum_low || code == codes::checksum_high;
  return read ? FrameKind::checksum_read : FrameKind::boot_command;
}

}  // namespace

BootLoader::Outcome BootLoader::receive(Exchange& exchange, CarriedImages images,
                                        BootRecord& boot) {
  if (payload_due_) {
    const bool missing = exchange.sent.size() != size_ && is_frame(exchange.sent);
    payload_due_ = false;
    if (!missing) {
      receive_payload(exchange, images, boot);
      return {FrameKind::payload};
    }
    exchange.violation("the payload of %u bytes is missing", size_);
  }
  return receive_frame(exchange);
}

BootLoader::Outcome BootLoader::receive_frame(Exchange& exchange) {
  const std::span<const std::uint8_t> sent = exchange.sent;
  if (sent.size() == wire::command_frame_length || sent.size() == wire::query_frame_length) {
    exchange.violation("a run-time frame before the program runs");
    return {sent.size() == wire::command_frame_length ? FrameKind::command : FrameKind::query};
  }
  if (sent.size() != codes::frame_length) {
    exchange.violation("a frame of %zu bytes, must be %zu", sent.size(), codes::frame_length);
    return {FrameKind::malformed};
  }
  if (sent.back() != codes::end_byte) {
    exchange.violation("end byte %02X, must be %02X", sent.back(), codes::end_byte);
    return {FrameKind::malformed};
  }
  const std::uint8_t code = sent[0];
  const std::size_t step = step_from(due_, code);
  if (step == steps.size()) {
    exchange.violation("the boot loader has no code %02X", code);
    return {FrameKind::malformed};
  }
  judge_order(exchange, step);
  judge_data(exchange, steps[step]);
  switch (code) {
    case codes::download_address: address_ = number(sent); break;
    case codes::download_size: size_ = number(sent); break;
    case codes::payload_header:
      memory_ = sent[2];
      payload_due_ = true;
      break;
    case codes::checksum_low: answer(exchange, 0); break;
    case codes::checksum_high: answer(exchange, 16); break;
    default: break;
  }
  return {kind_of(code), code == codes::start_program};
}

void BootLoader::judge_order(Exchange& exchange, std::size_t step) {
  const bool another_download = due_ == end_of_download && step == first_download_step;
  if (step != due_ && !another_download) {
    exchange.violation("%02X where %02X is due", steps[step].code, steps[due_].code);
  }
  due_ = static_cast<std::uint8_t>((step + 1) % steps.size());
}

void BootLoader::answer(Exchange& exchange, int shift) const {
  exchange.reply[codes::answer_low] = static_cast<std::uint8_t>(checksum_ >> shift);
  exchange.reply[codes::answer_high] = static_cast<std::uint8_t>(checksum_ >> (shift + 8));
}

void BootLoader::receive_payload(Exchange& exchange, CarriedImages images, BootRecord& boot) {
  if (exchange.sent.size() != size_) {
    exchange.violation("a payload of %zu bytes, %u were announced", exchange.sent.size(), size_);
  }
  const Payload payload{exchange.sent, next_payload_is_corrupt()};
  const Destination destination{memory_, address_, size_};
  const ModuleSet modules = owners(payload, destination, images);
  checksum_ = checksum(payload, destination, images);
  for (std::size_t i = 0; i < intact_.size(); ++i) {
    if (wire::program_images[i].memory == memory_) intact_[i] = modules;
  }
  boot.add({boot.attempts, memory_, modules, address_, size_, checksum_});
}

bool BootLoader::next_payload_is_corrupt() {
  ++payloads_;
  const auto* const end = corrupt_.begin() + corrupt_count_;
  return std::find(corrupt_.cbegin(), end, payloads_) != end;
}

std::optional<LensModule> BootLoader::complete_module() const {
  ModuleSet complete = intact_[0];
  for (const ModuleSet modules : intact_) complete &= modules;
  for (const LensModule module : {LensModule::de015, LensModule::df033, LensModule::t5391}) {
    if ((complete & set_of(module)) != 0) return module;
  }
  return std::nullopt;
}

void BootLoader::reset() {
  due_ = 0;
  payload_due_ = false;
  memory_ = 0;
  address_ = 0;
  size_ = 0;
  checksum_ = 0;
  intact_ = {};
}

bool BootLoader::corrupt_download(std::uint32_t number) {
  if (corrupt_count_ == corrupt_.size()) return false;
  corrupt_[corrupt_count_++] = number;
  return true;
}

}  // namespace kelvo::sim::camera
