// The table of this suite: one row for each exported function (more where it takes several ways), how
// it is called, and what is to come of it whatever fails.
#ifndef KELVO_TESTS_FAILURE_SCENARIO_H
#define KELVO_TESTS_FAILURE_SCENARIO_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "failure/oracle.h"

namespace kelvo::test::failure {

/// What a caller gets: the result (0 of a function without one), and the bytes behind its pointers.
struct Outcome {
  std::int64_t result = 0;
  Bytes out = {};
};

struct Scenario {
  const char* function;      // the exported name
  const char* circumstance;  // what tells this row from the function's others, or ""
  Setting setting;
  Outcome (*call)();         // calls the library
  Outcome (*rule)(Oracle&);  // tells the oracle what that call must do
  bool can_hang = false;     // there are failures after which the call never returns
};

// The table's parts.
std::span<const Scenario> bus_scenarios();
std::span<const Scenario> boot_scenarios();
std::span<const Scenario> service_scenarios();
std::span<const Scenario> move_scenarios();
std::span<const Scenario> pt5111_scenarios();
std::span<const Scenario> calibration_scenarios();
std::span<const Scenario> i2c_scenarios();
std::span<const Scenario> head_scenarios();
std::span<const Scenario> motor_service_scenarios();
std::span<const Scenario> iris_scenarios();
std::span<const Scenario> stabiliser_scenarios();
std::span<const Scenario> quality_check_scenarios();

std::vector<Scenario> all_scenarios();

/// "setFocusForward_DF033"
std::string name_of(const Scenario& scenario);

/// A caller's buffer before the call, so that a byte that nobody wrote can be told.
inline constexpr std::uint8_t untouched = 0xEE;

/// At speed 100.
template <auto function>
Outcome move_40_steps() {
  return {function(100, 40)};
}

// Lens modules.
inline constexpr Setting as_loaded = {};
inline constexpr Setting de015 = {.variant = 7};
inline constexpr Setting df033 = {.variant = 8};
inline constexpr Setting t5391 = {.variant = 9};
inline constexpr Setting unserved_module = {.variant = 5};

}  // namespace kelvo::test::failure

#endif
