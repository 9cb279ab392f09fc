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

// ---- what follows the program's start --------------------------------------------------------

inline const char* const de015_driver_words = R"(spi_pt5111: E3 80
spi_pt5111: C4 00
spi_pt5111: 28 00
spi_pt5111: 2C 00
spi_pt5111: 34 00
spi_pt5111: 74 00
spi_pt5111: C4 00
spi_pt5111: CF C0
spi_pt5111: CA 80
spi_pt5111: 3C 00
spi_pt5111: 81 80
spi_pt5111: D5 78
spi_pt5111: CA 00
usleep 500000
spi_pt5111: CA 80
spi_pt5111: CC 00
spi_pt5111: 3C 00
spi_pt5111: 7C 00
)";

/// The driver's set-up through the lens controller, with the filter switched on at its end.
inline std::string df033_driver_words() {
  return locked("2F 02 E3 80 00 94 00") + locked("2F 02 C4 00 00 F5 00") +
         locked("2F 02 28 00 00 59 00") + locked("2F 02 2C 00 00 5D 00") +
         locked("2F 02 34 00 00 65 00") + locked("2F 02 74 00 00 A5 00") +
         locked("2F 02 C4 00 00 F5 00") + locked("2F 02 CF C0 00 C0 00") +
         locked("2F 02 3C 00 00 6D 00") + locked("2F 02 41 40 00 B2 00") +
         locked("2F 02 70 1F 00 C0 00") + locked("2F 02 CF C0 00 C0 00") +
         locked("2F 02 41 40 00 B2 00") + locked("2F 02 73 EF 00 93 00") +
         locked("2F 02 7E 00 00 AF 00") + "usleep 200000\n" + locked("2F 02 7C 00 00 AD 00");
}

inline const char* const i2c_link = "open /dev/i2c-2\nusleep 100000\n";

inline std::string last_iris_commands() {
  return locked("05 00 00 00 00 05 00") + locked("27 00 00 00 01 28 00");
}

/// 0x1234, 0x2001, 0x3002, 0x4003, 0x5004, and a sine value that is never sent.
inline const Bytes iris_record = {0x34, 0x12, 0, 0, 0x01, 0x20, 0, 0, 0x02, 0x30, 0, 0,
                                  0x03, 0x40, 0, 0, 0x04, 0x50, 0, 0, 0x05, 0x60, 0, 0};

inline std::string iris_values_sent() {
  return locked("21 00 00 12 34 67 00") + locked("51 00 00 20 01 72 00") +
         locked("53 00 00 30 02 85 00") + locked("57 00 00 40 03 9A 00") +
         locked("58 00 00 50 04 AC 00");
}

/// With the replies of answer_iris_values().
inline const char* const iris_values_read = R"(spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
out "Pola 0xa1:01 02 12 34\n"
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00
out "hofs[0] 0xd1:03 04 20 01\n"
spi_renesas: D3 00 00 00 01 D4 00 00 00 00 00 00
out "hg 0xd3:05 06 30 02\n"
spi_renesas: C5 00 00 00 01 C6 00 00 00 00 00 00
out "xmin 0xc5:07 08 40 03\n"
spi_renesas: C6 00 00 00 01 C7 00 00 00 00 00 00
out "xmax 0xc6:09 0a 50 04\n"
spi_renesas: 98 00 00 00 01 99 00 00 00 00 00 00
out "sin 0x98:0b 0c 60 05\n"
)";

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

inline void answer_iris_values(Script& script) {
  script.query_reply(0xA1, {0x01, 0x02, 0x12, 0x34});
  script.query_reply(0xD1, {0x03, 0x04, 0x20, 0x01});
  script.query_reply(0xD3, {0x05, 0x06, 0x30, 0x02});
  script.query_reply(0xC5, {0x07, 0x08, 0x40, 0x03});
  script.query_reply(0xC6, {0x09, 0x0A, 0x50, 0x04});
  script.query_reply(0x98, {0x0B, 0x0C, 0x60, 0x05});
}

}  // namespace kelvo::test::boot

#endif
