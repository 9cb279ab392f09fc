#!/usr/bin/env python3
"""kelvoctl status: everything that can be read, and nothing is changed by it."""

import kelvoctl_tool
import project

MOTORS = {"de015": ["zoom1", "zoom2", "focus"], "df033": ["zoom1", "zoom2", "zoom3", "focus"],
          "t5391": ["zoom1", "focus"]}
MEASURED = ["gyro", "hall"]


class Status(kelvoctl_tool.KelvoctlTest):
    def test_the_motors_of_every_module(self):
        for lens, motors in MOTORS.items():
            with self.subTest(lens):
                self.remove_camera()
                self.boot(lens=lens)
                status = self.result("status", lens=lens)
                self.assertEqual((status["module"], status["lens"]), (lens, "/dev/spi_renesas"))
                self.assertRegex(status["version"], "0x[0-9A-F]{4}")
                self.assertEqual([motor["motor"] for motor in status["motors"]], motors)
                self.assertEqual([motor["running"] for motor in status["motors"]], [False] * len(motors))
                self.assertEqual(self.violations(), [])

    def check_same(self, status, other, left_out=()):
        """What another command shows has the same name, and is the same; what is measured is never at rest."""
        names = set(other) - {"schema", "command", *left_out}
        self.assertTrue(names)
        for name in names:
            self.assertIn(name, status)
            if name not in MEASURED:
                self.assertEqual(status[name], other[name], name)

    def test_what_other_commands_show_of_the_lens(self):
        for lens in MOTORS:
            with self.subTest(lens):
                self.remove_camera()
                self.boot(lens=lens)
                status = self.result("status", lens=lens)
                self.assertEqual([set(status[name]) for name in MEASURED], [{"x", "y"}] * 2)
                self.check_same(status, self.result("attach", lens=lens))
                self.check_same(status, self.result("ois", "read", lens=lens))
                self.check_same(status["offset"], self.result("pi", "offset", lens=lens), ["module"])
                for row in status["motors"]:
                    if row["count"] is not None:
                        self.check_same(row, self.result(row["motor"], "count", lens=lens), ["module"])

    def test_interrupters_where_asking_changes_nothing(self):
        for lens in ("df033", "t5391"):
            with self.subTest(lens):
                self.boot(lens=lens)
                self.check(self.ctl("focus", "move", "-900", "--wait", lens=lens), 0, None)
                status = self.result("status", lens=lens)
                self.check_same(status, self.result("pi", "read", lens=lens))
                self.assertEqual([row["motor"] for row in status["sensors"] if row["interrupted"]], ["focus"])
        self.boot(lens="de015")
        self.assertIsNone(self.result("status", lens="de015")["sensors"])

    def test_what_other_commands_show_of_the_head(self):
        for family in ("tasmere", "vetra"):
            with self.subTest(family):
                self.remove_camera()
                self.boot(settings=f"clock=sleep head={family}")
                status = self.result("status", settings="")
                versions = self.result("head", "version", settings="")
                detected = self.result("head", "detect", settings="")["controllers"]
                for row, controller in zip(status["axes"], detected, strict=True):
                    self.check_same(row, controller, ["slave", "answers"])
                    self.check_same(row, self.result(row["axis"], "position", settings=""))
                    self.check_same(row, self.result(row["axis"], "limits", "show", settings=""))
                    self.assertEqual(row["version"], versions[row["axis"]])

    def test_the_axes_of_both_families(self):
        for family in ("tasmere", "vetra"):
            with self.subTest(family):
                self.remove_camera()
                self.boot(settings=f"clock=sleep head={family}")
                status = self.result("status", settings="")
                self.assertEqual(status["head"], family)
                self.assertEqual([axis["axis"] for axis in status["axes"]], ["pan", "tilt"])
                for axis in status["axes"]:
                    self.assertTrue(0 <= axis["position"] <= 65535)
                    self.assertTrue(axis["at_rest"])
                    self.assertEqual(axis["temperature"] is None, family == "vetra")
                self.assertEqual(self.violations(), [])

    def test_as_tables(self):
        self.boot()
        text = self.check(self.ctl("status"), 0, None).stdout
        self.assertRegex(text, r"(?m)^module +df033$")
        self.assertRegex(text, r"(?m)^filter +-$")
        self.assertRegex(text, r"(?m)^motor  count  running$")
        self.assertRegex(text, r"(?m)^axis  position  at rest  calibrated  awake ")

    def test_nothing_is_changed(self):
        self.boot()
        before, after = self.result("status"), self.result("status")
        for status in (before, after):
            for name in MEASURED:
                del status[name]
        self.assertEqual(after, before)

    def test_a_controller_without_a_program(self):
        result = self.ctl("status")
        self.check(result, 4, None, "kelvoctl: status: no program answers: boot the controller\n")
        self.assertIn("axis", result.stdout)
        self.assertNotIn("motor", result.stdout)

    def test_a_transfer_that_fails(self):
        self.boot(settings="clock=sleep fault=spi:query=zoom3-count:error=EIO")
        result = self.ctl("status", settings="")
        line = "/dev/spi_renesas: a transfer failed: see whether the controller has power, and boot it"
        self.check(result, 4, None, f"kelvoctl: status: {line}\n")
        self.assertRegex(result.stdout, rf"(?m)^lens +{line}$")
        self.assertIn("axis", result.stdout)

    def test_an_axis_that_is_silent(self):
        self.boot(settings="clock=sleep fault=i2c:slave=tilt:error=EIO")
        result = self.ctl("status", settings="")
        self.check(result, 4, None, "kelvoctl: status: tilt: the controller does not answer\n")
        self.assertRegex(result.stdout, r"(?m)^tilt +- +- ")
        self.assertRegex(result.stdout, r"(?m)^pan +\d+ +yes ")

    def test_no_devices(self):
        result = kelvoctl_tool.call("--lens", "df033", "status")
        self.check(result, 3, None, "kelvoctl: status: /dev/spi_renesas: No such file or directory: "
                                    "see kelvoctl doctor\n")
        self.assertRegex(result.stdout, r"(?m)^lens +/dev/spi_renesas: No such file or directory")
        self.assertRegex(result.stdout, r"(?m)^head +/dev/i2c-2: No such file or directory")

    def test_no_module(self):
        result = self.check(kelvoctl_tool.call("status"), 2, "", None)
        self.assertIn("which lens module is fitted?", result.stderr)


if __name__ == "__main__":
    project.main()
