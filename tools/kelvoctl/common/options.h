// Options and arguments of commands, so that no command has to know the parser.
#ifndef KELVO_TOOLS_KELVOCTL_COMMON_OPTIONS_H
#define KELVO_TOOLS_KELVOCTL_COMMON_OPTIONS_H

#include <string>
#include <vector>

#include "tools/kelvoctl/common/numbers.h"

namespace kelvo::ctl {

/// Names with dashes are options, others are arguments.
CLI::Option* add_flag(CLI::App& command, const std::string& name, bool& flag,
                      const std::string& description);
/// A name of FILE, or a type of FILE for an option, is completed with the names of files.
CLI::Option* add_text(CLI::App& command, const std::string& name, std::string& text,
                      const std::string& description, const std::string& type = "");
/// As many as are given: an argument takes the rest of the line, an option one each time that it is given.
CLI::Option* add_list(CLI::App& command, const std::string& name, std::vector<std::string>& list,
                      const std::string& description, const std::string& type = "");

/// It is refused without the other one.
void needs(CLI::Option* option, CLI::Option* other);

/// A command without it is refused.
void require(CLI::Option* option);
/// It means nothing without the other.
void need(CLI::Option* option, CLI::Option* other);
/// It is refused beside the other.
void exclude(CLI::Option* option, CLI::Option* other);

}  // namespace kelvo::ctl

#endif
