// What the commands write to standard output: whole, or the command fails.
#ifndef KELVO_TOOLS_COMMON_OUTPUT_H
#define KELVO_TOOLS_COMMON_OUTPUT_H

#include <nlohmann/json_fwd.hpp>
#include <string_view>

namespace kelvo::tools {

using Json = nlohmann::ordered_json;

/// Grows with every change that a reader of the JSON would have to know.
inline constexpr int json_schema = 1;

void print(std::string_view text);
/// An object, indented, with the number of the schema before its own members.
void print_json(const Json& members);

}  // namespace kelvo::tools

#endif
