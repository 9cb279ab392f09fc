#include "tools/kelvo-sim/section_json.h"

#include <nlohmann/json.hpp>

namespace kelvo::tools {
namespace {

struct ToJson {
  Json operator()(std::monostate /*nothing*/) const { return nullptr; }
  Json operator()(const auto& value) const { return value; }
};

Json to_json(const sim::Section& section) {
  Json rows = Json::array();
  for (const std::vector<sim::Value>& row : section.rows) {
    Json object = Json::object();
    for (std::size_t i = 0; i < row.size(); ++i) {
      object[section.columns[i].key] = std::visit(ToJson{}, row[i]);
    }
    rows.push_back(object);
  }
  return rows;
}

}  // namespace

void add_sections(Json& json, const std::vector<sim::Section>& sections) {
  for (const sim::Section& section : sections) json[section.key] = to_json(section);
}

}  // namespace kelvo::tools
