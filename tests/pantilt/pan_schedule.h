// What a Vetra's pan axis gets in each of the five cases, from the plain tuning table and with nothing
// written before, without the pauses.
#ifndef KELVO_TESTS_PANTILT_PAN_SCHEDULE_H
#define KELVO_TESTS_PANTILT_PAN_SCHEDULE_H

namespace kelvo::test {

inline constexpr const char* pan_cruise = R"(out "pos 3#####################pan P:0x138 I:0x139\n"
i2c 40: w 10 01 38 01 39
out "spd 3#####################pan P:0x13a I:0x13b\n"
out "P:0x13a I:0x13b\n"
i2c 40: w 11 01 3A 01 3B
out "cur 3#####################pan cur:0x13c \n"
out "Current :316\n"
i2c 40: w 12 01 3C
out "Gain 3#####################pan acc:0x12013d dec:0x12013e\n"
i2c 40: w 13 00 12 01 3D
i2c 40: w 15 00 12 01 3E
)";

inline constexpr const char* pan_slow = R"(out "pos 2#####################pan P:0x14 I:0x0\n"
i2c 40: w 10 00 14 00 00
out "spd 2#####################pan P:0xfa0 I:0xbb8\n"
out "P:0xfa0 I:0xbb8\n"
i2c 40: w 11 0F A0 0B B8
out "cur 2#####################pan cur:0x13c \n"
out "Current :316\n"
i2c 40: w 12 01 3C
out "Gain 2#####################pan acc:0x9c40 dec:0x9c40\n"
i2c 40: w 13 00 00 9C 40
i2c 40: w 15 00 00 9C 40
)";

inline constexpr const char* pan_creep = R"(out "pos 1#####################pan P:0x14 I:0x0\n"
i2c 40: w 10 00 14 00 00
out "spd 1#####################pan P:0x1388 I:0x1388\n"
out "P:0x1388 I:0x1388\n"
i2c 40: w 11 13 88 13 88
out "Current :316\n"
i2c 40: w 12 01 3C
out "cur 1#####################pan cur:0x13c\n"
out "Gain 1#####################pan acc:0x9c40 dec:0x9c40\n"
i2c 40: w 13 00 00 9C 40
i2c 40: w 15 00 00 9C 40
)";

// The current in the line is the one before.
inline constexpr const char* pan_abs_slow = R"(out "pos 1@@@@@@@@@@@@@pan P:0x14 I:0x0\n"
i2c 40: w 10 00 14 00 00
out "spd 1@@@@@@@@@@@@@pan P:0x480 I:0x64\n"
out "P:0x480 I:0x64\n"
i2c 40: w 11 04 80 00 64
out "cur 1@@@@@@@@@@@@@pan cur:0x0 \n"
out "Current :323\n"
i2c 40: w 12 01 43
out "Gain 1@@@@@@@@@@@@@pan acc:0x3d0900 dec:0x3d0900\n"
i2c 40: w 13 00 3D 09 00
i2c 40: w 15 00 3D 09 00
)";

// From count 1000 to position 65535, which is count 0.
inline constexpr const char* pan_abs_table = R"(i2c 40: w 32 r 2
out "pos 2@@@@@@@@@@@@@pan iDiff_Pos:1000 = iPos_data:1000 - i_step:0 P:26 I:0x140\n"
i2c 40: w 10 00 1A 01 40
out "spd 2@@@@@@@@@@@@@pan P:0x141 I:0x142\n"
out "P:0x141 I:0x142\n"
i2c 40: w 11 01 41 01 42
out "cur 2@@@@@@@@@@@@@pan :0x143\n"
out "Current :323\n"
i2c 40: w 12 01 43
out "gain 2@@@@@@@@@@@@@pan acc:0x120144 dec:0x120145\n"
i2c 40: w 13 00 12 01 44
i2c 40: w 15 00 12 01 45
)";

}  // namespace kelvo::test

#endif
