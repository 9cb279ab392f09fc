// A download that succeeds when both halves of its checksum are answered.
#ifndef KELVO_TESTS_LENS_DOWNLOAD_H
#define KELVO_TESTS_LENS_DOWNLOAD_H

#include <cstdint>

#include "kelvo.h"

namespace kelvo::test {

inline constexpr std::uint8_t short_image[4] = {0xDE, 0xAD, 0xBE, 0xEF};

inline std::int32_t download_short_image() {
  return DownloadCode(0x22, 0x00030201, 4, 0x12345678, short_image);
}

}  // namespace kelvo::test

#endif
