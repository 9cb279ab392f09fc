#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

template <std::int64_t (*steps)(Oracle&)>
Outcome unheeded(Oracle& oracle) {
  steps(oracle);
  return {0};
}

Outcome drive_coil(Oracle& oracle) {
  oracle.command(9);
  oracle.wait(500'000);
  oracle.command();
  oracle.wait(10'000);
  oracle.command();
  return {0};
}

Outcome convert(Oracle& oracle) {
  oracle.command();
  oracle.wait(10'000);
  return {oracle.query().answered ? 0x0304 : 0};
}

constexpr Scenario iris_rows[] = {
    {"setIrisForward", "DE015", de015, move_40_steps<setIrisForward>, unheeded<step_driver>},
    {"setIrisForward", "DF033", df033, move_40_steps<setIrisForward>, nothing},
    {"setIrisBackward", "DE015", de015, move_40_steps<setIrisBackward>, unheeded<step_driver>},
    {"setICRon", "DE015", de015, move_40_steps<setICRon>, unheeded<switch_filter>},
    {"setICRon", "DF033", df033, move_40_steps<setICRon>, unheeded<switch_filter>},
    {"setICRon", "T5391", t5391, move_40_steps<setICRon>, drive_coil},
    {"setICRon", "unserved", unserved_module, move_40_steps<setICRon>, nothing},
    {"setICRoff", "DF033", df033, move_40_steps<setICRoff>, unheeded<switch_filter>},
    {"setICRoff", "T5391", t5391, move_40_steps<setICRoff>, drive_coil},
    {"setICRoff", "latched", as_loaded, move_40_steps<setICRoff>, unheeded<switch_filter>},
    {"setDCIrisABS", "", df033, [] { return Outcome{setDCIrisABS(0x12345)}; },
     [](Oracle& oracle) {
       oracle.command();
       return Outcome{0x12345};
     }},
    {"setHeater", "", t5391, [] { return Outcome{setHeater(5)}; },
     [](Oracle& oracle) {
       oracle.command();
       return Outcome{0};
     }},
    {"getADC", "", t5391, [] { return Outcome{getADC(1)}; }, convert},
};

}  // namespace

std::span<const Scenario> iris_scenarios() { return iris_rows; }

}  // namespace kelvo::test::failure
