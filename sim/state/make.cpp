#include "sim/state/make.h"

#include <algorithm>
#include <filesystem>
#include <new>

#include "sim/state/bus_key.h"
#include "sim/state/folder.h"
#include "sim/state/storage.h"

namespace kelvo::sim::state {
namespace {

std::string absolute(const std::string& folder) {
  std::error_code ignored;
  return std::filesystem::absolute(folder, ignored).lexically_normal().string();
}

std::int64_t count(auto moment) {
  return std::chrono::nanoseconds(moment.time_since_epoch()).count();
}

std::string lay_down_files(Header& header, std::string_view name, const WantedSettings& wanted) {
  header.private_folder = !wanted.files;
  const std::string folder = wanted.files ? absolute(*wanted.files) : private_folder_of(name);
  if (folder.size() > Header::longest_folder) {
    return "the folder's name is longer than " + std::to_string(Header::longest_folder) +
           " bytes: choose a shorter one";
  }
  std::copy(folder.begin(), folder.end(), header.files.begin());
  // The key of the bus lock has but 16 bits of the folder's number: the set that is found must not be
  // another camera's, or one that a camera of old has left.
  if (header.private_folder) return make_private_folder(folder, has_bus_lock);
  const std::error_code error = storage::begin(folder);
  return error ? "its folder " + folder + " cannot be used: " + error.message() : "";
}

std::string lay_down_corrupt(Layout& layout, const std::vector<std::uint32_t>& numbers) {
  Header& header = layout.header;
  if (numbers.size() > header.corrupt.size()) {
    return "it has room for " + std::to_string(header.corrupt.size()) +
           " corrupt downloads: name no more";
  }
  std::copy(numbers.begin(), numbers.end(), header.corrupt.begin());
  header.corrupt_count = static_cast<std::uint32_t>(numbers.size());
  for (const std::uint32_t number : numbers) layout.camera.corrupt_download(number);
  return {};
}

std::string text_of(const std::string& text) { return text; }
std::string text_of(std::uint64_t number) { return std::to_string(number); }
std::string text_of(const ClockSetting& clock) { return to_text(clock); }
std::string text_of(const std::optional<wire::LensModule>& module) {
  return module ? to_text(*module) : "";
}
std::string text_of(wire::HeadFamily head) {
  return head == wire::HeadFamily::vetra ? "vetra" : "tasmere";
}
std::string text_of(const std::vector<std::uint32_t>& numbers) {
  std::string text;
  for (const std::uint32_t number : numbers) {
    if (!text.empty()) text += '+';
    text += std::to_string(number);
  }
  return text;
}

template <typename Value>
std::string compare(std::string_view name, const char* setting, const std::optional<Value>& wanted,
                    const Value& value) {
  if (!wanted || *wanted == value) return {};
  const std::string has = text_of(value);
  return "camera \"" + std::string(name) + "\" was made " +
         (has.empty() ? std::string("without ") + setting
                      : std::string("with ") + setting + "=" + has) +
         ", not " + setting + "=" + text_of(*wanted) + ": leave " + setting +
         " away, or remove the camera first";
}

}  // namespace

std::string make_camera(Layout& layout, std::string_view name, const WantedSettings& wanted) {
  new (&layout) Layout;
  Header& header = layout.header;
  header.size = sizeof layout;
  header.made = count(std::chrono::system_clock::now());
  header.begun = count(std::chrono::steady_clock::now());
  header.clock = wanted.clock.value_or(ClockSetting{});
  header.head = wanted.head.value_or(wire::HeadFamily::tasmere);
  header.seed = wanted.seed.value_or(0);
  header.module = wanted.module;
  layout.camera.fit_head(header.head);
  layout.camera.vary(header.seed);
  if (header.module) layout.camera.fit_module(*header.module);
  std::string error =
      lay_down_corrupt(layout, wanted.corrupt.value_or(std::vector<std::uint32_t>{}));
  if (error.empty()) error = lay_down_files(header, name, wanted);
  if (!error.empty()) return "camera \"" + std::string(name) + "\": " + error;
  header.magic.store(magic);
  return {};
}

std::chrono::system_clock::time_point made(const Header& header) {
  return std::chrono::system_clock::time_point(std::chrono::nanoseconds(header.made));
}

SharedSettings settings_of(const Header& header) {
  SharedSettings settings;
  settings.head = header.head;
  settings.clock = header.clock;
  settings.files = header.files.data();
  settings.corrupt.assign(header.corrupt.begin(), header.corrupt.begin() + header.corrupt_count);
  settings.seed = header.seed;
  settings.module = header.module;
  return settings;
}

std::string disagreement(std::string_view name, const WantedSettings& wanted,
                         const SharedSettings& settings) {
  std::optional<std::string> files = wanted.files;
  if (files) files = absolute(*files);
  using Module = std::optional<wire::LensModule>;
  std::optional<Module> module;
  if (wanted.module) module.emplace(wanted.module);
  for (const std::string& error : {compare(name, "clock", wanted.clock, settings.clock),
                                   compare(name, "head", wanted.head, settings.head),
                                   compare(name, "module", module, settings.module),
                                   compare(name, "files", files, settings.files),
                                   compare(name, "corrupt", wanted.corrupt, settings.corrupt),
                                   compare(name, "seed", wanted.seed, settings.seed)}) {
    if (!error.empty()) return error;
  }
  return {};
}

}  // namespace kelvo::sim::state
