#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

/// 40 steps.
template <auto function>
Outcome move() {
  return {function(100, 40)};
}

template <std::int64_t (*steps)(Oracle&)>
Outcome unheeded(Oracle& oracle) {
  steps(oracle);
  return {0};
}

Outcome nothing(Oracle& /*oracle*/) { return {0}; }

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

constexpr Scenario rows[] = {
    {"setIrisForward", "DE015", de015, move<setIrisForward>, unheeded<step_driver>},
    {"setIrisForward", "DF033", df033, move<setIrisForward>, nothing},
    {"setIrisBackward", "DE015", de015, move<setIrisBackward>, unheeded<step_driver>},
    {"setICRon", "DE015", de015, move<setICRon>, unheeded<switch_filter>},
    {"setICRon", "DF033", df033, move<setICRon>, unheeded<switch_filter>},
    {"setICRon", "T5391", t5391, move<setICRon>, drive_coil},
    {"setICRon", "unserved", unserved_module, move<setICRon>, nothing},
    {"setICRoff", "DF033", df033, move<setICRoff>, unheeded<switch_filter>},
    {"setICRoff", "T5391", t5391, move<setICRoff>, drive_coil},
    {"setICRoff", "latched", as_loaded, move<setICRoff>, unheeded<switch_filter>},
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

std::span<const Scenario> iris_scenarios() { return rows; }

}  // namespace kelvo::test::failure
