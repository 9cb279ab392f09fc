#include "tools/kelvoctl/common/words.h"

#include <algorithm>

#include "tools/kelvoctl/common/exit_code.h"

namespace kelvo::ctl {
namespace {

/// Takes one word off the front of a line.
std::string take_word(std::string_view& line) {
  std::string word;
  char quote = '\0';
  std::size_t i = 0;
  for (; i < line.size(); ++i) {
    const char letter = line[i];
    if (quote == '\0' && blanks.find(letter) != std::string_view::npos) break;
    if (letter == '\\' && quote != '\'' && i + 1 < line.size()) {
      word += line[++i];
    } else if (letter == quote) {
      quote = '\0';
    } else if (quote == '\0' && (letter == '"' || letter == '\'')) {
      quote = letter;
    } else {
      word += letter;
    }
  }
  if (quote != '\0') {
    throw Failure(ExitCode::wrong_arguments, std::string("a ") + quote + " is not closed");
  }
  line.remove_prefix(i);
  return word;
}

}  // namespace

std::vector<std::string> words_of(std::string_view line) {
  std::vector<std::string> words;
  while (true) {
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    if (line.empty() || line.front() == '#') return words;
    words.push_back(take_word(line));
  }
}

}  // namespace kelvo::ctl
