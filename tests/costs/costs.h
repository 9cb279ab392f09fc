// What a call costs, without a clock.
#ifndef KELVO_TESTS_COSTS_COSTS_H
#define KELVO_TESTS_COSTS_COSTS_H

#include <string>

#include "costs/functions.h"

namespace kelvo::test::costs {

struct Cost {
  int system_calls = 0;
  int lock_sections = 0;
  int bytes = 0;

  bool operator==(const Cost&) const = default;
};

/// The first and the second call in a process that is ready for them.
struct Costs {
  Cost first;
  Cost again;
  std::string trouble;  // why there are none
};

/// Where a call is made.
struct Place {
  const char* name;
  Scope scope;
  int code;  // a lens module's or a controller family's
};

Costs measure(const Function& function, const Place& place);

/// docs/costs.md as it must be.
std::string document();

}  // namespace kelvo::test::costs

#endif
