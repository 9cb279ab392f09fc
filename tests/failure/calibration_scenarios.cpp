#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {

void load_iris_record(Oracle& oracle) {
  constexpr int commands = 5;
  constexpr int read_backs = 6;
  std::string path = "/bin/DC_S_Cali.dat";
  bool open = oracle.open_file(path);
  if (!open && oracle.variant == 9) {
    path = "/bin/DC_S_Cali_T5391.dat";
    open = oracle.open_file(path);
    oracle.print("Load default DC Calibration");
  }
  if (!open) {
    oracle.skip_frames(commands + read_backs);
    return;
  }
  oracle.close_file(path);
  oracle.command(commands);
  for (int i = 0; i < read_backs; ++i) oracle.query();
}

int load_stabiliser_record(Oracle& oracle) {
  constexpr int commands = 11;
  const std::string path = "/bin/OIS_S_Cali.dat";
  if (!oracle.open_file(path)) {
    oracle.skip_frames(commands);
    return -1;
  }
  oracle.close_file(path);
  oracle.command(commands);
  return 0;
}

namespace {

Outcome load_iris() {
  Load_DC();
  return {};
}

Outcome load_iris_rule(Oracle& oracle) {
  load_iris_record(oracle);
  return {};
}

Outcome iris_range() {
  std::uint32_t max = untouched;
  std::uint32_t min = untouched;
  const std::int32_t result = Get_DC_Range(&max, &min);
  return {result, {static_cast<std::uint8_t>(max), static_cast<std::uint8_t>(min)}};
}

Outcome iris_range_rule(Oracle& oracle) {
  const std::string path = "/bin/DC_S_Cali.dat";
  if (!oracle.open_file(path)) return {-1, Bytes(2, untouched)};
  // On the T5391 the file stays open.
  if (oracle.variant != 9) oracle.close_file(path);
  return {0, {0x55, 0x44}};
}

constexpr Scenario rows[] = {
    {"Load_DC", "DE015", de015, load_iris, load_iris_rule},
    {"Load_DC", "DF033", df033, load_iris, load_iris_rule},
    {"Load_DC", "T5391", t5391, load_iris, load_iris_rule},
    {"Load_DC", "latched", as_loaded, load_iris, load_iris_rule},
    {"Load_QC", "", de015, [] { return Outcome{Load_QC()}; },
     [](Oracle& oracle) { return Outcome{load_stabiliser_record(oracle)}; }},
    {"Get_DC_Range", "DF033", df033, iris_range, iris_range_rule},
    {"Get_DC_Range", "T5391", t5391, iris_range, iris_range_rule},
};

}  // namespace

std::span<const Scenario> calibration_scenarios() { return rows; }

}  // namespace kelvo::test::failure
