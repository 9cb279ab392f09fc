#include "failure/declared.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace kelvo::test::failure {
namespace {

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

/// The name that stands last before the first of these characters.
std::string name_before(const std::string& code, std::size_t from, const char* ends) {
  std::size_t end = std::min(code.find_first_of(ends, from), code.size());
  while (end > from && !in_a_name(code[end - 1])) --end;
  std::size_t begin = end;
  while (begin > from && in_a_name(code[begin - 1])) --begin;
  return code.substr(begin, end - begin);
}

Names in_all_headers(Names (*in)(const std::string& header)) {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(KELVO_HEADER_FOLDER)) {
    names.merge(in(text_of(entry.path())));
  }
  return names;
}

}  // namespace

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

Names declared_objects_in(const std::string& header) {
  const std::string word = "extern ";
  const std::string code = code_of(header);
  Names names;
  for (std::size_t at = code.find(word); at != std::string::npos; at = code.find(word, at + 1)) {
    const std::size_t end = code.find_first_of(";(\"", at);
    if (end != std::string::npos && code[end] == ';') {
      names.insert(name_before(code, at + word.size(), "[;"));
    }
  }
  return names;
}

Names declared() { return in_all_headers(declared_in); }
Names declared_objects() { return in_all_headers(declared_objects_in); }

}  // namespace kelvo::test::failure
