#include "sim/head/head_bench.h"

#include <array>

namespace kelvo::test {
namespace {

using sim::camera::BusMessage;

std::uint8_t high(int value) { return static_cast<std::uint8_t>(value >> 8); }
std::uint8_t low(int value) { return static_cast<std::uint8_t>(value); }

}  // namespace

int HeadBench::write(int slave, Frame bytes) {
  const BusMessage message{static_cast<std::uint16_t>(slave), false, bytes};
  return camera.transfer_pan_tilt({&message, 1});
}

Frame HeadBench::read(int slave, std::uint8_t reg, std::size_t length) {
  const auto address = static_cast<std::uint16_t>(slave);
  Frame received(length, 0xEE);
  const std::array messages{BusMessage{address, false, {&reg, 1}},
                            BusMessage{address, true, received}};
  return camera.transfer_pan_tilt(messages) == 2 ? received : Frame{};
}

int HeadBench::read_word(int slave, std::uint8_t reg) {
  const Frame bytes = read(slave, reg, 2);
  return bytes.at(0) << 8 | bytes.at(1);
}

void VetraBench::continuous(int slave, int direction, int speed) {
  write(slave, {3, low(direction), high(speed), low(speed)});
}

void VetraBench::absolute(int slave, int direction, int target, int speed) {
  write(slave, {1, low(direction), high(target), low(target), high(speed), low(speed)});
}

void VetraBench::limits(int slave, int first, int second) {
  write(slave, {5, high(first), low(first), high(second), low(second)});
}

void VetraBench::enable_limits(int slave, int on) { write(slave, {4, low(on)}); }

void TasmereBench::set(int slave, std::uint8_t reg, int value) {
  write(slave, {reg, high(value), low(value)});
}

void TasmereBench::absolute(int slave, int target, int speed) {
  write(slave, {66, high(target), low(target), high(speed), low(speed)});
}

}  // namespace kelvo::test
