#!/usr/bin/env python3
"""kelvoctl pan and tilt: limits, turbo, current, wake, reset, init; and kelvoctl head."""

import kelvoctl_tool
import project
from head_tool import AXES, TABLE, HeadTest


class Limits(HeadTest):
    def test_are_set_and_switched_apart(self):
        for head in self.heads():
            self.assertFalse(self.result("pan", "limits", "show")["limits_on"])
            self.assertFalse(self.result("pan", "limits", "set", 10000, 50000)["limits_on"])
            shown = self.result("pan", "limits", "on")
            # A vetra controller has 18000 counts for 65535 positions, the other way round.
            expected = {"tasmere": (10000, 50000, "positions"), "vetra": (15253, 4267, "counts")}[head]
            self.assertTrue(shown["limits_on"])
            self.assertEqual((shown["start"], shown["end"], shown["unit"]), expected)
            self.assertFalse(self.result("pan", "limits", "off")["limits_on"])

    def test_the_travel_can_go_through_the_end_of_the_range(self):
        """A tasmere controller has a start and a length, and the library counts on from there."""
        for head in self.heads():
            shown = self.result("pan", "limits", "set", 50000, 10000)
            self.assertEqual((shown["start"], shown["end"]), {"tasmere": (50000, 75535), "vetra": (4267, 15253)}[head])
            self.result("pan", "goto", 5000, "--limits", "50000:10000", "--pid", TABLE, "--speed", 7200, "--wait")
            self.assertEqual(self.violations(), [])

    def test_of_tilt(self):
        for head in self.heads():
            self.check(self.ctl("tilt", "limits", "set", "0x2710", "50000"), 0, None)
            shown = self.result("tilt", "limits", "show")
            # The library reads no end of a tasmere tilt axis without its Hall sensor. A vetra one has its zero at 3500
            # and takes its limits end first.
            expected = {"tasmere": (10000, None), "vetra": (7767, 753)}[head]
            self.assertEqual((shown["start"], shown["end"]), expected)

    def test_of_tilt_with_its_hall_sensor(self):
        self.check(self.ctl("i2c", "write", "tilt", 78, 1), 0, None)
        shown = self.result("tilt", "limits", "set", 10000, 30000)
        self.assertEqual((shown["start"], shown["end"]), (10000, 30000))

    def test_hold_for_tilt_moves_of_a_script(self):
        for _ in self.heads():
            result = self.ctl("run", self.script(f"pid load {TABLE}", "tilt limits set 20000 50000", "tilt limits on",
                                                 "tilt goto 10000 --speed 7200 --wait"))
            self.assertEqual(result.returncode, 8, result.stderr)
            position = self.result("tilt", "position")["position"]
            self.assertAlmostEqual(position, 20000, delta=40)

    def test_step(self):
        self.head = "vetra"
        self.assertEqual(self.result("tilt", "limits", "step", 400),
                         {"schema": 1, "command": "tilt limits step", "axis": "tilt", "speed": 400})
        self.assertIn("iStep:15", self.ctl("--verbose", "pan", "limits", "step", 101).stderr)
        self.assertEqual(self.violations(), [])

    def test_step_is_for_vetra(self):
        self.check_fails(8, "pan limits step: the pan controller of a tasmere head has no step near its limits",
                         "pan", "limits", "step", 400)

    def test_wrong_arguments(self):
        for arguments, line in (
                (["set"], "set: A is required: see kelvoctl tilt limits set --help"),
                (["set", "1"], "set: B is required: see kelvoctl tilt limits set --help"),
                (["set", "1", "x"],
                 'set: B: "x" is no number from 0 to 65535: see kelvoctl tilt limits set --help'),
                (["step"], "step: SPEED is required: see kelvoctl tilt limits step --help")):
            with self.subTest(arguments):
                self.check_fails(2, f"tilt limits {line}", "tilt", "limits", *arguments)
        self.check_fails(2, "tilt limits: a command is missing: it is one of show, set, on, off, step",
                         "tilt", "limits")


class Settings(HeadTest):
    def test_a_controller_that_does_not_answer(self):
        settings = "clock=sleep fault=i2c:slave=tilt:nak"
        for command in ("limits show", "limits set 1 2", "limits on", "limits off", "turbo on", "current A", "wake",
                        "reset -y", "init -y"):
            with self.subTest(command):
                name = " ".join(word for word in command.split() if word.islower() and not word.startswith("-"))
                self.check_fails(4, f"tilt {name}: /dev/i2c-2: the tilt controller does not answer: see whether it "
                                    "has power", "tilt", *command.split(), settings=settings)

    def test_turbo(self):
        for axis in AXES:
            for word in ("on", "off"):
                self.assertEqual(self.result(axis, "turbo", word)["turbo"], word == "on")
        self.assertEqual(self.violations(), [])

    def test_turbo_is_for_tasmere(self):
        self.head = "vetra"
        self.check_fails(8, "tilt turbo on: the tilt controller of a vetra head has no turbo mode",
                         "tilt", "turbo", "on")

    def test_current(self):
        for axis in AXES:
            for self.head, value, member in (("tasmere", "A", "profile"), ("tasmere", "B", "profile"),
                                             ("vetra", "0x1F4", "current")):
                with self.subTest(axis=axis, head=self.head):
                    self.assertEqual(self.result(axis, "current", value)[member], 500 if value == "0x1F4" else value)
                    self.assertEqual(self.violations(), [])
                    self.remove_camera()

    def test_current_of_the_other_family(self):
        self.check_fails(2, 'pan current: "500" is no profile of a tasmere head: write A or B', "pan", "current", 500)
        self.remove_camera()
        self.head = "vetra"
        for value in ("A", "65536", "0x"):
            self.check_fails(2, f'pan current: "{value}" is no current of a vetra head: write 0 to 65535',
                             "pan", "current", value)

    def test_moves_write_their_gains_again_after_current(self):
        lines = ("pan move 720", "pan stop")
        again = self.ctl("--verbose", "run", self.script(f"pid load {TABLE}", *lines, *lines))
        self.assertEqual(again.stderr.count("TASMERE"), 1)
        after = self.ctl("--verbose", "run", self.script(f"pid load {TABLE}", *lines, "pan current A", *lines))
        self.assertEqual(after.stderr.count("TASMERE"), 2)

    def test_wake(self):
        for _ in self.heads():
            for axis in AXES:
                self.assertTrue(self.result(axis, "wake")["awake"])
            self.assertEqual(self.violations(), [])

    def test_wake_in_vain(self):
        for register, value in ((29, [1]), (35, []), (1, [])):
            self.check(self.ctl("-y", "i2c", "write", "pan", register, *value), 0, None)
        self.check_fails(4, "pan wake: the controller does not wake up", "pan", "wake",
                         settings="clock=sleep fault=i2c:slave=pan:frame=write:nak")

    def test_reset(self):
        """The limits that it has in flash are off."""
        for _ in self.heads():
            for axis in AXES:
                self.result(axis, "limits", "on")
                self.assertTrue(self.result("-y", axis, "reset")["at_rest"])
                self.assertFalse(self.result(axis, "limits", "show")["limits_on"])

    def test_init(self):
        self.result("tilt", "limits", "on")
        for axis in AXES:
            self.assertTrue(self.result(axis, "init", "-y")["at_rest"])
        detected = {row["axis"]: row for row in self.result("head", "detect")["controllers"]}
        self.assertTrue(detected["pan"]["uses_hall_sensor"])
        self.assertFalse(detected["tilt"]["uses_hall_sensor"])
        self.assertFalse(self.result("tilt", "limits", "show")["limits_on"])
        self.assertEqual(self.violations(), [])

    def test_init_is_for_tasmere(self):
        self.head = "vetra"
        self.check_fails(8, "pan init: the pan controller of a vetra head has no set-up of its own",
                         "pan", "init", "-y")

    def test_nothing_without_a_yes(self):
        for axis in AXES:
            for command, question in (("reset", f"This restarts the {axis} controller."),
                                      ("init", f"This sets up the {axis} controller as a new one, writes its flash and "
                                               "restarts it.")):
                self.check_fails(8, f"{axis} {command}: {question} Go on? There is no terminal to ask: say so with -y",
                                 axis, command)

    def test_asks_on_a_terminal(self):
        self.result("pan", "limits", "on")
        for answer, code in (("n\n", 8), ("y\n", 0)):
            terminal = self.terminal("pan", "reset")
            terminal.expect(r"This restarts the pan controller. Go on\? \[y/N\] ")
            terminal.type(answer)
            self.assertEqual(terminal.wait(), code)
            self.assertEqual(self.result("pan", "limits", "show")["limits_on"], code == 8)

    def test_init_shows_where_it_is_and_is_carried_through(self):
        terminal = self.terminal("pan", "init", "-y", settings="clock=real")
        terminal.expect("pan init: ")
        terminal.interrupt()
        terminal.expect("kelvoctl: ends as soon as it can without leaving it half-way")
        terminal.expect("kelvoctl: pan init: interrupted: the set-up was carried through")
        self.assertEqual(terminal.wait(), 130)
        self.assertTrue(self.result("head", "detect", settings="clock=real")["controllers"][0]["uses_hall_sensor"])


class Head(HeadTest):
    def test_no_device(self):
        for command in ("detect", "version"):
            self.check(kelvoctl_tool.call("head", command), 3, "",
                       f"kelvoctl: head {command}: /dev/i2c-2: No such file or directory: see kelvoctl doctor\n")

    def test_detect(self):
        for head in self.heads():
            result = self.result("head", "detect")
            self.assertEqual(result["head"], head)
            self.assertEqual([(row["axis"], row["slave"], row["answers"], row["calibrated"], row["awake"])
                              for row in result["controllers"]],
                             [("pan", 40, True, True, True), ("tilt", 41, True, True, True)])
            self.assertEqual(self.violations(), [])

    def test_detect_with_one_controller_alone(self):
        result = self.ctl("--json", "head", "detect", settings="clock=sleep fault=i2c:slave=tilt:nak")
        self.check(result, 4, None, "kelvoctl: head detect: /dev/i2c-2: the tilt controller does not answer: see "
                                    "whether it has power\n")
        self.assertIn('"head": "tasmere"', result.stdout)
        self.assertIn('"answers": false', result.stdout)

    def test_version(self):
        """A vetra tilt controller is not asked for one."""
        for head in self.heads():
            result = self.result("head", "version")
            expected = {"tasmere": ("0x0300", "0x0300"), "vetra": ("0x0015", None)}[head]
            self.assertEqual((result["head"], result["pan"], result["tilt"]), (head, *expected))


if __name__ == "__main__":
    project.main()
