#include "script/script.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <sys/ioctl.h>
#include <sys/sem.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "script/child.h"
#include "wire/spi_device.h"

namespace {

using kelvo::test::Bytes;
using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::in_a_process;
using kelvo::test::Script;
using kelvo::test::Tell;
using kelvo::test::Told;

int open_lens() { return open("/dev/spi_renesas", O_RDWR); }

/// Sends the bytes on a descriptor; what came in is in `received`.
int send(int descriptor, const Bytes& sent, Bytes* received = nullptr) {
  Bytes room(sent.size(), 0xEE);
  kelvo::wire::SpiTransfer record{sent.data(), room.data(), static_cast<std::uint32_t>(sent.size()),
                                  0};
  const int result = ioctl(descriptor, kelvo::wire::spi_transfer_request, &record);
  if (received != nullptr) *received = room;
  return result;
}

TEST(Script, RecordsWhatLeavesInOrderWithWhatIsPrintedInBetween) {
  Script script;
  std::printf("before ");
  const int lens = open_lens();
  std::fprintf(stderr, "a \"fault\"\n");
  EXPECT_EQ(send(lens, {0x01, 0xFA}), 0);
  std::printf("one\ntwo\n");
  usleep(2000);
  sleep(1);
  EXPECT_EQ(std::system("echo 33 > /sys/class/gpio/export"), 0);
  close(lens);
  EXPECT_EQ(script.transcript(), R"(out "before "
open /dev/spi_renesas
err "a \"fault\"\n"
spi_renesas: 01 FA
out "one\n"
out "two\n"
usleep 2000
sleep 1
system echo 33 > /sys/class/gpio/export
close /dev/spi_renesas
)");
}

TEST(Script, ForgetsWhatItHasToldAndLeavesOutWholeWords) {
  Script script;
  usleep(1);
  EXPECT_EQ(script.transcript(), "usleep 1\n");
  EXPECT_EQ(script.transcript(), "");
  const int lens = open_lens();
  send(lens, {1});
  usleep(2);
  sleep(3);
  EXPECT_EQ(script.transcript_without({"sleep", "spi_renesas", "op"}),
            "open /dev/spi_renesas\nusleep 2\n");
}

TEST(Script, NamesTheDeviceOfEachTransfer) {
  Script script;
  const int lens = open_lens();
  const int driver = open("/dev/spi_pt5111", O_RDWR);
  send(lens, {1});
  send(driver, {2, 3});
  std::uint32_t hertz = 250000;
  EXPECT_EQ(ioctl(lens, kelvo::wire::spi_speed_request, &hertz), 0);
  EXPECT_EQ(script.transcript_without({"open"}),
            "spi_renesas: 01\nspi_pt5111: 02 03\nspi_renesas: speed 250000\n");
}

TEST(Script, KeepsLongTransfersApart) {
  Script script;
  const int lens = open_lens();
  const Bytes longest_shown(32, 0x11);
  const Bytes longer(33, 0x22);
  send(lens, longest_shown);
  send(lens, longer);
  EXPECT_EQ(script.transcript_without({"open"}),
            "spi_renesas: 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11"
            " 11 11 11 11 11 11 11 11\nspi_renesas: 33 bytes\n");
  ASSERT_EQ(script.payloads().size(), 1U);
  EXPECT_EQ(script.payloads()[0], longer);
}

TEST(Script, RefusesRequestsOnDescriptorsThatAreNoCameraDevice) {
  Script script;
  EXPECT_EQ(send(-1, {5}), -1);
  EXPECT_EQ(errno, EBADF);
  EXPECT_EQ(send(0, {5}), -1);
  EXPECT_EQ(errno, ENOTTY);
  EXPECT_EQ(script.transcript(), "fd -1: 05 -> EBADF\nfd 0: 05 -> ENOTTY\n");
}

TEST(Script, AnswersTheLongestPrefixAndOfEqualOnesTheLatest) {
  Script script;
  const int lens = open_lens();
  Bytes received;
  script.reply({1, 2}, {0xA0});
  script.reply({1}, {0xB0});
  script.reply({1, 2}, {0xC0, 0xC1});
  send(lens, {1, 2, 3, 4}, &received);
  EXPECT_EQ(received, (Bytes{0xC0, 0xC1, 0xEE, 0xEE}));
  send(lens, {1, 3}, &received);
  EXPECT_EQ(received, (Bytes{0xB0, 0xEE}));
  script.query_reply(0x80, {1, 2, 3, 4});
  send(lens, Bytes{0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, &received);
  EXPECT_EQ(received, (Bytes{0, 0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 0xEE}));
}

TEST(Script, ReceivesNothingButWhatItWasToldToAnswer) {
  Script script;
  Bytes received;
  send(open_lens(), {7, 7}, &received);
  EXPECT_EQ(received, (Bytes{0xEE, 0xEE}));
}

TEST(Script, UsesUpSingleAnswersInTheirOrderAndNotOnFailedTransfers) {
  Script script;
  const int lens = open_lens();
  Bytes received;
  script.reply({1}, {9});
  script.reply_once({1}, {1});
  script.reply_once({1}, {2});
  script.fail(Call::transfer, 2);
  send(lens, {1}, &received);
  EXPECT_EQ(received, (Bytes{1}));
  EXPECT_EQ(send(lens, {1}, &received), -1);
  EXPECT_EQ(received, (Bytes{0xEE}));
  send(lens, {1}, &received);
  EXPECT_EQ(received, (Bytes{2}));
  send(lens, {1}, &received);
  EXPECT_EQ(received, (Bytes{9}));
}

TEST(Script, FailsTheCallsThatItWasToldToFromNowOn) {
  Script script;
  const int lens = open_lens();
  send(lens, {1});
  script.fail(Call::transfer, 2, 2, ENODEV);
  EXPECT_EQ(send(lens, {2}), 0);
  EXPECT_EQ(send(lens, {3}), -1);
  EXPECT_EQ(errno, ENODEV);
  EXPECT_EQ(send(lens, {4}), -1);
  EXPECT_EQ(send(lens, {5}), 0);
  EXPECT_EQ(script.count(Call::transfer), 5);
  EXPECT_EQ(script.transcript_without({"open"}),
            "spi_renesas: 01\nspi_renesas: 02\nspi_renesas: 03 -> ENODEV\n"
            "spi_renesas: 04 -> ENODEV\nspi_renesas: 05\n");
}

TEST(Script, FailsForeverAndSetsSingleResults) {
  Script script;
  script.fail(Call::open, 2, forever, ENOENT);
  EXPECT_GE(open_lens(), 0);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(open_lens(), -1);
  script.result(Call::usleep, 2, 5);
  EXPECT_EQ(usleep(1), 0);
  EXPECT_EQ(usleep(1), 5);
  EXPECT_EQ(usleep(1), 0);
  EXPECT_EQ(script.count(Call::open), 4);
  EXPECT_EQ(script.transcript_without({"open"}), "usleep 1\nusleep 1 -> 5\nusleep 1\n");
}

TEST(Script, FailsAllocations) {
  Script script;
  script.fail(Call::calloc, 1, 1, ENOMEM);
  // Through a pointer: the compiler knows what calloc does, and leaves it out.
  void* (*volatile allocate)(std::size_t, std::size_t) = std::calloc;
  EXPECT_EQ(allocate(1, 8), nullptr);
  EXPECT_EQ(errno, ENOMEM);
  void* const block = allocate(1, 8);
  EXPECT_NE(block, nullptr);
  std::free(block);
  EXPECT_EQ(script.count(Call::calloc), 2);
}

TEST(Script, AnswersI2cReadsByRegisterAndWritesTheirMessages) {
  Script script;
  script.i2c_register(41, 0x32, {0x12, 0x34});
  const int link = open("/dev/i2c-2", O_RDWR);
  std::uint8_t written[2] = {0x32, 0x07};
  std::uint8_t read[3] = {0, 0, 0};
  i2c_msg messages[2] = {{41, 0, 1, written}, {41, I2C_M_RD, 3, read}};
  i2c_rdwr_ioctl_data both = {messages, 2};
  i2c_rdwr_ioctl_data first = {messages, 1};
  EXPECT_EQ(ioctl(link, I2C_RDWR, &both), 2);
  EXPECT_EQ(Bytes(read, read + 3), (Bytes{0x12, 0x34, 0}));
  messages[0].len = 2;
  EXPECT_EQ(ioctl(link, I2C_RDWR, &first), 1);
  messages[0].len = 0;
  EXPECT_EQ(ioctl(link, I2C_RDWR, &first), 1);
  EXPECT_EQ(script.transcript_without({"open"}), "i2c 41: w 32 r 3\ni2c 41: w 32 07\ni2c 41: w\n");
}

TEST(Script, KeepsCameraFilesInAFolderOfItsOwn) {
  Script script;
  EXPECT_EQ(std::fopen("/bin/DC_S_Cali.dat", "rb"), nullptr);
  EXPECT_EQ(errno, ENOENT);
  script.file("/bin/DC_S_Cali.dat", {7, 8});
  std::FILE* const input = std::fopen("/bin/DC_S_Cali.dat", "rb");
  ASSERT_NE(input, nullptr);
  EXPECT_EQ(std::fgetc(input), 7);
  std::FILE* const output = std::fopen("/mnt/nand/DC_S_Cali.dat", "wb");
  ASSERT_NE(output, nullptr);
  std::fputc(9, output);
  EXPECT_EQ(script.open_files(), 2);
  std::fclose(output);
  std::fclose(input);
  EXPECT_EQ(script.open_files(), 0);
  EXPECT_EQ(script.written("/mnt/nand/DC_S_Cali.dat"), (Bytes{9}));
  EXPECT_EQ(script.written("/tmp/DC_S_Cali.dat"), Bytes());
  EXPECT_EQ(script.transcript(), R"(fopen /bin/DC_S_Cali.dat r -> ENOENT
fopen /bin/DC_S_Cali.dat r
fopen /mnt/nand/DC_S_Cali.dat w
fclose /mnt/nand/DC_S_Cali.dat
fclose /bin/DC_S_Cali.dat
)");
}

TEST(Script, OpensFilesThatCannotBeRead) {
  Script script;
  script.unreadable_file("/bin/DC_S_Cali.dat");
  std::FILE* const stream = std::fopen("/bin/DC_S_Cali.dat", "r");
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(std::fgetc(stream), EOF);
  EXPECT_NE(std::ferror(stream), 0);
  std::fclose(stream);
}

TEST(Script, OpensFilesThatTakeNothing) {
  Script script;
  script.full_file("/bin/DC_S_Cali.dat");
  std::FILE* const stream = std::fopen("/bin/DC_S_Cali.dat", "wb");
  ASSERT_NE(stream, nullptr);
  std::fputc(9, stream);
  EXPECT_EQ(std::fflush(stream), EOF);
  std::fclose(stream);
}

TEST(Script, ActsInTheMiddleOfACall) {
  Script script;
  std::string so_far;
  script.at(Call::usleep, 2, [&] { so_far = script.transcript(); });
  for (const useconds_t time : {1, 2, 3}) usleep(time);
  EXPECT_EQ(so_far, "usleep 1\nusleep 2\n");
  EXPECT_EQ(script.transcript(), "usleep 3\n");
}

TEST(Script, CanEndAProcessThatWouldNeverEnd) {
  const Told told = in_a_process([](const Tell& tell) {
    Script script;
    script.at(Call::sleep, 3, [&] {
      tell(script.transcript());
      _exit(0);
    });
    for (;;) sleep(1);
  });
  EXPECT_EQ(told.text, "sleep 1\nsleep 1\nsleep 1\n");
  EXPECT_EQ(told.trouble, "");
}

}  // namespace
