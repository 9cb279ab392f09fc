#include "sim/wrapper/carried_images.h"

#include <array>

extern "C" {
#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) \
  [[gnu::visibility("hidden")]] extern const std::uint8_t sim_##symbol[size];
#include "wire/program_images.inc"
#undef KELVO_IMAGE
}

namespace kelvo::sim {
namespace {

using camera::CarriedImage;
using wire::LensModule;

constexpr std::array images{
#define KELVO_IMAGE(symbol, file, size, module, memory, address, checksum) \
  CarriedImage{{#symbol, LensModule::module, memory, address, size, checksum}, sim_##symbol},
#include "wire/program_images.inc"
#undef KELVO_IMAGE
};

}  // namespace

camera::CarriedImages carried_images() { return images; }

}  // namespace kelvo::sim
