// Faults as people write them, and the line that they get for a wrong one.
#include "sim/fault/parse.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <ostream>
#include <string>

namespace {

using kelvo::sim::fault::EffectKind;
using kelvo::sim::fault::Fault;
using kelvo::sim::fault::Frame;
using kelvo::sim::fault::parse;
using kelvo::sim::fault::ParsedFault;
using kelvo::sim::fault::Port;

Fault good(const char* text) {
  const ParsedFault parsed = parse(text);
  EXPECT_EQ(parsed.error, "") << text;
  return parsed.fault;
}

struct Wrong {
  const char* text;
  const char* error;
};

void PrintTo(const Wrong& wrong, std::ostream* stream) { *stream << '"' << wrong.text << '"'; }

constexpr char spi_words[] =
    "frame, command, query, boot-code, register, direction, nth, every, times, error, flip, busy, "
    "reset, missing, kill";

// clang-format off
const Wrong wrong_faults[] = {
    {"", "the fault is empty: begin with one of spi, pt5111, i2c, gpio, file"},
    {" : ", "the fault is empty: begin with one of spi, pt5111, i2c, gpio, file"},
    {"spy error=EIO", "there is no device \"spy\": begin with one of spi, pt5111, i2c, gpio, file"},
    {"error=EIO spi", "there is no device \"error=EIO\": begin with one of spi, pt5111, i2c, gpio, file"},
    {"gpio", "it has no effect: add one of error, kill"},
    {"pt5111 nth=2", "it has no effect: add one of error, flip, missing, kill"},
    {"i2c slave=pan", "it has no effect: add one of error, nak, flip, busy, reset, missing, kill"},
    {"file", "it has no effect: add one of error, missing, unreadable, full, kill"},
    {"spi busy error=EIO", "\"busy\" and \"error\" are two effects: make a fault of each"},
    {"gpio comand=1 kill", "there is no word \"comand\": there are frame, direction, nth, every, times, error, kill"},
    {"gpio slave=pan kill", "\"slave\" is not for gpio: there are frame, direction, nth, every, times, error, kill"},
    {"spi nth=1 kill nth=2", "\"nth\" is given twice"},
    {"spi kill kill", "\"kill\" is given twice"},
    {"spi kill=now", "\"kill\" has no value: write kill alone"},
    {"spi kill=", "\"kill\" has no value: write kill alone"},
    {"spi nth kill", "\"nth\" needs a value: write nth= and a number from 1"},
    {"spi nth= kill", "\"nth\" cannot be \"\": it takes a number from 1"},
    {"spi nth=0 kill", "\"nth\" cannot be \"0\": it takes a number from 1"},
    {"spi every=-1 kill", "\"every\" cannot be \"-1\": it takes a number from 1"},
    {"spi times=4294967296 kill", "\"times\" cannot be \"4294967296\": it takes a number from 1"},
    {"spi times=1x kill", "\"times\" cannot be \"1x\": it takes a number from 1"},
    {"spi frame=word kill", "\"frame\" cannot be \"word\": it takes one of open, boot-command, checksum-read, payload, command, query"},
    {"i2c frame=query kill", "\"frame\" cannot be \"query\": it takes one of open, write, read"},
    {"spi command=256 kill", "\"command\" cannot be \"256\": it takes a command's name or number (zoom1-enable, 62, 0x3E)"},
    {"spi command=zoom4 kill", "\"command\" cannot be \"zoom4\": it takes a command's name or number (zoom1-enable, 62, 0x3E)"},
    {"spi command=version kill", "\"command\" cannot be \"version\": it takes a command's name or number (zoom1-enable, 62, 0x3E)"},
    {"spi query=zoom1-enable kill", "\"query\" cannot be \"zoom1-enable\": it takes a query's name or number (zoom1-running, 0x8D)"},
    {"spi boot-code=0x kill", "\"boot-code\" cannot be \"0x\": it takes a number up to 255 (0xE2)"},
    {"spi register=status kill", "\"register\" cannot be \"status\": it takes a register's number (28), on i2c or its name (run-status)"},
    {"pt5111 register=64 kill", "\"register\" cannot be \"64\": it takes a register's number (28), on i2c or its name (run-status)"},
    {"i2c register=speed kill", "\"register\" cannot be \"speed\": it takes a register's number (28), on i2c or its name (run-status)"},
    {"i2c slave=128 kill", "\"slave\" cannot be \"128\": it takes pan, tilt, or a number up to 127"},
    {"spi direction=up kill", "\"direction\" cannot be \"up\": it takes sent or received"},
    {"file path=/bin/sh missing", "\"path\" cannot be \"/bin/sh\": it takes a file of the camera, whole or by its last part (/bin/DC_S_Cali.dat, OIS_S_Cali.dat)"},
    {"file path=/OIS_S_Cali.dat missing", "\"path\" cannot be \"/OIS_S_Cali.dat\": it takes a file of the camera, whole or by its last part (/bin/DC_S_Cali.dat, OIS_S_Cali.dat)"},
    {"spi error=EOI", "\"error\" cannot be \"EOI\": it takes an error's name or number (EIO, 5)"},
    {"spi error=0", "\"error\" cannot be \"0\": it takes an error's name or number (EIO, 5)"},
    {"spi error=134", "\"error\" cannot be \"134\": it takes an error's name or number (EIO, 5)"},
    {"spi error=eio", "\"error\" cannot be \"eio\": it takes an error's name or number (EIO, 5)"},
    {"spi flip=1", "\"flip\" cannot be \"1\": it takes BYTE.BIT, the byte from 0, the bit from 0 to 7 (5.0)"},
    {"spi flip=1.8", "\"flip\" cannot be \"1.8\": it takes BYTE.BIT, the byte from 0, the bit from 0 to 7 (5.0)"},
    {"spi flip=.1", "\"flip\" cannot be \".1\": it takes BYTE.BIT, the byte from 0, the bit from 0 to 7 (5.0)"},
    {"spi flip=65536.1", "\"flip\" cannot be \"65536.1\": it takes BYTE.BIT, the byte from 0, the bit from 0 to 7 (5.0)"},
    {"spi command=1 query=2 kill", "no transfer is all of this at once: leave a word away"},
    {"spi frame=payload busy", "no transfer is all of this at once: leave a word away"},
    {"spi frame=open flip=1.1", "no transfer is all of this at once: leave a word away"},
    {"spi command=1 direction=received kill", "no transfer is all of this at once: leave a word away"},
    {"pt5111 direction=received flip=0.0", "no transfer is all of this at once: leave a word away"},
    {"i2c direction=sent missing", "no transfer is all of this at once: leave a word away"},
    {"file frame=write unreadable", "no transfer is all of this at once: leave a word away"},
    {"file direction=received full", "no transfer is all of this at once: leave a word away"},
};
// clang-format on

class WrongFault : public testing::TestWithParam<Wrong> {};

TEST_P(WrongFault, GetsALineThatSaysWhatToDo) {
  EXPECT_EQ(parse(GetParam().text).error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(Every, WrongFault, testing::ValuesIn(wrong_faults));

TEST(Fault, IsToldWhichWordsItsDeviceHas) {
  EXPECT_EQ(parse("spi slave=pan kill").error,
            std::string("\"slave\" is not for spi: there are ") + spi_words);
  EXPECT_EQ(parse("spi x").error, std::string("there is no word \"x\": there are ") + spi_words);
}

TEST(Fault, HasOneTextWhateverStandsBetweenItsWords) {
  for (const char* const text : {"spi command=62 nth=3 error=EIO", "spi:command=62:nth=3:error=EIO",
                                 "  spi\tcommand=62:: nth=3\nerror=EIO "}) {
    EXPECT_STREQ(good(text).text.data(), "spi command=62 nth=3 error=EIO");
  }
}

TEST(Fault, IsNotLongerThanItsPlace) {
  const std::string zeros(127 - std::string("spi kill nth=1").size(), '0');
  EXPECT_EQ(parse("spi kill nth=" + zeros + "1").error, "");
  EXPECT_EQ(parse("spi kill nth=" + zeros + "01").error,
            "it is longer than 127 letters: use numbers for names");
}

TEST(Fault, NamesACommandByNameOrNumber) {
  for (const char* const text : {"spi command=zoom1-enable kill", "spi command=zoom1_enable kill",
                                 "spi command=62 kill", "spi command=0x3E kill"}) {
    const Fault fault = good(text);
    EXPECT_EQ(fault.code, 62) << text;
    EXPECT_EQ(fault.frames, bit(Frame::command));
  }
}

TEST(Fault, NamesAQueryOrACodeOfTheBootLoader) {
  EXPECT_EQ(good("spi query=zoom1-running kill").code, 0x8D);
  EXPECT_EQ(good("spi query=0x8D kill").frames, bit(Frame::query));
  const Fault start = good("spi boot-code=0xE2 kill");
  EXPECT_EQ(start.code, 0xE2);
  EXPECT_EQ(start.frames, bit(Frame::boot_command) | bit(Frame::checksum_read));
}

TEST(Fault, NamesARegisterOfEitherFamily) {
  const Fault position = good("i2c register=position kill");
  ASSERT_TRUE(position.reg);
  EXPECT_EQ(position.reg->vetra, 50);
  EXPECT_EQ(position.reg->tasmere, 4);
  const Fault turbo = good("i2c register=turbo kill");
  EXPECT_EQ(turbo.reg->vetra, -1);
  EXPECT_EQ(turbo.reg->tasmere, 83);
  const Fault number = good("i2c register=7 kill");
  EXPECT_EQ(number.reg->vetra, 7);
  EXPECT_EQ(number.reg->tasmere, 7);
}

TEST(Fault, NamesASlaveByAxisOrAddress) {
  EXPECT_EQ(good("i2c slave=pan kill").slave, 40);
  EXPECT_EQ(good("i2c slave=tilt kill").slave, 41);
  EXPECT_EQ(good("i2c slave=0x29 kill").slave, 41);
}

TEST(Fault, NamesAnErrorByNameOrNumber) {
  EXPECT_EQ(good("spi error=EIO").effect.error, EIO);
  EXPECT_EQ(good("spi error=ETIMEDOUT").effect.error, ETIMEDOUT);
  EXPECT_EQ(good("spi error=110").effect.error, ETIMEDOUT);
  EXPECT_EQ(good("i2c nak").effect.error, ENXIO);
  EXPECT_EQ(good("i2c missing").effect.error, ENOENT);
  EXPECT_EQ(good("file unreadable").effect.error, EACCES);
  for (const char* const text : {"spi error=1", "i2c nak", "i2c missing", "file unreadable"}) {
    EXPECT_EQ(good(text).effect.kind, EffectKind::error) << text;
  }
}

TEST(Fault, HasItsOtherEffects) {
  const Fault flip = good("spi direction=received flip=10.7");
  EXPECT_EQ(flip.effect.kind, EffectKind::flip);
  EXPECT_EQ(flip.effect.byte, 10u);
  EXPECT_EQ(flip.effect.bit, 7);
  EXPECT_TRUE(flip.effect.received);
  EXPECT_FALSE(good("spi flip=0.0").effect.received);
  EXPECT_EQ(good("spi busy").effect.kind, EffectKind::busy);
  EXPECT_EQ(good("i2c reset").effect.kind, EffectKind::reset);
  EXPECT_EQ(good("file full").effect.kind, EffectKind::full);
  EXPECT_EQ(good("gpio kill").effect.kind, EffectKind::kill);
}

TEST(Fault, IsOfAnOpenOnlyWhereThatIsMeant) {
  EXPECT_EQ(good("spi missing").frames, bit(Frame::open));
  EXPECT_EQ(good("pt5111 frame=open error=EACCES").frames, bit(Frame::open));
  EXPECT_EQ(good("pt5111 error=EACCES").frames, bit(Frame::word));
  EXPECT_EQ(good("i2c kill").frames, bit(Frame::write) | bit(Frame::read));
}

TEST(Fault, StrikesEveryTimeUnlessItSaysOtherwise) {
  struct {
    const char* text;
    std::uint64_t nth;
    std::uint64_t every;
    std::uint64_t times;
  } const rows[] = {
      {"spi kill", 1, 1, 0},
      {"spi kill nth=3", 3, 1, 1},
      {"spi kill nth=3 times=2", 3, 1, 2},
      {"spi kill every=4", 4, 4, 0},
      {"spi kill every=4 times=5", 4, 4, 5},
      {"spi kill nth=1 every=4", 1, 4, 0},
      {"spi kill times=6", 1, 1, 6},
      {"spi kill nth=4294967295", 4294967295, 1, 1},
  };
  for (const auto& row : rows) {
    const Fault fault = good(row.text);
    EXPECT_EQ(fault.nth, row.nth) << row.text;
    EXPECT_EQ(fault.every, row.every) << row.text;
    EXPECT_EQ(fault.times, row.times) << row.text;
  }
}

TEST(Fault, NamesAFileByPathOrLastPart) {
  EXPECT_EQ(good("file path=/bin/DC_S_Cali.dat missing").files, 0b0000100);
  EXPECT_EQ(good("file path=DC_S_Cali.dat missing").files, 0b0000111);
  EXPECT_EQ(good("file path=OIS_S_Cali.dat missing").files, 0b0111000);
  EXPECT_EQ(good("file path=DC_S_Cali_T5391.dat missing").files, 0b1000000);
  EXPECT_EQ(good("file missing").files, 0);
}

TEST(Fault, IsOfThePortThatItNames) {
  EXPECT_EQ(good("spi kill").port, Port::spi);
  EXPECT_EQ(good("pt5111 kill").port, Port::pt5111);
  EXPECT_EQ(good("i2c kill").port, Port::i2c);
  EXPECT_EQ(good("gpio kill").port, Port::gpio);
  EXPECT_EQ(good("file kill").port, Port::file);
}

}  // namespace
