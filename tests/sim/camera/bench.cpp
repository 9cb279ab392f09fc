#include "sim/camera/bench.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace kelvo::test {
namespace {

/// Filler that differs from image to image.
Frame filler(std::size_t size, std::size_t seed) {
  Frame bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(i * 7 + seed * 31);
  return bytes;
}

std::string hex(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    char pair[4];
    std::snprintf(pair, sizeof pair, "%02X", byte);
    text += text.empty() ? pair : std::string(" ") + pair;
  }
  return text;
}

}  // namespace

const std::vector<Image>& images() {
  static const std::vector<Image> all{
      {7, 0x21, 0x000200, 0x50EE9858, filler(60, 1)},
      {7, 0x22, 0xFFE000, 0xDB9F8EF5, filler(40, 2)},
      {7, 0x23, 0xFFD000, 0x02AA342F, filler(30, 3)},
      {8, 0x21, 0x000200, 0xA7980342, filler(70, 4)},
      {8, 0x22, 0xFFE000, 0xBF9B8238, filler(45, 5)},
      {8, 0x23, 0xFFD000, 0x01911A0B, filler(35, 6)},
      {9, 0x21, 0x000200, 0xE9EAD60E, filler(65, 7)},
      {9, 0x22, 0xFFE000, 0xBF9B8238, filler(45, 5)},
      {9, 0x23, 0xFFD000, 0x01911A0B, filler(35, 6)},
  };
  return all;
}

const Image& image(int module, int index) {
  return images().at(static_cast<unsigned>((module - 7) * 3 + index));
}

sim::camera::CarriedImages carried() {
  static const std::vector<sim::camera::CarriedImage> all = [] {
    std::vector<sim::camera::CarriedImage> made;
    for (const Image& image : images()) {
      made.push_back(
          {{"image", static_cast<wire::LensModule>(image.module), image.memory, image.address,
            static_cast<std::int32_t>(image.bytes.size()), image.checksum},
           image.bytes});
    }
    return made;
  }();
  return all;
}

Frame Bench::send(const Frame& frame) {
  Frame received(frame.size(), 0xEE);
  if (camera.transfer_lens(frame, received, carried()) != 0) std::abort();
  return received;
}

Frame Bench::send_word(const Frame& word) {
  Frame received(word.size(), 0xEE);
  if (camera.transfer_pt5111(word, received) != 0) std::abort();
  return received;
}

void Bench::shell_all(const std::vector<std::string>& commands) {
  for (const std::string& command : commands) camera.shell(command);
}

void Bench::wait_ms(std::int64_t milliseconds) {
  camera.clock.advance(std::chrono::milliseconds(milliseconds));
}

void Bench::reset() {
  shell_all({"echo 33 > /sys/class/gpio/export", "echo \"out\" > /sys/class/gpio/gpio33/direction",
             "echo 0 > /sys/class/gpio/gpio33/value"});
  wait_ms(500);
  shell_all({"echo 1 > /sys/class/gpio/gpio33/value"});
  wait_ms(100);
}

void Bench::set_clocks() {
  send({0xF5, 0x04, 0x00, 0x00, 0xA0});
  send({0xF4, 0x01, 0x00, 0x00, 0xA0});
  send({0xF0, 0x01, 0x13, 0x03, 0xA0});
  send({0xF2, 0x33, 0x92, 0x00, 0xA0});
  send({0xF3, 0x01, 0x00, 0x00, 0xA0});
  send({0xF0, 0x01, 0x13, 0x03, 0xA0});
  send({0xF1, 0x01, 0x00, 0x00, 0xA0});
}

void Bench::announce(std::uint8_t memory, std::uint32_t address, std::uint32_t size) {
  const auto byte = [](std::uint32_t value, int index) {
    return static_cast<std::uint8_t>(value >> (8 * index));
  };
  send({0xE3, byte(address, 0), byte(address, 1), byte(address, 2), 0xA0});
  send({0xE4, byte(size, 0), byte(size, 1), byte(size, 2), 0xA0});
  send({0xE1, 0x11, memory, 0x00, 0xA0});
}

void Bench::download(std::uint8_t memory, std::uint32_t address, const Frame& bytes) {
  announce(memory, address, static_cast<std::uint32_t>(bytes.size()));
  send(bytes);
}

std::uint32_t Bench::read_checksum() {
  const Frame low = send({0x66, 0x00, 0x00, 0x00, 0xA0});
  const Frame high = send({0x67, 0x00, 0x00, 0x00, 0xA0});
  return static_cast<std::uint32_t>(low[2]) | static_cast<std::uint32_t>(low[3]) << 8 |
         static_cast<std::uint32_t>(high[2]) << 16 | static_cast<std::uint32_t>(high[3]) << 24;
}

void Bench::load(int module) {
  reset();
  set_clocks();
  for (int index = 0; index < 3; ++index) {
    const Image& next = image(module, index);
    download(next.memory, next.address, next.bytes);
    read_checksum();
  }
  end_downloads();
}

void Bench::boot(int module) {
  load(module);
  start();
}

void Bench::command(std::uint8_t code, std::uint8_t a1, std::uint8_t a2, std::uint8_t a3,
                    std::uint8_t a4) {
  send({code, a1, a2, a3, a4, static_cast<std::uint8_t>(code + a1 + a2 + a3 + a4), 0});
}

void Bench::command32(std::uint8_t code, std::uint32_t value) {
  command(code, static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
          static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value));
}

void Bench::command16(std::uint8_t code, int value) {
  command(code, 0, 0, static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value));
}

void Bench::write_register(std::uint8_t reg, int value) {
  const std::uint8_t code = camera.lens().program().module() == wire::LensModule::de015 ? 15 : 12;
  command(code, 0, reg, static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value));
}

void Bench::move_channel(int channel, int mode, int counts, int period) {
  const auto write = [&](int reg, int value) {
    write_register(static_cast<std::uint8_t>(channel + reg), value);
  };
  write(30, 0);
  write(0, mode);
  write(2, counts & 1023);
  write(4, counts >> 10);
  write(6, period);
  write(24, 0);
  write(30, 3842);
  write(30, 3850);
}

void Bench::pt5111_words(const std::vector<int>& words) {
  for (const int word : words) {
    const auto high = static_cast<std::uint8_t>(word >> 8);
    const auto low = static_cast<std::uint8_t>(word);
    if (camera.lens().program().module() == wire::LensModule::de015) {
      send_word({high, low});
    } else {
      command(47, 2, high, low, 0);
    }
  }
}

std::uint32_t Bench::query32(std::uint8_t code, std::uint8_t argument) {
  const bool first = code == 0xA0 || code == 0x81;
  const std::uint8_t marker = code == 0x81 ? 0 : 1;
  Frame frame{code, 0, 0, 0, marker, static_cast<std::uint8_t>(code + argument + marker)};
  frame[first ? 1 : 2] = argument;
  frame.resize(12);
  const Frame received = send(frame);
  return std::uint32_t{received[7]} << 24 | std::uint32_t{received[8]} << 16 |
         std::uint32_t{received[9]} << 8 | received[10];
}

int Bench::query(std::uint8_t code, std::uint8_t argument) {
  return static_cast<int>(query32(code, argument) & 0xFFFF);
}

std::int32_t Bench::position(sim::camera::Output output) const {
  return camera.positions()[static_cast<std::size_t>(output)];
}

std::vector<std::string> Bench::violations() const {
  std::vector<std::string> lines;
  for (const sim::camera::Violation& violation : camera.violations().listed()) {
    lines.push_back(std::string(name_of(violation.unit)) + " | " +
                    hex(std::span(violation.frame).first(violation.shown)) + " | " +
                    violation.reason.data());
  }
  return lines;
}

}  // namespace kelvo::test
