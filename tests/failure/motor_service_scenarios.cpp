#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

template <auto function>
Outcome ask() {
  return {function()};
}

// Every query answers 1, 2, 3, 4.
template <std::uint32_t answered, std::uint32_t otherwise>
Outcome query(Oracle& oracle) {
  return {oracle.query().answered ? answered : otherwise};
}
constexpr auto whole_count = query<0x01020304, 0>;
constexpr auto raw_count = query<0x0304, 0>;
constexpr auto folded_count = query<0x3FFF - 0x0304, 0x3FFF>;

Outcome interrupted(Oracle& oracle) {
  oracle.query();
  return {0};  // bit 0 of the last byte
}

template <auto function>
Outcome preset() {
  return {function(1234)};
}

Outcome write(Oracle& oracle) { return {oracle.command()}; }

template <auto function>
Outcome status() {
  std::uint8_t running = untouched;
  const std::uint8_t result = function(&running);
  return {result, {running}};
}

Outcome status_rule(Oracle& oracle) {
  const Oracle::Query query = oracle.query();
  return {query.result, {static_cast<std::uint8_t>(query.answered ? 1 : 0)}};
}

Outcome no_status(Oracle& /*oracle*/) { return {0, {untouched}}; }

Outcome lower_zoom_1(Oracle& oracle) {
  oracle.command();
  oracle.wait(10'000);
  oracle.command();
  oracle.wait(10'000);
  return {oracle.command()};
}

template <auto function, int argument>
Outcome switching() {
  return {function(argument)};
}

Outcome interrupter_level(Oracle& oracle) {
  oracle.command(2);
  oracle.wait(10'000);
  oracle.query();
  return {0};  // 0x0304 is below the threshold
}

constexpr Scenario motor_service_rows[] = {
    {"GetZoom1Count", "DE015", de015, ask<GetZoom1Count>, whole_count},
    {"GetZoom1Count", "DF033", df033, ask<GetZoom1Count>, whole_count},
    {"GetZoom1Count", "T5391", t5391, ask<GetZoom1Count>, folded_count},
    {"GetZoom1Count", "unserved", unserved_module, ask<GetZoom1Count>, nothing},
    {"GetZoom1Count", "latched", as_loaded, ask<GetZoom1Count>, whole_count},
    {"GetZoom2Count", "DE015", de015, ask<GetZoom2Count>, folded_count},
    {"GetZoom3Count", "DF033", df033, ask<GetZoom3Count>, whole_count},
    {"GetFocusCount", "DE015", de015, ask<GetFocusCount>, folded_count},
    {"GetFocusCount", "DF033", df033, ask<GetFocusCount>, raw_count},
    {"SetZoom1Count", "DE015", de015, preset<SetZoom1Count>, write},
    {"SetZoom1Count", "DF033", df033, preset<SetZoom1Count>, write},
    {"SetZoom1Count", "T5391", t5391, preset<SetZoom1Count>, write},
    {"SetZoom2Count", "DE015", de015, preset<SetZoom2Count>, write},
    {"SetZoom2Count", "DF033", df033, preset<SetZoom2Count>, nothing},
    {"SetZoom3Count", "DF033", df033, preset<SetZoom3Count>, write},
    {"SetFocusCount", "DE015", de015, preset<SetFocusCount>, write},
    {"SetFocusCount", "T5391", t5391, preset<SetFocusCount>, write},
    {"getZoom1Status", "DE015", de015, status<getZoom1Status>, status_rule},
    {"getZoom1Status", "T5391", t5391, status<getZoom1Status>, status_rule},
    {"getZoom1Status", "unserved", unserved_module, status<getZoom1Status>, no_status},
    {"getZoom1Status", "latched", as_loaded, status<getZoom1Status>, status_rule},
    {"getZoom2Status", "DF033", df033, status<getZoom2Status>, status_rule},
    {"getZoom3Status", "DF033", df033, status<getZoom3Status>, status_rule},
    {"getFocusStatus", "DE015", de015, status<getFocusStatus>, status_rule},
    {"getFocusStatus", "DF033", df033, status<getFocusStatus>, status_rule},
    {"getIrisStatus", "", de015, status<getIrisStatus>, no_status},
    {"getICRStatus", "", de015, status<getICRStatus>, no_status},
    {"setZoom1PowerOff", "DE015", de015, ask<setZoom1PowerOff>, lower_zoom_1},
    {"setZoom1PowerOff", "DF033", df033, ask<setZoom1PowerOff>, unheeded_writes<1>},
    {"setZoom1PowerOff", "T5391", t5391, ask<setZoom1PowerOff>, write},
    {"setZoom2PowerOff", "DE015", de015, ask<setZoom2PowerOff>, write},
    {"setZoom2PowerOff", "T5391", t5391, ask<setZoom2PowerOff>, nothing},
    {"setZoom3PowerOff", "DE015", de015, ask<setZoom3PowerOff>, nothing},
    {"setZoom3PowerOff", "DF033", df033, ask<setZoom3PowerOff>, write},
    {"setFocusPowerOff", "DF033", df033, ask<setFocusPowerOff>, write},
    {"setFocusPowerOff", "T5391", t5391, ask<setFocusPowerOff>, write},
    {"setIrisPowerOff", "", de015, [] { return Outcome{setIrisPowerOff(0)}; }, nothing},
    {"setICRPowerOff", "", de015, [] { return Outcome{setICRPowerOff(0)}; }, nothing},
    {"setPICalibraition", "DE015", de015, switching<setPICalibraition, -1>, unheeded_writes<3>},
    {"setPICalibraition", "T5391", t5391, switching<setPICalibraition, -1>, unheeded_writes<2>},
    {"FocusPIVerification", "DE015", de015, switching<FocusPIVerification, 1>, unheeded_writes<2>},
    {"FocusPIVerification", "DF033", df033, switching<FocusPIVerification, 0>, unheeded_writes<1>},
    {"SetPIPower", "", t5391, switching<SetPIPower, 1>, unheeded_writes<1>},
    {"getPI", "DE015", de015, switching<getPI, 1>, interrupter_level},
    {"getPI", "DF033", df033, switching<getPI, 1>, interrupted},
    {"getPI", "unserved", unserved_module, switching<getPI, 1>,
     [](Oracle&) { return Outcome{0xFFFFFFFF}; }},
    {"getPI_Cali_DE051", "", de015, switching<getPI_Cali_DE051, 1>, interrupted},
    {"GetFocusOffset", "DE015", de015, ask<GetFocusOffset>, whole_count},
    {"GetFocusOffset", "T5391", t5391, ask<GetFocusOffset>, whole_count},
    {"GetZoom2Offset", "DE015", de015, ask<GetZoom2Offset>, whole_count},
    {"GetZoom2Offset", "DF033", df033, ask<GetZoom2Offset>, nothing},
};

}  // namespace

std::span<const Scenario> motor_service_scenarios() { return motor_service_rows; }

}  // namespace kelvo::test::failure
