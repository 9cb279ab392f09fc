#include "sim/report/table.h"

#include <algorithm>

namespace kelvo::sim {

std::string Table::text() const {
  std::vector<std::size_t> widths(rows_.front().size());
  for (const std::vector<std::string>& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const std::vector<std::string>& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += "  " + row[i];
      if (i + 1 < row.size()) line.append(widths[i] - row[i].size(), ' ');
    }
    text += line + "\n";
  }
  return text;
}

}  // namespace kelvo::sim
