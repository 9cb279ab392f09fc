#include "tools/kelvoctl/head/tuning.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>

#include "kelvo.h"
#include "tools/kelvoctl/common/lens_names.h"

namespace kelvo::ctl {
namespace {

/// A row that the library reads.
struct Row {
  std::size_t number;
  int family;
  bool tilts;
  Motion motion;
  const char* purpose;
};

// clang-format off
constexpr std::array used_rows{
    Row{ 0, tasmere, false, Motion::continuous, "moves and stops"},
    Row{ 1, tasmere, false, Motion::absolute,   "to a position"},
    Row{ 2, tasmere, true,  Motion::continuous, "moves and stops"},
    Row{ 3, tasmere, true,  Motion::absolute,   "to a position"},
    Row{ 4, tasmere, false, Motion::continuous, "standing still"},
    Row{ 8, vetra,   false, Motion::continuous, "moves and stops"},
    Row{ 9, vetra,   false, Motion::absolute,   "to a position"},
    Row{10, vetra,   true,  Motion::continuous, "moves and stops"},
    Row{11, vetra,   true,  Motion::absolute,   "to a position"},
};
// clang-format on

/// A word of a row and the greatest number that is sent of it whole.
struct Word {
  const char* name;
  std::int64_t greatest = 0xFFFF;
};

/// The words of a row that a family's controllers get.
struct RowWords {
  int family;
  std::size_t first;
  std::span<const Word> list;
};

using TuningWord = std::numeric_limits<std::int32_t>;

constexpr std::array tasmere_words{Word{"p"}, Word{"i"}, Word{"d"}};
constexpr std::array vetra_words{Word{"position_p"},
                                 Word{"position_i"},
                                 Word{"speed_p"},
                                 Word{"speed_i"},
                                 Word{"current"},
                                 Word{"acceleration", TuningWord::max()},
                                 Word{"deceleration", TuningWord::max()}};
constexpr RowWords words_by_family[] = {{tasmere, 1, tasmere_words}, {vetra, 0, vetra_words}};

std::span<const std::int32_t> values_of(const TuningTable& table, const Row& row,
                                        const RowWords& words) {
  return std::span(table).subspan(row.number * tuning_words + words.first, words.list.size());
}

bool all_zero(std::span<const std::int32_t> values) {
  return std::ranges::all_of(values, [](std::int32_t value) { return value == 0; });
}

const RowWords& row_words_of(int family) {
  return *std::ranges::find(words_by_family, family, &RowWords::family);
}

void add_words(Json& object, const RowWords& words, std::span<const std::int32_t> numbers) {
  for (std::size_t i = 0; i < numbers.size(); ++i) object[words.list[i].name] = numbers[i];
}

Json row_json(const TuningTable& table, const Row& row, const RowWords& words) {
  Json values{{"row", row.number},
              {"head", head_name(row.family)},
              {"axis", head_axes[row.tilts ? 1 : 0].name},
              {"for", row.purpose}};
  add_words(values, words, values_of(table, row, words));
  return values;
}

/// In one process as long as it lives, like the library's own.
bool& frozen_flag() {
  static bool frozen = false;
  return frozen;
}
bool& loaded_flag() {
  static bool loaded = false;
  return loaded;
}

}  // namespace

Range tuning_range(std::size_t row, std::size_t word) {
  const auto* const used = std::ranges::find(used_rows, row, &Row::number);
  if (used != used_rows.end()) {
    const RowWords& words = row_words_of(used->family);
    // What stands before the first is too great as well.
    if (word - words.first < words.list.size()) return {0, words.list[word - words.first].greatest};
  }
  return {TuningWord::min(), TuningWord::max()};
}

bool tuning_loaded() { return loaded_flag(); }

TuningTable loaded_tuning() {
  TuningTable table{};
  std::ranges::copy(giMOTOR_Init_Reg, table.begin());
  return table;
}

void load_tuning(Session& session, const TuningTable& table) {
  TuningTable words = table;
  session.call(
      [&words] { return Init_Setup_PID(reinterpret_cast<const std::uint8_t*>(words.data())); });
  loaded_flag() = true;
}

Json tuning_json(const TuningTable& table) {
  Json result;
  for (const RowWords& words : words_by_family) {
    Json rows = Json::array();
    for (const Row& row : used_rows) {
      if (row.family == words.family) rows.push_back(row_json(table, row, words));
    }
    result[head_name(words.family)] = rows;
  }
  return result;
}

Json written_json(const HeadAxis& axis, int family) {
  const std::int32_t* const written = family == vetra ? axis.vetra_written : axis.tasmere_written;
  const RowWords& words = row_words_of(family);
  Json object{{"axis", axis.name}};
  add_words(object, words, {written + words.first, words.list.size()});
  return object;
}

void require_gains(const HeadAxis& axis, int family, Motion motion) {
  if (gains_frozen()) return;
  const TuningTable table = loaded_tuning();
  if (!tuning_loaded()) {
    throw Failure(ExitCode::refused,
                  "without a tuning table a move sets gains of zero: give it with --pid FILE, or "
                  "in a script or shell with pid load FILE");
  }
  const auto is_it = [&](const Row& row) {
    return row.family == family && row.tilts == axis.tilts && row.motion == motion;
  };
  const Row& row = *std::ranges::find_if(used_rows, is_it);
  if (!all_zero(values_of(table, row, row_words_of(family)))) return;
  throw Failure(ExitCode::refused, "the tuning table's row " + std::to_string(row.number) +
                                       " is zeros, and this move would set them: it is for " +
                                       head_name(family) + " " + axis.name + ", " + row.purpose);
}

bool gains_frozen() { return frozen_flag(); }

void freeze_gains(Session& session, bool frozen) {
  session.call([frozen] { return Debug_PID_En(frozen ? 1 : 0); });
  frozen_flag() = frozen;
}

}  // namespace kelvo::ctl
