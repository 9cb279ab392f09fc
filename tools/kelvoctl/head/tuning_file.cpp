// The file of a tuning table, as a person writes it or as the library takes it.
#include <cctype>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "tools/kelvoctl/common/file_content.h"
#include "tools/kelvoctl/common/numbers.h"
#include "tools/kelvoctl/common/words.h"
#include "tools/kelvoctl/head/tuning.h"

namespace kelvo::ctl {
namespace {

/// Where something stands in a file; lines and columns count from 1.
struct FilePlace {
  std::string path;
  int line = 1;
  std::size_t column = 1;
};

[[noreturn]] void refuse(const FilePlace& place, const std::string& what) {
  throw Failure(ExitCode::wrong_arguments, place.path + ":" + std::to_string(place.line) + ":" +
                                               std::to_string(place.column) + ": " + what);
}

bool is_in(const Range& range, std::int64_t number) {
  return number >= range.low && number <= range.high;
}

std::string not_in(const Range& range) {
  return " is no number from " + std::to_string(range.low) + " to " + std::to_string(range.high);
}

std::int32_t word_of(const FilePlace& place, std::string_view text, const Range& range) {
  const std::optional<std::int64_t> number = parse_number(text);
  if (number && is_in(range, *number)) return static_cast<std::int32_t>(*number);
  refuse(place, "\"" + std::string(text) + "\"" + not_in(range));
}

/// The numbers of a line, up to its comment. `row` is the one that they would be.
std::vector<std::int32_t> numbers_of(FilePlace place, std::string_view line, std::size_t row) {
  line = line.substr(0, line.find('#'));
  std::vector<std::int32_t> numbers;
  for (std::size_t at = line.find_first_not_of(blanks); at < line.size();
       at = line.find_first_not_of(blanks, at)) {
    const std::size_t end = std::min(line.find_first_of(blanks, at), line.size());
    place.column = at + 1;
    if (numbers.size() == tuning_words) refuse(place, "the row is over: it has seven numbers");
    const Range range = tuning_range(row, numbers.size());
    numbers.push_back(word_of(place, line.substr(at, end - at), range));
    at = end;
  }
  place.column = line.size() + 1;
  if (!numbers.empty() && numbers.size() < tuning_words) {
    refuse(place, "a row has seven numbers, and this one " + std::to_string(numbers.size()));
  }
  return numbers;
}

TuningTable read_text(const std::string& path, std::string_view text) {
  TuningTable table{};
  std::size_t words = 0;
  FilePlace place{.path = path};
  for (; !text.empty(); ++place.line) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::size_t row = words / tuning_words;
    for (const std::int32_t number : numbers_of(place, text.substr(0, end), row)) {
      if (words == table.size()) refuse(place, "the table is over: it has twelve rows");
      table[words++] = number;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (words < table.size()) {
    refuse(place,
           "the table has twelve rows, and this one " + std::to_string(words / tuning_words));
  }
  return table;
}

/// In the processor's own byte order, which is the library's.
TuningTable read_raw(const std::string& path, const std::string& bytes) {
  TuningTable table{};
  if (bytes.size() != sizeof table) {
    throw Failure(ExitCode::wrong_arguments,
                  path + ": no text, and " + std::to_string(bytes.size()) +
                      " bytes: a raw tuning table has " + std::to_string(sizeof table));
  }
  std::memcpy(table.data(), bytes.data(), sizeof table);
  for (std::size_t i = 0; i < table.size(); ++i) {
    const std::size_t row = i / tuning_words;
    const std::size_t word = i % tuning_words;
    const Range range = tuning_range(row, word);
    if (is_in(range, table[i])) continue;
    throw Failure(ExitCode::wrong_arguments, path + ": row " + std::to_string(row) + ", word " +
                                                 std::to_string(word) + ": " +
                                                 std::to_string(table[i]) + not_in(range));
  }
  return table;
}

}  // namespace

TuningTable read_tuning_file(const std::string& path) {
  const std::string content = content_of(path);
  // No gain has 24 bits, so each number of a raw table has a zero, which no text has.
  if (content.find('\0') != std::string::npos) return read_raw(path, content);
  return read_text(path, content);
}

}  // namespace kelvo::ctl
