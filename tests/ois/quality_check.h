// The pieces of a quality check's transcript, as literal text.
#ifndef KELVO_TESTS_OIS_QUALITY_CHECK_H
#define KELVO_TESTS_OIS_QUALITY_CHECK_H

#include <gtest/gtest.h>

#include <ostream>
#include <span>
#include <string>

#include "lens/boot_transcript.h"
#include "script/script.h"

namespace kelvo::test::check {

/// The boot that begins a check: no calibration, no link to the pan/tilt head.
inline std::string first_boot(const boot::ImageText (&images)[3],
                              boot::Verdict verdict = boot::Verdict::intact) {
  return boot::silent_attempt(images, verdict) + boot::start_program() + "usleep 100000\n";
}

/// Of one attempt and the program's start.
inline constexpr int boot_transfers = 27;

inline const std::string calibration_started =
    boot::locked("04 00 00 00 01 05 00") + boot::locked("05 00 00 00 01 06 00");

/// What a command frame leaves while the latch is set.
inline const std::string latched_command = "lock\nunlock\n";

/// A poll; the four bytes as they are printed.
inline std::string poll(const std::string& state) {
  return "spi_renesas: 80 00 00 00 01 81 00 00 00 00 00 00\n" + boot::printed("State:" + state) +
         "sleep 1\n";
}
inline std::string latched_poll() { return boot::printed("State:0 0 0 0") + "sleep 1\n"; }

inline std::string error_code(const std::string& bytes) {
  return "spi_renesas: 82 00 00 00 01 83 00 00 00 00 00 00\n" +
         boot::printed("Error Code:" + bytes);
}

/// Its bytes, the result of a check that reads it, and how it is printed.
struct ErrorCode {
  Bytes bytes;
  std::int32_t result;
  const char* printed;
};
inline void PrintTo(const ErrorCode& code, std::ostream* out) { *out << code.printed; }

/// One copy of a record written.
inline std::string saved(const std::string& path) {
  return "fopen " + path + " w\nfsync\nfclose " + path + "\n";
}
inline std::string all_saved(const std::string& name) {
  return saved("/mnt/nand/" + name) + saved("/tmp/" + name) + saved("/bin/" + name);
}
inline std::string loaded(const std::string& path) {
  return "fopen " + path + " r\nfclose " + path + "\n";
}

inline void expect_copies(const Script& script, std::span<const char* const> paths,
                          const Bytes& record) {
  for (const char* const path : paths) EXPECT_EQ(script.written(path), record) << path;
  EXPECT_EQ(script.open_files(), 0);
}

// ---- stabiliser ------------------------------------------------------------------------------

inline const char* const stabiliser_copies[] = {"/mnt/nand/OIS_S_Cali.dat", "/tmp/OIS_S_Cali.dat",
                                                "/bin/OIS_S_Cali.dat"};

inline const Bytes stabiliser_record = {
    0x34, 0x12, 0, 0,                    // polarity
    0x01, 0x20, 0, 0, 0x02, 0x21, 0, 0,  // Hall offset, X and Y
    0x03, 0x30, 0, 0, 0x04, 0x31, 0, 0,  // Hall gain
    0x05, 0x40, 0, 0, 0x06, 0x41, 0, 0,  // minimum
    0x07, 0x50, 0, 0, 0x08, 0x51, 0, 0,  // maximum
    0x09, 0x60, 0, 0,                    // gyro zero, X
    0xF1, 0xE1, 0, 0, 0xF2, 0xE2, 0, 0,  // Hall noise
    0xF3, 0xE3, 0, 0, 0xF4, 0xE4, 0, 0,  // gyro noise
    0x0A, 0x61, 0, 0,                    // gyro zero, Y
};

/// In the order in which the check reads them.
inline const char* const stabiliser_values_read =
    R"(spi_renesas: A1 00 00 00 01 A2 00 00 00 00 00 00
out "Pola 0xa1:01 02 12 34\n"
spi_renesas: D1 00 00 00 01 D2 00 00 00 00 00 00
out "hofs[0] 0xd1:03 04 20 01\n"
spi_renesas: D3 00 00 00 01 D4 00 00 00 00 00 00
out "hg[0] 0xd3:05 06 30 03\n"
spi_renesas: D7 00 00 00 01 D8 00 00 00 00 00 00
out "min[0] 0xd7:07 08 40 05\n"
spi_renesas: D8 00 00 00 01 D9 00 00 00 00 00 00
out "max[0] 0xd8:09 0a 50 07\n"
spi_renesas: E3 00 00 00 01 E4 00 00 00 00 00 00
out "gxz 0xe3:0b 0c 60 09\n"
spi_renesas: 96 00 00 00 01 97 00 00 00 00 00 00
out "Hall_Noise[0] 0x96:0d 0e e1 f1\n"
spi_renesas: 9A 00 00 00 01 9B 00 00 00 00 00 00
out "gyro_noise[0] 0x9a:0f 10 e3 f3\n"
spi_renesas: D2 00 00 00 01 D3 00 00 00 00 00 00
out "hofs[1] 0xd2:11 12 21 02\n"
spi_renesas: D4 00 00 00 01 D5 00 00 00 00 00 00
out "hg[1] 0xd4:13 14 31 04\n"
spi_renesas: D9 00 00 00 01 DA 00 00 00 00 00 00
out "min[1] 0xd9:15 16 41 06\n"
spi_renesas: DA 00 00 00 01 DB 00 00 00 00 00 00
out "max[1] 0xda:17 18 51 08\n"
spi_renesas: E5 00 00 00 01 E6 00 00 00 00 00 00
out "gyz 0xe5:19 1a 61 0a\n"
spi_renesas: 97 00 00 00 01 98 00 00 00 00 00 00
out "Hall_Noise[1] 0x97:1b 1c e2 f2\n"
spi_renesas: 9B 00 00 00 01 9C 00 00 00 00 00 00
out "gyro_noise[1] 0x9b:1d 1e e4 f4\n"
)";

inline void answer_stabiliser_values(Script& script) {
  script.query_reply(0xA1, {0x01, 0x02, 0x12, 0x34});
  script.query_reply(0xD1, {0x03, 0x04, 0x20, 0x01});
  script.query_reply(0xD3, {0x05, 0x06, 0x30, 0x03});
  script.query_reply(0xD7, {0x07, 0x08, 0x40, 0x05});
  script.query_reply(0xD8, {0x09, 0x0A, 0x50, 0x07});
  script.query_reply(0xE3, {0x0B, 0x0C, 0x60, 0x09});
  script.query_reply(0x96, {0x0D, 0x0E, 0xE1, 0xF1});
  script.query_reply(0x9A, {0x0F, 0x10, 0xE3, 0xF3});
  script.query_reply(0xD2, {0x11, 0x12, 0x21, 0x02});
  script.query_reply(0xD4, {0x13, 0x14, 0x31, 0x04});
  script.query_reply(0xD9, {0x15, 0x16, 0x41, 0x06});
  script.query_reply(0xDA, {0x17, 0x18, 0x51, 0x08});
  script.query_reply(0xE5, {0x19, 0x1A, 0x61, 0x0A});
  script.query_reply(0x97, {0x1B, 0x1C, 0xE2, 0xF2});
  script.query_reply(0x9B, {0x1D, 0x1E, 0xE4, 0xF4});
}

inline std::string stabiliser_values_sent() {
  using boot::locked;
  return locked("21 00 00 12 34 67 00") + locked("51 00 00 20 01 72 00") +
         locked("53 00 00 30 03 86 00") + locked("57 00 00 40 05 9C 00") +
         locked("58 00 00 50 07 AF 00") + locked("63 00 00 60 09 CC 00") +
         locked("52 00 00 21 02 75 00") + locked("54 00 00 31 04 89 00") +
         locked("59 00 00 41 06 A0 00") + locked("5A 00 00 51 08 B3 00") +
         locked("65 00 00 61 0A D0 00");
}

inline const char* const no_stabiliser_file = "fopen /bin/OIS_S_Cali.dat r -> ENOENT\n";

/// The boot that ends the check, and the stabiliser switched off behind it.
inline std::string last_de015_boot(const std::string& calibration) {
  return boot::silent_attempt(boot::de015) + boot::start_program() + "open /dev/spi_pt5111\n" +
         boot::de015_driver_words + boot::i2c_link + calibration +
         boot::locked("05 00 00 00 00 05 00") + boot::locked("03 00 00 00 00 03 00");
}

// ---- iris ------------------------------------------------------------------------------------

inline const char* const iris_copies[] = {"/mnt/nand/DC_S_Cali.dat", "/tmp/DC_S_Cali.dat",
                                          "/bin/DC_S_Cali.dat"};
inline const char* const no_iris_file = "fopen /bin/DC_S_Cali.dat r -> ENOENT\n";

/// All up to the first poll of a process that has not opened the device.
inline std::string iris_check_beginning() {
  return "open /dev/spi_renesas\n" + first_boot(boot::df033) + calibration_started;
}

/// The boot that ends the check.
inline std::string last_df033_boot(const std::string& calibration) {
  return boot::printed_attempt(boot::df033) + boot::start_program() + boot::i2c_link + calibration +
         boot::last_iris_commands() + boot::df033_driver_words();
}

}  // namespace kelvo::test::check

#endif
