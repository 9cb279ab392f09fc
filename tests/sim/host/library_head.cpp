#include "sim/host/library_head.h"

#include <kelvo.h>

#include <algorithm>
#include <cstdlib>

namespace kelvo::test {

std::int64_t pan_position() {
  std::uint32_t position = 0;
  GetPanPos(&position);
  return position;
}

std::int64_t tilt_position() {
  std::uint32_t position = 0;
  GetTiltPos(&position);
  return position;
}

std::int64_t apart(std::int64_t a, std::int64_t b) {
  const std::int64_t distance = std::llabs(a - b);
  return std::min(distance, 65'536 - distance);
}

LibraryHead::LibraryHead() { Init_I2C(); }

LibraryHead::~LibraryHead() {
  EXPECT_EQ(camera.state().violations().total(), 0u) << camera.report();
}

}  // namespace kelvo::test
