#include "sim/wrapper/faulty.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <vector>

#include "sim/fault/busy.h"
#include "sim/seam/camera_paths.h"
#include "sim/seam/real.h"
#include "sim/wrapper/camera_files.h"
#include "sim/wrapper/carried_images.h"

namespace kelvo::sim::faulty {
namespace {

using camera::BusMessage;
using camera::Camera;
using fault::Effect;
using fault::EffectKind;
using fault::FaultTable;
using Bytes = std::span<const std::uint8_t>;

/// Something on its way to the camera, and what may become of it.
struct Passage {
  fault::Transfer seen;
  Bytes sent{};
  std::span<std::uint8_t> received{};
  std::function<int(Bytes sent)> deliver;
  std::function<int()> restart{};  // of the controller that it goes to, instead
  std::function<int()> fill{};     // the storage, instead
};

/// Whoever else uses the camera finds it as it was before.
[[noreturn]] void die() {
  kill(getpid(), SIGKILL);
  while (true) pause();
}

void flip(std::span<std::uint8_t> bytes, const Effect& effect) {
  bytes[effect.byte] = static_cast<std::uint8_t>(bytes[effect.byte] ^ 1U << effect.bit);
}

int with_flipped_bit(const Passage& passage, const Effect& effect) {
  std::vector<std::uint8_t> sent(passage.sent.begin(), passage.sent.end());
  if (!effect.received) flip(sent, effect);
  const int result = passage.deliver(sent);
  if (effect.received) flip(passage.received, effect);
  return result;
}

int busy(const Passage& passage) {
  const int result = passage.deliver(passage.sent);
  fault::say_running(passage.seen, passage.received);
  return result;
}

/// The frame is lost, and nobody drives the line that answers.
int reset(const Passage& passage) {
  std::fill(passage.received.begin(), passage.received.end(), std::uint8_t{0});
  return passage.restart();
}

int pass(FaultTable& faults, const Passage& passage) {
  const std::optional<Effect> effect = faults.strike(passage.seen);
  if (!effect) return passage.deliver(passage.sent);
  switch (effect->kind) {
    case EffectKind::error: return -effect->error;
    case EffectKind::flip: return with_flipped_bit(passage, *effect);
    case EffectKind::busy: return busy(passage);
    case EffectKind::reset: return reset(passage);
    case EffectKind::full: return passage.fill();
    case EffectKind::kill: passage.deliver(passage.sent); die();
  }
  return passage.deliver(passage.sent);
}

int nothing(Bytes /*sent*/) { return 0; }

fault::Port port_of(Device device) {
  if (device == Device::i2c_2) return fault::Port::i2c;
  return device == Device::spi_pt5111 ? fault::Port::pt5111 : fault::Port::spi;
}

/// What a combined request sends first, and where its last answer goes.
Bytes sent_by(std::span<const BusMessage> messages) {
  return messages.front().reads ? Bytes{} : messages.front().bytes;
}
std::span<std::uint8_t> received_by(std::span<const BusMessage> messages) {
  return messages.back().reads ? messages.back().bytes : std::span<std::uint8_t>{};
}

/// The same request with other bytes in what it sends first.
int deliver(Camera& camera, std::span<const BusMessage> messages, Bytes sent) {
  std::vector<std::uint8_t> bytes(sent.begin(), sent.end());
  std::vector<BusMessage> request(messages.begin(), messages.end());
  if (!request.front().reads) request.front().bytes = bytes;
  return camera.transfer_pan_tilt(request);
}

/// Opens a file as the program will, so that it is there and empty if need be, and hands out one that
/// takes nothing more.
int fill(std::string& real_path, const char* mode) {
  FILE* const stream = real().fopen(real_path.c_str(), mode);
  if (stream == nullptr) return -errno;
  real().fclose(stream);
  real_path = "/dev/full";
  return 0;
}

}  // namespace

int open(FaultTable& faults, Device device) {
  return pass(faults, {.seen = fault::opening(port_of(device)), .deliver = nothing});
}

int transfer(Camera& camera, FaultTable& faults, Device device, Bytes sent,
             std::span<std::uint8_t> received) {
  if (device == Device::spi_pt5111) {
    return pass(faults,
                {.seen = fault::pt5111_transfer(sent),
                 .sent = sent,
                 .received = received,
                 .deliver = [&](Bytes bytes) { return camera.transfer_pt5111(bytes, received); }});
  }
  return pass(faults, {.seen = fault::lens_transfer(sent),
                       .sent = sent,
                       .received = received,
                       .deliver =
                           [&](Bytes bytes) {
                             return camera.transfer_lens(bytes, received, carried_images());
                           },
                       .restart =
                           [&] {
                             camera.reset_lens();
                             return 0;
                           }});
}

int i2c(Camera& camera, FaultTable& faults, std::span<const BusMessage> messages) {
  const std::uint16_t slave = messages.front().slave;
  const Bytes sent = sent_by(messages);
  const std::span<std::uint8_t> received = received_by(messages);
  return pass(faults,
              {.seen = fault::head_transfer(camera.head().family(), slave, sent, received.size()),
               .sent = sent,
               .received = received,
               .deliver = [&](Bytes bytes) { return deliver(camera, messages, bytes); },
               // It does not acknowledge what comes next.
               .restart =
                   [&] {
                     camera.reset_head(slave);
                     return -ENXIO;
                   }});
}

int shell(Camera& camera, FaultTable& faults, std::string_view command) {
  return pass(faults, {.seen = fault::shell_command(),
                       .deliver = [&](Bytes /*sent*/) { return camera.shell(command); }});
}

int file(FaultTable& faults, std::string_view path, const char* mode, std::string& real_path) {
  return pass(faults, {.seen = fault::file_opening(path, mode), .deliver = nothing, .fill = [&] {
                         return fill(real_path, mode);
                       }});
}

bool missing(FaultTable faults, const char* path) {
  const Device device = device_at(path);
  const std::string record = CameraFiles::record_of(path);
  const std::optional<Effect> effect = faults.strike(
      device != Device::none ? fault::opening(port_of(device)) : fault::file_opening(record, "r"));
  return effect && effect->kind == EffectKind::error && effect->error == ENOENT;
}

}  // namespace kelvo::sim::faulty
