// The faults of a camera: add, list, remove.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "sim/fault/names.h"
#include "sim/fault/parse.h"
#include "sim/fault/words.h"
#include "sim/report/table.h"
#include "tools/common/failure.h"
#include "tools/common/output.h"
#include "tools/kelvo-sim/cameras.h"
#include "tools/kelvo-sim/commands.h"

namespace kelvo::tools {
namespace {

namespace fault = sim::fault;

struct Arguments {
  std::string action;
  CameraArguments camera;
  std::vector<std::string> rest;
};

void add(const Arguments& arguments) {
  std::string text;
  for (const std::string& word : arguments.rest) text += word + " ";
  const fault::ParsedFault parsed = fault::parse(text);
  if (!parsed.error.empty()) throw Failure(ExitCode::wrong_arguments, parsed.error);
  const std::unique_ptr<sim::SharedCamera> camera = open_camera(arguments.camera.name);
  const auto number = camera->change(sim::Extent::one_call).faults().add(parsed.fault);
  if (!number) {
    throw Failure(ExitCode::unusable_camera, arguments.camera.name + ": " + fault::table_is_full);
  }
  print(std::to_string(*number) + "\n");
}

Json to_json(const fault::Fault& fault) {
  return {{"number", fault.number},
          {"fault", fault.text.data()},
          {"matches", fault.matches},
          {"struck", fault.struck}};
}

void list(const Arguments& arguments) {
  const fault::FaultTable faults = open_camera(arguments.camera.name)->faults();
  if (arguments.camera.json) {
    Json listed = Json::array();
    for (const fault::Fault& fault : faults.listed()) listed.push_back(to_json(fault));
    return print_json({{"camera", arguments.camera.name}, {"faults", listed}});
  }
  sim::Table table({"number", "matches", "struck", "fault"});
  for (const fault::Fault& fault : faults.listed()) {
    table.add({std::to_string(fault.number), std::to_string(fault.matches),
               std::to_string(fault.struck), fault.text.data()});
  }
  if (!table.empty()) print(table.text());
}

/// What `remove` takes behind the camera's name; nothing stands for all.
std::optional<std::uint32_t> number_to_remove(const Arguments& arguments) {
  const std::string text = arguments.rest.size() == 1 ? arguments.rest.front() : "";
  if (text == "all") return {};
  const auto number = fault::number_of(text, UINT32_MAX);
  if (number && *number != 0) return static_cast<std::uint32_t>(*number);
  throw Failure(ExitCode::wrong_arguments, "which fault: write its number, which " +
                                               std::string(tool_name) + " fault list " +
                                               arguments.camera.name + " shows, or all");
}

void remove(const Arguments& arguments) {
  const std::optional<std::uint32_t> number = number_to_remove(arguments);
  const std::unique_ptr<sim::SharedCamera> camera = open_camera(arguments.camera.name);
  const sim::SharedCamera::Change change = camera->change(sim::Extent::one_call);
  if (!number) return change.faults().clear();
  if (change.faults().remove(*number)) return;
  throw Failure(ExitCode::no_fault, arguments.camera.name + ": there is no fault " +
                                        std::to_string(*number) + ": " + tool_name +
                                        " fault list " + arguments.camera.name +
                                        " shows those that there are");
}

struct Action {
  const char* name;
  void (*act)(const Arguments& arguments);
};
constexpr Action actions[] = {{"add", add}, {"list", list}, {"remove", remove}};

void act(const Arguments& arguments) {
  const bool lists = arguments.action == "list";
  if (arguments.camera.json && !lists) {
    throw Failure(ExitCode::wrong_arguments, "--json is for list alone: leave it away");
  }
  if (lists && !arguments.rest.empty()) {
    throw Failure(ExitCode::wrong_arguments,
                  "\"" + arguments.rest.front() + "\" is too much: list takes a camera's name");
  }
  for (const Action& action : actions) {
    if (arguments.action == action.name) action.act(arguments);
  }
}

std::string check_action(const std::string& text) {
  for (const Action& action : actions) {
    if (text == action.name) return {};
  }
  return "\"" + text + "\" is not add, list or remove";
}

/// What a word means, what it takes, and which devices have it.
std::string entry(const fault::Word& word) {
  std::string text(word.meaning);
  if (!word.values.empty() && word.name != "frame") text += ": " + std::string(word.values);
  return text + (word.effect ? " (effect; " : " (") + fault::ports_of(word) + ")";
}

std::string glossary_text(const Glossary& glossary) {
  std::string text = glossary.remark;
  for (const auto& [word, meaning] : glossary.words) {
    text += "\n  ";
    text += word;
    text += "\n        ";
    text += meaning;
  }
  return text + "\n";
}

}  // namespace

Glossary fault_words() {
  Glossary glossary{"FAULTS",
                    "A fault is a device (" + fault::all_ports() +
                        ") and words in any order, with blanks or colons between them: one effect, "
                        "and which transfers of the device it is for, else all. Names are those of "
                        "the trace.",
                    {}};
  for (const bool effects : {true, false}) {
    for (const fault::Word& word : fault::all_words()) {
      if (word.effect != effects) continue;
      glossary.words.emplace_back(std::string(word.name) + (word.values.empty() ? "" : "=VALUE"),
                                  entry(word));
    }
  }
  return glossary;
}

void add_fault(CLI::App& app) {
  CLI::App* const command =
      app.add_subcommand("fault", "Adds a fault to a camera, lists its faults, or removes one");
  const auto arguments = std::make_shared<Arguments>();
  command->add_option("ACTION", arguments->action, "What to do")
      ->type_name("add|list|remove")
      ->required()
      ->check(CLI::Validator(check_action, ""));
  add_name(*command, arguments->camera);
  command
      ->add_option(
          "FAULT", arguments->rest,
          "add: device and words, as 'spi command=62 nth=3 error=EIO'; remove: a number or all")
      ->type_name("");
  add_json(*command, arguments->camera);
  command->footer(glossary_text(fault_words()) + "\n" + app.get_footer());
  command->callback([arguments] { act(*arguments); });
}

}  // namespace kelvo::tools
