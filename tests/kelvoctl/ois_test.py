#!/usr/bin/env python3
"""kelvoctl's stabiliser: its switches, settings and sensors."""

import kelvoctl_tool
import project

LINK = "/dev/spi_renesas: a transfer failed: see whether the controller has power, and boot it"


class Stabiliser(kelvoctl_tool.KelvoctlTest):
    def shows(self, *arguments, lens="de015"):
        """A result without what is the same in each."""
        result = self.result("ois", *arguments, lens=lens)
        self.assertEqual(result["command"].split()[0], "ois")
        self.assertEqual(result["module"], lens)
        return {name: value for name, value in result.items() if name not in ("schema", "command", "module")}

    def test_on_and_off(self):
        self.boot("de015")
        self.assertEqual(self.shows("on"), {"stabiliser": "on", "range": 1})
        self.assertEqual(self.shows("on", "--range", "20"), {"stabiliser": "on", "range": 20})
        self.assertEqual(self.shows("off"), {"stabiliser": "off"})
        self.check(self.ctl("ois", "on", lens="de015"), 0, "module      de015\nstabiliser  on\nrange       1\n")
        self.assertEqual(self.violations(), [])

    def test_the_other_modules_have_the_commands_too(self):
        for lens in ("df033", "t5391"):
            self.remove_camera()
            self.boot(lens)
            self.assertEqual(self.shows("on", lens=lens), {"stabiliser": "on", "range": 1})
            self.assertEqual(self.shows("stationary", "on", lens=lens), {"detection": "on", "detection_mode": None})
            self.assertIsNone(self.shows("read", lens=lens)["pause"])
            self.assertEqual(self.violations(), [])

    def test_pause(self):
        self.boot("de015")
        self.assertEqual(self.shows("pause"), {"pause": 1})
        self.assertEqual(self.shows("pause", "5"), {"pause": 5})
        self.assertEqual(self.shows("resume"), {"pause": 0})

    def test_pause_is_for_one_module(self):
        for lens in ("df033", "t5391"):
            for command in ("pause", "resume"):
                self.check_fails(8, f"ois {command}: {lens} cannot pause the stabiliser", "ois", command, lens=lens)

    def test_gains(self):
        self.boot("de015")
        self.assertEqual(self.shows("gain"), {"gain": {"x": 4096, "y": 4096}})
        self.assertEqual(self.shows("gain", "0xFFFFFFFF"), {"gain": {"x": 0xFFFFFFFF, "y": 0xFFFFFFFF}})
        self.assertEqual(self.shows("gain", "7", "--y", "9"), {"gain": {"x": 7, "y": 9}})
        self.assertEqual(self.shows("gain", "--x", "12"), {"gain": {"x": 12, "y": 9}})
        self.check(self.ctl("ois", "gain", lens="de015"), 0, "module  de015\ngain x  12\ngain y  9\n")

    def test_ranges(self):
        self.boot("de015")
        self.assertEqual(self.shows("range", "30"), {"range": {"x": 30, "y": 30}})
        self.assertEqual(self.shows("range", "30", "--x", "4"), {"range": {"x": 4, "y": 30}})
        self.assertEqual(self.shows("range", "--y", "5"), {"range": {"y": 5}})
        self.check_fails(2, "ois range: which range? Give RANGE, --x or --y", "ois", "range", lens="de015")

    def test_modes(self):
        self.boot("de015")
        self.assertEqual(self.shows("mode", "calibration"), {"mode": "calibration"})
        self.assertEqual(self.shows("mode", "normal"), {"mode": "normal"})
        self.check_fails(2, 'ois mode: "slow" is no command: it is one of normal, calibration', "ois", "mode", "slow")

    def test_coma_and_stationary_detection(self):
        self.boot("de015")
        self.assertEqual(self.shows("coma"), {"coma": 0})
        self.assertEqual(self.shows("stationary", "on"), {"detection": "on", "detection_mode": 2})
        self.assertEqual(self.shows("coma", "5"), {"coma": 5})
        self.assertEqual(self.shows("stationary", "on"), {"detection": "on", "detection_mode": 3})
        self.assertEqual(self.shows("coma", "6"), {"coma": 6})
        self.assertEqual(self.shows("stationary", "on"), {"detection": "on", "detection_mode": 4})
        self.assertEqual(self.shows("stationary", "show"), {"detection_mode": 4})
        self.assertEqual(self.shows("stationary", "off"), {"detection": "off", "detection_mode": 0})
        self.check_fails(8, "ois stationary show: df033 does not tell the mode of stationary detection",
                         "ois", "stationary", "show")

    def test_stability(self):
        self.boot("de015")
        self.assertEqual(self.shows("stability"), {"stability": 32})
        self.assertEqual(self.shows("stability", "0x1234"), {"stability": 0x1234})

    def test_all_that_can_be_read(self):
        self.boot("de015")
        read = self.shows("read")
        self.assertEqual(list(read), ["gyro", "hall", "gyro_stable", "gain", "coma", "stability", "detection_mode",
                                      "pause"])
        self.assertEqual(read["hall"], {"x": 0x0800, "y": 0x0800})
        self.assertEqual((read["gain"], read["stability"], read["pause"]), ({"x": 4096, "y": 4096}, 32, 0))

    def test_what_is_no_number(self):
        for command, line in ((["coma", "256"], 'VALUE: "256" is no number from 0 to 255'),
                              (["stability", "65536"], 'VALUE: "65536" is no number from 0 to 65535'),
                              (["gain", "--x", "4294967296"], '--x: "4294967296" is no number from 0 to 4294967295'),
                              (["gain", "-1"], 'GAIN: "-1" is no number from 0 to 4294967295'),
                              (["range", "256"], 'RANGE: "256" is no number from 0 to 255'),
                              (["pause", "256"], 'PAUSE: "256" is no number from 0 to 255'),
                              (["on", "--range", "256"], '--range: "256" is no number from 0 to 255')):
            with self.subTest(command):
                self.check_fails(2, f"ois {command[0]}: {line}: see kelvoctl ois {command[0]} --help", "ois", *command)

    def test_a_transfer_that_fails(self):
        self.boot("de015")
        self.check_fails(4, f"ois read: {LINK}", "ois", "read", lens="de015",
                         settings="clock=sleep fault=spi:query=gyro-stable:error=EIO")
        self.check_fails(4, f"ois read: {LINK}", "ois", "read", lens="de015")


if __name__ == "__main__":
    project.main()
