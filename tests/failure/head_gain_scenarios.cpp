#include "failure/head.h"
#include "pantilt/tuning.h"

namespace kelvo::test::failure {
namespace {

constexpr std::uint8_t table[336] = {1, 2, 3};

/// A retuning by the plain table; what the library then takes for written is part of what comes out.
template <auto function, auto... arguments>
Outcome tuned() {
  Init_I2C();
  load(plain_tuning());
  const std::int32_t result = function(arguments...);
  Outcome outcome = {result};
  for (const auto* cache : {&iPanVETRA_Motor_Reg, &iTiltVETRA_Motor_Reg}) {
    const Bytes held =
        words({static_cast<std::uint32_t>((*cache)[0]), static_cast<std::uint32_t>((*cache)[6])});
    outcome.out.insert(outcome.out.end(), held.begin(), held.end());
  }
  for (const auto* cache : {&iPanTASMERE_PID, &iTiltTASMERE_PID}) {
    const Bytes held = words({static_cast<std::uint32_t>((*cache)[3])});
    outcome.out.insert(outcome.out.end(), held.begin(), held.end());
  }
  return outcome;
}

/// Position P and deceleration of both axes on a Vetra, D of both on a Tasmere.
Outcome written(std::uint32_t pan_p, std::uint32_t pan_dec, std::uint32_t tilt_p,
                std::uint32_t tilt_dec, std::uint32_t pan_d, std::uint32_t tilt_d) {
  return {0, words({pan_p, pan_dec, tilt_p, tilt_dec, pan_d, tilt_d})};
}

constexpr const char* pan_row = R"(40: w 10 01 38 01 39
40: w 11 01 3A 01 3B
40: w 12 01 3C
40: w 13 00 12 01 3D
40: w 15 00 12 01 3E)";
constexpr const char* tilt_row = R"(41: w 10 01 46 01 47
41: w 12 01 4A
41: w 11 01 48 01 49
41: w 13 00 12 01 4B
41: w 15 00 12 01 4C)";
constexpr const char* pan_still = R"(40: w 0C 01 01
40: w 0E 01 02
40: w 10 01 03
40: w 0C 01 1D
40: w 0E 01 1E
40: w 10 01 1F)";
constexpr const char* tilt_still = R"(41: w 0C 01 0F
41: w 0E 01 10
41: w 10 01 11)";

Outcome pan_absolute_gains(Oracle& oracle) {
  if (!begin_on_vetra(oracle)) {
    writes(oracle, "40: w 0C 01 08\n40: w 0E 01 09\n40: w 10 01 0A");
    return written(0, 0, 0, 0, 0x10A, 0);
  }
  // The target is count 0; a position that cannot be read is taken for there.
  const bool there = number_in(oracle.head_read("40: w 32 r 2").bytes) == 0;
  writes(oracle, there ? "40: w 10 01 3F 01 40" : "40: w 10 00 12 01 40");
  writes(oracle, R"(40: w 11 01 41 01 42
40: w 12 01 43
40: w 13 00 12 01 44
40: w 15 00 12 01 45)");
  return written(there ? 0x13F : 18, 0x120145, 0, 0, 0, 0);
}

Outcome tilt_absolute_gains(Oracle& oracle) {
  if (!begin_on_vetra(oracle)) {
    writes(oracle, "41: w 0C 01 16\n41: w 0E 01 17\n41: w 10 01 18");
    return written(0, 0, 0, 0, 0, 0x118);
  }
  // From count 9000 to 9100; from the zero, as which a failure reads, it is too far for the rule.
  const bool near = number_in(oracle.head_read("41: w 32 r 2").bytes) == 9'000;
  writes(oracle, near ? "41: w 10 00 21 01 4E" : "41: w 10 01 4D 01 4E");
  writes(oracle, R"(41: w 12 01 51
41: w 11 01 4F 01 50
41: w 13 00 12 01 52
41: w 15 00 12 01 53)");
  return written(0, 0, near ? 33 : 0x14D, 0x120153, 0, 0);
}

Outcome tilt_slow_gains(Oracle& oracle) {
  if (!begin_on_vetra(oracle)) {
    writes(oracle, tilt_still);
    return written(0, 0, 0, 0, 0, 0x111);
  }
  writes(oracle, tilt_row);
  writes(oracle, "41: w 10 00 28 01 47\n41: w 11 0B B8 01 49");
  return written(0, 0, 40, 0x12014C, 0, 0);
}

Outcome stop_gains(Oracle& oracle) {
  if (begin_on_vetra(oracle)) {
    writes(oracle, pan_row);
    writes(oracle, tilt_row);
    return written(0x138, 0x12013E, 0x146, 0x12014C, 0, 0);
  }
  writes(oracle, pan_still);
  writes(oracle, tilt_still);
  return written(0, 0, 0, 0, 0x11F, 0x111);
}

constexpr HeadRow head_gain_rows[] = {
    {"Init_Setup_PID",
     [] {
       return Outcome{Init_Setup_PID(table), {static_cast<std::uint8_t>(giMOTOR_Init_Reg[0])}};
     },
     [](Oracle&) {
       return Outcome{0, {1}};
     }},
    {"Debug_PID_En", [] { return Outcome{Debug_PID_En(1)}; }, [](Oracle&) { return Outcome{0}; }},
    {"SetVetraPanPID", called<SetVetraPanPID, 16, 1, 2>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 10 00 01 00 02", ""); }},
    {"SetVetraTiltPID", called<SetVetraTiltPID, 16, 1, 2>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 10 00 01 00 02", ""); }},
    {"PanPosPIDsetup", called<PanPosPIDsetup, 1, 2>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 10 00 01 00 02", ""); }},
    {"TiltPosPIDsetup", called<TiltPosPIDsetup, 1, 2>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 10 00 01 00 02", ""); }},
    {"PanPIDsetup", called<PanPIDsetup, 1, 2, 3>,
     [](Oracle& oracle) {
       return writes_by_family(oracle, "40: w 11 00 01 00 02",
                               "40: w 0C 00 01\n40: w 0E 00 02\n40: w 10 00 03");
     }},
    {"TiltPIDsetup", called<TiltPIDsetup, 1, 2, 3>,
     [](Oracle& oracle) {
       return writes_by_family(oracle, "41: w 11 00 01 00 02",
                               "41: w 0C 00 01\n41: w 0E 00 02\n41: w 10 00 03");
     }},
    {"Pan_AccDec_setup", called<Pan_AccDec_setup, 1, 2>,
     [](Oracle& oracle) {
       oracle.init_i2c();
       return writes(oracle, "40: w 13 00 00 00 01\n40: w 15 00 00 00 02");
     }},
    {"Tilt_AccDec_setup", called<Tilt_AccDec_setup, 1, 2>,
     [](Oracle& oracle) {
       oracle.init_i2c();
       return writes(oracle, "41: w 13 00 00 00 01\n41: w 15 00 00 00 02");
     }},
    {"Pan_Setup_PID", tuned<Pan_Setup_PID, 1, 7200, 65535>, pan_absolute_gains},
    {"Tilt_Setup_PID", tuned<Tilt_Setup_PID, 1, 7200, 45145>, tilt_absolute_gains},
    {"Tilt_Setup_PID", tuned<Tilt_Setup_PID, 0, 100, 0>, tilt_slow_gains, "Vetra_slow",
     "Tasmere_slow"},
    {"Set_stop_PID", tuned<Set_stop_PID>, stop_gains},
};

}  // namespace

std::span<const HeadRow> head_gains() { return head_gain_rows; }

}  // namespace kelvo::test::failure
