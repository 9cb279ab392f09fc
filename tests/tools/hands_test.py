#!/usr/bin/env python3
"""What one does to a camera by hand: peek, poke, push, power."""

import json

import project
import tool


class HandsTest(tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.name = self.camera()

    def make(self, *options):
        self.check(tool.call("run", "--name", self.name, "--clock", "sleep", *options, "--", "true"), 0, "", "")

    def call(self, command, *arguments):
        return tool.call(command, self.name, *arguments)

    def check_hand(self, output, command, *arguments):
        self.check(self.call(command, *arguments), 0, output, "")

    def check_failure(self, code, line, command, *arguments):
        self.check_refused(code, f"kelvo-sim {command}: {line}", command, self.name, *arguments)

    def status(self):
        return json.loads(self.call("status", "--json").stdout)

    def motor(self, name):
        (motor,) = [row for row in self.status()["motors"] if row["motor"] == name]
        return motor


class Refusals(HandsTest):
    def test_a_camera_that_is_not_there(self):
        for command, *arguments in (("peek", "pan", "4"), ("poke", "pan", "35", "0"), ("push", "pan", "1"),
                                    ("power", "off")):
            self.check_failure(3, f"{self.name}: there is no camera of this name: kelvo-sim list shows those that "
                                  "there are", command, *arguments)

    def test_arguments_are_missing(self):
        for command, *arguments in (("peek",), ("peek", "pan"), ("poke", "pan", "4"), ("push", "pan"), ("power",)):
            result = self.check(self.call(command, *arguments), 2, "")
            self.assertRegex(result.stderr, rf"^kelvo-sim {command}: [A-Z]+ is required: see [^\n]*\n$")

    def test_an_unknown_device(self):
        for command, *more in (("peek",), ("poke", "1")):
            self.check_failure(2, 'DEVICE: "lens" is not command, query, register, pt5111, pan or tilt: '
                                  f"see kelvo-sim {command} --help", command, "lens", "4", *more)

    def test_values_that_are_none(self):
        self.make()
        for value in ("", "one", "0x", "1.5", "-1", "0xFFFFFFFFFFF"):
            self.check_failure(2, f'"{value}" is no value: write a number, or a hexadecimal one behind 0x',
                               "poke", "pan", "35", value)
        for counts in ("", "far", "--", "+-1", "2147483648"):
            result = self.check(self.call("push", "pan", counts), 2, "")
            self.assertEqual(result.stderr.count("\n"), 1)

    def test_a_state_of_power_that_there_is_not(self):
        result = self.check(self.call("power", "maybe"), 2, "")
        self.assertIn("kelvo-sim power: STATE: maybe not in {", result.stderr)

    def test_nothing_of_the_lens_without_a_program(self):
        self.make()
        for device in ("command", "query", "register"):
            self.check_failure(8, f"{device} 7: no program runs: boot the lens controller first", "peek", device, "7")
        self.check_failure(8, "command heater: no program runs: boot the lens controller first",
                           "poke", "command", "heater", "1")
        self.check_failure(8, "focus: this camera has no such motor now: it has pan, tilt", "push", "focus", "1")

    def test_registers_that_there_are_not(self):
        self.make("--module", "de015")
        self.check_failure(8, "command dc_irs: there is no command of the program of this name now: take a number "
                              "from 0 to 255, or a name of docs/wire.md", "peek", "command", "dc_irs")
        self.check_failure(8, "command zoom3_rate: there is no command of the program of this name now: take a "
                              "number from 0 to 255, or a name of docs/wire.md", "poke", "command", "zoom3_rate", "1")
        for device, register in (("command", "24"), ("query", "0x86"), ("register", "1"), ("pt5111", "64"),
                                 ("pan", "5")):
            result = self.check(self.call("peek", device, register), 8, "")
            self.assertRegex(result.stderr, rf"^kelvo-sim peek: {device} {register}: there is no such .*\n$")
        self.check_failure(8, "query sensor_level:x: a number from 0 to 255 must follow the colon",
                           "peek", "query", "sensor_level:x")

    def test_what_the_camera_refuses_changes_nothing(self):
        self.make("--module", "df033")
        before = self.status()
        self.check_failure(8, "query version: a query is only answered: poke a command", "poke", "query", "version", "1")
        self.check_failure(8, "pan set_use_hall: 256 is more than its 1 bytes hold: take a number up to 255",
                           "poke", "pan", "set_use_hall", "256")
        self.check_failure(8, "command 15: DF033's program has no command 15: correct the command line",
                           "poke", "command", "15", "0")
        self.check_failure(8, "register focus_status: register 28 can only be read: correct the command line",
                           "poke", "register", "focus_status", "1")
        self.assertEqual(self.status(), before)

    def test_without_power(self):
        self.make("--module", "df033")
        self.check_hand("", "power", "off")
        for device in ("command", "pt5111", "tilt"):
            self.check_failure(8, f"{device} 4: the power is off: switch it on", "peek", device, "4")
        self.check_failure(8, "pan set_use_hall: the power is off: switch it on",
                           "poke", "pan", "set_use_hall", "1")


class Peeking(HandsTest):
    def test_registers_and_commands_by_name_or_number(self):
        self.make("--module", "df033")
        for device, register, output in (("query", "version", "520 0x208"), ("query", "0x86", "520 0x208"),
                                         ("command", "loop_ready", "1 0x1"), ("command", "39", "1 0x1"),
                                         ("tilt", "position", "32768 0x8000"), ("tilt", "4", "32768 0x8000"),
                                         ("register", "focus_counter", "0 0x0"), ("pt5111", "0x3F", "0 0x0")):
            self.check_hand(output + "\n", "peek", device, register)

    def test_a_query_about_a_sensor(self):
        self.make("--module", "df033")
        self.check_hand("0 0x0\n", "peek", "query", "interrupter_state:0")
        self.check_hand("-16000\n", "push", "focus", "-40000")
        self.check_hand("1 0x1\n", "peek", "query", "interrupter_state:0")

    def test_as_json(self):
        self.make("--module", "t5391")
        data = json.loads(self.call("peek", "query", "version", "--json").stdout)
        self.assertEqual(data, {"schema": 1, "camera": self.name, "device": "query", "register": "version",
                                "value": 0x309})

    def test_leaves_no_trace(self):
        self.make("--module", "df033")
        before = self.status()
        self.check_hand("520 0x208\n", "peek", "query", "version")
        self.assertEqual(self.status(), before)


class Poking(HandsTest):
    def test_a_command_by_name_and_a_hexadecimal_value(self):
        self.make("--module", "df033")
        self.check_hand("", "poke", "command", "heater", "0x50")
        self.check_hand("80 0x50\n", "peek", "command", "heater")
        self.assertIn({"device": "heater", "kind": "level", "state": 80}, self.status()["devices"])

    def test_a_register_of_the_motor_block_starts_a_move(self):
        self.make("--module", "t5391")
        for register, value in (("zoom_mode", "0x340"), ("zoom_count_low", "400"), ("zoom_period", "5730"),
                                ("zoom_control", "3842"), ("zoom_control", "3850")):
            self.check_hand("", "poke", "register", register, value)
        motor = self.motor("zoom 1")
        self.assertEqual((motor["position"], motor["target"], motor["running"], motor["powered"]),
                         (0, 400, True, True))
        self.assertGreater(motor["rate"], 0)
        self.check(tool.call("run", "--name", self.name, "--", project.setting("sleeper"), "5"), 0, "", "")
        motor = self.motor("zoom 1")
        self.assertEqual((motor["position"], motor["target"], motor["running"], motor["rate"], motor["counter"]),
                         (400, 400, False, 0, 400))

    def test_registers_of_the_head(self):
        self.make("--head", "vetra")
        self.check_hand("", "poke", "tilt", "set_current", "300")
        self.check_hand("300 0x12C\n", "peek", "tilt", "set_current")
        self.check_hand("0 0x0\n", "peek", "pan", "set_current")
        self.check_hand("", "poke", "pan", "continuous_move", "0x011C20")
        (pan, tilt) = self.status()["head_axes"]
        self.assertEqual((pan["axis"], pan["asleep"], pan["calibrated"], tilt["speed"]), ("pan", False, True, 0))
        self.assertEqual(self.status()["head"][0]["state"], "moves")
        self.check_hand("", "poke", "pan", "stop", "0")

    def test_nobody_is_held_responsible(self):
        self.make("--module", "df033")
        self.call("poke", "command", "15", "0")
        self.check(tool.call("violations", self.name), 0, "", "")


class Pushing(HandsTest):
    def test_a_motor_is_turned_up_to_its_end_stops_and_no_counter_sees_it(self):
        self.make("--module", "df033")
        for name in ("zoom 1", "zoom1", "Zoom-1"):
            self.check_hand("40\n", "push", name, "40")
            self.check_hand("0\n", "push", name, "-0x28")
        self.check_hand("2000\n", "push", "zoom1", "+99999")
        motor = self.motor("zoom 1")
        self.assertEqual((motor["position"], motor["counter"]), (2000, 0))

    def test_an_axis_of_the_head(self):
        self.make()
        self.check_hand("32668\n", "push", "pan", "-100")
        self.check_hand("32868\n", "push", "tilt", "100")
        self.assertEqual([axis["count"] for axis in self.status()["head"]], [32668, 32868])

    def test_the_motors_are_named_when_there_is_none_such(self):
        self.make("--module", "t5391")
        self.check_failure(8, "zoom2: this camera has no such motor now: it has zoom1, focus, pan, tilt",
                           "push", "zoom2", "1")


class Power(HandsTest):
    def test_the_controller_starts_anew(self):
        self.make("--module", "df033")
        self.check_hand("40\n", "push", "zoom1", "40")
        self.check_hand("", "power", "off")
        self.check_hand("", "power", "off")
        (controller,) = self.status()["controller"]
        self.assertEqual((controller["state"], controller["powered"]), ("without power", False))
        self.check_hand("", "power", "on")
        (controller,) = self.status()["controller"]
        self.assertEqual((controller["state"], controller["module"], controller["lens"], controller["powered"]),
                         ("in its boot loader", None, "DF033", True))
        self.assertEqual(self.motor("zoom 1")["position"], 40)

    def test_a_program_finds_no_camera_without_it(self):
        self.make()
        self.check_hand("", "power", "off")
        result = tool.call("run", "--name", self.name, "--", project.setting("pan_and_tilt"))
        self.assertNotEqual(result.returncode, 0)
        self.check_hand("", "power", "on")
        self.check(tool.call("run", "--name", self.name, "--", project.setting("pan_and_tilt")), 0)


if __name__ == "__main__":
    project.main()
