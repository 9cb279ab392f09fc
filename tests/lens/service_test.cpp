#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "kelvo.h"
#include "script/script.h"

namespace {

using kelvo::test::Call;
using kelvo::test::forever;
using kelvo::test::Script;

TEST(RawFrame, ShorterThanFiveBytesIsIgnored) {
  Script script;
  SetLensType(7);
  const std::uint8_t command[5] = {0x01, 2, 3, 4, 5};
  const std::uint8_t query[5] = {0x80, 2, 3, 4, 5};
  EXPECT_EQ(CommTest(command, 4), 0);
  EXPECT_EQ(CommTest(query, 4), 0);
  EXPECT_EQ(CommTest(query, 0), 0);
  EXPECT_EQ(CommTest(query, -1), 0);
  EXPECT_EQ(CommTest(nullptr, 4), 0);
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(fd, -1);
}

TEST(RawFrame, Below80IsACommandFrame) {
  Script script;
  SetLensType(7);
  const std::uint8_t frame[5] = {0x7F, 0x01, 0x02, 0x03, 0x04};
  EXPECT_EQ(CommTest(frame, 5), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 7F 01 02 03 04 89 00
unlock
)");
}

TEST(RawFrame, From80OnIsAQueryFrameWhoseReplyIsPrinted) {
  Script script;
  SetLensType(7);
  script.query_reply(0x80, {0x01, 0xA2, 0x03, 0xF4});
  const std::uint8_t frame[5] = {0x80, 0x05, 0x06, 0x07, 0x08};
  EXPECT_EQ(CommTest(frame, 5), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 80 00 05 00 01 86 00 00 00 00 00 00
out "Recv:0x01 0xa2 0x03 0xf4 \n"
)");
}

TEST(RawFrame, KeepsTheOddFormsOfTheTwoOddQueries) {
  Script script;
  SetLensType(7);
  const std::uint8_t first[5] = {0x81, 0x05, 0, 0, 0};
  const std::uint8_t second[5] = {0xA0, 0x05, 0, 0, 0};
  CommTest(first, 5);
  CommTest(second, 5);
  EXPECT_EQ(script.transcript_without({"open", "out"}),
            "spi_renesas: 81 05 00 00 00 86 00 00 00 00 00 00\n"
            "spi_renesas: A0 05 00 00 01 A6 00 00 00 00 00 00\n");
}

TEST(RawFrame, UsesOnlyTheFirstFiveBytesOfALongerOne) {
  Script script;
  SetLensType(7);
  const std::uint8_t frame[8] = {0x01, 2, 3, 4, 5, 0xAA, 0xBB, 0xCC};
  EXPECT_EQ(CommTest(frame, 8), 0);
  EXPECT_EQ(script.transcript_without({"open", "lock", "unlock"}),
            "spi_renesas: 01 02 03 04 05 0F 00\n");
}

TEST(RawFrame, SendsNothingBeforeTheControllerWasBroughtUp) {
  Script script;
  script.query_reply(0x80, {1, 2, 3, 4});
  const std::uint8_t command[5] = {0x01, 2, 3, 4, 5};
  const std::uint8_t query[5] = {0x80, 2, 3, 4, 5};
  EXPECT_EQ(CommTest(command, 5), 0);
  EXPECT_EQ(CommTest(query, 5), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
unlock
out "Recv:0x00 0x00 0x00 0x00 \n"
)");
}

TEST(RawFrame, HidesAFailedCommandButLatchesIt) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, forever, EIO);
  const std::uint8_t frame[5] = {0x01, 2, 3, 4, 5};
  EXPECT_EQ(CommTest(frame, 5), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
lock
spi_renesas: 01 02 03 04 05 0F 00 -> EIO
spi_renesas: 01 02 03 04 05 0F 00 -> EIO
out "SendCommand Error -1\n"
unlock
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(RawFrame, HidesAFailedQueryButLatchesIt) {
  Script script;
  SetLensType(7);
  script.fail(Call::transfer, 1, 1, EIO);
  const std::uint8_t frame[5] = {0x80, 5, 0, 0, 0};
  EXPECT_EQ(CommTest(frame, 5), 0);
  EXPECT_EQ(script.transcript(),
            R"(open /dev/spi_renesas
spi_renesas: 80 00 05 00 01 86 00 00 00 00 00 00 -> EIO
out "Recv:0x00 0x00 0x00 0x00 \n"
)");
  EXPECT_EQ(GetLensType(), -1);
}

TEST(RawFrame, DoesNotKeepAnEarlierReply) {
  Script script;
  SetLensType(7);
  script.query_reply(0x80, {1, 2, 3, 4});
  const std::uint8_t query[5] = {0x80, 5, 0, 0, 0};
  CommTest(query, 5);
  script.fail(Call::transfer, 1, 2, EIO);
  SendCommand(1, 0, 0, 0, 0);
  script.transcript();
  EXPECT_EQ(CommTest(query, 5), 0);
  EXPECT_EQ(script.transcript(), "out \"Recv:0x00 0x00 0x00 0x00 \\n\"\n");
}

TEST(FileSync, FlushesAndSynchronises) {
  Script script;
  FILE* stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  std::fputs("record", stream);
  EXPECT_EQ(FileSync(stream), 0);
  struct stat status = {};
  ASSERT_EQ(fstat(fileno(stream), &status), 0);
  EXPECT_EQ(status.st_size, 6);
  EXPECT_EQ(script.transcript(), "fsync\n");
  std::fclose(stream);
}

TEST(FileSync, SynchronisesAStreamWithNothingToFlush) {
  Script script;
  FILE* stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(FileSync(stream), 0);
  EXPECT_EQ(FileSync(stream), 0);
  EXPECT_EQ(script.transcript(), "fsync\nfsync\n");
  std::fclose(stream);
}

TEST(FileSync, IgnoresAFailedSynchronisation) {
  Script script;
  FILE* stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  std::fputs("record", stream);
  script.fail(Call::fsync, 1, 1, EIO);
  EXPECT_EQ(FileSync(stream), 0);
  EXPECT_EQ(script.transcript(), "fsync -> EIO\n");
  std::fclose(stream);
}

TEST(FileSync, SynchronisesEvenAfterAFailedFlush) {
  Script script;
  FILE* stream = std::fopen("/dev/full", "w");
  ASSERT_NE(stream, nullptr);
  std::fputs("record", stream);
  EXPECT_EQ(FileSync(stream), 0);
  EXPECT_EQ(script.transcript(), "fsync\n");
  std::fclose(stream);
}

TEST(FileSync, OnlyFlushesAStreamWithoutADescriptor) {
  Script script;
  char memory[16] = {};
  FILE* stream = fmemopen(memory, sizeof memory, "w");
  ASSERT_NE(stream, nullptr);
  std::fputs("record", stream);
  EXPECT_EQ(FileSync(stream), 0);
  EXPECT_STREQ(memory, "record");
  EXPECT_EQ(script.transcript(), "");
  EXPECT_EQ(script.count(Call::fsync), 0);
  std::fclose(stream);
}

}  // namespace
