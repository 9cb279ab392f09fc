// The pause that a Vetra controller needs behind every transfer. Its family is internal state.
#include <gtest/gtest.h>

#include <cstdint>

#include "kelvo.h"
#include "pantilt/link/family.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

void transfer_in_every_way() {
  std::uint8_t bytes[2] = {};
  SendI2C(40, 6, nullptr, 1);
  ReadI2C(41, 50, bytes, 2);
  ReadI2C_M(40, 1, bytes, 2, bytes, 1);
}

TEST(Pacing, FollowsEveryTransferToAVetraController) {
  Script script;
  Init_I2C();
  giMotorType = 1;
  transfer_in_every_way();
  EXPECT_EQ(script.transcript(), R"(open /dev/i2c-2
i2c 40: w 06
usleep 2000
i2c 41: w 32 r 2
usleep 2000
i2c 40: w 01 00 r 1
usleep 2000
)");
}

TEST(Pacing, FollowsAFailedTransferToo) {
  Script script;
  Init_I2C();
  giMotorType = 1;
  script.fail(Call::i2c, 1, forever, EREMOTEIO);
  transfer_in_every_way();
  EXPECT_EQ(script.transcript(), R"(open /dev/i2c-2
i2c 40: w 06 -> EREMOTEIO
usleep 2000
i2c 41: w 32 r 2 -> EREMOTEIO
usleep 2000
i2c 40: w 01 00 r 1 -> EREMOTEIO
usleep 2000
)");
}

TEST(Pacing, DoesNotFollowWhatWasNotTransferred) {
  Script script;
  giMotorType = 1;
  Init_I2C();
  script.fail(Call::calloc, 1, forever, ENOMEM);
  transfer_in_every_way();
  EXPECT_EQ(script.transcript(), "open /dev/i2c-2\n");
  Release_I2C();
  transfer_in_every_way();
  EXPECT_EQ(script.transcript(), "close /dev/i2c-2\n");
}

TEST(Pacing, IsNotForATasmereController) {
  Script script;
  Init_I2C();
  giMotorType = 2;
  transfer_in_every_way();
  EXPECT_EQ(script.transcript(), R"(open /dev/i2c-2
i2c 40: w 06
i2c 41: w 32 r 2
i2c 40: w 01 00 r 1
)");
}

}  // namespace
}  // namespace kelvo::test
