#ifndef KELVO_TOOLS_KELVO_SIM_CHECKED_H
#define KELVO_TOOLS_KELVO_SIM_CHECKED_H

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace kelvo::tools {

/// Refuses what an option does not take, and says what it does.
inline CLI::Validator checked(std::string_view values, bool (*good)(const std::string& text)) {
  return {[values, good](std::string& text) {
            return good(text) ? std::string() : "\"" + text + "\" is not " + std::string(values);
          },
          ""};
}

}  // namespace kelvo::tools

#endif
