#include "sim/common/exchange.h"

#include <cstdarg>

namespace kelvo::sim::camera {

void Exchange::violation(const char* reason, ...) {
  std::va_list arguments;
  va_start(arguments, reason);
  violations.record_list(now, unit, sent, reason, arguments);
  va_end(arguments);
}

}  // namespace kelvo::sim::camera
