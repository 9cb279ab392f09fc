// What is measured: one call of each exported function.
#ifndef KELVO_TESTS_COSTS_FUNCTIONS_H
#define KELVO_TESTS_COSTS_FUNCTIONS_H

#include <cstdint>
#include <span>
#include <string>

#include "wire/lens_module.h"

namespace kelvo::test::costs {

/// What a call can be different on.
enum class Scope : std::uint8_t { neither, modules, families };

struct Function {
  const char* call;  // as it is written
  Scope scope;
  void (*run)();
  // The boots that it contains.
  int boots = 0;
  wire::LensModule images = wire::LensModule::de015;

  std::string name() const { return std::string(call).substr(0, std::string(call).find('(')); }
};

struct Chapter {
  const char* title;
  std::span<const Function> functions;
};
std::span<const Chapter> chapters();

}  // namespace kelvo::test::costs

#endif
