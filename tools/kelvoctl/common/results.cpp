#include "tools/kelvoctl/common/results.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "tools/kelvoctl/common/columns.h"
#include "tools/kelvoctl/common/printable.h"
#include "tools/kelvoctl/common/session.h"

namespace kelvo::ctl {
namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string heading(std::string name) {
  std::replace(name.begin(), name.end(), '_', ' ');
  return name;
}

std::string plain(const Json& value) {
  if (value.is_null()) return "-";
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (value.is_string()) return printable(value.get<std::string>());
  return value.dump();
}

std::string cell(const Json& value) {
  if (!value.is_array()) return plain(value);
  std::string text;
  for (const Json& part : value) text += (text.empty() ? "" : " ") + plain(part);
  return text.empty() ? "-" : text;
}

bool is_table(const Json& value) {
  return value.is_array() && !value.empty() && value.front().is_object();
}

/// What stands in lines of name and value; the members of a member carry its name.
Rows lines_of(const Json& object) {
  Rows rows;
  for (const auto& [name, value] : object.items()) {
    if (is_table(value)) continue;
    if (!value.is_object()) {
      rows.push_back({heading(name), cell(value)});
      continue;
    }
    for (const auto& [member, inner] : value.items()) {
      rows.push_back({heading(name) + " " + heading(member), cell(inner)});
    }
  }
  return rows;
}

std::string table_text(const Json& objects) {
  std::vector<std::string> names;
  for (const Json& object : objects) {
    for (const auto& [name, value] : object.items()) {
      if (std::ranges::find(names, name) == names.end()) names.push_back(name);
    }
  }
  Rows rows(1);
  for (const std::string& name : names) rows.front().push_back(heading(name));
  for (const Json& object : objects) {
    std::vector<std::string>& row = rows.emplace_back();
    for (const std::string& name : names) {
      row.push_back(object.contains(name) ? cell(object[name]) : "-");
    }
  }
  return columns(rows);
}

}  // namespace

std::string result_text(const Json& result) {
  std::string text = columns(lines_of(result));
  for (const auto& [name, value] : result.items()) {
    if (is_table(value)) text += (text.empty() ? "" : "\n") + table_text(value);
  }
  return text;
}

std::string result_json(const std::string& command, const Json& result) {
  Json whole{{"schema", json_schema}, {"command", command}};
  whole.update(result);
  // A path need not be text, but JSON is.
  return whole.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace kelvo::ctl
