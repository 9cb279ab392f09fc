#include "tools/launch/launch_settings.h"

#include <algorithm>

namespace kelvo::tools {
namespace {

struct Word {
  std::string name;
  std::string value;
};

std::vector<Word> asked_for(const LaunchOptions& options) {
  std::string corrupt;
  for (const std::uint32_t number : options.corrupt) {
    corrupt += (corrupt.empty() ? "" : "+") + std::to_string(number);
  }
  std::vector<Word> words{{"name", options.name},
                          {"head", options.head},
                          {"clock", options.clock},
                          {"corrupt", corrupt},
                          {"report", options.report ? "text" : ""}};
  std::erase_if(words, [](const Word& word) { return word.value.empty(); });
  return words;
}

}  // namespace

std::string launch_settings(const LaunchOptions& options, std::string_view environment) {
  constexpr std::string_view separators = " \t\n,";
  const std::vector<Word> asked = asked_for(options);
  std::string settings;
  for (const Word& word : asked) settings += word.name + "=" + word.value + " ";
  bool report_is_settled = options.report;
  std::size_t begin = environment.find_first_not_of(separators);
  while (begin != std::string_view::npos) {
    const std::size_t end =
        std::min(environment.find_first_of(separators, begin), environment.size());
    const std::string_view word = environment.substr(begin, end - begin);
    const std::string_view name = word.substr(0, word.find('='));
    report_is_settled = report_is_settled || name == "report" || name == "report-file";
    if (std::ranges::find(asked, name, &Word::name) == asked.end())
      settings += std::string(word) + " ";
    begin = environment.find_first_not_of(separators, end);
  }
  if (!report_is_settled) return settings + "report=none";
  settings.pop_back();
  return settings;
}

}  // namespace kelvo::tools
