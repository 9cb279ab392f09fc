#include <array>
#include <cstdint>

#include "kelvo/lens.h"

// Divider and period words of the PT5111, a row for each speed level. Row R serves level 255 - R; the
// last row is the standstill. Field 0 is 64 * d, field 2 is 781.25 * 2^(d - 2) / level, cut.
namespace {

constexpr std::uint32_t rows = 256;
using Row = std::array<std::uint16_t, 4>;
using Table = std::array<Row, rows>;

/// The divider serves the levels up to this one.
struct DividerBand {
  std::uint32_t last_level;
  std::uint32_t divider;
};
constexpr DividerBand bands[] = {{1, 2},  {3, 3},   {6, 4},   {12, 5},  {25, 6},
                                 {50, 7}, {100, 8}, {200, 9}, {255, 10}};

consteval std::uint32_t divider_of(std::uint32_t level) {
  for (const DividerBand& band : bands) {
    if (level <= band.last_level) return band.divider;
  }
  return 0;
}

consteval Table evaluate() {
  Table table{};
  for (std::uint32_t row = 0; row + 1 < rows; ++row) {
    const std::uint32_t level = rows - 1 - row;
    const std::uint32_t divider = divider_of(level);
    const std::uint32_t period = (3125U << (divider - 2)) / (4 * level);
    table[row] = {static_cast<std::uint16_t>(64 * divider), 0, static_cast<std::uint16_t>(period),
                  0};
  }
  return table;
}

constexpr Table evaluated = evaluate();
static_assert(evaluated[0] == Row{640, 0, 784, 0} && evaluated[54] == Row{640, 0, 995, 0});
static_assert(evaluated[55] == Row{576, 0, 500, 0} && evaluated[154] == Row{576, 0, 990, 0});
static_assert(evaluated[155] == Row{512, 0, 500, 0} && evaluated[204] == Row{512, 0, 980, 0});
static_assert(evaluated[205] == Row{448, 0, 500, 0} && evaluated[217] == Row{448, 0, 657, 0});
static_assert(evaluated[229] == Row{448, 0, 961, 0} && evaluated[230] == Row{384, 0, 500, 0});
static_assert(evaluated[242] == Row{384, 0, 961, 0} && evaluated[243] == Row{320, 0, 520, 0});
static_assert(evaluated[248] == Row{320, 0, 892, 0} && evaluated[249] == Row{256, 0, 520, 0});
static_assert(evaluated[252] == Row{192, 0, 520, 0} && evaluated[253] == Row{192, 0, 781, 0});
static_assert(evaluated[254] == Row{128, 0, 781, 0} && evaluated[255] == Row{});

}  // namespace

// The header speaks of a C array; this is the same memory, which only a class type can be filled with
// at compile time.
[[gnu::visibility("default")]] extern const Table speed_table __asm__("SpeedTable");
[[gnu::used]] constinit const Table speed_table = evaluated;
static_assert(sizeof(Table) == sizeof(SpeedTable));
