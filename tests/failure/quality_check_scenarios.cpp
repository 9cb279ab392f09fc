#include <span>

#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

/// In the order in which the check of the stabiliser reads them.
constexpr std::uint8_t checked_stabiliser_values[] = {
    0xA1, 0xD1, 0xD3, 0xD7, 0xD8, 0xE3, 0x96, 0x9A, 0xD2, 0xD4, 0xD9, 0xDA, 0xE5, 0x97, 0x9B};

Missing read_values(Oracle& oracle, std::span<const std::uint8_t> values) {
  Missing missing;
  for (const std::uint8_t value : values) {
    if (!oracle.query().answered) missing.insert(value);
  }
  return missing;
}

/// Writes the three copies. What is missing from the one that a boot loads: nothing when it is older.
Missing write_record(Oracle& oracle, const std::string& name, const Missing& missing) {
  bool replaced = false;
  for (const std::string folder : {"/mnt/nand/", "/tmp/", "/bin/"}) {
    replaced = oracle.open_file(folder + name, "w");
    if (!replaced) continue;
    oracle.synchronise();
    oracle.close_file(folder + name);
  }
  return replaced ? missing : Missing{};
}

Outcome end_stabiliser_check(Oracle& oracle, int result, const Missing& missing) {
  boot_de015(oracle, missing);
  oracle.command();
  return {result};
}

// A poll without an answer reads state 0: no calibration runs. The unit is finished at the first poll.
Outcome check_stabiliser(Oracle& oracle) {
  boot_for_stabiliser_check(oracle);
  oracle.command(3);
  oracle.query();
  const bool finished = oracle.query().answered;
  oracle.pause(1);
  if (!finished) {
    oracle.skip_frames(1 + static_cast<int>(std::size(checked_stabiliser_values)));
    return end_stabiliser_check(oracle, -1, {});
  }
  const int error = oracle.query().answered ? 3 : 0;
  const Missing missing = read_values(oracle, checked_stabiliser_values);
  return end_stabiliser_check(oracle, error, write_record(oracle, "OIS_S_Cali.dat", missing));
}

/// Polls of a check without end that are enough to tell.
constexpr int patience = 5;

// Nothing clears the latch while the iris is polled, and an error code that is not read is no error.
Outcome check_iris(Oracle& oracle) {
  boot_for_iris_check(oracle);
  oracle.command(2);
  bool finished = false;
  for (int polls = 0; !finished; ++polls) {
    if (polls == patience) {
      oracle.never_returns();
      return {};
    }
    finished = oracle.query().answered;
    oracle.pause(1);
  }
  oracle.query();
  const Missing missing = read_values(oracle, iris_record);
  boot_df033(oracle, write_record(oracle, "DC_S_Cali.dat", missing));
  return {0};
}

Outcome call_stabiliser_check() { return {OIS_Quality_Check()}; }
Outcome call_iris_check() { return {DC_Quality_Check()}; }

constexpr Scenario quality_check_rows[] = {
    {"OIS_Quality_Check", "", de015, call_stabiliser_check, check_stabiliser},
    {"OIS_Quality_Check", "latched", as_loaded, call_stabiliser_check, check_stabiliser},
    {"DC_Quality_Check", "", df033, call_iris_check, check_iris, true},
    {"DC_Quality_Check", "latched", as_loaded, call_iris_check, check_iris, true},
};

}  // namespace

std::span<const Scenario> quality_check_scenarios() { return quality_check_rows; }

}  // namespace kelvo::test::failure
