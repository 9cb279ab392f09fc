#include "failure/rules.h"
#include "failure/scenario.h"
#include "kelvo.h"

namespace kelvo::test::failure {

std::int64_t stop_driver(Oracle& oracle) { return oracle.driver_word(3); }

std::int64_t step_driver(Oracle& oracle) { return oracle.driver_word(3 + 6); }

std::int64_t switch_filter(Oracle& oracle) {
  if (oracle.variant == 7) return step_driver(oracle);
  oracle.driver_word(4);
  oracle.wait(200'000);
  return oracle.driver_word();
}

std::int64_t initialise_driver(Oracle& oracle) {
  if (oracle.variant == 7) {
    oracle.driver_word(13);
    oracle.wait(500'000);
    oracle.driver_word();
    return stop_driver(oracle);
  }
  oracle.driver_word(11);
  return switch_filter(oracle);
}

namespace {

template <std::int64_t (*steps)(Oracle&)>
Outcome rule(Oracle& oracle) {
  return {steps(oracle)};
}

Outcome word_rule(Oracle& oracle) { return {oracle.driver_word()}; }

/// A move of 40 steps at the function's own speed.
template <std::int64_t (*function)(std::uint32_t)>
Outcome steps() {
  return {function(40)};
}

template <std::int64_t (*function)(std::uint16_t, std::uint16_t, std::uint16_t, std::uint16_t)>
Outcome block_move() {
  return {function(0x4000, 512, 100, 40)};
}

Outcome send_word() { return {SendPT5111CMD(0xCFC0)}; }

constexpr Scenario pt5111_rows[] = {
    {"SendPT5111CMD", "DE015", de015, send_word, word_rule},
    {"SendPT5111CMD", "DF033", df033, send_word, word_rule},
    {"SendPT5111CMD", "T5391", t5391, send_word, word_rule},
    {"SteppingMove", "DE015", de015, block_move<SteppingMove>, rule<step_driver>},
    {"uSteppingMove", "DF033", df033, block_move<uSteppingMove>, rule<step_driver>},
    {"stop", "DE015", de015, [] { return Outcome{stop()}; }, rule<stop_driver>},
    {"piris_open", "", de015, steps<piris_open>, rule<step_driver>},
    {"piris_close", "", de015, steps<piris_close>, rule<step_driver>},
    {"ICR_ON", "DE015", de015, steps<ICR_ON>, rule<switch_filter>},
    {"ICR_ON", "DF033", df033, steps<ICR_ON>, rule<switch_filter>},
    {"ICR_OFF", "T5391", t5391, steps<ICR_OFF>, rule<switch_filter>},
    {"PT5111_Initialize", "DE015", de015, [] { return Outcome{PT5111_Initialize()}; },
     rule<initialise_driver>},
    {"PT5111_Initialize", "DF033", df033, [] { return Outcome{PT5111_Initialize()}; },
     rule<initialise_driver>},
    {"PT5111Zoom1Forward", "", df033, move_40_steps<PT5111Zoom1Forward>, rule<step_driver>},
    {"PT5111Zoom1Backward", "", df033, move_40_steps<PT5111Zoom1Backward>, rule<step_driver>},
    {"uPT5111Zoom1Forward", "", df033, move_40_steps<uPT5111Zoom1Forward>, rule<step_driver>},
    {"uPT5111Zoom1Backward", "", df033, move_40_steps<uPT5111Zoom1Backward>, rule<step_driver>},
    {"PT5111PI1", "DE015", de015, [] { return Outcome{PT5111PI1(1)}; }, word_rule},
    {"PT5111Zoom1OFF", "DE015", de015, [] { return Outcome{PT5111Zoom1OFF()}; },
     [](Oracle& oracle) {
       oracle.driver_word();
       return Outcome{0};
     }},
    {"PT5111Zoom1OFF", "DF033", df033, [] { return Outcome{PT5111Zoom1OFF()}; },
     [](Oracle& oracle) {
       oracle.driver_word();
       return Outcome{0};
     }},
};

}  // namespace

std::span<const Scenario> pt5111_scenarios() { return pt5111_rows; }

}  // namespace kelvo::test::failure
