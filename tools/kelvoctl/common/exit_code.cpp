#include "tools/kelvoctl/common/exit_code.h"

#include "tools/kelvoctl/common/columns.h"

namespace kelvo::ctl {

std::string exit_codes_text() {
  std::vector<std::vector<std::string>> rows;
  rows.reserve(exit_codes.size());
  for (const ExitCodeRow& row : exit_codes) {
    rows.push_back({"  " + std::to_string(static_cast<int>(row.code)), row.meaning});
  }
  return "Exit codes:\n" + columns(rows);
}

}  // namespace kelvo::ctl
