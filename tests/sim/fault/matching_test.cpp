// Which transfers a fault strikes.
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "sim/fault/busy.h"
#include "sim/fault/fault_of.h"
#include "sim/fault/fault_table.h"

namespace {

using namespace kelvo::sim::fault;
using kelvo::test::fault;
using kelvo::wire::HeadFamily;
using Bytes = std::vector<std::uint8_t>;

/// Whether a fault with these words, and some effect, waits for a transfer.
bool meets(const std::string& words, const Transfer& transfer) {
  return fault(words + " kill").waits_for(transfer);
}

Bytes frame(std::initializer_list<std::uint8_t> begin, std::size_t length) {
  Bytes bytes(begin);
  bytes.resize(length);
  return bytes;
}

const Transfer start_command = lens_transfer(Bytes{0xE2, 0, 0, 0, 0xA0});
const Transfer checksum_read = lens_transfer(Bytes{0x66, 0, 0, 0, 0xA0});
const Transfer payload = lens_transfer(Bytes(2048));
const Transfer zoom1_enable = lens_transfer(frame({62, 0, 0, 0, 1, 63}, 7));
const Transfer register_write = lens_transfer(frame({12, 0, 30, 15, 2}, 7));
const Transfer version_query = lens_transfer(frame({0x86, 0, 0, 0, 1}, 12));
const Transfer zoom1_running = lens_transfer(frame({0x8D, 0, 0, 0, 1}, 12));
const Transfer register_read = lens_transfer(frame({0x8C, 0, 28, 0, 1}, 12));
const Transfer word = pt5111_transfer(Bytes{0xD5, 0x78});  // register 53
const Transfer pan_move = head_transfer(HeadFamily::tasmere, 40, Bytes{7, 0x7F, 0xFF}, 0);
const Transfer tilt_status = head_transfer(HeadFamily::tasmere, 41, Bytes{3}, 1);
const Transfer vetra_status = head_transfer(HeadFamily::vetra, 40, Bytes{49}, 1);
const Transfer reading = file_opening("/bin/OIS_S_Cali.dat", "rb");
const Transfer writing = file_opening("/mnt/nand/DC_S_Cali.dat", "wb");

const Transfer all[] = {
    start_command,      checksum_read,         payload,           zoom1_enable, register_write,
    version_query,      zoom1_running,         register_read,     word,         pan_move,
    tilt_status,        vetra_status,          reading,           writing,      shell_command(),
    opening(Port::spi), opening(Port::pt5111), opening(Port::i2c)};

/// How many of all of them a fault waits for.
int met(const std::string& text) {
  int count = 0;
  for (const Transfer& transfer : all) count += fault(text).waits_for(transfer) ? 1 : 0;
  return count;
}

TEST(Matching, GoesByTheDevice) {
  EXPECT_EQ(met("spi kill"), 8);
  EXPECT_EQ(met("pt5111 kill"), 1);
  EXPECT_EQ(met("i2c kill"), 3);
  EXPECT_EQ(met("gpio kill"), 1);
  EXPECT_EQ(met("file kill"), 2);
  for (const char* const device : {"spi", "pt5111", "i2c"}) {
    EXPECT_EQ(met(std::string(device) + " missing"), 1) << device;
  }
}

TEST(Matching, GoesByTheKindOfFrame) {
  EXPECT_TRUE(meets("spi frame=boot-command", start_command));
  EXPECT_TRUE(meets("spi frame=checksum-read", checksum_read));
  EXPECT_TRUE(meets("spi frame=payload", payload));
  EXPECT_TRUE(meets("spi frame=command", zoom1_enable));
  EXPECT_TRUE(meets("spi frame=query", version_query));
  EXPECT_TRUE(meets("pt5111 frame=word", word));
  EXPECT_TRUE(meets("i2c frame=write", pan_move));
  EXPECT_TRUE(meets("i2c frame=read", tilt_status));
  EXPECT_TRUE(meets("file frame=read", reading));
  EXPECT_TRUE(meets("file frame=write", writing));
  EXPECT_EQ(met("spi frame=boot-command kill"), 1);
  EXPECT_EQ(met("spi frame=command kill"), 2);
  EXPECT_EQ(met("spi frame=query kill"), 3);
  EXPECT_EQ(met("spi frame=open kill"), 1);
  EXPECT_EQ(met("i2c frame=read kill"), 2);
}

TEST(Matching, GoesByTheCode) {
  EXPECT_TRUE(meets("spi command=62", zoom1_enable));
  EXPECT_EQ(met("spi command=62 kill"), 1);
  EXPECT_EQ(met("spi query=version kill"), 1);
  EXPECT_EQ(met("spi boot-code=0xE2 kill"), 1);
  EXPECT_EQ(met("spi boot-code=0x66 kill"), 1);
  EXPECT_EQ(met("spi command=0xE2 kill"), 0);
}

TEST(Matching, TellsAQueryFromACommandOfTheSameCode) {
  const Transfer zoom3_count = lens_transfer(frame({0x3A}, 12));
  const Transfer zoom1_rate = lens_transfer(frame({0x3A}, 7));
  EXPECT_TRUE(meets("spi query=zoom3-count", zoom3_count));
  EXPECT_FALSE(meets("spi query=zoom3-count", zoom1_rate));
  EXPECT_TRUE(meets("spi command=zoom1-rate", zoom1_rate));
}

TEST(Matching, GoesByTheRegister) {
  EXPECT_TRUE(meets("spi register=30", register_write));
  EXPECT_TRUE(meets("spi register=28", register_read));
  EXPECT_EQ(met("spi register=28 kill"), 1);
  EXPECT_TRUE(meets("spi register=7", lens_transfer(frame({15, 0, 7}, 7)))) << "of DE015";
  EXPECT_TRUE(meets("spi register=7", lens_transfer(frame({0x8F, 0, 7}, 12))));
  EXPECT_TRUE(meets("pt5111 register=53", word));
  EXPECT_FALSE(meets("pt5111 register=52", word));
  EXPECT_TRUE(meets("i2c register=7", pan_move));
  EXPECT_FALSE(meets("i2c register=8", pan_move));
}

TEST(Matching, KnowsARegisterByItsFamily) {
  const auto position = [](HeadFamily family, std::uint8_t number) {
    return head_transfer(family, 40, Bytes{number}, 2);
  };
  EXPECT_TRUE(meets("i2c register=position", position(HeadFamily::tasmere, 4)));
  EXPECT_TRUE(meets("i2c register=position", position(HeadFamily::vetra, 50)));
  EXPECT_FALSE(meets("i2c register=position", position(HeadFamily::vetra, 4)));
  EXPECT_FALSE(meets("i2c register=turbo", position(HeadFamily::vetra, 83)));
  EXPECT_FALSE(meets("i2c register=turbo", head_transfer(HeadFamily::vetra, 40, {}, 0)));
}

TEST(Matching, GoesByTheSlave) {
  EXPECT_TRUE(meets("i2c slave=tilt", tilt_status));
  EXPECT_EQ(met("i2c slave=tilt kill"), 1);
  EXPECT_EQ(met("i2c slave=pan kill"), 2);
}

TEST(Matching, GoesByTheDirection) {
  EXPECT_EQ(met("spi direction=received kill"), 4);
  EXPECT_EQ(met("spi direction=sent kill"), 4);
  EXPECT_EQ(met("i2c direction=received kill"), 2);
  EXPECT_EQ(met("file direction=sent kill"), 1);
}

TEST(Matching, GoesByTheFile) {
  EXPECT_TRUE(meets("file path=OIS_S_Cali.dat", reading));
  EXPECT_TRUE(meets("file path=/bin/OIS_S_Cali.dat", reading));
  EXPECT_FALSE(meets("file path=/tmp/OIS_S_Cali.dat", reading));
  EXPECT_EQ(met("file path=DC_S_Cali.dat kill"), 1);
  EXPECT_EQ(met("file unreadable"), 1);
  EXPECT_EQ(met("file full"), 1);
  for (const char* const mode : {"w", "a", "r+", "rb+", "w+"}) {
    EXPECT_TRUE(fault("file full").waits_for(file_opening("/bin/OIS_S_Cali.dat", mode))) << mode;
  }
}

TEST(Matching, FlipsOnlyABitThatIsThere) {
  EXPECT_TRUE(fault("spi flip=6.0").waits_for(zoom1_enable));
  EXPECT_FALSE(fault("spi flip=7.0").waits_for(zoom1_enable));
  EXPECT_FALSE(fault("pt5111 flip=2.0").waits_for(word));
  EXPECT_TRUE(fault("i2c flip=0.0").waits_for(tilt_status));
  EXPECT_FALSE(fault("i2c flip=1.0").waits_for(tilt_status)) << "one byte is sent";
  EXPECT_FALSE(fault("i2c direction=received flip=1.0").waits_for(tilt_status)) << "and one read";
  EXPECT_FALSE(fault("i2c flip=0.0").waits_for(head_transfer(HeadFamily::tasmere, 41, {}, 0)));
}

TEST(Matching, IsBusyWhereAStatusIsAskedFor) {
  EXPECT_TRUE(fault("spi busy").waits_for(zoom1_running));
  EXPECT_TRUE(fault("spi busy").waits_for(register_read));
  EXPECT_TRUE(fault("spi busy register=28").waits_for(register_read));
  EXPECT_EQ(met("spi busy"), 2);
  EXPECT_EQ(met("i2c busy"), 2);
  EXPECT_FALSE(fault("i2c busy").waits_for(head_transfer(HeadFamily::vetra, 40, Bytes{3}, 1)));
  EXPECT_FALSE(fault("spi busy").waits_for(lens_transfer(frame({0x8C, 0, 60}, 7))));
}

TEST(Matching, HoldsAFrameOfAnyLength) {
  for (std::size_t length = 0; length < 20; ++length) {
    const Bytes bytes(length);
    EXPECT_FALSE(meets("spi command=62", lens_transfer(bytes)));
    EXPECT_FALSE(meets("pt5111 register=1", pt5111_transfer(bytes)));
    EXPECT_FALSE(meets("i2c register=1", head_transfer(HeadFamily::vetra, 40, bytes, 3)));
  }
}

TEST(Busy, IsSaidInTheBitsThatTellIt) {
  Bytes reply(12, 0);
  say_running(zoom1_running, reply);
  EXPECT_EQ(reply, (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0}));
  Bytes status(12, 0);
  say_running(register_read, status);
  EXPECT_EQ(status, (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}));
  Bytes vetra{0x06};
  say_running(vetra_status, vetra);
  EXPECT_EQ(vetra, Bytes{0x02});
  Bytes tasmere{0x00};
  say_running(tilt_status, tasmere);
  EXPECT_EQ(tasmere, Bytes{0x01});
}

TEST(Busy, LeavesOtherAnswersAlone) {
  Bytes reply(12, 0);
  say_running(version_query, reply);
  EXPECT_EQ(reply, Bytes(12, 0));
  Bytes nothing;
  say_running(zoom1_running, nothing);
  EXPECT_TRUE(nothing.empty());
}

}  // namespace
