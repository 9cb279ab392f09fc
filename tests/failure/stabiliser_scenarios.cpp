#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

template <auto function>
Outcome set() {
  return {function(1)};
}

template <auto function>
Outcome read() {
  return {function()};
}

// Every query answers 1, 2, 3, 4.
Outcome value(Oracle& oracle) { return {oracle.query().answered ? 0x01020304 : 0}; }

std::uint8_t low_byte(std::uint32_t word) { return static_cast<std::uint8_t>(word); }

template <auto function>
Outcome read_pair() {
  std::uint32_t x = untouched;
  std::uint32_t y = untouched;
  const std::int64_t result = function(&x, &y);
  return {result, {low_byte(x >> 8), low_byte(x), low_byte(y >> 8), low_byte(y)}};
}

Bytes pair(bool answered) { return answered ? Bytes{1, 2, 3, 4} : Bytes{0, 0, 0, 0}; }

Outcome gyro_pair(Oracle& oracle) { return {0, pair(oracle.query().answered)}; }

Outcome hall_pair(Oracle& oracle) {
  const bool answered = oracle.query().answered;
  return {answered ? 0x0304 : 0, pair(answered)};
}

template <auto function>
Outcome read_axis() {
  std::uint32_t word = untouched;
  const std::int64_t result = function(&word);
  return {result, {low_byte(word >> 8), low_byte(word)}};
}

Outcome hall_axis(Oracle& oracle) {
  const Oracle::Query query = oracle.query();
  return {query.result, query.answered ? Bytes{3, 4} : Bytes{0, 0}};
}

Outcome switch_on_detection(Oracle& oracle) {
  oracle.query();
  oracle.command();
  return {0};
}

constexpr Scenario stabiliser_rows[] = {
    {"OIS_En", "", de015, set<OIS_En>, unheeded_writes<2>},
    {"OIS_En", "latched", as_loaded, set<OIS_En>, unheeded_writes<2>},
    {"OIS_Pause", "DE015", de015, set<OIS_Pause>, unheeded_writes<1>},
    {"OIS_Pause", "DF033", df033, set<OIS_Pause>, nothing},
    {"Read_OIS_Pause", "DE015", de015, read<Read_OIS_Pause>, value},
    {"Read_OIS_Pause", "T5391", t5391, read<Read_OIS_Pause>, nothing},
    {"Set_X_GyroGain", "", de015, set<Set_X_GyroGain>, unheeded_writes<1>},
    {"Set_Y_GyroGain", "", df033, set<Set_Y_GyroGain>, unheeded_writes<1>},
    {"Read_X_GyroGain", "", de015, read<Read_X_GyroGain>, value},
    {"Read_Y_GyroGain", "", t5391, read<Read_Y_GyroGain>, value},
    {"Set_XY_Definition", "", de015, set<Set_XY_Definition>, unheeded_writes<1>},
    {"Set_X_Definition", "", de015, set<Set_X_Definition>, unheeded_writes<1>},
    {"Set_Y_Definition", "", de015, set<Set_Y_Definition>, unheeded_writes<1>},
    {"Get_XY_Data", "", de015, read_pair<Get_XY_Data>, gyro_pair},
    {"Get_XY_Data", "latched", as_loaded, read_pair<Get_XY_Data>, gyro_pair},
    {"Get_HallXY_Data", "", de015, read_pair<Get_HallXY_Data>, hall_pair},
    {"Get_HallX_Data", "", de015, read_axis<Get_HallX_Data>, hall_axis},
    {"Get_HallY_Data", "", de015, read_axis<Get_HallY_Data>, hall_axis},
    {"Set_Mode", "", de015, set<Set_Mode>, unheeded_writes<1>},
    {"Set_Coma", "", unserved_module, set<Set_Coma>, unheeded_writes<1>},
    {"Read_Coma", "", de015, read<Read_Coma>, value},
    {"Stationary_detection", "on", de015, set<Stationary_detection>, switch_on_detection},
    {"Stationary_detection", "off", de015, [] { return Outcome{Stationary_detection(0)}; },
     unheeded_writes<1>},
    {"Read_Stationary_detection", "", de015, read<Read_Stationary_detection>, value},
    {"Gyro_stability", "", de015, set<Gyro_stability>, unheeded_writes<1>},
    {"Read_Gyro_stability", "", de015, read<Read_Gyro_stability>, value},
    {"Get_gyro_stable_flag", "", de015, read<Get_gyro_stable_flag>, value},
};

}  // namespace

std::span<const Scenario> stabiliser_scenarios() { return stabiliser_rows; }

}  // namespace kelvo::test::failure
