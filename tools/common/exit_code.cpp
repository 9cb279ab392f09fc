#include "tools/common/exit_code.h"

#include "sim/report/table.h"

namespace kelvo::tools {

std::string exit_codes_text() {
  sim::Table table({"code", "meaning"});
  for (const ExitCodeRow& row : exit_codes) {
    table.add({std::to_string(static_cast<int>(row.code)), row.meaning});
  }
  return "Exit codes:\n" + table.text();
}

}  // namespace kelvo::tools
