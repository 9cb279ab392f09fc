#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

#include "kelvo.h"
#include "pantilt/head.h"
#include "script/script.h"

namespace kelvo::test {
namespace {

constexpr HeadCall vetra_gains[] = {
    {"SetVetraPanPID", [] { return SetVetraPanPID(16, 0x1234, 0x0056); },
     "i2c 40: w 10 12 34 00 56\n"},
    {"SetVetraTiltPID", [] { return SetVetraTiltPID(17, -1, -2); }, "i2c 41: w 11 FF FF FF FE\n"},
    {"SetVetraPanPID, any register", [] { return SetVetraPanPID(0xAB, 0, -32768); },
     "i2c 40: w AB 00 00 80 00\n"},
    {"SetVetraTiltPID, any register", [] { return SetVetraTiltPID(0, 1, 2); },
     "i2c 41: w 00 00 01 00 02\n"},
    {"SetVetraPanPID, low byte of the register", [] { return SetVetraPanPID(0x1234, 1, 2); },
     "i2c 40: w 34 00 01 00 02\n"},
    {"PanPosPIDsetup", [] { return PanPosPIDsetup(0x1234, -2); }, "i2c 40: w 10 12 34 FF FE\n"},
    {"TiltPosPIDsetup", [] { return TiltPosPIDsetup(0x1234, -2); }, "i2c 41: w 10 12 34 FF FE\n"},
    {"PanPIDsetup", [] { return PanPIDsetup(0x1234, 0x0056, 7); },
     "out \"P:0x1234 I:0x56\\n\"\ni2c 40: w 11 12 34 00 56\n"},
    {"TiltPIDsetup", [] { return TiltPIDsetup(0x1234, 0x0056, 7); }, "i2c 41: w 11 12 34 00 56\n"},
    {"PanPIDsetup, low halves", [] { return PanPIDsetup(0xFFFEABCD, 0x87654321, -1); },
     "out \"P:0xfffeabcd I:0x87654321\\n\"\ni2c 40: w 11 AB CD 43 21\n"},
    {"TiltPIDsetup, low halves", [] { return TiltPIDsetup(0xFFFEABCD, 0x87654321, -1); },
     "i2c 41: w 11 AB CD 43 21\n"},
    {"Pan_AccDec_setup", [] { return Pan_AccDec_setup(4000000, 40000); },
     "i2c 40: w 13 00 3D 09 00\ni2c 40: w 15 00 00 9C 40\n"},
    {"Tilt_AccDec_setup", [] { return Tilt_AccDec_setup(-2, 0x12345678); },
     "i2c 41: w 13 FF FF FF FE\ni2c 41: w 15 12 34 56 78\n"},
};

constexpr HeadCall tasmere_gains[] = {
    {"SetVetraPanPID", [] { return SetVetraPanPID(16, 0x1234, 0x0056); }, ""},
    {"SetVetraTiltPID", [] { return SetVetraTiltPID(17, -1, -2); }, ""},
    {"PanPosPIDsetup", [] { return PanPosPIDsetup(0x1234, -2); }, ""},
    {"TiltPosPIDsetup", [] { return TiltPosPIDsetup(0x1234, -2); }, ""},
    {"PanPIDsetup", [] { return PanPIDsetup(0x1234, 0x0056, 7); },
     "i2c 40: w 0C 12 34\ni2c 40: w 0E 00 56\ni2c 40: w 10 00 07\n"},
    {"TiltPIDsetup", [] { return TiltPIDsetup(0x1234, 0x0056, 7); },
     "i2c 41: w 0C 12 34\ni2c 41: w 0E 00 56\ni2c 41: w 10 00 07\n"},
    {"PanPIDsetup, low halves", [] { return PanPIDsetup(0xFFFEABCD, 0x87654321, -2); },
     "i2c 40: w 0C AB CD\ni2c 40: w 0E 43 21\ni2c 40: w 10 FF FE\n"},
    {"TiltPIDsetup, low halves", [] { return TiltPIDsetup(0xFFFEABCD, 0x87654321, -2); },
     "i2c 41: w 0C AB CD\ni2c 41: w 0E 43 21\ni2c 41: w 10 FF FE\n"},
    {"Pan_AccDec_setup", [] { return Pan_AccDec_setup(4000000, 40000); },
     "i2c 40: w 13 00 3D 09 00\ni2c 40: w 15 00 00 9C 40\n"},
    {"Tilt_AccDec_setup", [] { return Tilt_AccDec_setup(-2, 0x12345678); },
     "i2c 41: w 13 FF FF FF FE\ni2c 41: w 15 12 34 56 78\n"},
};

TEST(Gains, AreWrittenToAVetra) {
  Script script;
  vetra_head(script);
  expect_on_vetra(script, vetra_gains);
  expect_on_vetra(script, vetra_gains);  // nothing is kept here
}

TEST(Gains, AreWrittenToATasmere) {
  Script script;
  tasmere_head(script);
  expect_on_tasmere(script, tasmere_gains);
  expect_on_tasmere(script, tasmere_gains);
}

TEST(Gains, AreZeroWhateverTheBusDid) {
  Script script;
  tasmere_head(script);
  script.fail(Call::i2c, 1, forever, ENXIO);
  EXPECT_EQ(PanPIDsetup(1, 2, 3), 0);
  EXPECT_EQ(Tilt_AccDec_setup(1, 2), 0);
  EXPECT_EQ(script.transcript(), R"(i2c 40: w 0C 00 01 -> ENXIO
i2c 40: w 0E 00 02 -> ENXIO
i2c 40: w 10 00 03 -> ENXIO
i2c 41: w 13 00 00 00 01 -> ENXIO
i2c 41: w 15 00 00 00 02 -> ENXIO
)");
}

TEST(Gains, OfAVetraAreReadBack) {
  Script script;
  vetra_head(script);
  script.i2c_register(40, 0x10, {0x12, 0x34, 0xFF, 0xFE});
  script.i2c_register(41, 0xAB, {0x80, 0x00, 0x00, 0x01});
  std::uint32_t a = 0xEEEEEEEE;
  std::uint32_t b = 0xEEEEEEEE;
  EXPECT_EQ(GetVetraPanPID(16, &a, &b), 0);
  EXPECT_EQ(a, 0x1234U);
  EXPECT_EQ(b, 0xFFFEU);
  EXPECT_EQ(GetVetraTiltPID(0x1AB, &a, &b), 0);
  EXPECT_EQ(a, 0x8000U);
  EXPECT_EQ(b, 1U);
  EXPECT_EQ(script.transcript(), paced("i2c 40: w 10 r 4\ni2c 41: w AB r 4\n"));
}

TEST(Gains, OfAVetraAreZerosWhenTheyCannotBeRead) {
  Script script;
  vetra_head(script);
  script.i2c_register(40, 0x10, {0x12, 0x34, 0xFF, 0xFE});
  script.i2c_register(41, 0x10, {0x12, 0x34, 0xFF, 0xFE});
  std::uint32_t a = 0xEEEEEEEE;
  std::uint32_t b = 0xEEEEEEEE;
  script.fail(Call::i2c, 1, 1, ENXIO);
  EXPECT_EQ(GetVetraPanPID(16, &a, &b), 0);
  EXPECT_EQ(a, 0U);
  EXPECT_EQ(b, 0U);
  a = b = 0xEEEEEEEE;
  script.fail(Call::calloc, 1, 1, ENOMEM);
  EXPECT_EQ(GetVetraTiltPID(16, &a, &b), 0);
  EXPECT_EQ(a, 0U);
  EXPECT_EQ(b, 0U);
}

TEST(Gains, OfATasmereAreNotReadBack) {
  Script script;
  tasmere_head(script);
  std::uint32_t a = 0xEEEEEEEE;
  std::uint32_t b = 0xDDDDDDDD;
  EXPECT_EQ(GetVetraPanPID(16, &a, &b), 0);
  EXPECT_EQ(GetVetraTiltPID(16, &a, &b), 0);
  EXPECT_EQ(a, 0xEEEEEEEE);
  EXPECT_EQ(b, 0xDDDDDDDD);
  EXPECT_EQ(script.transcript(), "");
}

TEST(TuningTable, IsZeroAtLoad) {
  for (const std::int32_t word : giMOTOR_Init_Reg) EXPECT_EQ(word, 0);
}

TEST(TuningTable, IsCopiedByteForByte) {
  Script script;
  std::vector<std::uint8_t> table(336);
  std::iota(table.begin(), table.end(), std::uint8_t{3});
  EXPECT_EQ(Init_Setup_PID(table.data()), 0);
  const auto* held = reinterpret_cast<const std::uint8_t*>(giMOTOR_Init_Reg);
  EXPECT_EQ(Bytes(held, held + sizeof giMOTOR_Init_Reg), table);
  table[0] = 0x77;
  EXPECT_EQ(held[0], 3);
  EXPECT_EQ(script.transcript(), "");
}

}  // namespace
}  // namespace kelvo::test
