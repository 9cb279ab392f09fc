#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

constexpr std::uint8_t two_bytes[2] = {0x12, 0x34};

Outcome read_rule(Oracle& oracle) {
  oracle.init_i2c();
  if (oracle.pan_tilt < 0) return {-1, Bytes(2, untouched)};
  if (!oracle.memory()) return {0, Bytes(2, untouched)};
  const bool answered = oracle.i2c_request(2) > 0;
  return {answered ? 0 : -1, answered ? Bytes{0x56, 0x78} : Bytes(2, 0)};
}

constexpr Scenario i2c_rows[] = {
    {"Init_I2C", "", as_loaded, [] { return Outcome{Init_I2C()}; },
     [](Oracle& oracle) { return Outcome{oracle.init_i2c()}; }},
    {"Release_I2C", "", as_loaded,
     [] {
       Init_I2C();
       return Outcome{Release_I2C()};
     },
     [](Oracle& oracle) {
       oracle.init_i2c();
       oracle.release_i2c();
       return Outcome{0};
     }},
    {"SendI2C", "", as_loaded,
     [] {
       Init_I2C();
       return Outcome{SendI2C(40, 0x05, two_bytes, 3)};
     },
     [](Oracle& oracle) {
       oracle.init_i2c();
       if (oracle.pan_tilt < 0 || !oracle.memory()) return Outcome{-1};
       return Outcome{oracle.i2c_request(1)};
     }},
    {"ReadI2C", "", as_loaded,
     [] {
       Init_I2C();
       Bytes buffer(2, untouched);
       const std::int32_t result = ReadI2C(40, 0x32, buffer.data(), 2);
       return Outcome{result, buffer};
     },
     read_rule},
    {"ReadI2C_M", "", as_loaded,
     [] {
       Init_I2C();
       Bytes buffer(2, untouched);
       const std::int32_t result = ReadI2C_M(40, 0x32, two_bytes, 3, buffer.data(), 2);
       return Outcome{result, buffer};
     },
     read_rule},
};

}  // namespace

std::span<const Scenario> i2c_scenarios() { return i2c_rows; }

}  // namespace kelvo::test::failure
