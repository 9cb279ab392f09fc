#!/usr/bin/env python3
"""kelvoctl's lens motors: moves, homing, counters and power, on each module what it has."""

import kelvoctl_tool
import project

MOTORS = ("zoom1", "zoom2", "zoom3", "focus")
FITTED = {"de015": ("zoom1", "zoom2", "focus"), "df033": MOTORS, "t5391": ("zoom1", "focus")}
COUNTED = {"de015": ("zoom1", "zoom2", "focus"), "df033": ("zoom1", "zoom3", "focus"), "t5391": ("zoom1",)}


class Refusals(kelvoctl_tool.KelvoctlTest):
    def test_a_motor_that_the_module_does_not_have(self):
        for lens, fitted in FITTED.items():
            for motor in sorted(set(MOTORS) - set(fitted)):
                for command in (["move", "5"], ["home"], ["count"], ["off"]):
                    with self.subTest(lens=lens, motor=motor, command=command):
                        self.check_fails(8, f"{motor} {command[0]}: {lens} has no {motor}", motor, *command, lens=lens)

    def test_a_stepping_that_the_motor_does_not_have(self):
        for lens, motor, option, way in (("t5391", "zoom1", "--micro", "forward"),
                                         ("df033", "zoom3", "--micro", "forward"),
                                         ("de015", "focus", "--two-phase", "forward"),
                                         ("df033", "zoom1", "--two-phase", "forward")):
            with self.subTest(lens=lens, motor=motor, option=option):
                self.check_fails(8, f"{motor} move: {lens} does not move {motor} {way} with {option}",
                                 motor, "move", "10", option, lens=lens)

    def test_more_steps_than_the_wire_carries(self):
        for lens, motor, most in (("de015", "zoom1", 65535), ("t5391", "zoom1", 524287), ("df033", "focus", 131071),
                                  ("df033", "zoom3", 65535)):
            with self.subTest(lens=lens, motor=motor):
                line = f"{motor} move: {motor} of {lens} moves by {most} steps at most"
                self.check_fails(2, line, motor, "move", most + 1, lens=lens)
                self.check_fails(2, line, motor, "move", -most - 1, lens=lens)

    def test_what_is_no_number(self):
        for arguments, line in (
                (["move"], "STEPS is required"),
                (["move", "ten"], 'STEPS: "ten" is no number from -1048575 to 1048575'),
                (["move", "1048576"], 'STEPS: "1048576" is no number from -1048575 to 1048575'),
                (["move", "5", "--speed", "256"], '--speed: "256" is no number from 0 to 255'),
                (["move", "5", "--wait", "--timeout", "5"],
                 '--timeout: "5" is no time up to a day: write 2s, 250ms or 40us'),
                (["move", "5", "--timeout", "5s"], "--timeout requires --wait"),
                (["move", "5", "--micro", "--two-phase"], "--micro excludes --two-phase"),
                (["count", "-1"], 'N: "-1" is no number from 0 to 2147483647'),
                (["home", "--travel", "0"], '--travel: "0" is no number from 1 to 65535'),
                (["home", "--sensor", "256"], '--sensor: "256" is no number from 0 to 255')):
            with self.subTest(arguments):
                command = f"focus {arguments[0]}"
                self.check_fails(2, f"{command}: {line}: see kelvoctl {command} --help", "focus", *arguments)

    def test_no_device(self):
        result = kelvoctl_tool.call("--lens", "df033", "focus", "move", "10")
        self.check(result, 3, "", "kelvoctl: focus move: /dev/spi_renesas: No such file or directory: "
                                  "see kelvoctl doctor\n")

    def test_no_lens_module(self):
        result = kelvoctl_tool.call("focus", "off")
        self.check(result, 2, "", "kelvoctl: focus off: which lens module is fitted? Say so with "
                                  "--lens de015|df033|t5391, or set KELVO_LENS\n")

    def test_a_controller_without_a_program(self):
        result = self.ctl("focus", "move", "10")
        self.assertEqual(result.returncode, 4, result.stderr)
        self.assertEqual(result.stdout, "")
        self.assertRegex(result.stderr, r"\Akelvoctl: focus move: .*boot .*\n\Z")


class Moves(kelvoctl_tool.KelvoctlTest):
    def test_every_motor_forward_and_backward(self):
        for lens, motors in FITTED.items():
            self.remove_camera()
            self.boot(lens)
            for motor in motors:
                with self.subTest(lens=lens, motor=motor):
                    self.check_there_and_back(lens, motor)
            self.assertEqual(self.violations(), [])

    def check_there_and_back(self, lens, motor):
        there = self.result(motor, "move", "200", "--wait", lens=lens)
        self.assertEqual((there["motor"], there["module"], there["steps"], there["speed"], there["stepping"]),
                         (motor, lens, 200, 100, "plain"))
        self.assertGreater(there["time_ms"], 100)
        back = self.result(motor, "move", "-200", "--speed", "0xC8", "--wait", lens=lens)
        self.assertEqual((back["steps"], back["speed"]), (-200, 200))
        self.assertLess(back["time_ms"], there["time_ms"])
        if motor in COUNTED[lens]:
            self.assertNotEqual(there["count_before"], there["count_after"])
            self.assertEqual(there["count_after"], back["count_before"])
            self.assertEqual(there["count_before"], back["count_after"])
        else:
            self.assertEqual([there["count_before"], there["count_after"], back["count_after"]], 3 * [None])

    def test_the_time_is_that_of_the_camera(self):
        self.boot()
        time = self.result("focus", "move", "200", "--wait")["time_ms"]
        self.assertAlmostEqual(time, 526, delta=60)  # 200 steps at 960 * 101 / 255 a second

    def test_without_waiting_it_moves_on(self):
        self.boot()
        self.check(self.ctl("focus", "move", "1000"), 0,
                   "motor         focus\nmodule        df033\nsteps         1000\nspeed         100\n"
                   "stepping      plain\ncount before  0\n")
        self.assertLess(self.result("focus", "count")["count"], 8000)

    def test_micro_steps(self):
        self.boot("de015")
        self.result("zoom2", "count", "800", lens="de015")
        moved = self.result("zoom2", "move", "80", "--micro", "--wait", lens="de015")
        self.assertEqual((moved["stepping"], moved["count_before"], abs(moved["count_after"] - 800)),
                         ("micro", 800, 80))
        moved = self.result("zoom2", "move", "10", "--wait", lens="de015")
        self.assertEqual(abs(moved["count_after"] - moved["count_before"]), 80)
        for steps in ("12", "-12"):
            moved = self.result("zoom1", "move", steps, "--micro", "--wait", lens="de015")
            self.assertEqual(moved["stepping"], "micro")
        self.assertEqual(self.result("zoom1", "count", lens="de015")["count"], 0)

    def test_two_phase_drive(self):
        self.boot("de015")
        for steps, count in (("30", 30), ("-10", 20)):
            moved = self.result("zoom1", "move", steps, "--two-phase", "--wait", lens="de015")
            self.assertEqual((moved["stepping"], moved["count_after"]), ("two-phase", count))

    def test_the_time_out(self):
        self.boot()
        self.check_fails(5, "focus move: focus moves for longer than the time-out",
                         "focus", "move", "2000", "--speed", "10", "--wait", "--timeout", "200ms")

    def test_a_transfer_that_fails(self):
        self.boot()
        result = self.ctl("focus", "move", "200", settings="clock=sleep fault=spi:command=write-register:error=EIO")
        self.check(result, 4, "", "kelvoctl: focus move: /dev/spi_renesas: a transfer failed: "
                                  "see whether the controller has power, and boot it\n")
        self.check_fails(4, "focus move: /dev/spi_renesas: a transfer failed: see whether the controller has power, "
                            "and boot it", "focus", "move", "200")

    def test_a_status_that_does_not_come(self):
        self.boot()
        faulty = "clock=sleep fault=spi:query=read-register:nth=4:error=EIO"
        self.check_fails(4, "focus move: /dev/spi_renesas: a transfer failed: see whether the controller has power, "
                            "and boot it", "focus", "move", "200", "--wait", settings=faulty)

    def test_one_process_for_a_sequence(self):
        self.boot()
        script = self.script("focus move 100 --wait", "focus move -100 --wait --micro", "focus off")
        result = self.ctl("run", script)
        self.assertEqual(result.returncode, 8)
        self.assertIn(f"{script}:2: focus move: df033 does not move focus backward with --micro", result.stderr)


class Power(kelvoctl_tool.KelvoctlTest):
    def test_off_stops_a_motor(self):
        for lens, motors in FITTED.items():
            self.remove_camera()
            self.boot(lens)
            for motor in motors:
                with self.subTest(lens=lens, motor=motor):
                    self.check(self.ctl(motor, "move", "2000", "--speed", "20", lens=lens), 0, None)
                    self.assertTrue(self.running(motor, lens))
                    self.check(self.ctl(motor, "off", lens=lens), 0,
                               f"motor   {motor}\nmodule  {lens}\npower   off\n")
                    self.assertFalse(self.running(motor, lens))

    def running(self, motor, lens):
        motors = self.result("status", lens=lens)["motors"]
        return next(row["running"] for row in motors if row["motor"] == motor)


class Counts(kelvoctl_tool.KelvoctlTest):
    def test_what_is_set_is_what_is_read(self):
        for lens, motor, counts in (("de015", "focus", (0, 1, 16383, 16384, 32767)), ("de015", "zoom2", (0x1234,)),
                                    ("de015", "zoom1", (0,)), ("df033", "focus", (0, 65535)),
                                    ("df033", "zoom1", (0, 0x7FFFFFFF)), ("df033", "zoom3", (0,)),
                                    ("t5391", "zoom1", (0, 32767))):
            self.remove_camera()
            self.boot(lens)
            for count in counts:
                with self.subTest(lens=lens, motor=motor, count=count):
                    self.assertEqual(self.result(motor, "count", count, lens=lens)["count"], count)
                    self.check(self.ctl(motor, "count", lens=lens), 0,
                               f"motor   {motor}\nmodule  {lens}\ncount   {count}\n")

    def test_a_counter_that_can_be_set_and_not_read(self):
        self.boot("t5391")
        self.assertIsNone(self.result("focus", "count", "100", lens="t5391")["count"])
        self.check_fails(8, "focus count: t5391 has no counter of focus that can be read",
                         "focus", "count", lens="t5391")

    def test_what_a_counter_cannot_be_set_to(self):
        for lens, motor, count, line in (
                ("df033", "zoom2", 0, "has no counter of zoom2 that can be set"),
                ("df033", "zoom3", 1, "can set the counter of zoom3 to 0 only"),
                ("de015", "zoom1", 1, "can set the counter of zoom1 to 0 only"),
                ("de015", "focus", 32768, "can set the counter of focus to 0 up to 32767 only"),
                ("df033", "focus", 65536, "can set the counter of focus to 0 up to 65535 only")):
            with self.subTest(lens=lens, motor=motor):
                self.check_fails(8, f"{motor} count: {lens} {line}", motor, "count", count, lens=lens)


class Homing(kelvoctl_tool.KelvoctlTest):
    def test_every_motor_twice_to_the_same_place(self):
        for lens, motors in FITTED.items():
            self.remove_camera()
            self.boot(lens)
            for motor in motors:
                with self.subTest(lens=lens, motor=motor):
                    first = self.result(motor, "home", "--travel", "20000", lens=lens)
                    self.assertGreater(first["time_ms"], 0)
                    self.result(motor, "move", "-300", "--wait", lens=lens)  # into the interrupter
                    again = self.result(motor, "home", lens=lens)
                    self.assertEqual(again["sensor"], first["sensor"])
                    if motor in COUNTED[lens]:
                        self.check_again(again)
            self.assertEqual(self.violations(), [])

    def check_again(self, again):
        self.assertEqual(again["count_after"], 0)
        count = again["count_at_home"]
        error = min(abs(whole - count) for whole in (0, 32768, 65536))  # counters go round
        self.assertLess(error, 40)  # a few steps, in eighths

    def test_the_count_at_home(self):
        self.boot()
        self.assertEqual(self.result("focus", "home", "--at", "1000")["count_after"], 1000)
        self.check_fails(8, "zoom3 home: df033 can set the counter of zoom3 to 0 only", "zoom3", "home", "--at", "7")
        self.check_fails(8, "zoom2 home: df033 has no counter of zoom2 that can be set", "zoom2", "home", "--at", "7")

    def test_a_photo_interrupter_that_does_not_change(self):
        self.boot()
        self.check_fails(6, "focus home: photo-interrupter 2 did not change in 50 steps backward, "
                            "see --sensor and --travel: focus is stopped, and its power is off",
                         "focus", "home", "--sensor", "2", "--travel", "50")

    def test_a_transfer_that_fails_leaves_it_moving(self):
        self.boot()
        self.check_fails(4, "focus home: /dev/spi_renesas: a transfer failed: see whether the controller has power, and "
                            "boot it: focus may still move: nothing reaches it", "focus", "home",
                         settings="clock=sleep fault=spi:query=interrupter-state:nth=3:error=EIO")

    def test_the_time_out_stops_it(self):
        self.boot()
        self.check_fails(5, "focus home: focus moves for longer than the time-out: "
                            "focus is stopped, and its power is off", "focus", "home", "--timeout", "500ms")
        count = self.result("focus", "count")["count"]
        self.assertEqual(self.result("focus", "count")["count"], count)


class CtrlC(kelvoctl_tool.KelvoctlTest):
    SLOW = "clock=real"

    def test_stops_the_motor_and_says_so(self):
        self.boot(settings=self.SLOW)
        terminal = self.terminal("focus", "move", "8000", "--speed", "20", "--wait", settings=self.SLOW)
        terminal.expect(r"focus: [1-9]")
        terminal.interrupt()
        terminal.expect("kelvoctl: focus move: interrupted: focus is stopped, and its power is off")
        self.assertEqual(terminal.wait(), 130)
        count = self.result("focus", "count", settings=self.SLOW)["count"]
        self.assertGreater(count, 0)
        self.assertEqual(self.result("focus", "count", settings=self.SLOW)["count"], count)

    def test_stops_the_homing(self):
        self.boot(settings=self.SLOW)
        terminal = self.terminal("focus", "home", "--speed", "10", settings=self.SLOW)
        terminal.expect(r"focus: \d+")
        terminal.interrupt()
        terminal.expect("kelvoctl: focus home: interrupted: focus is stopped, and its power is off")
        self.assertEqual(terminal.wait(), 130)


if __name__ == "__main__":
    project.main()
