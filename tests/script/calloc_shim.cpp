// Intercepts calloc in test programs alone: the simulated camera has no business with an application's
// memory.
#include "script/calloc_shim.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstddef>

namespace kelvo::test {

AllocationFails allocation_fails = nullptr;

}  // namespace kelvo::test

namespace {

using Calloc = void* (*)(std::size_t, std::size_t);

// The look-up of the real function may itself allocate; it gets this room, which is never given back.
alignas(16) char early_room[8192];
std::size_t early_used = 0;
bool looking_up = false;

void* early_calloc(std::size_t bytes) {
  const std::size_t rounded = (bytes + 15) / 16 * 16;
  if (rounded > sizeof early_room - early_used) return nullptr;
  void* const block = early_room + early_used;
  early_used += rounded;
  return block;
}

Calloc real_calloc() {
  static Calloc real = nullptr;
  if (real == nullptr) {
    looking_up = true;
    real = reinterpret_cast<Calloc>(dlsym(RTLD_NEXT, "calloc"));
    looking_up = false;
  }
  return real;
}

}  // namespace

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
  if (looking_up) return early_calloc(count * size);
  if (kelvo::test::allocation_fails != nullptr && kelvo::test::allocation_fails()) {
    errno = ENOMEM;
    return nullptr;
  }
  return real_calloc()(count, size);
}
