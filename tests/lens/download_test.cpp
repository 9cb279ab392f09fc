#include "lens/download.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::download_short_image;
using kelvo::test::Script;
using kelvo::test::short_image;

void answer_checksum(Script& script, const Bytes& low, const Bytes& high) {
  script.reply({0x66}, low);
  script.reply({0x67}, high);
}

/// The download of `short_image` to memory 0x22 at 0x030201, up to the announced checksum.
const char* const transfer_steps = R"(open /dev/spi_renesas
lock
spi_renesas: E3 01 02 03 A0
unlock
out "Addr:e3 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: E4 04 00 00 A0
unlock
out "Addr:e4 0x00 0x00 0x00 0x00 0x00 \n"
out "Download FW size:4\n"
usleep 100000
lock
spi_renesas: E1 11 22 00 A0
unlock
usleep 100000
out "Read Addr2:22 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: DE AD BE EF
unlock
out "Checksum:12345678\n"
)";

const std::vector<std::string> transfer_noise = {"lock", "unlock", "usleep", "open", "spi_renesas"};

TEST(DownloadCode, SendsAddressSizeAndImageThenComparesBothChecksumHalves) {
  Script script;
  answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x34, 0x12, 0});
  EXPECT_EQ(download_short_image(), 0);
  EXPECT_EQ(script.transcript(), std::string(transfer_steps) + R"(lock
spi_renesas: 66 00 00 00 A0
unlock
lock
spi_renesas: 67 00 00 00 A0
unlock
out "ChecksumError:0\n"
)");
}

TEST(DownloadCode, ReportsALowHalfThatDiffersThoughTheHighHalfMatches) {
  Script script;
  answer_checksum(script, {0, 0, 0x0A, 0xB0, 0}, {0, 0, 0x34, 0x12, 0});
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), std::string(transfer_steps) + R"(lock
spi_renesas: 66 00 00 00 A0
unlock
out "66 Read Checksum:b00a\n"
lock
spi_renesas: 67 00 00 00 A0
unlock
out "ChecksumError:1\n"
)");
}

TEST(DownloadCode, ReportsAHighHalfThatDiffersThoughTheLowHalfMatches) {
  Script script;
  answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x0A, 0xB0, 0});
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), std::string(transfer_steps) + R"(lock
spi_renesas: 66 00 00 00 A0
unlock
lock
spi_renesas: 67 00 00 00 A0
unlock
out "67 Read Checksum:b00a\n"
out "ChecksumError:1\n"
)");
}

TEST(DownloadCode, ReportsBothHalvesAndReturnsOneForThemTogether) {
  Script script;
  answer_checksum(script, {0, 0, 1, 2, 0}, {0, 0, 3, 4, 0});
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), std::string(transfer_steps) + R"(lock
spi_renesas: 66 00 00 00 A0
unlock
out "66 Read Checksum:0201\n"
lock
spi_renesas: 67 00 00 00 A0
unlock
out "67 Read Checksum:0403\n"
out "ChecksumError:1\n"
)");
}

TEST(DownloadCode, ComparesEachOfTheFourBytes) {
  Script script;
  const Bytes low[5] = {{0, 0, 0x78, 0x56, 0},
                        {0, 0, 0x79, 0x56, 0},
                        {0, 0, 0x78, 0x57, 0},
                        {0, 0, 0x78, 0x56, 0},
                        {0, 0, 0x78, 0x56, 0}};
  const Bytes high[5] = {{0, 0, 0x34, 0x12, 0},
                         {0, 0, 0x34, 0x12, 0},
                         {0, 0, 0x34, 0x12, 0},
                         {0, 0, 0x35, 0x12, 0},
                         {0, 0, 0x34, 0x13, 0}};
  const char* const printed[5] = {
      "out \"ChecksumError:0\\n\"\n",
      "out \"66 Read Checksum:5679\\n\"\nout \"ChecksumError:1\\n\"\n",
      "out \"66 Read Checksum:5778\\n\"\nout \"ChecksumError:1\\n\"\n",
      "out \"67 Read Checksum:1235\\n\"\nout \"ChecksumError:1\\n\"\n",
      "out \"67 Read Checksum:1334\\n\"\nout \"ChecksumError:1\\n\"\n",
  };
  for (int i = 0; i < 5; ++i) {
    answer_checksum(script, low[i], high[i]);
    EXPECT_EQ(download_short_image(), i == 0 ? 0 : 1) << i;
    const std::string text = script.transcript_without(transfer_noise);
    const std::string announced = "out \"Checksum:12345678\\n\"\n";
    ASSERT_NE(text.find(announced), std::string::npos);
    EXPECT_EQ(text.substr(text.find(announced) + announced.size()), printed[i]) << i;
  }
}

TEST(DownloadCode, LooksAtNoOtherByteOfTheReplies) {
  Script script;
  answer_checksum(script, {0xFF, 0xEE, 0x78, 0x56, 0xDD}, {0xCC, 0xBB, 0x34, 0x12, 0xAA});
  EXPECT_EQ(download_short_image(), 0);
}

TEST(DownloadCode, DoesNotTakeTheHalvesInTheWrongOrder) {
  Script script;
  answer_checksum(script, {0, 0, 0x34, 0x12, 0}, {0, 0, 0x78, 0x56, 0});
  EXPECT_EQ(download_short_image(), 1);
  answer_checksum(script, {0, 0, 0x56, 0x78, 0}, {0, 0, 0x12, 0x34, 0});
  EXPECT_EQ(download_short_image(), 1);
}

TEST(DownloadCode, SendsOnlyTheLowThreeBytesOfTheAddress) {
  Script script;
  DownloadCode(0x22, 0xFFFFE000, 4, 0, short_image);
  DownloadCode(0x22, 0xFFFFD000, 4, 0, short_image);
  DownloadCode(0x22, 0x00000200, 4, 0, short_image);
  DownloadCode(0x22, 0x12345678, 4, 0, short_image);
  const std::string text = script.transcript();
  std::string addresses;
  for (std::size_t at = text.find(": E3"); at != std::string::npos;
       at = text.find(": E3", at + 1)) {
    addresses += text.substr(at + 2, 14) + "\n";
  }
  EXPECT_EQ(addresses, "E3 00 E0 FF A0\nE3 00 D0 FF A0\nE3 00 02 00 A0\nE3 78 56 34 A0\n");
}

TEST(DownloadCode, SendsASizeOfThreeBytesAndThatManyBytesOfTheImage) {
  Script script;
  Bytes big;
  for (int i = 0; i < 0x12345; ++i) big.push_back(static_cast<std::uint8_t>(i * 31));
  answer_checksum(script, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0});
  EXPECT_EQ(DownloadCode(0x21, 0, 0x12345, 0, big.data()), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock", "usleep", "out"}),
            R"(open /dev/spi_renesas
spi_renesas: E3 00 00 00 A0
spi_renesas: E4 45 23 01 A0
spi_renesas: E1 11 21 00 A0
spi_renesas: 74565 bytes
spi_renesas: 66 00 00 00 A0
spi_renesas: 67 00 00 00 A0
)");
  ASSERT_EQ(script.payloads().size(), 1U);
  EXPECT_EQ(script.payloads()[0], big);
}

TEST(DownloadCode, PrintsTheWholeChecksumInTheDigitsThatItNeeds) {
  Script script;
  for (const std::uint32_t checksum : {0x0U, 0xAU, 0x1234U, 0x12345U, 0x02AA342FU, 0xE9EAD60EU}) {
    DownloadCode(0x23, 0, 4, checksum, short_image);
  }
  const std::string text = script.transcript();
  std::string printed;
  for (std::size_t at = text.find("\"Checksum:"); at != std::string::npos;
       at = text.find("\"Checksum:", at + 1)) {
    printed += text.substr(at, text.find('\n', at) + 1 - at);
  }
  EXPECT_EQ(printed, R"("Checksum:0000\n"
"Checksum:000a\n"
"Checksum:1234\n"
"Checksum:12345\n"
"Checksum:2aa342f\n"
"Checksum:e9ead60e\n"
)");
}

TEST(DownloadCode, WorksWhileTheLatchIsSetAndLeavesItSet) {
  Script script;
  answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x34, 0x12, 0});
  EXPECT_EQ(download_short_image(), 0);
  EXPECT_EQ(script.count(Call::transfer), 6);
  EXPECT_EQ(GetLensType(), -1);
}

TEST(DownloadCode, IgnoresAFailureOfAnyTransferBeforeTheChecksumIsRead) {
  for (int nth = 1; nth <= 4; ++nth) {
    Script script;
    SetLensType(7);
    answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x34, 0x12, 0});
    script.fail(Call::transfer, nth, 1, EIO);
    EXPECT_EQ(download_short_image(), 0) << nth;
    EXPECT_EQ(script.count(Call::transfer), 6) << nth;
    EXPECT_EQ(GetLensType(), 7) << nth;
  }
}

TEST(DownloadCode, SucceedsWhenAChecksumReadNeedsItsRetry) {
  for (int nth = 5; nth <= 6; ++nth) {
    Script script;
    SetLensType(7);
    answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x34, 0x12, 0});
    script.fail(Call::transfer, nth, 1, EIO);
    EXPECT_EQ(download_short_image(), 0) << nth;
    EXPECT_EQ(script.count(Call::transfer), 7) << nth;
    EXPECT_EQ(GetLensType(), 7) << nth;
  }
}

TEST(DownloadCode, JudgesAnUnreadLowHalfAsZeros) {
  Script script;
  SetLensType(7);
  answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x34, 0x12, 0});
  script.fail(Call::transfer, 5, 2, EIO);
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), std::string(transfer_steps) + R"(lock
spi_renesas: 66 00 00 00 A0 -> EIO
spi_renesas: 66 00 00 00 A0 -> EIO
out "ReadSpi Error -1\n"
unlock
out "66 Read Checksum:0000\n"
lock
spi_renesas: 67 00 00 00 A0
unlock
out "ChecksumError:1\n"
)");
  EXPECT_EQ(GetLensType(), 7);
}

TEST(DownloadCode, JudgesAnUnreadHighHalfByTheReplyToTheLowHalf) {
  Script script;
  SetLensType(7);
  answer_checksum(script, {0, 0, 0x78, 0x56, 0}, {0, 0, 0x34, 0x12, 0});
  script.fail(Call::transfer, 6, 2, EIO);
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), std::string(transfer_steps) + R"(lock
spi_renesas: 66 00 00 00 A0
unlock
lock
spi_renesas: 67 00 00 00 A0 -> EIO
spi_renesas: 67 00 00 00 A0 -> EIO
out "ReadSpi Error -1\n"
unlock
out "67 Read Checksum:5678\n"
out "ChecksumError:1\n"
)");
  EXPECT_EQ(GetLensType(), 7);
}

TEST(DownloadCode, AcceptsAChecksumOfEqualHalvesWhenOnlyTheLowOneWasRead) {
  Script script;
  answer_checksum(script, {0, 0, 0x34, 0x12, 0}, {0, 0, 0x34, 0x12, 0});
  script.fail(Call::transfer, 6, 2, EIO);
  EXPECT_EQ(DownloadCode(0x22, 0, 4, 0x12341234, short_image), 0);
}

}  // namespace
