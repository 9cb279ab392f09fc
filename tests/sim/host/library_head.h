// The real library on the simulated head, of each family: words that its tests share.
#ifndef KELVO_TESTS_SIM_HOST_LIBRARY_HEAD_H
#define KELVO_TESTS_SIM_HOST_LIBRARY_HEAD_H

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

#include "sim/host/installed_camera.h"

namespace kelvo::test {

std::int64_t pan_position();
std::int64_t tilt_position();

/// How far two positions lie apart on the circle. A count of a Vetra controller is 3.6 of them.
std::int64_t apart(std::int64_t a, std::int64_t b);
inline constexpr std::int64_t one_count = 4;

struct Limits {
  std::uint32_t start;
  std::uint32_t end;
};
inline constexpr Limits travel_limits[] = {
    {20'000, 40'000}, {1000, 64'000}, {30'000, 10'000}, {50'000, 5000}};

struct Family {
  const char* name;
  const char* settings;
  std::int32_t number;
};

inline void PrintTo(const Family& family, std::ostream* stream) { *stream << family.name; }

class LibraryHead : public testing::TestWithParam<Family> {
 protected:
  LibraryHead();
  /// Nothing was held against the library.
  ~LibraryHead() override;

  bool vetra() const { return GetParam().number == 1; }

  InstalledCamera camera{GetParam().settings};
};

/// A test of each family that the camera can have.
inline auto both_families() {
  return testing::Values(Family{"Vetra", "clock=sleep head=vetra", 1},
                         Family{"Tasmere", "clock=sleep head=tasmere", 2});
}
inline std::string family_name(const testing::TestParamInfo<Family>& instance) {
  return instance.param.name;
}

}  // namespace kelvo::test

#endif
