#ifndef KELVO_SIM_REPORT_TABLE_H
#define KELVO_SIM_REPORT_TABLE_H

#include <string>
#include <vector>

namespace kelvo::sim {

/// Lines of text under headings, every column as wide as it needs to be.
class Table {
 public:
  explicit Table(std::vector<std::string> headings) { rows_.push_back(std::move(headings)); }

  /// As many cells as there are headings.
  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
  bool empty() const { return rows_.size() == 1; }
  std::string text() const;

 private:
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace kelvo::sim

#endif
