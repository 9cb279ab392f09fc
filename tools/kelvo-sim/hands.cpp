// What one does to a camera past the wires: look into a register, change one, turn a motor, cut the power.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cctype>
#include <memory>
#include <nlohmann/json.hpp>

#include "sim/lens/wiring.h"
#include "tools/common/failure.h"
#include "tools/common/output.h"
#include "tools/kelvo-sim/cameras.h"
#include "tools/kelvo-sim/commands.h"
#include "tools/kelvo-sim/registers.h"

namespace kelvo::tools {
namespace {

using sim::camera::Camera;
using sim::camera::HeadAxis;

struct HandArguments : CameraArguments {
  Place place;
  std::string motor;
  std::string number;
  std::string power;
};

std::string hexadecimal(std::uint64_t value) {
  std::array<char, 24> text{};
  std::snprintf(text.data(), text.size(), "0x%llX", static_cast<unsigned long long>(value));
  return text.data();
}

void peek_at(const HandArguments& arguments) {
  const Camera camera = open_camera(arguments.name)->snapshot();
  const std::uint64_t value = peek(camera, arguments.place);
  if (!arguments.json) return print(std::to_string(value) + " " + hexadecimal(value) + "\n");
  print_json({{"camera", arguments.name},
              {"device", arguments.place.device},
              {"register", arguments.place.reg},
              {"value", value}});
}

void poke_at(const HandArguments& arguments) {
  constexpr std::uint64_t most = 0xFFFFFFFFFF;  // no register has more than five bytes
  const auto value = parse_number(arguments.number, most);
  if (!value) {
    throw Failure(
        ExitCode::wrong_arguments,
        "\"" + arguments.number + "\" is no value: write a number, or a hexadecimal one behind 0x");
  }
  const std::unique_ptr<sim::SharedCamera> shared = open_camera(arguments.name);
  poke(*shared->change(), arguments.place, *value);
}

/// Small letters and digits alone: "zoom 1", Zoom-1 and zoom1 are the same.
std::string plain(std::string_view name) {
  std::string result;
  for (const char letter : name) {
    const auto code = static_cast<unsigned char>(letter);
    if (std::isalnum(code) != 0) result += static_cast<char>(std::tolower(code));
  }
  return result;
}

std::string known_motors(const Camera& camera) {
  std::string names;
  for (const sim::camera::Wire& wire : sim::camera::wiring) {
    if (camera.lens().motors_of() == wire.module) names += plain(wire.motor) + ", ";
  }
  return names + "pan, tilt";
}

/// Where it stands afterwards.
std::int64_t push_motor(Camera& camera, const std::string& motor, std::int32_t counts) {
  for (const HeadAxis axis : {HeadAxis::pan, HeadAxis::tilt}) {
    if (plain(motor) != name_of(axis)) continue;
    camera.push(axis, counts);
    const auto& controller = axis == HeadAxis::pan ? camera.head().pan() : camera.head().tilt();
    return controller.axis().position(camera.clock.now());
  }
  for (const sim::camera::Wire& wire : sim::camera::wiring) {
    if (camera.lens().motors_of() != wire.module || plain(wire.motor) != plain(motor)) continue;
    if (camera.push(wire.output, counts)) {
      return camera.positions()[index(wire.output)];
    }
  }
  throw Failure(ExitCode::refused,
                motor + ": this camera has no such motor now: it has " + known_motors(camera));
}

void push_by_hand(const HandArguments& arguments) {
  const auto counts = parse_counts(arguments.number);
  if (!counts) {
    throw Failure(ExitCode::wrong_arguments,
                  "\"" + arguments.number +
                      "\" is no number of counts: write one, with - before "
                      "it for the way back");
  }
  const std::unique_ptr<sim::SharedCamera> shared = open_camera(arguments.name);
  const std::int64_t place = push_motor(*shared->change(), arguments.motor, *counts);
  print(std::to_string(place) + "\n");
}

void switch_power(const HandArguments& arguments) {
  const std::unique_ptr<sim::SharedCamera> shared = open_camera(arguments.name);
  if (arguments.power == "on") return shared->power_on();
  const std::string error = shared->power_off();
  if (!error.empty()) throw Failure(ExitCode::unusable_camera, error);
}

/// A command on a camera that does one thing.
std::shared_ptr<HandArguments> add_hand(CLI::App& app, const char* name, const char* description,
                                        void (*act)(const HandArguments& arguments)) {
  CLI::App* const command = app.add_subcommand(name, description);
  auto arguments = std::make_shared<HandArguments>();
  add_name(*command, *arguments);
  command->callback([arguments, act] { act(*arguments); });
  return arguments;
}

void add_argument(CLI::App& app, const char* command, const char* name, std::string& value,
                  const std::string& description, const std::string& values = "") {
  app.get_subcommand(command)->add_option(name, value, description)->type_name(values)->required();
}

void add_place(CLI::App& app, const char* command, Place& place) {
  app.get_subcommand(command)
      ->add_option("DEVICE", place.device, "What has the register")
      ->type_name("command|query|register|pt5111|pan|tilt")
      ->required()
      ->check(CLI::Validator(
          [](std::string& text) {
            return is_device(text) ? "" : "\"" + text + "\" is not " + std::string(device_values);
          },
          ""));
  add_argument(app, command, "REGISTER", place.reg,
               "Its number or name; a query may have :NUMBER behind it for what it asks about");
}

}  // namespace

void add_hands(CLI::App& app) {
  const auto peek =
      add_hand(app, "peek", "Shows what is in a register, or what a command has brought", peek_at);
  add_place(app, "peek", peek->place);
  add_json(*app.get_subcommand("peek"), *peek);
  const auto poke = add_hand(app, "poke", "Does what writing a register would do", poke_at);
  add_place(app, "poke", poke->place);
  add_argument(app, "poke", "VALUE", poke->number, "Decimal, or hexadecimal behind 0x");
  const auto push = add_hand(
      app, "push", "Turns a motor or an axis by hand, and shows where it is then", push_by_hand);
  add_argument(app, "push", "MOTOR", push->motor, "A motor as status names it, or pan or tilt");
  add_argument(app, "push", "COUNTS", push->number, "Its own counts; with - the way back");
  const auto power =
      add_hand(app, "power", "Cuts the camera's power, or gives it back", switch_power);
  app.get_subcommand("power")
      ->add_option("STATE", power->power, "off or on")
      ->type_name("off|on")
      ->required()
      ->check(CLI::IsMember({"off", "on"}).description(""));
}

}  // namespace kelvo::tools
