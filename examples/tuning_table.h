// AN EXAMPLE of the tuning table that Init_Setup_PID() takes: plausible numbers, measured on no head. The
// maker of a head supplies its own; with wrong gains a head whistles, overshoots or misses its targets.
//
// Twelve rows of seven words. The library reads those that are not 0 here.
#ifndef EXAMPLES_TUNING_TABLE_H
#define EXAMPLES_TUNING_TABLE_H

#include <stdint.h>

enum { tuning_rows = 12, tuning_words = 7 };

// clang-format off
static const int32_t tuning_table[tuning_rows][tuning_words] = {
    // Tasmere:         P     I       D
    {0,            0x1000,    1, 0x4000, 0, 0, 0},  //  0  pan, continuous
    {0,            0x0800,   11, 0x2800, 0, 0, 0},  //  1  pan, to a position
    {0,            0x1000,    1, 0x4000, 0, 0, 0},  //  2  tilt, continuous
    {0,            0x0800,    1, 0x1800, 0, 0, 0},  //  3  tilt, to a position
    {0,            0x0A00,   16, 0x3000, 0, 0, 0},  //  4  pan, standing still
    {0},                                            //  5
    {0},                                            //  6
    {0},                                            //  7
    // Vetra:
    // position P, I   speed P,   I   current   acceleration, deceleration
    {         35,  0,     1152, 100,      500,         40000,        40000},  //  8  pan, continuous
    {         35,  0,     1152, 100,      600,        400000,       400000},  //  9  pan, to a position
    {         35,  0,     1152, 100,      500,         40000,        40000},  // 10  tilt, continuous
    {         35,  0,     1152, 100,      600,        400000,       400000},  // 11  tilt, to a position
};
// clang-format on

#endif
