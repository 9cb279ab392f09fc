#!/usr/bin/env python3
"""Whatever the interface has for the pan axis it has for the tilt axis, and the other way round."""

import re
import unittest

import project
from interface_test import declarations

HEADER = project.SOURCE / "include" / "kelvo" / "pantilt.h"

# Pan name: tilt name, where it is not the same name with the other axis in it.
ODD_TWINS = {
    "PanLimitSet": "TiltLimit",
    "SetPanCurrent": "SetTILTCurrent",
}

# Names without a twin, each with its reason.
ALONE = {
    "hndl": "one bus for both controllers",
    "Init_I2C": "one bus for both controllers",
    "Release_I2C": "one bus for both controllers",
    "SendI2C": "takes the controller's address",
    "ReadI2C": "takes the controller's address",
    "ReadI2C_M": "takes the controller's address",
    "GetMotorType": "both controllers are of the family that the pan controller reports",
    "giSerTiltUseHall": "only the tilt axis turns its positions by the Hall sensor",
    "Vetra2Tasmere": "a tilt count has an offset of its own; pan counts are converted where they are used",
    "Tasmere2Vetra": "a tilt count has an offset of its own; pan counts are converted where they are used",
    "giMOTOR_Init_Reg": "one table with the rows of both axes",
    "Init_Setup_PID": "one table with the rows of both axes",
    "Debug_PID_En": "freezes both axes",
    "Set_stop_PID": "retunes both axes",
}

# Pan names whose twin takes other types, each with its reason.
OTHER_TYPES = {
    "PanLimitSet": "the tilt limits are unsigned",
    "SetPanCurrent": "the tilt current is unsigned",
}


def twin_of(name):
    """The tilt name that belongs to a pan name, or None for a name of no pan axis."""
    if name in ODD_TWINS:
        return ODD_TWINS[name]
    twin = name.replace("Pan", "Tilt")
    return twin if twin != name else None


def types_of(name, text):
    """How a name is declared, without the names of its parameters."""
    text = re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)
    match = re.search(rf"([\w ]+?\**\s*)\b{name}\s*(\(([^()]*)\)|(?:\[\w+\])*)\s*;", text)
    result = " ".join(match[1].split())
    if match[3] is None:
        return result + match[2]
    parameters = [" ".join(parameter.split()) for parameter in match[3].split(",")]
    return f"{result}({', '.join(re.sub(r'(?<=[ *])[a-z_]+$', '', part) for part in parameters)})"


def complaints(text):
    """What is wrong with a header, each as one line."""
    functions, data = declarations(text)
    names = set(functions + data)
    if not names:
        raise ValueError("no declaration")
    paired = {}
    for name in sorted(names):
        if name not in ALONE and twin_of(name):
            paired[name] = twin_of(name)
            if twin_of(name) not in names:
                yield f"{name} has no twin {twin_of(name)}"
    known = set(paired) | set(paired.values()) | set(ALONE)
    for name in sorted(names - known):
        yield f"{name} is of no axis, or has no pan twin"
    for name, twin in paired.items():
        if twin in names and (types_of(name, text) != types_of(twin, text)) != (name in OTHER_TYPES):
            yield f"{name}: {types_of(name, text)}, {twin}: {types_of(twin, text)}"


class Twins(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.text = HEADER.read_text()
        functions, data = declarations(cls.text)
        cls.names = set(functions + data)

    def test_every_name_has_its_twin_or_its_reason(self):
        self.assertEqual(list(complaints(self.text)), [])

    def test_no_list_names_what_is_not_there(self):
        for listed in (ALONE, ODD_TWINS, OTHER_TYPES, ODD_TWINS.values()):
            self.assertEqual(sorted(set(listed) - self.names), [])

    def test_most_names_are_twins(self):
        self.assertGreater(len(self.names) - len(ALONE), len(self.names) / 2)


class Reading(unittest.TestCase):
    """The check above sees only what these functions read."""

    ODD = "int32_t PanLimitSet(int32_t a, int32_t b);int32_t TiltLimit(uint32_t a, uint32_t b);"

    def test_a_missing_twin_is_told(self):
        self.assertEqual(list(complaints("int32_t GetPanPos(uint32_t *pos);")),
                         ["GetPanPos has no twin GetTiltPos"])
        self.assertEqual(list(complaints("extern int32_t iTiltCache[7];")),
                         ["iTiltCache is of no axis, or has no pan twin"])
        self.assertEqual(list(complaints("int32_t PanLimitSet(int32_t a, int32_t b);")),
                         ["PanLimitSet has no twin TiltLimit"])
        self.assertEqual(list(complaints("int32_t Calibrate(void);")),
                         ["Calibrate is of no axis, or has no pan twin"])

    def test_other_types_are_told(self):
        self.assertEqual(len(list(complaints("int32_t PanStop(void);int32_t TiltStop(int32_t how);"))), 1)
        self.assertEqual(len(list(complaints("int32_t PanGo(int32_t a);int32_t TiltGo(uint32_t a);"))), 1)
        self.assertEqual(len(list(complaints("extern int32_t iPanA[7];extern int32_t iTiltA[6];"))), 1)

    def test_twins_pass(self):
        self.assertEqual(list(complaints("int32_t PanGo(int32_t a,\n uint32_t *from);"
                                         "int32_t TiltGo(int32_t a, uint32_t *to);" + self.ODD)), [])

    def test_a_listed_difference_that_is_gone_is_told(self):
        self.assertEqual(len(list(complaints(self.ODD.replace("uint32_t", "int32_t")))), 1)

    def test_an_empty_header_is_refused(self):
        with self.assertRaises(ValueError):
            list(complaints("/* int32_t PanStop(void); */"))


if __name__ == "__main__":
    project.main()
