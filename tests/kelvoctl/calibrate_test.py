#!/usr/bin/env python3
"""kelvoctl calibrate: the quality checks, what they measure and write, and how they fail."""

import kelvoctl_tool
import project

FILES = {"stabiliser": ["/mnt/nand/OIS_S_Cali.dat", "/tmp/OIS_S_Cali.dat", "/bin/OIS_S_Cali.dat"],
         "iris": ["/mnt/nand/DC_S_Cali.dat", "/tmp/DC_S_Cali.dat", "/bin/DC_S_Cali.dat"]}
IRIS = {"polarity": 2, "hall_offset": 0x0851, "hall_gain": 0x0417, "travel_min": 0x0193, "travel_max": 0x0E7C,
        "sine": 0x0212}
STABILISER = {"polarity": 3, "hall_offset_x": 0x07D4, "hall_offset_y": 0x0823, "hall_gain_x": 0x0431,
              "hall_gain_y": 0x03EE, "travel_min_x": 0x0162, "travel_min_y": 0x014D, "travel_max_x": 0x0E9B,
              "travel_max_y": 0x0EB0, "gyro_zero_x": 0x7FE6, "hall_noise_x": 3, "hall_noise_y": 4, "gyro_noise_x": 5,
              "gyro_noise_y": 6, "gyro_zero_y": 0x8013}
QUESTION = "The check boots the controller twice and replaces the unit's iris record. Go on?"


def fields(result):
    return {field["field"]: field["value"] for field in result["fields"]}


class Calibrate(kelvoctl_tool.KelvoctlTest):
    def test_the_checks(self):
        for lens, unit, values, seconds in (("de015", "stabiliser", STABILISER, 12), ("df033", "iris", IRIS, 8)):
            with self.subTest(unit):
                self.remove_camera()
                result = self.result("calibrate", unit, "-y", lens=lens)
                self.assertEqual((result["module"], result["record"], result["result"]), (lens, unit, 0))
                self.assertEqual(fields(result), values)
                self.assertEqual(result["files"], [{"file": file, "written": True} for file in FILES[unit]])
                self.assertEqual(result["states"], [{"state": 1, "meaning": "measuring", "seconds": seconds},
                                                    {"state": 4, "meaning": "finished", "seconds": 0}])
                self.check(self.ctl("calibration", "diff", lens=lens), 0, None)
                self.assertEqual(self.violations(), [])

    def test_the_table(self):
        output = self.check(self.ctl("calibrate", "iris", "-y"), 0, None).stdout
        self.assertIn("file                     written\n/mnt/nand/DC_S_Cali.dat  yes\n", output)
        self.assertIn("field        value  hexadecimal\npolarity     2      0x0002\nhall offset  2129   0x0851\n",
                      output.replace("hall_offset", "hall offset"))

    def test_a_module_that_it_is_not_for(self):
        for lens, unit, other in (("df033", "stabiliser", "de015"), ("t5391", "stabiliser", "de015"),
                                  ("de015", "iris", "df033"), ("t5391", "iris", "df033")):
            self.check_fails(8, f"calibrate {unit}: {lens} has no check of its {unit}: it is for {other}",
                             "calibrate", unit, "-y", lens=lens)

    def test_asks_first(self):
        self.check_fails(8, f"calibrate iris: {QUESTION} There is no terminal to ask: say so with -y",
                         "calibrate", "iris")

    def test_no_device(self):
        result = kelvoctl_tool.call("--lens", "df033", "calibrate", "iris", "-y")
        self.check(result, 3, "", "kelvoctl: calibrate iris: /dev/spi_renesas: No such file or directory: "
                                  "see kelvoctl doctor\n")

    def test_a_unit_with_an_error(self):
        """A bit of the reply is flipped: an error of the unit."""
        for lens, unit, line in (
                ("de015", "stabiliser", "stabiliser has the error 4: its record was written all the same"),
                ("df033", "iris", "iris has the error 4: no record written")):
            with self.subTest(unit):
                self.remove_camera()
                faulty = "clock=sleep fault=spi:query=calibration-error:direction=received:flip=10.2"
                result = self.ctl("calibrate", unit, "-y", lens=lens, settings=faulty)
                self.check(result, 6, None, f"kelvoctl: calibrate {unit}: {line}\n")
                self.assertIn("result  4\n", result.stdout)
                kept = self.ctl("calibration", "show", lens=lens)
                self.assertEqual(kept.returncode, 0 if lens == "de015" else 2)

    def test_a_unit_that_does_not_begin(self):
        faulty = "clock=sleep fault=spi:query=calibration-state:direction=received:flip=10.0"
        self.check(self.ctl("calibrate", "stabiliser", "-y", lens="de015", settings=faulty), 6, None,
                   "kelvoctl: calibrate stabiliser: stabiliser was not measured: it did not begin, or not end\n")

    def test_the_time_out(self):
        self.check_fails(5, "calibrate iris: iris is measured for longer than the time-out: boot the controller",
                         "calibrate", "iris", "-y", "--timeout", "3s")
        self.boot()
        self.check(self.ctl("calibrate", "iris", "-y", "--timeout", "30s"), 0, None)

    def test_a_file_that_cannot_be_written(self):
        result = self.ctl("--json", "calibrate", "iris", "-y",
                          settings="clock=sleep fault=file:path=/tmp/DC_S_Cali.dat:frame=write:error=EROFS")
        self.check(result, 7, None, "kelvoctl: calibrate iris: /tmp/DC_S_Cali.dat: the record was not written\n")
        self.assertEqual(result.stdout.count('"written": true'), 2)

    def test_a_link_that_fails(self):
        """Commands that do not get through are told by the library; of a state that does not come, the time-out is
        the only sign."""
        failed = "/dev/spi_renesas: a transfer failed"
        nothing = f"{failed}, and nothing is measured: see whether the controller has power, and boot it"
        for fault, line in (("error=EIO", nothing), ("command=quality-check:error=EIO", nothing),
                            ("frame=query:error=EIO", f"{failed}: see whether the controller has power, and boot it")):
            with self.subTest(fault):
                self.remove_camera()
                self.check_fails(4, f"calibrate iris: {line}", "calibrate", "iris", "-y",
                                 settings=f"clock=sleep fault=spi:{fault}")
        self.remove_camera()
        result = self.ctl("calibrate", "stabiliser", "-y", lens="de015", settings="clock=sleep fault=spi:error=EIO")
        self.check(result, 4, None, f"kelvoctl: calibrate stabiliser: {nothing}\n")
        self.assertIn("result  -1\n", result.stdout)

    def test_a_controller_that_answers_nothing(self):
        self.check_fails(4, "calibrate iris: no program answers: boot the controller", "calibrate", "iris", "-y",
                         settings="clock=sleep fault=spi:boot-code=0xE2:reset")

    def test_values_that_could_not_be_read(self):
        """The library writes zeros for them, and has no error to tell."""
        for lens, unit, query in (("df033", "iris", "calibration-error"), ("df033", "iris", "iris-sine"),
                                  ("de015", "stabiliser", "calibration-error")):
            with self.subTest(unit, query=query):
                self.remove_camera()
                result = self.ctl("calibrate", unit, "-y", lens=lens,
                                  settings=f"clock=sleep fault=spi:query={query}:error=EIO")
                self.check(result, 4, None, f"kelvoctl: calibrate {unit}: the record ends with zeros, as where a "
                                            f"transfer fails: measure {unit} again\n")

    def test_the_program_does_not_answer_afterwards(self):
        self.check(self.ctl("calibrate", "iris", "-y",
                            settings="clock=sleep fault=spi:command=set-mode:nth=2:times=2:error=EIO"), 4, None,
                   "kelvoctl: calibrate iris: the program does not answer: boot the controller\n")

    def test_a_transfer_that_fails(self):
        result = self.ctl("calibrate", "stabiliser", "-y", lens="de015",
                          settings="clock=sleep fault=spi:query=gyro-stability:error=EIO")
        self.assertEqual(result.returncode, 6, result.stderr)


class OnATerminal(kelvoctl_tool.KelvoctlTest):
    def test_a_no(self):
        terminal = self.terminal("calibrate", "iris")
        terminal.expect(r"replaces the unit's iris record\. Go on\? \[y/N\] ")
        terminal.type("n\n")
        terminal.expect("kelvoctl: calibrate iris: not confirmed: nothing was done")
        self.assertEqual(terminal.wait(), 8)

    def test_a_yes_and_the_states(self):
        terminal = self.terminal("calibrate", "iris", settings="clock=20")
        terminal.expect(r"Go on\? \[y/N\] ")
        terminal.type("y\n")
        terminal.expect(r"calibrate iris: boot")
        terminal.expect(r"calibrate iris: state 1, 3 s")
        terminal.expect(r"calibrate iris: finished, boot")
        terminal.expect(r"polarity +2 +0x0002")
        self.assertEqual(terminal.wait(), 0)

    def test_ctrl_c_waits_for_its_end(self):
        terminal = self.terminal("calibrate", "iris", "-y", settings="clock=20")
        terminal.expect("state 1, 2 s")
        terminal.interrupt()
        terminal.expect("ends as soon as it can without leaving it half-way")
        terminal.expect(r"polarity +2 +0x0002")
        terminal.expect("interrupted: the check was carried through")
        self.assertEqual(terminal.wait(), 130)


if __name__ == "__main__":
    project.main()
