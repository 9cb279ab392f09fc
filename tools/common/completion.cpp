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

constexpr char anywhere[] = "*";

/// What may follow behind a command, or behind an option of it.
struct Place {
  std::string path;    // the commands so far, each behind a slash
  std::string behind;  // an option that takes a value, how many arguments there are, or anywhere
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
      const std::string word = "--" + name;
      if (std::ranges::find(offers, word, &Offer::word) != offers.end()) continue;
      offers.push_back({word, option->get_description()});
    }
  }
}

void add_values(const CLI::App& command, const std::string& path, std::vector<Place>& places) {
  for (const CLI::Option* const option : options_of(command)) {
    if (option->get_items_expected_max() == 0 || option->get_lnames().empty()) continue;
    if (option->get_type_name().starts_with('[')) continue;  // in the same word, as [=NAME]
    Place place{path, "--" + option->get_lnames().front(), {}, also_of(*option)};
    for (const std::string& value : values_of(*option)) place.offers.push_back({value, ""});
    places.push_back(place);
  }
}

void add_argument(const CLI::Option& argument, Place& place) {
  place.also = also_of(argument);
  for (const std::string& value : values_of(argument)) place.offers.push_back({value, ""});
}

/// `app` has the options that stand behind each command as well, if it takes them there.
void add_place(const CLI::App& app, const CLI::App& command, const std::string& path,
               std::vector<Place>& places) {
  const bool everywhere = app.get_fallthrough();
  add_values(command, everywhere && path.empty() ? "*" : path, places);
  Place rest{path, anywhere, {}};
  for (const CLI::App* const below : commands_of(command)) {
    rest.offers.push_back({below->get_name(), below->get_description()});
  }
  add_options(command, rest.offers);
  if (everywhere) add_options(app, rest.offers);
  const std::vector<const CLI::Option*> arguments = arguments_of(command);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i]->get_items_expected_max() > 1) {
      add_argument(*arguments[i], rest);
      break;
    }
    Place place = rest;
    place.behind = std::to_string(i);
    add_argument(*arguments[i], place);
    places.push_back(place);
  }
  places.push_back(rest);
}

std::vector<Place> places_of(const CLI::App& app) {
  std::vector<Place> places;
  for (const Branch& branch : branches_of(app, "", '/')) {
    add_place(app, *branch.command, branch.path, places);
  }
  return places;
}

/// Parts of a pattern of which one must match.
std::string either(const std::vector<std::string>& parts) {
  std::string pattern;
  for (const std::string& part : parts) pattern += (pattern.empty() ? "" : "|") + part;
  return pattern;
}

/// Matches each path below the first.
std::string known_paths(const std::vector<Place>& places) {
  std::vector<std::string> paths;
  for (const Place& place : places) {
    if (!place.path.empty() && place.behind == anywhere) paths.push_back(place.path);
  }
  return either(paths);
}

/// Matches each option that takes a value, behind its path.
std::string valued_options(const std::vector<Place>& places) {
  std::vector<std::string> options;
  for (const Place& place : places) {
    if (place.behind.starts_with("--")) options.push_back(place.path + ":" + place.behind);
  }
  return either(options);
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
  local word=${COMP_WORDS[COMP_CWORD]} path= arguments=0 behind i
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
    case $path:${COMP_WORDS[i-1]} in
      @valued@) continue ;;
    esac
    case $path/${COMP_WORDS[i]} in
      @paths@) path+=/${COMP_WORDS[i]} arguments=0 ;;
      */-*) ;;
      *) ((arguments += 1)) ;;
    esac
  done
  behind=$path:${COMP_WORDS[COMP_CWORD-1]}
  case $behind in
    @valued@) ;;
    *) behind=$path:$arguments ;;
  esac
  local words= also=
  case $behind in
@rows@  esac
  [[ $also != cameras ]] || words+=" $(@names@ 2>/dev/null | awk 'NR > 1 { print $1 }')"
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word"; [[ $also != files ]] || compgen -f -- "$word")
}
complete -F @function@ @tool@
)bash";

constexpr char zsh_script[] = R"zsh(#compdef @tool@
# Completion of @tool@ for zsh: put it as _@tool@ into a folder of fpath.
@function@() {
  local path_so_far= also= arguments=0 behind i
  local -a offers
  for ((i = 2; i < CURRENT; i++)); do
    if [[ $words[i] == -- ]]; then
      ((i == CURRENT - 1)) && _command_names || _files
      return
    fi
    case $path_so_far:$words[i-1] in
      (@valued@) continue ;;
    esac
    case $path_so_far/$words[i] in
      (@paths@) path_so_far+=/$words[i] arguments=0 ;;
      (*/-*) ;;
      (*) ((arguments += 1)) ;;
    esac
  done
  behind=$path_so_far:$words[CURRENT-1]
  case $behind in
    (@valued@) ;;
    (*) behind=$path_so_far:$arguments ;;
  esac
  case $behind in
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
    rows += "    " + place.path + ":" + place.behind + ") words=" + shell_word(words) +
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
    rows += "    (" + place.path + ":" + place.behind + ") offers=(" + words + ")" +
            text_of(place.also) + " ;;\n";
  }
  return rows;
}

std::string fill_in(std::string script, const ToolPage& page, const std::string& paths,
                    const std::string& valued, const std::string& rows) {
  std::string function = "_" + page.name;
  std::replace(function.begin(), function.end(), '-', '_');
  script = replaced(script, "@function@", function);
  script = replaced(script, "@tool@", page.name);
  script = replaced(script, "@names@", page.names_command);
  script = replaced(script, "@paths@", paths);
  script = replaced(script, "@valued@", valued);
  return replaced(script, "@rows@", rows);
}

}  // namespace

std::string bash_completion(const CLI::App& app, const ToolPage& page) {
  const std::vector<Place> places = places_of(app);
  return fill_in(bash_script, page, known_paths(places), valued_options(places), bash_rows(places));
}

std::string zsh_completion(const CLI::App& app, const ToolPage& page) {
  const std::vector<Place> places = places_of(app);
  return fill_in(zsh_script, page, known_paths(places), valued_options(places), zsh_rows(places));
}

}  // namespace kelvo::tools
