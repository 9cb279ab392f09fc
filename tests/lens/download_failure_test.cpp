#include <gtest/gtest.h>

#include "kelvo.h"
#include "lens/download.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::download_short_image;
using kelvo::test::forever;
using kelvo::test::Script;
using kelvo::test::short_image;

void answer_right_checksum(Script& script) {
  script.reply({0x66}, {0, 0, 0x78, 0x56, 0});
  script.reply({0x67}, {0, 0, 0x34, 0x12, 0});
}

TEST(DownloadFailure, OfEveryTransferIsSeenOnlyInTheChecksums) {
  Script script;
  SetLensType(8);
  answer_right_checksum(script);
  script.fail(Call::transfer, 1, forever, EIO);
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas
lock
spi_renesas: E3 01 02 03 A0 -> EIO
unlock
out "Addr:e3 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: E4 04 00 00 A0 -> EIO
unlock
out "Addr:e4 0x00 0x00 0x00 0x00 0x00 \n"
out "Download FW size:4\n"
usleep 100000
lock
spi_renesas: E1 11 22 00 A0 -> EIO
unlock
usleep 100000
out "Read Addr2:22 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
spi_renesas: DE AD BE EF -> EIO
unlock
out "Checksum:12345678\n"
lock
spi_renesas: 66 00 00 00 A0 -> EIO
spi_renesas: 66 00 00 00 A0 -> EIO
out "ReadSpi Error -1\n"
unlock
out "66 Read Checksum:0000\n"
lock
spi_renesas: 67 00 00 00 A0 -> EIO
spi_renesas: 67 00 00 00 A0 -> EIO
out "ReadSpi Error -1\n"
unlock
out "67 Read Checksum:0000\n"
out "ChecksumError:1\n"
)");
  EXPECT_EQ(GetLensType(), 8);
}

TEST(DownloadFailure, OfEveryTransferPassesAChecksumOfZero) {
  Script script;
  script.fail(Call::transfer, 1, forever, EIO);
  EXPECT_EQ(DownloadCode(0x22, 0, 4, 0, short_image), 0);
}

TEST(DownloadFailure, WithoutADeviceTriesToOpenItForEachFrame) {
  Script script;
  script.fail(Call::open, 1, forever, ENOENT);
  EXPECT_EQ(download_short_image(), 1);
  EXPECT_EQ(script.transcript(), R"(open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: E3 01 02 03 A0 -> EBADF
unlock
out "Addr:e3 0x00 0x00 0x00 0x00 0x00 \n"
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: E4 04 00 00 A0 -> EBADF
unlock
out "Addr:e4 0x00 0x00 0x00 0x00 0x00 \n"
out "Download FW size:4\n"
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
usleep 100000
lock
fd -1: E1 11 22 00 A0 -> EBADF
unlock
usleep 100000
out "Read Addr2:22 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
lock
fd -1: DE AD BE EF -> EBADF
unlock
out "Checksum:12345678\n"
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 66 00 00 00 A0 -> EBADF
fd -1: 66 00 00 00 A0 -> EBADF
out "ReadSpi Error -1\n"
unlock
out "66 Read Checksum:0000\n"
open /dev/spi_renesas -> ENOENT
err "Open /dev/spi_renesas fail\n"
lock
fd -1: 67 00 00 00 A0 -> EBADF
fd -1: 67 00 00 00 A0 -> EBADF
out "ReadSpi Error -1\n"
unlock
out "67 Read Checksum:0000\n"
out "ChecksumError:1\n"
)");
  EXPECT_EQ(fd, -1);
}

TEST(DownloadFailure, ToOpenTheDeviceAtFirstLosesOnlyTheAddress) {
  Script script;
  answer_right_checksum(script);
  script.fail(Call::open, 1, 1, EBUSY);
  EXPECT_EQ(download_short_image(), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock", "usleep", "out"}),
            R"(open /dev/spi_renesas -> EBUSY
err "Open /dev/spi_renesas fail\n"
fd -1: E3 01 02 03 A0 -> EBADF
open /dev/spi_renesas
spi_renesas: E4 04 00 00 A0
spi_renesas: E1 11 22 00 A0
spi_renesas: DE AD BE EF
spi_renesas: 66 00 00 00 A0
spi_renesas: 67 00 00 00 A0
)");
}

TEST(DownloadFailure, ToFindMemoryLeavesThePayloadOutAndTheChecksumsDecide) {
  Script script;
  answer_right_checksum(script);
  script.fail(Call::calloc, 1, 1, ENOMEM);
  EXPECT_EQ(download_short_image(), 0);
  EXPECT_EQ(script.transcript_without({"lock", "unlock", "usleep"}),
            R"(open /dev/spi_renesas
spi_renesas: E3 01 02 03 A0
out "Addr:e3 0x00 0x00 0x00 0x00 0x00 \n"
spi_renesas: E4 04 00 00 A0
out "Addr:e4 0x00 0x00 0x00 0x00 0x00 \n"
out "Download FW size:4\n"
spi_renesas: E1 11 22 00 A0
out "Read Addr2:22 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 \n"
out "Checksum:12345678\n"
spi_renesas: 66 00 00 00 A0
spi_renesas: 67 00 00 00 A0
out "ChecksumError:0\n"
)");
}

TEST(DownloadFailure, ToSleepIsIgnored) {
  Script script;
  answer_right_checksum(script);
  script.fail(Call::usleep, 1, forever, EINTR);
  EXPECT_EQ(download_short_image(), 0);
  EXPECT_EQ(script.count(Call::usleep), 2);
}

TEST(DownloadFailure, ToLockTheBusIsIgnored) {
  Script script;
  answer_right_checksum(script);
  script.fail(Call::semop, 1, forever, EINVAL);
  EXPECT_EQ(download_short_image(), 0);
  EXPECT_EQ(script.count(Call::transfer), 6);
  EXPECT_EQ(script.semaphore_value(), 0);
}

}  // namespace
