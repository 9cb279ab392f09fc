#!/usr/bin/env python3
"""kelvoctl when a controller of the head does not answer: what needs the other one alone goes on."""

import kelvoctl_tool
import project
from head_tool import HeadTest

SILENT = "controller does not answer: see whether it has power"
NO_PAN = "clock=sleep fault=i2c:slave=pan:nak"
NO_TILT = "clock=sleep fault=i2c:slave=tilt:nak"
BEFORE_TILT = ("/dev/i2c-2: the pan controller does not answer, and tells the family before tilt can be used: see "
               "whether it has power")


class SilentPan(HeadTest):
    def test_the_versions(self):
        """Whose version is where, pan alone tells."""
        for _ in self.heads():
            self.check(self.ctl("head", "version", settings=NO_PAN), 4, "head  -\npan   -\ntilt  -\n",
                       f"kelvoctl: head version: /dev/i2c-2: the pan {SILENT}\n")
            self.assertEqual(self.violations(), [])

    def test_who_answers(self):
        for _ in self.heads():
            result = self.result("head", "detect", code=4, settings=NO_PAN)
            self.assertIsNone(result["head"])
            self.assertEqual([row["answers"] for row in result["controllers"]], [False, True])
            self.assertEqual(self.violations(), [])

    def test_nobody_answers(self):
        """The library would take silence for a tasmere head."""
        result = self.result("head", "detect", code=4, settings="clock=sleep fault=i2c:nak")
        self.assertIsNone(result["head"])
        self.assertEqual([row["answers"] for row in result["controllers"]], [False, False])

    def test_tilt_waits_for_pan(self):
        for command in (["position"], ["stop"], ["wake"], ["limits", "show"], ["reset", "-y"]):
            with self.subTest(command[0]):
                name = " ".join(word for word in command if word != "-y")
                self.check_fails(4, f"tilt {name}: {BEFORE_TILT}", "tilt", *command, settings=NO_PAN)

    def test_registers_of_tilt(self):
        for register, head in ((4, "tasmere"), (50, "vetra")):
            self.head = head
            self.remove_camera()
            before = self.result("i2c", "read", "tilt", register, 2)["value"]
            fault = kelvoctl_tool.call_sim("fault", "add", self.camera, "i2c slave=pan nak")
            self.assertEqual(fault.returncode, 0, fault.stderr)
            self.assertAlmostEqual(self.result("i2c", "read", "tilt", register, 2)["value"], before, delta=1)
            self.check_fails(4, "i2c read: /dev/i2c-2: slave 40 does not answer", "i2c", "read", "pan", register, 2)
            self.assertEqual(self.violations(), [])

    def test_a_register_of_tilt_is_written(self):
        self.check(self.ctl("i2c", "write", "tilt", 83, 1, settings=NO_PAN), 0, None)
        self.assertEqual(self.violations(), [])

    def test_what_either_family_would_restart_with_asks_first(self):
        for register in (1, 34, 35):
            result = self.ctl("i2c", "write", "tilt", register, settings=NO_PAN)
            self.check(result, 8, "", None)
            self.assertIn(f"Register {register} of tilt ", result.stderr)

    def test_the_family_is_found_as_soon_as_it_answers(self):
        """The library takes silence for an answer, for as long as the process lives."""
        self.head = "vetra"
        path = self.script("tilt position", "head version", "tilt position")
        with path.open() as lines:
            result = self.ctl("shell", stdin=lines, settings="clock=sleep fault=i2c:slave=pan:nth=1:nak")
        self.check(result, 0, None, f"kelvoctl: tilt position: {BEFORE_TILT}\n")
        self.assertIn("head  vetra\n", result.stdout)
        self.assertEqual(self.violations(), [])


class SilentTilt(HeadTest):
    def test_the_versions(self):
        for head, version in (("tasmere", "0x0300"), ("vetra", "0x0015")):
            self.head = head
            self.remove_camera()
            self.check(self.ctl("head", "version", settings=NO_TILT), 4, f"head  {head}\npan   {version}\ntilt  -\n",
                       f"kelvoctl: head version: /dev/i2c-2: the tilt {SILENT}\n")

    def test_who_answers(self):
        result = self.result("head", "detect", code=4, settings=NO_TILT)
        self.assertEqual(result["head"], "tasmere")
        self.assertEqual([row["answers"] for row in result["controllers"]], [True, False])


if __name__ == "__main__":
    project.main()
