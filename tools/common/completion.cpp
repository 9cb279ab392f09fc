// Completion for shells, from the option table: first a table of what may follow what, then the script of
// each shell around it.
#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/common/option_table.h"
#include "tools/common/tool_page.h"

namespace kelvo::tools {
namespace {

struct Offer {
  std::string word;
  std::string description;
};

/// What a shell offers beside words.
enum class Also : std::uint8_t { nothing, cameras, files };

/// What may follow behind a command, or behind an option of it.
struct Place {
  std::string path;    // the commands so far, each behind a slash
  std::string option;  // the word before, or "*"
  std::vector<Offer> offers;
  Also also = Also::nothing;
};

Also also_of(const CLI::Option& option) {
  const std::string name = option.get_positional() ? option.get_name() : option.get_type_name();
  if (name == "NAME") return Also::cameras;
  return name == "FILE" ? Also::files : Also::nothing;
}

void add_options(const CLI::App& command, std::vector<Offer>& offers) {
  for (const CLI::Option* const option : options_of(command)) {
    for (const std::string& name : option->get_lnames()) {
      offers.push_back({"--" + name, option->get_description()});
    }
  }
}

void add_values(const CLI::App& command, const std::string& path, std::vector<Place>& places) {
  for (const CLI::Option* const option : options_of(command)) {
    if (option->get_items_expected_max() == 0 || option->get_lnames().empty()) continue;
    Place place{path, "--" + option->get_lnames().front(), {}, also_of(*option)};
    for (const std::string& value : values_of(*option)) place.offers.push_back({value, ""});
    places.push_back(place);
  }
}

void add_place(const CLI::App& command, const std::string& path, std::vector<Place>& places) {
  add_values(command, path, places);
  Place behind{path, "*", {}};
  for (const CLI::App* const below : commands_of(command)) {
    behind.offers.push_back({below->get_name(), below->get_description()});
  }
  add_options(command, behind.offers);
  for (const CLI::Option* const argument : arguments_of(command)) {
    if (behind.also == Also::nothing) behind.also = also_of(*argument);
    for (const std::string& value : values_of(*argument)) behind.offers.push_back({value, ""});
  }
  places.push_back(behind);
}

std::vector<Place> places_of(const CLI::App& app) {
  std::vector<Place> places;
  for (const Branch& branch : branches_of(app, "", '/')) {
    add_place(*branch.command, branch.path, places);
  }
  return places;
}

/// A pattern that matches each path below the first.
std::string known_paths(const std::vector<Place>& places) {
  std::string paths;
  for (const Place& place : places) {
    if (place.path.empty() || place.option != "*") continue;
    paths += (paths.empty() ? "" : "|") + place.path;
  }
  return paths;
}

const char* text_of(Also also) {
  switch (also) {
    case Also::nothing: return "";
    case Also::cameras: return " also=cameras";
    case Also::files: return " also=files";
  }
  return "";
}

/// As one word of a shell.
std::string shell_word(const std::string& text) {
  std::string result = "'";
  for (const char letter : text) result += letter == '\'' ? "'\\''" : std::string(1, letter);
  return result + "'";
}

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
  return text;
}

constexpr char bash_script[] =
    R"bash(# Completion of @tool@ for bash: source <(@tool@ completion bash)
@function@() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} path= i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    if [[ ${COMP_WORDS[i]} == -- ]]; then
      if ((i == COMP_CWORD - 1)); then
        mapfile -t COMPREPLY < <(compgen -c -- "$word")
      else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
      fi
      return
    fi
    case $path/${COMP_WORDS[i]} in
      @paths@) path+=/${COMP_WORDS[i]} ;;
    esac
  done
  local words= also=
  case $path:$before in
@rows@  esac
  [[ $also != cameras ]] || words+=" $(@names@ 2>/dev/null | awk 'NR > 1 { print $1 }')"
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word"; [[ $also != files ]] || compgen -f -- "$word")
}
complete -F @function@ @tool@
)bash";

constexpr char zsh_script[] = R"zsh(#compdef @tool@
# Completion of @tool@ for zsh: put it as _@tool@ into a folder of fpath.
@function@() {
  local path_so_far= also= i
  local -a offers
  for ((i = 2; i < CURRENT; i++)); do
    if [[ $words[i] == -- ]]; then
      ((i == CURRENT - 1)) && _command_names || _files
      return
    fi
    case $path_so_far/$words[i] in
      (@paths@) path_so_far+=/$words[i] ;;
    esac
  done
  case $path_so_far:$words[CURRENT-1] in
@rows@  esac
  [[ $also != cameras ]] || offers+=(${(f)"$(@names@ 2>/dev/null | awk 'NR > 1 { print $1 }')"})
  [[ $also != files ]] || _files
  _describe @tool@ offers
}
[[ $zsh_eval_context[-1] == loadautofunc ]] && @function@ "$@" || { (( ! $+functions[compdef] )) || compdef @function@ @tool@ }
)zsh";

std::string bash_rows(const std::vector<Place>& places) {
  std::string rows;
  for (const Place& place : places) {
    std::string words;
    for (const Offer& offer : place.offers) words += (words.empty() ? "" : " ") + offer.word;
    rows += "    " + place.path + ":" + place.option + ") words=" + shell_word(words) +
            text_of(place.also) + " ;;\n";
  }
  return rows;
}

std::string zsh_rows(const std::vector<Place>& places) {
  std::string rows;
  for (const Place& place : places) {
    std::string words;
    for (const Offer& offer : place.offers) {
      const std::string word = replaced(offer.word, ":", "\\:");
      words += (words.empty() ? "" : " ") +
               shell_word(offer.description.empty() ? word : word + ":" + offer.description);
    }
    rows += "    (" + place.path + ":" + place.option + ") offers=(" + words + ")" +
            text_of(place.also) + " ;;\n";
  }
  return rows;
}

std::string fill_in(std::string script, const ToolPage& page, const std::string& paths,
                    const std::string& rows) {
  std::string function = "_" + page.name;
  std::replace(function.begin(), function.end(), '-', '_');
  script = replaced(script, "@function@", function);
  script = replaced(script, "@tool@", page.name);
  script = replaced(script, "@names@", page.names_command);
  script = replaced(script, "@paths@", paths);
  return replaced(script, "@rows@", rows);
}

}  // namespace

std::string bash_completion(const CLI::App& app, const ToolPage& page) {
  const std::vector<Place> places = places_of(app);
  return fill_in(bash_script, page, known_paths(places), bash_rows(places));
}

std::string zsh_completion(const CLI::App& app, const ToolPage& page) {
  const std::vector<Place> places = places_of(app);
  return fill_in(zsh_script, page, known_paths(places), zsh_rows(places));
}

}  // namespace kelvo::tools
