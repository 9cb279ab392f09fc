#include "tools/kelvoctl/lens/boot_progress.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace kelvo::ctl {
namespace {

BootProgress after(std::initializer_list<const char*> lines) {
  BootProgress progress;
  for (const char* const line : lines) progress.take(line);
  return progress;
}

TEST(BootProgress, IsInItsResetBeforeTheFirstImage) {
  EXPECT_EQ(BootProgress().text(), "reset");
  EXPECT_EQ(after({"Addr:e3 0x00", "ChecksumError:1"}).text(), "reset");
  EXPECT_EQ(after({"Checksum:50ee9858"}).attempts(), 0);
}

TEST(BootProgress, IsSilentWhenEveryChecksumIsZero) {
  BootProgress progress = after({"Download FW size:33276", "Checksum:50ee9858",
                                 "66 Read Checksum:0", "67 Read Checksum:0", "ChecksumError:1"});
  EXPECT_TRUE(progress.silent());
  for (const char* const line :
       {"Download FW size:1228", "Checksum:db9f8ef5", "67 Read Checksum:0", "ChecksumError:1"}) {
    progress.take(line);
  }
  EXPECT_FALSE(progress.silent());
  EXPECT_FALSE(BootProgress().silent());
  EXPECT_FALSE(after({"Download FW size:8", "Checksum:0", "ChecksumError:0"}).silent());
}

TEST(BootProgress, FollowsAnImage) {
  BootProgress progress = after({"Download FW size:33276"});
  EXPECT_EQ(progress.text(), "attempt 1 of 10, image 1 of 3, 33276 bytes");
  progress.take("Checksum:50ee9858");
  EXPECT_EQ(progress.text(), "attempt 1 of 10, image 1 of 3, 33276 bytes, checksum 0x50EE9858");
  progress.take("ChecksumError:0");
  EXPECT_EQ(progress.text(),
            "attempt 1 of 10, image 1 of 3, 33276 bytes, checksum 0x50EE9858 confirmed");
}

TEST(BootProgress, PutsTogetherWhatWasReceived) {
  const auto received = [](std::initializer_list<const char*> halves) {
    BootProgress progress = after({"Download FW size:1228", "Checksum:db9f8ef5"});
    for (const char* const half : halves) progress.take(half);
    progress.take("ChecksumError:1");
    EXPECT_FALSE(progress.downloads().front().confirmed);
    return progress.downloads().front().received;
  };
  EXPECT_EQ(received({"66 Read Checksum:1234"}), 0xDB9F1234);
  EXPECT_EQ(received({"67 Read Checksum:1234"}), 0x12348EF5);
  EXPECT_EQ(received({"66 Read Checksum:0000", "67 Read Checksum:0000"}), 0U);
}

TEST(BootProgress, TellsTransfersThatFailed) {
  EXPECT_FALSE(after({"Download FW size:5", "ChecksumError:1"}).transfers_failed());
  EXPECT_TRUE(after({"Download FW size:5", "ReadSpi Error -1"}).transfers_failed());
}

TEST(BootProgress, CountsThreeImagesToAnAttempt) {
  BootProgress progress;
  for (int i = 0; i < 4; ++i) progress.take("Download FW size:5");
  EXPECT_EQ(progress.attempts(), 2);
  EXPECT_EQ(progress.downloads()[2].image, 3);
  EXPECT_EQ(progress.downloads()[3].image, 1);
}

}  // namespace
}  // namespace kelvo::ctl
