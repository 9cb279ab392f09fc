#include "sim/trace/decoder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace {

using kelvo::sim::trace::Act;
using kelvo::sim::trace::Decoded;
using kelvo::sim::trace::Event;
using kelvo::sim::trace::Wire;
using Frame = std::vector<std::uint8_t>;

constexpr std::uint8_t de015 = 7;
constexpr std::uint8_t df033 = 8;
constexpr std::uint8_t t5391 = 9;
constexpr std::int8_t vetra = 1;
constexpr std::int8_t tasmere = 2;

Event decoded_event(Wire wire, Act act, const Frame& sent, const Frame& received = {}) {
  Event event{};
  event.wire = wire;
  event.act = act;
  event.family = -1;
  add_sent(event, sent);
  add_received(event, received);
  return event;
}

std::string lens(std::uint8_t module, const Frame& sent, const Frame& received = {}) {
  Event event = decoded_event(Wire::lens, Act::transfer, sent, received);
  event.module = module;
  return text_of(decode(event));
}

/// A query's frame and its four reply bytes.
std::string query(std::uint8_t module, Frame sent, const Frame& reply) {
  sent.resize(12);
  Frame received(12);
  for (std::size_t i = 0; i < reply.size(); ++i) received[7 + i] = reply[i];
  return lens(module, sent, received);
}

std::string word(std::uint8_t high, std::uint8_t low) {
  return text_of(decode(decoded_event(Wire::pt5111, Act::transfer, {high, low}, {0, 0})));
}

Event request(std::int8_t family, std::uint16_t slave, std::uint16_t messages, const Frame& sent,
              const Frame& received = {}) {
  Event event = decoded_event(Wire::head, Act::transfer, sent, received);
  event.family = family;
  event.slave = slave;
  event.messages = messages;
  event.result = messages;
  return event;
}

std::string write(std::int8_t family, std::uint16_t slave, const Frame& sent) {
  return text_of(decode(request(family, slave, 1, sent)));
}

std::string read(std::int8_t family, std::uint16_t slave, std::uint8_t reg, const Frame& received) {
  return text_of(decode(request(family, slave, 2, {reg}, received)));
}

std::string shell(std::string_view command, int status = 0) {
  Event event = decoded_event(Wire::reset_line, Act::shell, Frame(command.begin(), command.end()));
  event.result = status;
  return text_of(decode(event));
}

TEST(DecodedCommand, HasCodeNameAndArgument) {
  EXPECT_EQ(lens(de015, {0x3E, 0, 0, 0, 1, 0x3F, 0}), "spi command 62 zoom1-enable 1");
  EXPECT_EQ(lens(df033, {0x18, 0, 0, 0x29, 0x40, 0x81, 0}), "spi command 24 zoom3-rate 10560");
  EXPECT_EQ(lens(t5391, {0x68, 1, 2, 3, 4, 0x72, 0}), "spi command 104 gyro-gain-x 16909060");
  EXPECT_EQ(lens(t5391, {0x02, 0, 0, 0, 0, 0x02, 0}), "spi command 2 stabiliser-on 0");
}

TEST(DecodedCommand, IsUnknownInAProgramThatDoesNotKnowIt) {
  EXPECT_EQ(lens(t5391, {0x3E, 0, 0, 0, 1, 0x3F, 0}), "spi command 62 unknown 1");
  EXPECT_EQ(lens(de015, {0xFE, 0, 0, 0, 1, 0xFF, 0}), "spi command 254 unknown 1");
}

TEST(DecodedCommand, HasAnyMeaningWhereNobodyKnowsTheProgram) {
  EXPECT_EQ(lens(0, {0x3E, 0, 0, 0, 1, 0x3F, 0}), "spi command 62 zoom1-enable 1");
}

TEST(DecodedCommand, ShowsAWrongChecksum) {
  EXPECT_EQ(lens(de015, {0x3E, 0, 0, 0, 1, 0x40, 0}),
            "spi command 62 zoom1-enable 1 (checksum 40, must be 3F)");
  EXPECT_EQ(lens(de015, {0x01, 2, 3, 4, 0xFA, 0x04, 0}), "spi command 1 unknown 33752314");
}

TEST(DecodedCommand, NamesTheRegisterThatItWrites) {
  EXPECT_EQ(lens(de015, {0x0F, 0, 0x1E, 0x0F, 0x0A, 0x46, 0}),
            "spi command 15 write-register-de 30 focus-control 0F0A");
  EXPECT_EQ(lens(t5391, {0x0C, 0, 0x38, 0x03, 0xDF, 0x26, 0}),
            "spi command 12 write-register 56 zoom-current 03DF");
  EXPECT_EQ(lens(t5391, {0x0C, 0, 0xBA, 0x00, 0xFF, 0xC5, 0}),
            "spi command 12 write-register 186 filter-direction 00FF");
  EXPECT_EQ(lens(t5391, {0x0C, 0, 0xFC, 0x01, 0xF3, 0xFC, 0}),
            "spi command 12 write-register 252 motor-block-commit 01F3");
  EXPECT_EQ(lens(t5391, {0x0C, 0, 0x90, 0x01, 0x93, 0x30, 0}),
            "spi command 12 write-register 144 0193");
  EXPECT_EQ(lens(t5391, {0x0C, 1, 0x90, 0x01, 0x93, 0x31, 0}),
            "spi command 12 write-register 01 90 01 93");
}

TEST(DecodedCommand, NamesTheWordThatItPassesOn) {
  EXPECT_EQ(lens(df033, {0x2F, 2, 0xCF, 0xC0, 0, 0xC0, 0}),
            "spi command 47 pt5111-word CFC0 power-on");
  EXPECT_EQ(lens(df033, {0x2F, 3, 0xCF, 0xC0, 0, 0xC1, 0}),
            "spi command 47 pt5111-word 03 CF C0 00");
}

TEST(DecodedCommand, HasWhatAProfileAndASensorAreTold) {
  EXPECT_EQ(lens(de015, {0x3B, 0, 0, 0x19, 0, 0x54, 0}), "spi command 59 zoom1-profile 25 0");
  EXPECT_EQ(lens(de015, {0x71, 1, 0, 0, 0x63, 0xD5, 0}),
            "spi command 113 interrupter-service sensor 1 calibrate");
  EXPECT_EQ(lens(t5391, {0x20, 0, 0, 0, 0x60, 0x80, 0}),
            "spi command 32 sensor-service sensor 0 convert");
  EXPECT_EQ(lens(t5391, {0x20, 0, 0, 0, 0x62, 0x82, 0}),
            "spi command 32 sensor-service 00 00 00 62");
}

TEST(DecodedQuery, HasItsReply) {
  EXPECT_EQ(query(t5391, {0xC6, 0, 0, 0, 1, 0xC7}, {0, 0, 0, 0}),
            "spi query C6 iris-travel-max -> 0");
  EXPECT_EQ(query(de015, {0xA1, 0, 0, 0, 1, 0xA2}, {0, 0, 0x12, 0x34}),
            "spi query A1 polarity -> 4660");
  EXPECT_EQ(query(df033, {0x87, 0, 0, 0, 1, 0x88}, {0xFF, 0xFF, 0xFF, 0xFE}),
            "spi query 87 zoom1-count -> -2");
  EXPECT_EQ(query(df033, {0x86, 0, 0, 0, 1, 0x87}, {0, 0, 0x02, 0x08}),
            "spi query 86 version -> 0208");
  EXPECT_EQ(query(t5391, {0xF2, 0, 0, 0, 1, 0xF3}, {0x01, 0x02, 0xFF, 0xFF}),
            "spi query F2 hall-xy -> 258 -1");
}

TEST(DecodedQuery, HasItsArgumentWhereItTravels) {
  EXPECT_EQ(query(t5391, {0x8F, 0, 0x34, 0, 1, 0xC4}, {0, 0, 0x3F, 0xF0}),
            "spi query 8F read-register-de 52 zoom-counter -> 16368");
  EXPECT_EQ(query(df033, {0xA0, 1, 0, 0, 1, 0xA2}, {0, 0, 0, 1}),
            "spi query A0 interrupter-state 1 -> 1");
  EXPECT_EQ(query(de015, {0x81, 5, 0, 0, 0, 0x86}, {0, 0, 1, 0x23}),
            "spi query 81 sensor-level 5 -> 291");
  EXPECT_EQ(query(de015, {0x80, 0, 5, 0, 1, 0x86}, {0, 0, 0, 4}),
            "spi query 80 calibration-state 5 -> 4");
}

TEST(DecodedQuery, MeansWhatTheProgramTakesItFor) {
  EXPECT_EQ(query(de015, {0x91, 0, 0, 0, 1, 0x92}, {}), "spi query 91 stationary-detection -> 0");
  EXPECT_EQ(query(df033, {0x91, 0, 0, 0, 1, 0x92}, {}), "spi query 91 focus-offset -> 0");
  EXPECT_EQ(query(0, {0x91, 0, 0, 0, 1, 0x92}, {}),
            "spi query 91 stationary-detection|focus-offset -> 0");
  EXPECT_EQ(query(t5391, {0xC7, 0, 0, 0, 1, 0xC8}, {}), "spi query C7 unknown -> 0");
}

TEST(DecodedQuery, HasNoReplyWhenItFails) {
  Event event =
      decoded_event(Wire::lens, Act::transfer, Frame{0x92, 0, 0, 0, 1, 0x93, 0, 0, 0, 0, 0, 0});
  event.received_length = 12;
  event.result = -EIO;
  EXPECT_EQ(text_of(decode(event)), "spi query 92 gyro-stability failed: EIO");
}

TEST(DecodedBootFrame, HasItsData) {
  EXPECT_EQ(lens(0, {0xF5, 4, 0, 0, 0xA0}), "spi boot F5 pll-mode 04 00 00");
  EXPECT_EQ(lens(0, {0xF0, 1, 0x13, 3, 0xA0}), "spi boot F0 clock-supply 01 13 03");
  EXPECT_EQ(lens(0, {0xE3, 0x00, 0xE0, 0xFF, 0xA0}), "spi boot E3 download-address FFE000");
  EXPECT_EQ(lens(0, {0xE4, 0xFC, 0x81, 0x00, 0xA0}), "spi boot E4 download-size 33276");
  EXPECT_EQ(lens(0, {0xE1, 0x11, 0x22, 0x00, 0xA0}), "spi boot E1 payload-header memory 22");
  EXPECT_EQ(lens(0, {0xE1, 0x12, 0x22, 0x00, 0xA0}), "spi boot E1 payload-header 12 22 00");
  EXPECT_EQ(lens(0, {0xE2, 0, 0, 0, 0xA0}), "spi boot E2 start-program");
  EXPECT_EQ(lens(0, {0x12, 0, 0, 0, 0xA0}), "spi boot 12 unknown 00 00 00");
}

TEST(DecodedBootFrame, HasTheHalfOfTheChecksum) {
  EXPECT_EQ(lens(0, {0x66, 0, 0, 0, 0xA0}, {0, 0, 0xF5, 0x8E, 0}),
            "spi boot 66 checksum-low -> 8EF5");
  EXPECT_EQ(lens(0, {0x67, 0, 0, 0, 0xA0}, {0, 0, 0x9F, 0xDB, 0}),
            "spi boot 67 checksum-high -> DB9F");
}

TEST(DecodedPayload, HasTheNameOfTheImagesOfItsSize) {
  EXPECT_EQ(lens(0, Frame(33276)), "spi payload CORVO_PROGRAM_DATA_DE015 33276 bytes");
  EXPECT_EQ(lens(0, Frame(648)),
            "spi payload CORVO_PROGRAM2_DATA_DF033|CORVO_PROGRAM2_DATA_T5391 648 bytes");
  EXPECT_EQ(lens(0, Frame(100)), "spi payload 100 bytes");
}

TEST(DecodedFrame, HasItsBytesWhenItHasNoForm) {
  EXPECT_EQ(lens(de015, {1, 2, 3}), "spi frame 3 bytes: 01 02 03");
  EXPECT_EQ(lens(de015, {1, 2, 3, 4, 5}), "spi frame 5 bytes: 01 02 03 04 05");
  EXPECT_EQ(lens(0, {}), "spi frame 0 bytes");
  EXPECT_EQ(lens(de015, Frame(100)).substr(0, 27), "spi frame 100 bytes: 00 00 ");
  EXPECT_TRUE(lens(de015, Frame(100)).ends_with(" 00 ..."));
}

TEST(DecodedWord, HasItsName) {
  EXPECT_EQ(word(0xCF, 0xC0), "pt5111 word CFC0 power-on");
  EXPECT_EQ(word(0x7E, 0x00), "pt5111 word 7E00 filter-pulse");
  EXPECT_EQ(word(0x3C, 0x00), "pt5111 word 3C00 halt-a");
}

TEST(DecodedWord, HasWhatItTellsAMotor) {
  EXPECT_EQ(word(0x02, 0x80), "pt5111 word 0280 motor-a backward full-stepping");
  EXPECT_EQ(word(0x00, 0x00), "pt5111 word 0000 motor-a forward");
  EXPECT_EQ(word(0x05, 0xDC), "pt5111 word 05DC motor-a count-low 476");
  EXPECT_EQ(word(0x48, 0x01), "pt5111 word 4801 motor-b count-high 1");
  EXPECT_EQ(word(0x0E, 0x91), "pt5111 word 0E91 motor-a period 657");
  EXPECT_EQ(word(0x51, 0xC0), "pt5111 word 51C0 motor-b divider 448");
  EXPECT_EQ(word(0x7E, 0x80), "pt5111 word 7E80 motor-b run");
}

TEST(DecodedWord, IsARegisterOtherwise) {
  EXPECT_EQ(word(0x8C, 0x07), "pt5111 word 8C07 register 35 007");
  EXPECT_EQ(word(0x24, 0x01), "pt5111 word 2401 register 9 001");
  EXPECT_EQ(text_of(decode(decoded_event(Wire::pt5111, Act::transfer, {1, 2, 3}))),
            "pt5111 frame 3 bytes: 01 02 03");
}

TEST(DecodedHeadRequest, NamesTheRegisterOfTheFamily) {
  EXPECT_EQ(read(tasmere, 40, 4, {0x80, 0x00}), "i2c pan read 4 position -> 32768");
  EXPECT_EQ(read(vetra, 41, 50, {0x21, 0x34}), "i2c tilt read 50 position -> 8500");
  EXPECT_EQ(write(tasmere, 40, {66, 0x80, 0x00, 0xA0, 0x01}),
            "i2c pan write 66 absolute-move 80 00 A0 01");
  EXPECT_EQ(write(vetra, 41, {3, 1, 0x1C, 0x20}), "i2c tilt write 3 continuous-move 01 1C 20");
  EXPECT_EQ(write(tasmere, 41, {3, 1, 0x1C, 0x20}), "i2c tilt write 3 run-status 01 1C 20");
  EXPECT_EQ(write(vetra, 40, {6}), "i2c pan write 6 stop");
  EXPECT_EQ(write(tasmere, 40, {200, 1}), "i2c pan write 200 unknown 1");
  EXPECT_EQ(read(-1, 40, 48, {0}), "i2c pan read 48 version|sleep-mode -> 0");
}

TEST(DecodedHeadRequest, SpellsTheSignature) {
  EXPECT_EQ(read(vetra, 40, 240, {'V', 'X'}), "i2c pan read 240 family -> \"VX\"");
  EXPECT_EQ(read(-1, 40, 240, {0x00, 0xFF}), "i2c pan read 240 family -> 00 FF");
  EXPECT_EQ(read(tasmere, 40, 240, {0, 0}), "i2c pan read 240 unknown -> 0");
}

TEST(DecodedHeadRequest, IsAWakeUpWhenItIsEmpty) {
  EXPECT_EQ(write(tasmere, 40, {}), "i2c pan write wake-up (no bytes)");
  EXPECT_EQ(write(vetra, 40, {}), "i2c pan write (no bytes)");
}

TEST(DecodedHeadRequest, MayHaveAnyForm) {
  EXPECT_EQ(write(tasmere, 42, {4}), "i2c slave 42 write 4 position");
  EXPECT_EQ(text_of(decode(request(vetra, 40, 1, {}, {1, 2}))), "i2c pan 1 message -> 01 02");
  EXPECT_EQ(text_of(decode(request(vetra, 40, 3, {1, 2}, {3}))), "i2c pan 3 messages 01 02 -> 03");
  EXPECT_EQ(text_of(decode(request(vetra, 40, 2, {1, 2}, {3, 4, 5}))),
            "i2c pan read 2 bytes: 01 02 -> 03 04 05");
}

TEST(DecodedHeadRequest, MayFail) {
  Event event = request(vetra, 42, 2, {4});
  event.received_length = 2;
  event.result = -ENXIO;
  EXPECT_EQ(text_of(decode(event)), "i2c slave 42 read 4 set-limit-enable failed: ENXIO");
}

TEST(DecodedResetLine, HasTheNameOfTheStep) {
  EXPECT_EQ(shell("echo 33 > /sys/class/gpio/export"), "reset export");
  EXPECT_EQ(shell("echo \"out\" > /sys/class/gpio/gpio33/direction"), "reset output");
  EXPECT_EQ(shell("echo 0 > /sys/class/gpio/gpio33/value"), "reset assert");
  EXPECT_EQ(shell("echo 1 > /sys/class/gpio/gpio33/value"), "reset release");
}

TEST(DecodedResetLine, HasTheCommandWhenItIsAnother) {
  EXPECT_EQ(shell("echo 34 > /sys/class/gpio/export"),
            "reset shell echo 34 > /sys/class/gpio/export");
  EXPECT_EQ(shell(std::string(60, 'x')), "reset shell " + std::string(48, 'x') + "...");
}

TEST(DecodedResetLine, HasTheStatusWhenItIsNotZero) {
  EXPECT_EQ(shell("echo 33 > /sys/class/gpio/export", 256), "reset export failed: exit code 1");
  EXPECT_EQ(shell("echo 33 > /sys/class/gpio/export", 9), "reset export failed: signal 9");
}

TEST(DecodedDevice, IsOpenedAndClosed) {
  EXPECT_EQ(text_of(decode(decoded_event(Wire::lens, Act::open, {}))), "spi open");
  EXPECT_EQ(text_of(decode(decoded_event(Wire::head, Act::close, {}))), "i2c close");
  Event event = decoded_event(Wire::pt5111, Act::open, {});
  event.result = -ENOENT;
  EXPECT_EQ(text_of(decode(event)), "pt5111 open failed: ENOENT");
  event.result = -4000;
  EXPECT_EQ(text_of(decode(event)), "pt5111 open failed: error 4000");
}

TEST(DecodedDevice, IsToldItsSpeed) {
  const std::uint32_t hertz = 1'000'000;
  Event event = decoded_event(Wire::lens, Act::speed, {});
  add_sent(event, {reinterpret_cast<const std::uint8_t*>(&hertz), sizeof hertz});
  EXPECT_EQ(text_of(decode(event)), "spi speed 1000000");
}

TEST(Decoded, HasItsPartsOneByOne) {
  Event event = decoded_event(Wire::lens, Act::transfer, {0x3E, 0, 0, 0, 1, 0x3F, 0});
  event.module = de015;
  const Decoded decoded = decode(event);
  EXPECT_EQ(decoded.device, "spi");
  EXPECT_EQ(decoded.kind, "command");
  EXPECT_EQ(decoded.code, 62);
  EXPECT_EQ(decoded.shown_code, "62");
  EXPECT_EQ(decoded.name, "zoom1-enable");
  EXPECT_EQ(decoded.value, "1");
  EXPECT_EQ(decoded.answer, "");
  EXPECT_EQ(decoded.error, "");
}

}  // namespace
