#!/usr/bin/env python3
"""kelvoctl pan and tilt: goto, move, stop, position."""

import kelvoctl_tool
import project
from head_tool import AXES, TABLE, HeadTest

NO_TABLE = ("without a tuning table a move sets gains of zero: give it with --pid FILE, or in a script or shell with "
            "pid load FILE")


class HeadMoves(HeadTest):
    def test_no_device(self):
        for command in (["goto", "1", "--pid", TABLE], ["move", "1", "--pid", TABLE], ["stop"], ["position"]):
            with self.subTest(command[0]):
                self.check(kelvoctl_tool.call("pan", *command), 3, "",
                           f"kelvoctl: pan {command[0]}: /dev/i2c-2: No such file or directory: see kelvoctl doctor\n")

    def test_a_controller_that_does_not_answer(self):
        for axis in AXES:
            self.remove_camera()
            for command in (["goto", "1", "--pid", TABLE], ["move", "1", "--pid", TABLE], ["stop"], ["position"]):
                with self.subTest(axis=axis, command=command[0]):
                    self.check_fails(4, f"{axis} {command[0]}: /dev/i2c-2: the {axis} controller does not answer: "
                                        "see whether it has power", axis, *command,
                                     settings=f"clock=sleep fault=i2c:slave={axis}:nak")

    def test_pan_goes_on_without_tilt(self):
        self.result("pan", "position", settings="clock=sleep fault=i2c:slave=tilt:nak")

    def test_a_controller_that_stops_answering_ends_the_wait(self):
        """A tasmere axis that does not answer reads as one at rest."""
        for _ in self.heads():
            settings = "clock=sleep fault=i2c:slave=pan:frame=read:nth=40:every=1:nak"
            result = self.ctl("pan", "goto", 1000, "--pid", TABLE, "--speed", 100, "--wait", settings=settings)
            self.check(result, 4, "", "kelvoctl: pan goto: /dev/i2c-2: the pan controller does not answer: see "
                                      "whether it has power\n")

    def test_a_read_that_fails_once_does_not_end_the_wait(self):
        """The library takes it for rest."""
        for register in ("run-status", "sleep-mode"):
            self.remove_camera()
            result = self.result("pan", "goto", 60000, "--pid", TABLE, "--wait",
                                 settings=f"clock=sleep fault=i2c:slave=pan:register={register}:nth=5:nak")
            self.assertAlmostEqual(result["position"], 60000, delta=40)

    def test_no_move_without_a_tuning_table(self):
        for _ in self.heads():
            for axis in AXES:
                before = self.position(axis)
                self.check_fails(8, f"{axis} goto: {NO_TABLE}", axis, "goto", 1000)
                self.check_fails(8, f"{axis} move: {NO_TABLE}", axis, "move", 7200)
                self.assertEqual(self.result(axis, "position"), {
                    "schema": 1, "command": f"{axis} position", "axis": axis, "position": before, "at_rest": True})

    def test_no_move_with_a_table_that_has_zeros_for_it(self):
        lines = TABLE.read_text().splitlines()
        rows = [number for number, line in enumerate(lines) if line and not line.startswith("#")]
        for self.head, axis, command, row in (("tasmere", "pan", "move", 0), ("tasmere", "tilt", "goto", 3),
                                              ("vetra", "pan", "goto", 9), ("vetra", "tilt", "move", 10)):
            with self.subTest(row):
                self.remove_camera()
                changed = list(lines)
                changed[rows[row]] = "0 0 0 0 0 0 0"
                purpose = {"move": "moves and stops", "goto": "to a position"}[command]
                self.check_fails(8, f"{axis} {command}: the tuning table's row {row} is zeros, and this move would set "
                                    f"them: it is for {self.head} {axis}, {purpose}",
                                 axis, command, 1000, "--pid", self.script(*changed))

    def test_goes_to_a_position_and_waits(self):
        for _ in self.heads():
            for axis in AXES:
                for target in (40000, 0x3000, 65000):
                    result = self.result(axis, "goto", hex(target), "--pid", TABLE, "--speed", 7200, "--wait")
                    self.assertAlmostEqual(result["position"], target, delta=40)
                    self.assertTrue(result["at_rest"])
                    self.assertEqual((result["axis"], result["target"], result["speed"]), (axis, target, 7200))
            self.assertEqual(self.violations(), [])

    def test_returns_at_once_without_wait(self):
        for _ in self.heads():
            result = self.result("pan", "goto", 60000, "--pid", TABLE)
            self.assertEqual((result["at_rest"], result["speed"]), (False, 3600))
            self.assertLess(result["position"], 40000)

    def test_takes_the_straight_way(self):
        """Tilt moves to a position are told the other direction, on vetra."""
        for head, axis, direction in (("tasmere", "pan", 0), ("tasmere", "tilt", 0), ("vetra", "pan", 0),
                                      ("vetra", "tilt", 1)):
            with self.subTest(head=head, axis=axis):
                self.head = head
                for target, towards in ((40000, direction), (20000, 1 - direction)):
                    result = self.result(axis, "goto", target, "--pid", TABLE, "--speed", 720, "--wait",
                                         "--timeout", "10s")
                    self.assertEqual(result["direction"], towards)
                self.check(self.ctl(axis, "goto", 40000, "--pid", TABLE, "--direction", 1 - direction, "--speed", 720,
                                    "--wait", "--timeout", "9s"),
                           5, "", f"kelvoctl: {axis} goto: the axis moves for longer than the time-out\n")
                self.remove_camera()

    def test_a_tilt_axis_with_its_hall_sensor_takes_the_straight_way(self):
        self.check(self.ctl("i2c", "write", "tilt", 78, 1), 0, None)
        for target, direction in ((30000, 1), (10000, 0)):
            result = self.result("tilt", "goto", target, "--pid", TABLE, "--speed", 720, "--wait", "--timeout", "10s")
            self.assertEqual(result["direction"], direction)
            self.assertAlmostEqual(result["position"], target, delta=40)

    def test_a_time_out_does_not_stop_the_axis(self):
        for _ in self.heads():
            self.check_fails(5, "pan goto: the axis moves for longer than the time-out", "pan", "goto", 60000,
                             "--pid", TABLE, "--speed", 100, "--wait", "--timeout", "300ms")
            self.assertFalse(self.result("pan", "position")["at_rest"])
            self.assertTrue(self.result("pan", "stop")["at_rest"])

    def test_an_axis_that_does_not_come_to_rest(self):
        for _ in self.heads():
            settings = "clock=sleep fault=i2c:slave=pan:busy"
            for command in (["stop"], ["move", "720", "--pid", TABLE, "--for", "1s"]):
                result = self.ctl("pan", *command, settings=settings)
                self.check(result, 5, None, f"kelvoctl: pan {command[0]}: the axis was told to stop, and still moves "
                                            "after 5s\n")
                self.assertIn("at rest   no\n".replace("   ", " " * (4 if "move" in command else 3)), result.stdout)

    def test_a_target_beyond_the_limits(self):
        for _ in self.heads():
            result = self.ctl("--json", "pan", "goto", 60000, "--pid", TABLE, "--limits", "20000:50000", "--speed",
                              7200, "--wait")
            self.assertEqual(result.returncode, 8)
            self.assertRegex(result.stderr, "^kelvoctl: pan goto: the axis rests at (499..|500..), not at 60000: see "
                                            "its travel limits, and whether something holds it\n$")
            self.assertIn('"at_rest": true', result.stdout)
            self.assertTrue(self.result("pan", "limits", "show")["limits_on"])

    def test_tilt_keeps_to_the_limits_of_this_process(self):
        for _ in self.heads():
            self.assertEqual(self.ctl("tilt", "goto", 60000, "--pid", TABLE, "--limits", "20000:50000", "--speed", 7200,
                                      "--wait").returncode, 8)
            self.assertAlmostEqual(self.position("tilt"), 50000, delta=40)

    def test_moves_until_stopped(self):
        for _ in self.heads():
            for axis in AXES:
                for direction in (0, 1):
                    before = self.position(axis)
                    result = self.result(axis, "move", 720, "--direction", direction, "--pid", TABLE)
                    self.assertEqual((result["at_rest"], result["direction"]), (False, direction))
                    stopped = self.result(axis, "stop")
                    self.assertTrue(stopped["at_rest"])
                    if self.head == "vetra":  # whose transfers take 2 ms each
                        self.assertEqual(stopped["position"] > before, direction == 0)
            self.assertEqual(self.violations(), [])

    def test_moves_for_a_time(self):
        """A fortieth of full speed turns once in 80 s."""
        for _ in self.heads():
            for axis in AXES:
                for direction, sign in ((0, 1), (1, -1)):
                    before = self.position(axis)
                    result = self.result(axis, "move", 180, "--direction", direction, "--for", "4s", "--pid", TABLE)
                    moved = sign * (result["position"] - before)
                    # Transfers to a vetra head take 2 ms each, which no wait counts on the sleep clock.
                    self.assertTrue(3276 <= moved <= 4300, moved)
                    self.assertTrue(result["at_rest"])

    def test_a_move_for_a_time_ends_at_the_limits(self):
        for _ in self.heads():
            result = self.result("pan", "move", 7200, "--for", "1000s", "--pid", TABLE, "--limits", "20000:50000")
            self.assertAlmostEqual(result["position"], 50000, delta=40)

    def test_frozen_gains_are_not_written(self):
        for head in self.heads():
            marks = {"tasmere": "TASMERE", "vetra": "pos 3"}[head]
            written = self.ctl("--verbose", "pan", "move", 720, "--pid", TABLE)
            self.check(written, 0, None, None)
            self.assertIn(marks, written.stderr)
            frozen = self.ctl("--verbose", "pan", "move", 720, "--freeze")
            self.check(frozen, 0, None, None)
            self.assertIn("TServomotor=", frozen.stderr)
            self.assertNotIn(marks, frozen.stderr)

    def test_freeze_is_for_one_move(self):
        script = self.script("pan move 720 --freeze", "pan move 720")
        result = self.ctl("run", script)
        self.assertEqual((result.returncode, result.stderr),
                         (8, f"kelvoctl: run: {script}:2: pan move: {NO_TABLE}\n"))

    def test_a_sleeping_axis_is_refused_until_it_is_woken(self):
        for register, value in ((29, [1]), (35, []), (1, [])):
            self.check(self.ctl("-y", "i2c", "write", "pan", register, *value), 0, None)
        for command in ("goto", "move"):
            self.check_fails(8, f"pan {command}: the axis sleeps: wake it with kelvoctl pan wake", "pan", command, 100,
                             "--pid", TABLE)
        self.check(self.ctl("pan", "wake"), 0, "axis   pan\nawake  yes\n")
        self.result("pan", "goto", 40000, "--pid", TABLE, "--wait", "--speed", 7200)

    def test_text(self):
        for _ in self.heads():
            result = self.ctl("pan", "position")
            self.assertRegex(result.stdout, r"^axis      pan\nposition  327\d\d\nat rest   yes\n$")

    def test_wrong_arguments(self):
        see = {command: f": see kelvoctl pan {command} --help" for command in ("goto", "move", "stop")}
        for arguments, line in (
                (["goto"], "pan goto: POS is required" + see["goto"]),
                (["goto", "65536"], 'pan goto: POS: "65536" is no number from 0 to 65535' + see["goto"]),
                (["goto", "1", "--speed", "7201"],
                 'pan goto: --speed: "7201" is no number from 0 to 7200' + see["goto"]),
                (["goto", "1", "--direction", "2"],
                 'pan goto: --direction: "2" is no number from 0 to 1' + see["goto"]),
                (["goto", "1", "--limits", "5"],
                 'pan goto: --limits: "5" is no pair of positions: write 10000:50000'),
                (["goto", "1", "--limits", "5:65536"],
                 'pan goto: --limits: "5:65536" is no pair of positions: write 10000:50000'),
                (["goto", "1", "--timeout", "5s"], "pan goto: --timeout requires --wait" + see["goto"]),
                (["goto", "1", "--wait", "--timeout", "5"],
                 'pan goto: --timeout: "5" is no time up to a day: write 2s, 250ms or 40us' + see["goto"]),
                (["goto", "1", "--pid", "/none"], "pan goto: /none: No such file or directory"),
                (["move"], "pan move: SPEED is required" + see["move"]),
                (["move", "fast"], 'pan move: SPEED: "fast" is no number from 0 to 7200' + see["move"]),
                (["move", "1", "--for", "-1s"],
                 'pan move: --for: "-1s" is no time up to a day: write 2s, 250ms or 40us' + see["move"]),
                (["stop", "now"], "pan stop: The following argument was not expected: now" + see["stop"]),
                (["jump"], 'pan: "jump" is no command: it is one of goto, move, stop, position, limits, turbo, '
                           "current, wake, reset, init")):
            with self.subTest(arguments):
                self.check_fails(2, line, "pan", *arguments)


class Interrupted(HeadTest):
    def test_ctrl_c_on_an_axis_that_does_not_come_to_rest(self):
        terminal = self.terminal("pan", "goto", "60000", "--pid", TABLE, "--wait",
                                 settings="clock=real fault=i2c:slave=pan:busy")
        terminal.expect(r"pan: \d+")
        terminal.interrupt()
        terminal.expect(r"pan goto: interrupted: the axis was told to stop, and still moves at \d+\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_ctrl_c_stops_the_axis_and_says_so(self):
        for _ in self.heads():
            for arguments in (["goto", "60000", "--speed", "100", "--wait"], ["move", "100", "--for", "1000s"]):
                terminal = self.terminal("pan", *arguments, "--pid", TABLE, settings="clock=real")
                terminal.expect(r"pan: \d+")
                terminal.interrupt()
                place = terminal.expect(rf"pan {arguments[0]}: interrupted: the axis was stopped at (\d+)\r\n")
                self.assertEqual(terminal.wait(), 130)
                result = self.result("pan", "position", settings="clock=real")
                self.assertTrue(result["at_rest"])
                self.assertAlmostEqual(result["position"], int(place[1]), delta=8)


if __name__ == "__main__":
    project.main()
