#include "failure/head.h"

namespace kelvo::test::failure {
namespace {

constexpr const char* pan_profile = R"(40: w 0C 10 00
40: w 0E 00 01
40: w 10 40 00
40: w 08 00 C0
40: w 4C 04
40: w 43 00
40: w 46 01 00
40: w 58 00 F3 33 33
40: w 97 01
40: w 95 01 00 01 00
40: w 51 07 00
40: w 56 01
40: w 83 01
40: w 53 01)";
constexpr const char* tilt_profile = R"(41: w 0C 10 00
41: w 0E 00 01
41: w 10 40 00
41: w 08 00 C0
41: w 4C 04
41: w 43 00
41: w 46 01 00
41: w 58 00 F3 33 33
41: w 97 01
41: w 95 01 00 01 00
41: w 51 07 00
41: w 56 01
41: w 83 01
41: w 53 01)";
constexpr const char* pan_set_up = R"(40: w 53 01
40: w 4E 01
40: w 1D 00
sleep
40: w 0C 0A 00
40: w 0E 00 10
40: w 10 30 00
40: w 08 00 0A
40: w 4C 01
40: w 43 00
40: w 46 02 66
40: w 58 00 F3 33 33
40: w 97 01
40: w 95 01 00 01 00
40: w 51 02 A0
40: w 56 01
40: w 83 01
40: w 51 03 80
40: w 75 03 00
40: w 19 00 01
40: w 23
sleep
40: w 01
sleep)";
constexpr const char* tilt_set_up = R"(41: w 53 01
41: w 4E 00
41: w 1D 00
sleep
41: w 0C 08 00
41: w 0E 00 01
41: w 10 18 00
41: w 08 00 C0
41: w 4C 01
41: w 43 00
41: w 46 02 66
41: w 58 00 F3 33 33
41: w 97 01
41: w 95 01 00 01 00
41: w 56 01
41: w 83 01
41: w 51 03 80
41: w 75 03 00
41: w 19 00 00
41: w 12 00 00
41: w 13 4E 39
41: w 23
sleep
41: w 01
sleep)";

Outcome set_tilt_limits(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return writes(oracle, "41: w 05 0C 99 13 9C");
  const bool hall = oracle.head_read("41: w 4F r 1").bytes[0] != 0;
  return writes(oracle, hall ? "41: w 12 57 2D\n41: w 13 19 87" : "41: w 12 EA 60\n41: w 13 19 87");
}

/// An empty message, and success is no success.
template <int slave>
Outcome wake_up(Oracle& oracle) {
  if (begin_on_vetra(oracle)) return {0};
  return {oracle.head_write(at(slave, "w")) == 0 ? 0 : -1};
}

constexpr HeadRow head_command_rows[] = {
    {"PanLimitstep", called<PanLimitstep, 100>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 0A 00 05", ""); }},
    {"TiltLimitstep", called<TiltLimitstep, 100>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 0A 00 05", ""); }},
    {"PanLimitEn", called<PanLimitEn, 1>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 04 01", "40: w 19 00 02"); }},
    {"TiltLimitEn", called<TiltLimitEn, 1>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 04 01", "41: w 19 00 02"); }},
    {"PanLimitSet", called<PanLimitSet, 60000, 1000>,
     [](Oracle& oracle) {
       return writes_by_family(oracle, "40: w 05 05 F0 45 3D", "40: w 12 EA 60\n40: w 13 19 87");
     }},
    {"TiltLimit", called<TiltLimit, 60000, 1000>, set_tilt_limits},
    {"PanReset", called<PanReset>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 22", "40: w 01"); }},
    {"TiltReset", called<TiltReset>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 22", "41: w 01"); }},
    {"PanStop", called<PanStop>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 06", "40: w 07 00 00"); }},
    {"TiltStop", called<TiltStop>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 06", "41: w 07 00 00"); }},
    {"SetPanWakeUp", called<SetPanWakeUp>, wake_up<40>},
    {"SetTiltWakeUp", called<SetTiltWakeUp>, wake_up<41>},
    {"PanTurboMode", called<PanTurboMode, 1>,
     [](Oracle& oracle) { return writes_by_family(oracle, "", "40: w 53 01"); }},
    {"TiltTurboMode", called<TiltTurboMode, 1>,
     [](Oracle& oracle) { return writes_by_family(oracle, "", "41: w 53 01"); }},
    {"SetPanCurrent", called<SetPanCurrent, 1>,
     [](Oracle& oracle) { return writes_by_family(oracle, "40: w 12 00 01", pan_profile); }},
    {"SetTILTCurrent", called<SetTILTCurrent, 1>,
     [](Oracle& oracle) { return writes_by_family(oracle, "41: w 12 00 01", tilt_profile); }},
    {"PanInitParam", called<PanInitParam>,
     [](Oracle& oracle) { return writes_by_family(oracle, "", pan_set_up); }},
    {"TiltInitParam", called<TiltInitParam>,
     [](Oracle& oracle) { return writes_by_family(oracle, "", tilt_set_up); }},
};

}  // namespace

std::span<const HeadRow> head_commands() { return head_command_rows; }

}  // namespace kelvo::test::failure
