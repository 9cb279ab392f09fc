// A unit's calibration of the iris.
#ifndef KELVO_TESTS_OIS_IRIS_CALIBRATION_H
#define KELVO_TESTS_OIS_IRIS_CALIBRATION_H

#include "script/script.h"

namespace kelvo::test {

/// Polarity 0x1234, offset 0x0102, gain 0xFFFE, minimum 0x0050, maximum 0x0FA0, sine 0x7777.
inline const Bytes iris_calibration = {0x34, 0x12, 0, 0, 0x02, 0x01, 0, 0, 0xFE, 0xFF, 0, 0,
                                       0x50, 0x00, 0, 0, 0xA0, 0x0F, 0, 0, 0x77, 0x77, 0, 0};

}  // namespace kelvo::test

#endif
