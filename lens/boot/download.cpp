#include <cstdint>
#include <cstdio>

#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "wire/boot_loader.h"

namespace {

namespace boot_loader = kelvo::wire::boot_loader;

constexpr int reply_length = 5;

std::uint8_t byte_of(std::uint32_t value, int index) {
  return static_cast<std::uint8_t>(value >> (8 * index));
}

void send_number(std::uint8_t code, std::uint32_t number) {
  WriteCommand(code, byte_of(number, 0), byte_of(number, 1), byte_of(number, 2));
}

/// Asks for one half of the controller's checksum, low byte first, and reports another one.
bool half_matches(std::uint8_t code, std::uint32_t expected, std::uint8_t* reply) {
  ReadSpi(code, reply, reply_length);
  const std::uint8_t low = reply[boot_loader::answer_low];
  const std::uint8_t high = reply[boot_loader::answer_high];
  if (low == byte_of(expected, 0) && high == byte_of(expected, 1)) return true;
  std::printf("%x Read Checksum:%02x%02x\n", code, high, low);
  return false;
}

}  // namespace

std::int32_t DownloadCode(std::uint8_t memId, std::uint32_t addr, std::int32_t size,
                          std::uint32_t checksum, const std::uint8_t* image) {
  send_number(boot_loader::download_address, addr);
  send_number(boot_loader::download_size, static_cast<std::uint32_t>(size));
  WriteData(memId, size, image);
  std::printf("Checksum:%04x\n", checksum);
  std::uint8_t reply[reply_length] = {};
  const bool low_matches = half_matches(boot_loader::checksum_low, checksum, reply);
  const bool high_matches = half_matches(boot_loader::checksum_high, checksum >> 16, reply);
  const int error = low_matches && high_matches ? 0 : 1;
  std::printf("ChecksumError:%d\n", error);
  return error;
}
