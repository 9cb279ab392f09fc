#include "sim/lens/boot_loader.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"

namespace {

using kelvo::sim::camera::Download;
using kelvo::sim::camera::FrameKind;
using kelvo::test::Bench;
using kelvo::test::Frame;
using kelvo::test::image;

const kelvo::sim::camera::BootRecord& last_boot(const Bench& bench) {
  return bench.camera.boots().boot(bench.camera.boots().total());
}

TEST(BootLoader, AnswersTheChecksumOfEachIntactImage) {
  const std::uint32_t checksums[3][3] = {{0x50EE9858, 0xDB9F8EF5, 0x02AA342F},
                                         {0xA7980342, 0xBF9B8238, 0x01911A0B},
                                         {0xE9EAD60E, 0xBF9B8238, 0x01911A0B}};
  for (int module = 7; module <= 9; ++module) {
    Bench bench;
    bench.reset();
    bench.set_clocks();
    for (int index = 0; index < 3; ++index) {
      const auto& next = image(module, index);
      bench.download(next.memory, next.address, next.bytes);
      EXPECT_EQ(bench.read_checksum(), checksums[module - 7][index]);
    }
    bench.end_downloads();
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

TEST(BootLoader, AnswersInBytesTwoAndThreeLowByteFirst) {
  Bench bench;
  bench.reset();
  bench.set_clocks();
  bench.download(0x21, 0x000200, image(7, 0).bytes);
  EXPECT_EQ(bench.send({0x66, 0, 0, 0, 0xA0}), (Frame{0, 0, 0x58, 0x98, 0}));
  EXPECT_EQ(bench.send({0x67, 0, 0, 0, 0xA0}), (Frame{0, 0, 0xEE, 0x50, 0}));
}

TEST(BootLoader, AnswersZerosToEverythingElse) {
  Bench bench;
  bench.reset();
  EXPECT_EQ(bench.send({0xF5, 0x04, 0x00, 0x00, 0xA0}), Frame(5, 0));
  bench.reset();
  bench.set_clocks();
  bench.announce(0x21, 0x000200, 60);
  EXPECT_EQ(bench.send(image(7, 0).bytes), Frame(60, 0));
}

TEST(BootLoader, SeesAReplyBufferThatIsTheFrameItself) {
  Bench bench;
  bench.reset();
  bench.set_clocks();
  bench.download(0x21, 0x000200, image(7, 0).bytes);
  Frame both{0x66, 0, 0, 0, 0xA0};
  bench.camera.transfer_lens(both, both, kelvo::test::carried());
  EXPECT_EQ(both, (Frame{0, 0, 0x58, 0x98, 0}));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(BootLoader, StartsTheProgramOfAModuleWhoseImagesAreIntact) {
  for (int module = 7; module <= 9; ++module) {
    Bench bench;
    bench.boot(module);
    ASSERT_TRUE(bench.camera.lens().module().has_value());
    EXPECT_EQ(static_cast<int>(*bench.camera.lens().module()), module);
    EXPECT_EQ(bench.violation_count(), 0u);
  }
}

/// What a download is taken for, and whether both halves of its checksum are wrong.
void expect_not_intact(const Bench& bench, std::uint32_t answered, std::uint32_t image_checksum) {
  EXPECT_FALSE(last_boot(bench).listed().back().intact());
  EXPECT_NE(answered & 0xFFFF, image_checksum & 0xFFFF);
  EXPECT_NE(answered >> 16, image_checksum >> 16);
  EXPECT_EQ(bench.violation_count(), 0u);
}

Bench with_clocks() {
  Bench bench;
  bench.reset();
  bench.set_clocks();
  return bench;
}

TEST(Download, IsNotIntactWithAnySingleBitFlipped) {
  for (std::size_t bit = 0; bit < image(7, 2).bytes.size() * 8; ++bit) {
    Bench bench = with_clocks();
    Frame bytes = image(7, 2).bytes;
    bytes[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
    bench.download(0x23, 0xFFD000, bytes);
    expect_not_intact(bench, bench.read_checksum(), 0x02AA342F);
  }
}

TEST(Download, IsNotIntactAtAWrongAddress) {
  Bench bench = with_clocks();
  bench.download(0x21, 0x000201, image(7, 0).bytes);
  expect_not_intact(bench, bench.read_checksum(), 0x50EE9858);
}

TEST(Download, IsNotIntactInAWrongMemory) {
  Bench bench = with_clocks();
  bench.download(0x22, 0x000200, image(7, 0).bytes);
  expect_not_intact(bench, bench.read_checksum(), 0x50EE9858);
}

TEST(Download, IsNotIntactInAMemoryThatThereIsNot) {
  Bench bench = with_clocks();
  bench.download(0x24, 0x000200, image(7, 0).bytes);
  expect_not_intact(bench, bench.read_checksum(), 0x50EE9858);
}

TEST(Download, IsNotIntactWhenItIsShorterOrLonger) {
  Frame bytes = image(7, 0).bytes;
  bytes.pop_back();
  Bench shorter = with_clocks();
  shorter.download(0x21, 0x000200, bytes);
  expect_not_intact(shorter, shorter.read_checksum(), 0x50EE9858);
  bytes = image(7, 0).bytes;
  bytes.push_back(0);
  Bench longer = with_clocks();
  longer.download(0x21, 0x000200, bytes);
  expect_not_intact(longer, longer.read_checksum(), 0x50EE9858);
}

TEST(Download, MayBeEmpty) {
  Bench bench = with_clocks();
  bench.download(0x21, 0x000200, {});
  expect_not_intact(bench, bench.read_checksum(), 0x50EE9858);
}

TEST(Download, NeverAnswersTheChecksumOfAnImageThatItIsNot) {
  // An image of all zeros has the sum 0; it may not be mistaken for an image with that checksum.
  const Frame bytes(8, 0);
  const std::vector<kelvo::sim::camera::CarriedImage> carried{
      {{"zeros", kelvo::wire::LensModule::de015, 0x21, 0x200, 4, 0x00010000}, {bytes.data(), 4}}};
  Bench bench = with_clocks();
  bench.announce(0x21, 0x000200, 8);
  Frame received(8, 0);
  bench.camera.transfer_lens(bytes, received, carried);
  EXPECT_EQ(bench.read_checksum(), 0x00000001u);
}

TEST(Download, OfAnotherModulesImageIsIntactAndCompletesNoSet) {
  Bench bench = with_clocks();
  bench.download(0x21, 0x000200, image(8, 0).bytes);
  EXPECT_EQ(bench.read_checksum(), 0xA7980342u);
  bench.download(0x22, 0xFFE000, image(7, 1).bytes);
  EXPECT_EQ(bench.read_checksum(), 0xDB9F8EF5u);
  bench.download(0x23, 0xFFD000, image(7, 2).bytes);
  EXPECT_EQ(bench.read_checksum(), 0x02AA342Fu);
  bench.end_downloads();
  bench.start();
  EXPECT_FALSE(bench.camera.lens().module().has_value());
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Download, ReplacesWhatWasInTheMemory) {
  Bench bench;
  bench.load(7);
  // One more, over the first image, with a byte changed. Its place in the order is wrong, no more.
  Frame bytes = image(7, 0).bytes;
  bytes[0] ^= 1;
  bench.download(0x21, 0x000200, bytes);
  bench.read_checksum();
  bench.end_downloads();
  bench.start();
  EXPECT_FALSE(bench.camera.lens().module().has_value());
}

TEST(Download, IsForgottenInAReset) {
  Bench bench;
  bench.load(7);
  bench.reset();
  bench.set_clocks();
  bench.download(0x21, 0x000200, image(7, 0).bytes);
  bench.read_checksum();
  bench.end_downloads();
  bench.start();
  EXPECT_FALSE(bench.camera.lens().module().has_value());
}

TEST(Download, IsCorruptedOnTheWireByItsNumber) {
  Bench bench;
  EXPECT_TRUE(bench.camera.corrupt_download(2));
  EXPECT_TRUE(bench.camera.corrupt_download(4));
  bench.load(7);
  bench.load(7);
  const auto downloads = last_boot(bench).listed();
  ASSERT_EQ(downloads.size(), 6u);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(downloads[i].intact(), i != 1 && i != 3) << i;
  EXPECT_NE(downloads[1].checksum, 0xDB9F8EF5u);
  EXPECT_EQ(downloads[4].checksum, 0xDB9F8EF5u);
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(Download, CanBeCorruptedSixteenTimes) {
  Bench bench;
  for (std::uint32_t number = 1; number <= 16; ++number) {
    EXPECT_TRUE(bench.camera.corrupt_download(number));
  }
  EXPECT_FALSE(bench.camera.corrupt_download(17));
}

TEST(BootLog, KeepsEachDownload) {
  Bench bench;
  bench.load(8);
  const auto downloads = last_boot(bench).listed();
  ASSERT_EQ(downloads.size(), 3u);
  EXPECT_EQ(downloads[1].attempt, 1u);
  EXPECT_EQ(downloads[1].memory, 0x22);
  EXPECT_EQ(downloads[1].address, 0xFFE000u);
  EXPECT_EQ(downloads[1].size, 45u);
  EXPECT_EQ(downloads[1].checksum, 0xBF9B8238u);
  EXPECT_EQ(downloads[1].modules, 6) << "the image of modules 8 and 9";
}

TEST(BootLog, CountsFramesByKind) {
  Bench bench;
  bench.boot(7);
  bench.command16(5, 0);
  bench.query(0x85);
  bench.query(0x85);
  bench.send({1});
  const auto& boot = last_boot(bench);
  EXPECT_EQ(boot.count(FrameKind::boot_command), 18u);
  EXPECT_EQ(boot.count(FrameKind::checksum_read), 6u);
  EXPECT_EQ(boot.count(FrameKind::payload), 3u);
  EXPECT_EQ(boot.count(FrameKind::command), 1u);
  EXPECT_EQ(boot.count(FrameKind::query), 2u);
  EXPECT_EQ(boot.count(FrameKind::malformed), 1u);
}

}  // namespace
