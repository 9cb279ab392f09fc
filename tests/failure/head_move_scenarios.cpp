#include "failure/head.h"

namespace kelvo::test::failure {
namespace {

// The tuning table is empty, so that a retuning has nothing to write where its values stay zero.

Outcome tilt_continuous(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return writes(oracle, "41: w 03 01 1C 20");
  oracle.head_read("41: w 4F r 1");
  return writes(oracle, "41: w 07 7F FF");
}

Outcome pan_absolute(Oracle& oracle) {
  if (!begin_on_vetra(oracle)) return writes(oracle, "40: w 42 80 00 A0 01");
  // It stands at its target, count 9000; from the zero, as which a failure reads, there is a gain for the way.
  const bool there = number_in(oracle.head_read("40: w 32 r 2").bytes) == 9'000;
  if (!there) writes(oracle, "40: w 10 00 12 00 00");
  return writes(oracle, "40: w 01 00 23 28 1C 20");
}

Outcome tilt_absolute(Oracle& oracle) {
  if (begin_on_vetra(oracle)) {
    oracle.head_read("41: w 32 r 2");
    return writes(oracle, "41: w 01 01 30 D4 1C 20");
  }
  const bool hall = oracle.head_read("41: w 4F r 1").bytes[0] != 0;
  return writes(oracle, hall ? "41: w 42 EC CC 5F FF" : "41: w 42 80 00 A0 01");
}

Outcome limited_tilt_move() {
  Init_I2C();
  TiltLimit(60000, 40000);
  TiltLimitEn(1);
  return {TiltABSMove(1, 7200, 56432)};
}

Outcome limited_tilt_absolute(Oracle& oracle) {
  if (begin_on_vetra(oracle)) {
    writes(oracle, "41: w 05 29 12 13 9C\n41: w 04 01");
    // From count 9000 to the limit at 5020 it is as far as from the zero: too far for a gain.
    oracle.head_read("41: w 32 r 2");
    return writes(oracle, "41: w 01 01 13 9C 1C 20");
  }
  const bool hall = oracle.head_read("41: w 4F r 1").bytes[0] != 0;
  writes(oracle, hall ? "41: w 12 57 2D\n41: w 13 B1 DF" : "41: w 12 EA 60\n41: w 13 B1 DF");
  writes(oracle, "41: w 19 00 02");
  return writes(oracle, hall ? "41: w 42 57 2C 5F FF" : "41: w 42 DC 70 A0 01");
}

constexpr HeadRow head_move_rows[] = {
    {"PanContinuousMove", called<PanContinuousMove, 0, 9000>,
     [](Oracle& oracle) {
       return writes_by_family(oracle, "40: w 03 01 1C 20", "40: w 07 7F FF");
     }},
    {"TiltContinuousMove", called<TiltContinuousMove, 0, 9000>, tilt_continuous},
    {"PanABSMove", called<PanABSMove, 1, 7200, 32768>, pan_absolute},
    {"TiltABSMove", called<TiltABSMove, 1, 7200, 32768>, tilt_absolute},
    {"TiltABSMove", limited_tilt_move, limited_tilt_absolute, "Vetra_limited", "Tasmere_limited"},
    {"Pan_SendI2C_Advanced", called<Pan_SendI2C_Advanced, 0x42, 0x11223344, 5>,
     [](Oracle& oracle) {
       oracle.init_i2c();
       return writes(oracle, "40: w 42 44 11 22 33 44");
     }},
    {"Tilt_SendI2C_Advanced", called<Tilt_SendI2C_Advanced, 0x42, 0x11223344, 5>,
     [](Oracle& oracle) {
       oracle.init_i2c();
       return writes(oracle, "41: w 42 44 11 22 33 44");
     }},
};

}  // namespace

std::span<const HeadRow> head_moves() { return head_move_rows; }

}  // namespace kelvo::test::failure
