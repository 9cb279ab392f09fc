#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {
namespace {

/// At speed 100.
template <auto function>
Outcome move_200_steps() {
  return {function(100, 200)};
}

// The start is what a motor's first move waits before.
Outcome start(Oracle& oracle) {
  oracle.moves();
  return {oracle.command()};
}

Outcome zoom_1_block(Oracle& oracle) {
  oracle.command(7);
  oracle.settle(50);
  return start(oracle);
}

template <int milliseconds>
Outcome zoom_1_micro_block(Oracle& oracle) {
  oracle.command(6);
  oracle.settle(milliseconds);
  oracle.command();
  oracle.settle(50);
  return start(oracle);
}

Outcome zoom_3_block(Oracle& oracle) {
  oracle.command(7);
  oracle.settle(5);
  return start(oracle);
}

template <int milliseconds>
Outcome channel(Oracle& oracle) {
  oracle.command(10);
  oracle.settle(milliseconds);
  return start(oracle);
}

Outcome stepping_driver(Oracle& oracle) {
  step_driver(oracle);
  return {0};
}

constexpr Scenario move_rows[] = {
    {"setZoom1Forward", "DE015", de015, move_200_steps<setZoom1Forward>, zoom_1_block},
    {"setZoom1Forward", "DF033", df033, move_200_steps<setZoom1Forward>, stepping_driver},
    {"setZoom1Forward", "T5391", t5391, move_200_steps<setZoom1Forward>, channel<5>},
    {"setZoom1Forward", "unserved", unserved_module, move_200_steps<setZoom1Forward>, nothing},
    {"setZoom1Backward", "T5391", t5391, move_200_steps<setZoom1Backward>, channel<5>},
    {"setZoom1Forward2_2", "DE015", de015, move_200_steps<setZoom1Forward2_2>, zoom_1_block},
    {"setZoom1Forward2_2", "DF033", df033, move_200_steps<setZoom1Forward2_2>, nothing},
    {"setZoom1Backward2_2", "DF033", df033, move_200_steps<setZoom1Backward2_2>, stepping_driver},
    {"setZoom1uForward", "DE015", de015, move_200_steps<setZoom1uForward>, zoom_1_micro_block<50>},
    {"setZoom1uBackward", "DE015", de015, move_200_steps<setZoom1uBackward>,
     zoom_1_micro_block<100>},
    {"setZoom1uBackward", "DF033", df033, move_200_steps<setZoom1uBackward>, stepping_driver},
    {"setFocusForward", "DE015", de015, move_200_steps<setFocusForward>, channel<50>},
    {"setFocusForward", "T5391", t5391, move_200_steps<setFocusForward>, channel<10>},
    {"setFocusBackward", "DF033", df033, move_200_steps<setFocusBackward>, channel<10>},
    {"setZoom2Forward", "DE015", de015, move_200_steps<setZoom2Forward>, channel<50>},
    {"setZoom2Backward", "DF033", df033, move_200_steps<setZoom2Backward>, channel<5>},
    {"setZoom2Forward512", "DE015", de015, move_200_steps<setZoom2Forward512>, channel<50>},
    {"setZoom2Backward512", "DF033", df033, move_200_steps<setZoom2Backward512>, channel<5>},
    {"setZoom3Forward", "DF033", df033, move_200_steps<setZoom3Forward>, zoom_3_block},
    {"setZoom3Backward", "DF033", df033, move_200_steps<setZoom3Backward>, zoom_3_block},
};

}  // namespace

std::span<const Scenario> move_scenarios() { return move_rows; }

}  // namespace kelvo::test::failure
