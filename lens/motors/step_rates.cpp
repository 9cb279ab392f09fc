#include <array>
#include <cstdint>
#include <span>

#include "kelvo/lens.h"
#include "wire/motor_channels.h"

// The step-rate tables follow from the step clock: a period word is range * 1024 + period, where each
// range doubles the clock and the rate grows in equal parts with the index.
namespace {

constexpr std::uint32_t entries = 256;
using RateTable = std::array<std::uint32_t, entries>;

/// From this index on, the step clock runs in this range.
struct Run {
  std::uint32_t first_index;
  std::uint32_t range;
};

enum class Rounding : std::uint8_t { half_up, down };

/// period = scale * 2^range / (index + 1)
struct RateRule {
  std::int64_t scale_numerator;
  std::int64_t scale_denominator;
  Rounding rounding;
  std::uint32_t last_step;         // index + 1 beyond which the rate grows no further
  std::int64_t longest_undoubled;  // periods in range 0 are cut to this
  std::span<const Run> runs;
};

consteval RateTable evaluate(const RateRule& rule) {
  RateTable table{};
  std::size_t run = 0;
  for (std::uint32_t index = 0; index < entries; ++index) {
    if (run + 1 < rule.runs.size() && index == rule.runs[run + 1].first_index) ++run;
    const std::uint32_t range = rule.runs[run].range;
    const std::uint32_t step = index < rule.last_step ? index + 1 : rule.last_step;
    const std::int64_t dividend = rule.scale_numerator << range;
    const std::int64_t divisor = rule.scale_denominator * step;
    const std::int64_t exact = rule.rounding == Rounding::half_up
                                   ? (2 * dividend + divisor) / (2 * divisor)
                                   : dividend / divisor;
    const bool cut = range == 0 && exact > rule.longest_undoubled;
    const std::int64_t period = cut ? rule.longest_undoubled : exact;
    table[index] = (range << kelvo::wire::step_range_shift) + static_cast<std::uint32_t>(period);
  }
  return table;
}

// The step clock: 5 MHz / 1024 = 78125 / 16 Hz.
constexpr std::int64_t clock_top = 78125;
constexpr std::int64_t clock_bottom = 16;
constexpr std::int64_t any_period = 0xFFFF;

constexpr Run runs_512_1320[] = {{0, 6}, {9, 8}, {37, 10}};
constexpr Run runs_512[] = {{0, 5}, {3, 6}, {7, 7}, {16, 8}, {36, 9}, {51, 10}};
constexpr Run runs_1_2[] = {{0, 0}, {4, 1}, {7, 2}, {14, 3}, {34, 4}, {57, 5}, {103, 6}, {138, 7}};
constexpr Run runs_2_2[] = {{0, 0}, {40, 5}, {200, 7}};
constexpr Run runs_1_2_800[] = {{0, 0}, {10, 3}, {128, 7}};

/// One object, so that the five tables lie one after the other.
struct RateTables {
  RateTable micro_step_1320;
  RateTable micro_step;
  RateTable one_two_phase;
  RateTable two_two_phase;
  RateTable one_two_phase_800;
};

consteval RateTables evaluate_all() {
  using enum Rounding;
  return {
      // clock / 64 * 256 / 1320: 64 clock steps a micro-stepped step, 1320 steps a second at the top
      evaluate(
          {clock_top * 256, clock_bottom * 64 * 1320, half_up, 256, any_period, runs_512_1320}),
      // clock / 64 * 255 / 960
      evaluate({clock_top * 255, clock_bottom * 64 * 960, down, 229, any_period, runs_512}),
      // clock * 255 / 960
      evaluate({clock_top * 255, clock_bottom * 960, down, 255, any_period, runs_1_2}),
      // clock * 256 / 800 / 2 = 781.25: half steps
      evaluate({3125, 4, half_up, 256, any_period, runs_2_2}),
      // clock * 256 / 800 = 1562.5; the slowest period is cut to 1024
      evaluate({3125, 2, half_up, 256, 1024, runs_1_2_800}),
  };
}

constexpr RateTables evaluated = evaluate_all();

/// An entry that the table must hold: run starts, run ends and some between.
struct Check {
  std::uint32_t index;
  std::uint32_t word;
};

consteval bool holds(const RateTable& table, std::span<const Check> checks) {
  for (const Check& check : checks) {
    if (table[check.index] != check.word) return false;
  }
  return true;
}

constexpr Check checks_512_1320[] = {{0, 7091},    {1, 6617},    {8, 6249},    {9, 8571},
                                     {36, 8294},   {37, 10639},  {50, 10537},  {100, 10390},
                                     {128, 10357}, {200, 10315}, {254, 10299}, {255, 10299}};
constexpr Check checks_512[] = {{0, 5768},    {1, 5444},    {2, 5336},    {3, 6468},   {7, 7492},
                                {15, 7330},   {16, 8497},   {50, 9419},   {51, 10639}, {100, 10445},
                                {128, 10400}, {200, 10343}, {228, 10330}, {255, 10330}};
constexpr Check checks_1_2[] = {{0, 1296},   {3, 324},    {4, 1542},   {6, 1394},   {7, 2696},
                                {33, 3377},  {34, 4688},  {102, 5522}, {103, 6942}, {137, 6745},
                                {138, 8362}, {161, 8192}, {200, 7993}, {254, 7819}, {255, 7819}};
constexpr Check checks_2_2[] = {{0, 781},    {39, 20},    {40, 5730},  {41, 5715},  {128, 5314},
                                {199, 5245}, {200, 7666}, {201, 7663}, {254, 7560}, {255, 7559}};
constexpr Check checks_1_2_800[] = {{0, 1024},   {9, 156},    {10, 4208},  {11, 4114},
                                    {12, 4034},  {50, 3317},  {100, 3196}, {126, 3170},
                                    {127, 3170}, {128, 8718}, {129, 8706}, {194, 8194},
                                    {195, 8188}, {200, 8163}, {254, 7952}, {255, 7949}};
static_assert(holds(evaluated.micro_step_1320, checks_512_1320));
static_assert(holds(evaluated.micro_step, checks_512));
static_assert(holds(evaluated.one_two_phase, checks_1_2));
static_assert(holds(evaluated.two_two_phase, checks_2_2));
static_assert(holds(evaluated.one_two_phase_800, checks_1_2_800));

}  // namespace

extern "C" {
/// The writable tables behind the five exported names.
extern RateTables kelvo_step_rate_tables;
[[gnu::used]] constinit RateTables kelvo_step_rate_tables = evaluated;
}

// Compilers and linkers do not keep separate arrays in order, so the exported names are five places in
// the one object above.
#define KELVO_TABLE(name, offset)  \
  ".globl " #name "\n.type " #name \
  ", %object\n"                    \
  ".size " #name                   \
  ", 1024\n"                       \
  ".set " #name ", kelvo_step_rate_tables + " #offset "\n"
__asm__(KELVO_TABLE(PPS_512uStepPhase1320, 0) KELVO_TABLE(PPS_512uStepPhase, 1024)
            KELVO_TABLE(PPS_1_2Phase, 2048) KELVO_TABLE(PPS_2_2Phase, 3072)
                KELVO_TABLE(PPS_1_2Phase_800, 4096));
#undef KELVO_TABLE
static_assert(sizeof(RateTable) == 1024 && sizeof(RateTables) == 5120);
