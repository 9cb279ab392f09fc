// What holds for a head of either family: who answers on the bus, to which messages, and how often.
#include "sim/head/head.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

#include "sim/head/head_bench.h"

namespace {

using kelvo::sim::camera::BusMessage;
using kelvo::sim::camera::Camera;
using kelvo::sim::camera::HeadFamily;
using kelvo::test::Frame;
using kelvo::test::HeadBench;
using kelvo::test::pan;
using kelvo::test::TasmereBench;
using kelvo::test::tilt;
using kelvo::test::VetraBench;

using Lines = std::vector<std::string>;
using namespace std::chrono_literals;

class EitherHead : public testing::TestWithParam<HeadFamily> {
 protected:
  HeadBench bench{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Families, EitherHead,
                         testing::Values(HeadFamily::vetra, HeadFamily::tasmere),
                         [](const auto& instance) {
                           return std::string(kelvo::sim::camera::name_of(instance.param));
                         });

TEST_P(EitherHead, AnswersAtTwoAddresses) {
  EXPECT_EQ(bench.read(pan, 48, 1).size(), 1u);
  EXPECT_EQ(bench.read(tilt, 48, 1).size(), 1u);
  EXPECT_EQ(bench.write(pan, {16, 0, 0, 0, 0}), 1);
  EXPECT_EQ(bench.camera.head().transfers(), 3u);
}

TEST_P(EitherHead, HasNoThirdController) {
  EXPECT_EQ(bench.write(42, {6}), -ENXIO);
  EXPECT_EQ(bench.read(39, 48, 1), Frame{});
  EXPECT_EQ(bench.violations(),
            (Lines{"I2C bus | 06 | there is no slave 42", "I2C bus | 30 | there is no slave 39"}));
  EXPECT_EQ(bench.camera.head().transfers(), 0u);
}

TEST_P(EitherHead, ZeroesWhatAStrangerWasAskedFor) {
  std::uint8_t reg = 48;
  Frame received(2, 0xEE);
  const BusMessage messages[] = {{42, false, {&reg, 1}}, {42, true, received}};
  bench.camera.transfer_pan_tilt(messages);
  EXPECT_EQ(received, (Frame{0, 0}));
}

TEST_P(EitherHead, DoesNotKnowOtherForms) {
  std::uint8_t reg = 48;
  std::uint8_t index[2] = {48, 49};
  Frame received(1, 0xEE);
  const BusMessage write{pan, false, {&reg, 1}};
  const BusMessage read{pan, true, received};
  const std::vector<std::vector<BusMessage>> forms{
      {read},
      {write, write},
      {read, write},
      {read, read},
      {{pan, false, {}}, read},
      {{pan, false, index}, read},
      {write, {tilt, true, received}},
      {write, read, read},
  };
  for (std::size_t i = 0; i < forms.size(); ++i) {
    received[0] = 0xEE;
    EXPECT_EQ(bench.camera.transfer_pan_tilt(forms[i]), static_cast<int>(forms[i].size()));
    EXPECT_EQ(received[0], i == 1 ? 0xEE : 0) << i;
    EXPECT_EQ(bench.violation_count(), i + 1);
  }
  EXPECT_EQ(bench.violations()[5],
            "pan controller | 30 31 | neither a write nor a read of a register with one byte");
}

TEST_P(EitherHead, IsWhereItWasAfterBeingCopiedByteByByte) {
  const bool vetra = GetParam() == HeadFamily::vetra;
  bench.write(pan, vetra ? Frame{3, 0, 0x1C, 0x20} : Frame{7, 0x7F, 0xFF});
  bench.wait_ms(500);
  HeadBench copy(HeadFamily::tasmere);
  std::memcpy(static_cast<void*>(&copy.camera), &bench.camera, sizeof(Camera));
  copy.wait_ms(250);
  const std::uint8_t position = vetra ? 50 : 4;
  EXPECT_EQ(copy.read_word(pan, position), vetra ? 13'500 : 49'152);
  EXPECT_EQ(bench.read_word(pan, position), vetra ? 11'250 : 40'960);
}

TEST(Camera, HasATasmereHeadAtFirst) { EXPECT_EQ(Camera{}.head().family(), HeadFamily::tasmere); }

TEST(VetraHead, TellsItsFamilyByThePanController) {
  VetraBench bench;
  EXPECT_EQ(bench.read(pan, 240, 2), (Frame{'V', 'X'}));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(TasmereHead, HasNoAnswerToTheQuestionForTheFamily) {
  TasmereBench bench;
  EXPECT_EQ(bench.read(pan, 240, 2), (Frame{0, 0}));
  EXPECT_EQ(bench.violation_count(), 0u);
}

TEST(VetraHead, NeedsNoPauseBeforeItsFamilyIsTold) {
  VetraBench bench;
  for (int i = 0; i < 3; ++i) bench.read(tilt, 50, 2);
  bench.read(pan, 240, 2);
  EXPECT_EQ(bench.violation_count(), 0u);
}

// At 400 kHz, with one clock for a start and for a stop, and nine for a byte, the address among them.
constexpr auto write_time = 50us;         // a register alone: 20 clocks
constexpr auto read_one_time = 97'500ns;  // 39
constexpr auto read_two_time = 120us;     // 48

TEST(VetraHead, NeedsTwoMillisecondsBehindEachTransferFromThenOn) {
  VetraBench bench;
  bench.read(pan, 240, 2);
  bench.wait(2ms + read_one_time);
  bench.read(pan, 48, 1);
  bench.wait(2ms + write_time);
  bench.write(tilt, {6});
  EXPECT_EQ(bench.violation_count(), 0u);
  bench.wait(1999us + write_time);
  bench.write(pan, {6});
  bench.wait(2ms + read_two_time);
  bench.read(pan, 240, 2);
  bench.wait(read_two_time);
  bench.read(pan, 50, 2);
  EXPECT_EQ(bench.violations(),
            (Lines{"pan controller | 06 | 1999 us after the last transfer to the head, must be at "
                   "least 2000",
                   "pan controller | 32 | 0 us after the last transfer to the head, must be at "
                   "least 2000"}));
}

TEST(VetraHead, DoesWhatComesTooEarlyAllTheSame) {
  VetraBench bench;
  bench.read(pan, 240, 2);
  bench.continuous(pan, 0, 7200);
  EXPECT_EQ(bench.violation_count(), 1u);
  bench.wait_ms(100);
  EXPECT_EQ(bench.position(pan), 9090);
}

TEST(VetraHead, MindsMessagesThatItDoesNotKnowToo) {
  VetraBench bench;
  bench.read(pan, 240, 2);
  bench.wait(2ms + write_time);
  bench.write(pan, {99});
  bench.wait(1ms + read_two_time);
  bench.read(tilt, 50, 2);
  EXPECT_EQ(bench.violation_count(), 2u);
}

TEST(TasmereHead, NeedsNoPause) {
  TasmereBench bench;
  bench.read(pan, 240, 2);
  for (int i = 0; i < 10; ++i) bench.position(pan);
  EXPECT_EQ(bench.violation_count(), 0u);
}

}  // namespace
