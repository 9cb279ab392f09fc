#include "tools/common/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/common/failure.h"

namespace kelvo::tools {

void print(std::string_view text) {
  const std::size_t written = std::fwrite(text.data(), 1, text.size(), stdout);
  const bool flushed = std::fflush(stdout) == 0;
  // Of a line-buffered stream both can hide a failure.
  if (written == text.size() && flushed && std::ferror(stdout) == 0) return;
  throw OutputFailure("standard output: " + std::string(std::strerror(errno)) +
                      ": look where it leads");
}

void print_json(const Json& members) {
  Json whole{{"schema", json_schema}};
  whole.update(members);
  print(whole.dump(2) + "\n");
}

}  // namespace kelvo::tools
