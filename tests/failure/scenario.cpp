#include "failure/scenario.h"

namespace kelvo::test::failure {

std::vector<Scenario> all_scenarios() {
  std::vector<Scenario> all;
  for (const auto part :
       {bus_scenarios(), service_scenarios(), boot_scenarios(), move_scenarios(),
        pt5111_scenarios(), calibration_scenarios(), i2c_scenarios(), motor_service_scenarios(),
        iris_scenarios(), stabiliser_scenarios(), quality_check_scenarios(), head_scenarios()}) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

std::string name_of(const Scenario& scenario) {
  const std::string circumstance = scenario.circumstance;
  return scenario.function + (circumstance.empty() ? "" : "_" + circumstance);
}

}  // namespace kelvo::test::failure
