#include "tools/common/output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "tools/common/failure.h"

namespace kelvo::tools {

void print(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) {
    return;
  }
  throw Failure(ExitCode::no_output,
                "standard output: " + std::string(std::strerror(errno)) + ": look where it leads");
}

void print_json(const Json& members) {
  Json whole{{"schema", json_schema}};
  whole.update(members);
  print(whole.dump(2) + "\n");
}

}  // namespace kelvo::tools
