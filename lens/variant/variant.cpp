#include "lens/variant/variant.h"

#include <unistd.h>

#include <cstdio>

#include "bus/latch.h"
#include "kelvo/bus.h"
#include "kelvo/lens.h"
#include "wire/lens_program.h"

namespace kelvo::lens {

void select_lens_module(LensModule module) {
  gi30516Ver = static_cast<std::int32_t>(module);
  giSpiCmdErr = 0;
}

}  // namespace kelvo::lens

using kelvo::lens::LensModule;
namespace query = kelvo::wire::query;

std::int32_t SetLensType(std::int32_t type) {
  kelvo::lens::select_lens_module(static_cast<LensModule>(type));
  return 0;
}

std::int32_t GetLensType() {
  // Only -1 hides the code; any other failure leaves it visible (deliberate).
  return giSpiCmdErr == -1 ? -1 : gi30516Ver;
}

std::uint8_t getVersion(std::uint32_t* out) {
  std::uint8_t code = 0;
  switch (kelvo::lens::lens_module()) {
    case LensModule::de015: code = query::version_de; break;
    case LensModule::df033:
    case LensModule::t5391: code = query::version; break;
    default: return 0;
  }
  std::uint8_t reply[4] = {};
  const std::uint8_t status = RecvCommand(code, 0, reply);
  std::printf("Ver:");
  for (const std::uint8_t byte : reply) std::printf("%02x ", byte);
  *out = static_cast<std::uint32_t>(reply[2] << 8 | reply[3]);
  std::printf("\n");
  return status;
}

std::int32_t CommTest(const std::uint8_t* frame, std::int32_t len) {
  if (len < 5) return 0;
  if (frame[0] >= kelvo::wire::first_query) {
    std::uint8_t reply[4] = {};
    RecvCommand(frame[0], frame[1], reply);
    std::printf("Recv:");
    for (const std::uint8_t byte : reply) std::printf("0x%02x ", byte);
    std::printf("\n");
  } else {
    SendCommand(frame[0], frame[1], frame[2], frame[3], frame[4]);
  }
  return 0;
}

std::int32_t FileSync(FILE* stream) {
  std::fflush(stream);
  const int descriptor = fileno(stream);
  if (descriptor != -1) fsync(descriptor);
  return 0;
}
