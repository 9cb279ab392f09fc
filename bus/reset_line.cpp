#include <cstdint>
#include <cstdlib>

#include "kelvo/bus.h"
#include "wire/paths.h"

namespace {

// The shell's results are ignored: an already exported line makes the first step fail, and that is fine.
void shell(const char* command) { [[maybe_unused]] const int status = std::system(command); }

}  // namespace

std::int32_t ResetR2J30516() {
  shell(kelvo::wire::reset_line_export);
  shell(kelvo::wire::reset_line_output);
  shell(kelvo::wire::reset_line_assert);
  delay_ms(500);
  shell(kelvo::wire::reset_line_release);
  return delay_ms(100);
}
