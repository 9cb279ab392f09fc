#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

#include "failure/scenario.h"

namespace {

using kelvo::test::failure::all_scenarios;
using kelvo::test::failure::name_of;
using kelvo::test::failure::Scenario;
using Names = std::set<std::string>;

std::string text_of(const std::filesystem::path& path) {
  std::ifstream stream(path);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Everything but comments and lines of the preprocessor.
std::string code_of(const std::string& header) {
  std::string code;
  for (std::size_t at = 0; at < header.size();) {
    const std::string_view rest = std::string_view(header).substr(at);
    std::size_t left_out = 0;
    if (rest.starts_with("/*")) left_out = std::min(rest.find("*/"), rest.size() - 2) + 2;
    if (rest.starts_with("//") || rest.starts_with("#"))
      left_out = std::min(rest.find('\n'), rest.size());
    if (left_out == 0) code += header[at];
    at += std::max<std::size_t>(left_out, 1);
  }
  return code;
}

bool in_a_name(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

/// The functions that a header declares: the names before a parenthesis.
Names declared_in(const std::string& header) {
  const std::string code = code_of(header);
  Names names;
  for (std::size_t at = code.find('('); at != std::string::npos; at = code.find('(', at + 1)) {
    std::size_t end = at;
    while (end > 0 && std::isspace(static_cast<unsigned char>(code[end - 1])) != 0) --end;
    std::size_t begin = end;
    while (begin > 0 && in_a_name(code[begin - 1])) --begin;
    names.insert(code.substr(begin, end - begin));
  }
  return names;
}

Names declared() {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(KELVO_HEADER_FOLDER)) {
    names.merge(declared_in(text_of(entry.path())));
  }
  return names;
}

TEST(FailureTable, ReadsTheFunctionsOfAHeader) {
  EXPECT_EQ(declared_in("#if defined(__cplusplus)\nextern \"C\" {\n#endif\n"
                        "/* Calls other() ** first. */\nint32_t one(void);  // see two()\n"
                        "extern int32_t three;\nuint8_t four(uint8_t a,\n             int b);\n"),
            (Names{"one", "four"}));
}

TEST(FailureTable, HasEveryDeclaredFunctionAndNoOther) {
  Names listed;
  for (const Scenario& scenario : all_scenarios()) listed.insert(scenario.function);
  const Names all = declared();
  ASSERT_FALSE(all.empty()) << "no function is declared in " << KELVO_HEADER_FOLDER;
  EXPECT_EQ(listed, all);
}

TEST(FailureTable, NamesEachRowOnce) {
  Names names;
  for (const Scenario& scenario : all_scenarios()) {
    EXPECT_TRUE(names.insert(name_of(scenario)).second) << name_of(scenario);
  }
}

}  // namespace
