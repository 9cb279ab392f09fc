#include <iterator>
#include <span>

#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

// In the order in which they are sent.
constexpr std::uint8_t sent_iris_values[] = {0xA1, 0xD1, 0xD3, 0xC5, 0xC6};
constexpr std::uint8_t sent_stabiliser_values[] = {0xA1, 0xD1, 0xD3, 0xD7, 0xD8, 0xE3,
                                                   0xD2, 0xD4, 0xD9, 0xDA, 0xE5};

void send_values(Oracle& oracle, std::span<const std::uint8_t> values, const Missing& missing) {
  for (const std::uint8_t value : values) {
    if (missing.contains(value)) oracle.carries_zero();
    oracle.command();
  }
}

}  // namespace

void load_iris_record(Oracle& oracle, const Missing& missing) {
  std::string path = "/bin/DC_S_Cali.dat";
  bool open = oracle.open_file(path);
  if (!open && oracle.variant == 9) {
    path = "/bin/DC_S_Cali_T5391.dat";
    open = oracle.open_file(path);
    oracle.print("Load default DC Calibration");
  }
  if (!open) {
    oracle.skip_frames(static_cast<int>(std::size(sent_iris_values) + std::size(iris_record)));
    return;
  }
  oracle.close_file(path);
  send_values(oracle, sent_iris_values, missing);
  for (std::size_t i = 0; i < std::size(iris_record); ++i) oracle.query();
}

int load_stabiliser_record(Oracle& oracle, const Missing& missing) {
  const std::string path = "/bin/OIS_S_Cali.dat";
  if (!oracle.open_file(path)) {
    oracle.skip_frames(static_cast<int>(std::size(sent_stabiliser_values)));
    return -1;
  }
  oracle.close_file(path);
  send_values(oracle, sent_stabiliser_values, missing);
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
  return {0, {0xC6, 0xC5}};
}

constexpr Scenario calibration_rows[] = {
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

std::span<const Scenario> calibration_scenarios() { return calibration_rows; }

}  // namespace kelvo::test::failure
