#include "tools/launch/launch_settings.h"

#include <algorithm>
#include <cctype>

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
                          {"module", options.module},
                          {"seed", options.seed},
                          {"clock", options.clock},
                          {"corrupt", corrupt},
                          {"report", options.report ? "text" : ""},
                          {"violations", options.stop_at_violation ? "fatal" : ""}};
  for (std::string fault : options.faults) {
    std::replace_if(
        fault.begin(), fault.end(), [](unsigned char letter) { return std::isspace(letter) != 0; },
        ':');
    words.push_back({"fault", fault});
  }
  std::erase_if(words, [](const Word& word) { return word.value.empty(); });
  return words;
}

/// The words of settings.
std::vector<std::string_view> split(std::string_view settings) {
  constexpr std::string_view separators = " \t\n,";
  std::vector<std::string_view> words;
  std::size_t begin = settings.find_first_not_of(separators);
  while (begin != std::string_view::npos) {
    const std::size_t end = std::min(settings.find_first_of(separators, begin), settings.size());
    words.push_back(settings.substr(begin, end - begin));
    begin = settings.find_first_not_of(separators, end);
  }
  return words;
}

std::string_view name_of(std::string_view word) { return word.substr(0, word.find('=')); }

}  // namespace

std::string without_faults(std::string_view settings) {
  std::string rest;
  for (const std::string_view word : split(settings)) {
    if (name_of(word) != "fault") rest += (rest.empty() ? "" : " ") + std::string(word);
  }
  return rest;
}

std::string launch_settings(const LaunchOptions& options, std::string_view environment) {
  const std::vector<Word> asked = asked_for(options);
  std::string settings;
  for (const Word& word : asked) settings += word.name + "=" + word.value + " ";
  bool report_is_settled = options.report;
  for (const std::string_view word : split(environment)) {
    const std::string_view name = name_of(word);
    report_is_settled = report_is_settled || name == "report" || name == "report-file";
    if (std::ranges::find(asked, name, &Word::name) == asked.end())
      settings += std::string(word) + " ";
  }
  if (!report_is_settled) return settings + "report=none";
  settings.pop_back();
  return settings;
}

}  // namespace kelvo::tools
