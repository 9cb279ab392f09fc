#include "sim/report/report.h"

#include <gtest/gtest.h>

#include "sim/camera/bench.h"
#include "sim/head/head_bench.h"
#include "sim/wrapper/carried_images.h"

namespace {

using kelvo::sim::report;
using kelvo::test::Bench;

TEST(Report, OfACameraThatNobodyTalkedTo) {
  EXPECT_EQ(report(Bench{}.camera), R"(
Simulated camera

  time simulated: 0.000 s
  protocol violations: 0
)");
}

TEST(Report, OfABootAndAMove) {
  Bench bench;
  bench.boot(9);
  bench.write_register(32, 0x340);
  bench.write_register(34, 400);
  bench.write_register(38, 5730);
  bench.write_register(62, 3842);
  bench.write_register(62, 3850);
  bench.query(0x86);
  bench.wait_ms(1234);
  EXPECT_EQ(report(bench.camera), R"(
Simulated camera

  boot  module  version  attempts  program  boot time  violations
  1     T5391   0309     1         runs     0.600 s    0

  boot  boot loader  payloads  checksum reads  commands  queries  other
  1     18           3         6               5         1        0

  boot  attempt  memory  image                      checksum answered  download
  1     1        0x21    CORVO_PROGRAM_DATA_T5391   E9EAD60E           intact
  1     1        0x22    CORVO_PROGRAM3_DATA_T5391  BF9B8238           intact
  1     1        0x23    CORVO_PROGRAM2_DATA_T5391  01911A0B           intact

  boot  motor   position  counter  in
  1     zoom 1  +316      316      1/2 steps
  1     focus   0         0        steps

  boot  IR-cut filter  DC iris  heater  stabiliser
  1     off            0        0       off

  time simulated: 1.834 s
  protocol violations: 0
)");
}

TEST(Report, OfABootThatFailed) {
  Bench bench;
  bench.camera.corrupt_download(2);
  bench.camera.corrupt_download(6);
  bench.load(7);
  bench.wait_ms(1000);
  bench.boot(7);
  bench.command16(5, 0);
  bench.send_word({1});
  bench.send(kelvo::test::Frame(20, 0x11));
  EXPECT_EQ(report(bench.camera), R"(
Simulated camera

  boot  module  version  attempts  program        boot time  violations
  1     -       -        2         none to start  2.200 s    2

  boot  boot loader  payloads  checksum reads  commands  queries  other
  1     35           6         12              1         0        1

  boot  attempt  memory  image                      checksum answered  download
  1     1        0x22    -                          E65DB485           NOT INTACT
  1     2        0x21    CORVO_PROGRAM_DATA_DE015   50EE9858           intact
  1     2        0x22    CORVO_PROGRAM3_DATA_DE015  DB9F8EF5           intact
  1     2        0x23    -                          C76DBAD4           NOT INTACT

  words on the PT5111's own device: 1
  time simulated: 2.200 s
  protocol violations: 3
  time     process  to               frame                                                           reason
  2.200 s  -        lens controller  05 00 00 00 00 05 00                                            the controller was started without the three images of one module
  2.200 s  -        PT5111           01                                                              a word of 1 bytes, must be 2
  2.200 s  -        lens controller  11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 11 ... (20 bytes)  the controller was started without the three images of one module
)");
}

TEST(Report, OfAHeadOfTheVetraFamily) {
  kelvo::test::VetraBench bench;
  bench.limits(kelvo::test::pan, 12'507, 7013);
  bench.enable_limits(kelvo::test::pan, 1);
  bench.absolute(kelvo::test::pan, 0, 7013, 7200);
  bench.continuous(kelvo::test::tilt, 0, 7200);
  bench.wait_ms(700);
  bench.read(kelvo::test::tilt, 2, 1);
  EXPECT_EQ(report(bench.camera), R"(
Simulated camera

  head  family  position  count  limits  state
  pan   Vetra   40002     7013   on      at rest
  tilt  Vetra   18022     16550  off     moves

  time simulated: 0.700 s
  protocol violations: 1
  time     process  to               frame  reason
  0.700 s  -        tilt controller  02     there is no register 2
)");
}

TEST(Report, OfAHeadOfTheTasmereFamily) {
  kelvo::test::TasmereBench bench;
  bench.write(kelvo::test::tilt, {78, 1});
  bench.write(kelvo::test::pan, {29, 1});
  bench.write(kelvo::test::pan, {35});
  bench.write(kelvo::test::pan, {1});
  EXPECT_EQ(report(bench.camera), R"(
Simulated camera

  head  family   position  count  limits  state
  pan   Tasmere  32768     32768  off     asleep
  tilt  Tasmere  4916      32768  off     at rest

  time simulated: 0.000 s
  protocol violations: 0
)");
}

TEST(Report, SaysWhenThePowerIsOff) {
  Bench bench;
  bench.camera.power_off();
  EXPECT_EQ(report(bench.camera), R"(
Simulated camera

  the power is off
  time simulated: 0.000 s
  protocol violations: 0
)");
}

TEST(Report, SaysWhichBootAPowerCutEnded) {
  Bench bench;
  bench.camera.fit_module(kelvo::wire::LensModule::t5391);
  EXPECT_NE(report(bench.camera).find("1     T5391   0309     0         runs "), std::string::npos)
      << report(bench.camera);
  bench.camera.power_off();
  bench.camera.power_on();
  EXPECT_NE(report(bench.camera).find("1     T5391   0309     0         power cut  "),
            std::string::npos)
      << report(bench.camera);
}

TEST(Report, OfAResetAlone) {
  Bench bench;
  bench.reset();
  EXPECT_NE(
      report(bench.camera).find("  1     -       -        1         not started  -          0\n"),
      std::string::npos);
}

TEST(Report, NamesTheImagesOfTheModuleThatRuns) {
  // DF033 and T5391 have the same images in two memories.
  const auto images = kelvo::sim::carried_images();
  ASSERT_EQ(images.size(), 9u);
  kelvo::sim::camera::Camera camera;
  const auto send = [&](std::span<const std::uint8_t> frame) {
    std::vector<std::uint8_t> received(frame.size());
    camera.transfer_lens(frame, received, images);
  };
  for (std::size_t i = 6; i < 9; ++i) {
    const auto& row = images[i].row;
    const auto size = static_cast<std::uint32_t>(row.size);
    const auto byte = [](std::uint32_t value, int index) {
      return static_cast<std::uint8_t>(value >> (8 * index));
    };
    send(std::vector<std::uint8_t>{0xE3, byte(row.address, 0), byte(row.address, 1),
                                   byte(row.address, 2), 0xA0});
    send(std::vector<std::uint8_t>{0xE4, byte(size, 0), byte(size, 1), byte(size, 2), 0xA0});
    send(std::vector<std::uint8_t>{0xE1, 0x11, row.memory, 0, 0xA0});
    send(images[i].bytes);
  }
  send(std::vector<std::uint8_t>{0xE2, 0, 0, 0, 0xA0});
  const std::string text = report(camera);
  EXPECT_NE(text.find("CORVO_PROGRAM_DATA_T5391"), std::string::npos);
  EXPECT_NE(text.find("CORVO_PROGRAM3_DATA_T5391"), std::string::npos);
  EXPECT_NE(text.find("CORVO_PROGRAM2_DATA_T5391"), std::string::npos);
  EXPECT_EQ(text.find("DF033"), std::string::npos);
}

TEST(Report, ListsTheFirstViolationsAndCountsTheRest) {
  Bench bench;
  for (int i = 0; i < 100; ++i) bench.send({1});
  const std::string text = report(bench.camera);
  EXPECT_NE(text.find("  protocol violations: 100\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("  and 36 more\n"));
}

TEST(Report, SaysWhenEarlierBootsAreNotListed) {
  Bench bench;
  for (int i = 0; i < 18; ++i) {
    bench.boot(7);
    bench.command16(5, 0);
  }
  const std::string text = report(bench.camera);
  EXPECT_NE(text.find("\n  2 earlier boots are not listed\n"), std::string::npos);
  EXPECT_NE(text.find("\n  3     DE015 "), std::string::npos);
  EXPECT_NE(text.find("\n  18    DE015 "), std::string::npos);
  EXPECT_EQ(text.find("\n  2     DE015 "), std::string::npos);
}

}  // namespace
