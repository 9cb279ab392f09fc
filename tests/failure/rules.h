// Rules that other functions' rules are made of.
#ifndef KELVO_TESTS_FAILURE_RULES_H
#define KELVO_TESTS_FAILURE_RULES_H

#include <array>
#include <cstdint>
#include <set>

#include "failure/oracle.h"
#include "failure/scenario.h"

namespace kelvo::test::failure {

/// The values of the calibration records, each by the query that reads it, in their order in the file.
inline constexpr std::array<std::uint8_t, 6> iris_record = {0xA1, 0xD1, 0xD3, 0xC5, 0xC6, 0x98};
inline constexpr std::array<std::uint8_t, 15> stabiliser_record = {
    0xA1, 0xD1, 0xD2, 0xD3, 0xD4, 0xD7, 0xD9, 0xD8, 0xDA, 0xE3, 0x96, 0x97, 0x9A, 0x9B, 0xE5};

/// Values that were not received when the record was written, so that it holds zeros.
using Missing = std::set<std::uint8_t>;

void load_iris_record(Oracle& oracle, const Missing& missing = {});
int load_stabiliser_record(Oracle& oracle, const Missing& missing = {});

Outcome boot_de015(Oracle& oracle, const Missing& missing = {});
Outcome boot_df033(Oracle& oracle, const Missing& missing = {});
Outcome boot_for_stabiliser_check(Oracle& oracle);
Outcome boot_for_iris_check(Oracle& oracle);

std::int64_t stop_driver(Oracle& oracle);
std::int64_t step_driver(Oracle& oracle);
std::int64_t switch_filter(Oracle& oracle);
std::int64_t initialise_driver(Oracle& oracle);

/// What the fitted module does not have.
inline Outcome nothing(Oracle& /*oracle*/) { return {0}; }

/// Writes of which the caller hears nothing.
template <int frames>
Outcome unheeded_writes(Oracle& oracle) {
  oracle.command(frames);
  return {0};
}

}  // namespace kelvo::test::failure

#endif
