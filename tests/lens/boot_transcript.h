// The pieces of a boot's transcript, as literal text.
#ifndef KELVO_TESTS_LENS_BOOT_TRANSCRIPT_H
#define KELVO_TESTS_LENS_BOOT_TRANSCRIPT_H

#include <string>

#include "script/script.h"

namespace kelvo::test::boot {

inline std::string locked(const std::string& frame) {
  return "lock\nspi_renesas: " + frame + "\nunlock\n";
}

inline std::string printed(const std::string& text) { return "out \"" + text + "\\n\"\n"; }

/// A boot-loader command whose reply is five zeros; `code` as it is printed.
inline std::string loader(const std::string& frame, const std::string& code) {
  return locked(frame) + printed("Addr:" + code + " 0x00 0x00 0x00 0x00 0x00 ");
}

inline const char* const reset = R"(system echo 33 > /sys/class/gpio/export
system echo "out" > /sys/class/gpio/gpio33/direction
system echo 0 > /sys/class/gpio/gpio33/value
usleep 500000
system echo 1 > /sys/class/gpio/gpio33/value
usleep 100000
)";

inline std::string silent_clock_set_up() {
  return loader("F5 04 00 00 A0", "f5") + loader("F4 01 00 00 A0", "f4") + "usleep 1000\n" +
         loader("F0 01 13 03 A0", "f0") + loader("F2 33 92 00 A0", "f2") +
         loader("F3 01 00 00 A0", "f3") + loader("F0 01 13 03 A0", "f0") +
         loader("F1 01 00 00 A0", "f1") + "usleep 1000\n";
}

inline std::string printed_clock_set_up() {
  return printed("Write PLL Mode Register") + loader("F5 04 00 00 A0", "f5") +
         printed("Write PLL Control Register") + loader("F4 01 00 00 A0", "f4") + "usleep 1000\n" +
         printed("Write Clock Supply Control Register (CLKEN)") + loader("F0 01 13 03 A0", "f0") +
         printed("Write Division Ratio Setting Register (CLKDIV)") +
         loader("F2 33 92 00 A0", "f2") + printed("Divider control register (DIVSTART)") +
         loader("F3 01 00 00 A0", "f3") + printed("Write Clock Supply Control Register (CLKEN)") +
         loader("F0 01 13 03 A0", "f0") + printed("Write Clock Source Select Register (CLKSEL)") +
         loader("F1 01 00 00 A0", "f1") + "usleep 1000\n";
}

/// What one image puts into the transcript.
struct ImageText {
  const char* address;
  const char* size;
  const char* header;
  const char* memory;
  const char* bytes;
  const char* checksum;
};

inline constexpr ImageText de015[3] = {
    {"E3 00 02 00 A0", "E4 FC 81 00 A0", "E1 11 21 00 A0", "21", "33276", "50ee9858"},
    {"E3 00 E0 FF A0", "E4 CC 04 00 A0", "E1 11 22 00 A0", "22", "1228", "db9f8ef5"},
    {"E3 00 D0 FF A0", "E4 B0 03 00 A0", "E1 11 23 00 A0", "23", "944", "2aa342f"},
};
inline constexpr ImageText df033[3] = {
    {"E3 00 02 00 A0", "E4 B8 88 00 A0", "E1 11 21 00 A0", "21", "35000", "a7980342"},
    {"E3 00 E0 FF A0", "E4 88 04 00 A0", "E1 11 22 00 A0", "22", "1160", "bf9b8238"},
    {"E3 00 D0 FF A0", "E4 88 02 00 A0", "E1 11 23 00 A0", "23", "648", "1911a0b"},
};
inline constexpr ImageText t5391[3] = {
    {"E3 00 02 00 A0", "E4 E8 80 00 A0", "E1 11 21 00 A0", "21", "33000", "e9ead60e"},
    {"E3 00 E0 FF A0", "E4 88 04 00 A0", "E1 11 22 00 A0", "22", "1160", "bf9b8238"},
    {"E3 00 D0 FF A0", "E4 88 02 00 A0", "E1 11 23 00 A0", "23", "648", "1911a0b"},
};

enum class Verdict { intact, corrupted };

/// One download; the corrupted one's checksum reads as 0x44332211.
inline std::string download(const ImageText& image, Verdict verdict) {
  const std::string memory = image.memory;
  const std::string bytes = image.bytes;
  const bool corrupted = verdict == Verdict::corrupted;
  return loader(image.address, "e3") + loader(image.size, "e4") +
         printed("Download FW size:" + bytes) + "usleep 100000\n" + locked(image.header) +
         "usleep 100000\n" +
         printed("Read Addr2:" + memory +
                 " 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00"
                 " 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 ") +
         locked(bytes + " bytes") + printed(std::string("Checksum:") + image.checksum) +
         locked("66 00 00 00 A0") + (corrupted ? printed("66 Read Checksum:2211") : "") +
         locked("67 00 00 00 A0") + (corrupted ? printed("67 Read Checksum:4433") : "") +
         printed(corrupted ? "ChecksumError:1" : "ChecksumError:0");
}

inline std::string downloads(const ImageText (&images)[3], Verdict verdict = Verdict::intact) {
  return download(images[0], verdict) + download(images[1], verdict) + download(images[2], verdict);
}

inline std::string end_of_attempt() { return loader("E5 00 02 00 A0", "e5"); }
inline std::string start_program() { return loader("E2 00 00 00 A0", "e2"); }

/// An attempt that prints no step.
inline std::string silent_attempt(const ImageText (&images)[3], Verdict verdict = Verdict::intact) {
  return reset + silent_clock_set_up() + downloads(images, verdict) + end_of_attempt();
}

/// An attempt that prints its steps.
inline std::string printed_attempt(const ImageText (&images)[3],
                                   Verdict verdict = Verdict::intact) {
  return printed("Reset R2J30516") + reset + printed_clock_set_up() + printed("DownloadCode") +
         downloads(images, verdict) + end_of_attempt();
}

inline std::string repeated(int times, const std::string& text) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

// ---- what the controller answers -------------------------------------------------------------

/// One attempt's six checksum reads, as the controller answers them after intact downloads.
inline void answer_de015_once(Script& script) {
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x58, 0x98, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0xEE, 0x50, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0xF5, 0x8E, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x9F, 0xDB, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x2F, 0x34, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0xAA, 0x02, 0});
}

inline void answer_df033_once(Script& script) {
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x42, 0x03, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x98, 0xA7, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x38, 0x82, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x9B, 0xBF, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x0B, 0x1A, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x91, 0x01, 0});
}

inline void answer_t5391_once(Script& script) {
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x0E, 0xD6, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0xEA, 0xE9, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x38, 0x82, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x9B, 0xBF, 0});
  script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x0B, 0x1A, 0});
  script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x91, 0x01, 0});
}

/// One attempt's six checksum reads after corrupted downloads.
inline void answer_corrupted_once(Script& script) {
  for (int image = 0; image < 3; ++image) {
    script.reply_once({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x11, 0x22, 0});
    script.reply_once({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x33, 0x44, 0});
  }
}

/// Every checksum read that has no answer of its own, from now on.
inline void answer_corrupted(Script& script) {
  script.reply({0x66, 0, 0, 0, 0xA0}, {0, 0, 0x11, 0x22, 0});
  script.reply({0x67, 0, 0, 0, 0xA0}, {0, 0, 0x33, 0x44, 0});
}

}  // namespace kelvo::test::boot

#endif
