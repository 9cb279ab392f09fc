#!/usr/bin/env python3
"""kelvoctl's iris, filter, heater, converter, photo-interrupters and PT5111, by module."""

import json

import kelvoctl_tool
import project

LENSES = ("de015", "df033", "t5391")
LINK = "/dev/spi_renesas: a transfer failed: see whether the controller has power, and boot it"


class LensTest(kelvoctl_tool.KelvoctlTest):
    def status(self):
        """What the camera itself says of its lens since the last boot."""
        return json.loads(kelvoctl_tool.call_sim("status", self.camera, "--json").stdout)["boot_devices"][-1]

    def check_shows(self, output, *arguments, **options):
        self.check(self.ctl(*arguments, **options), 0, output)

    def check_numbers(self, command, *cases):
        """Each case: arguments and the line that they get, without what every line has."""
        for arguments, line in cases:
            with self.subTest(command, arguments=arguments):
                self.check_fails(2, f"{command}: {line}: see kelvoctl {command} --help", *command.split(), *arguments)


class NotBooted(LensTest):
    def test_commands_that_need_a_program(self):
        for command in ("zoom1 off", "focus home", "iris set 5", "filter on", "heater 5", "adc 0", "pi read", "pi offset",
                        "pi power on", "pi calibrate", "pi verify on", "pt5111 init", "pt5111 send 1", "ois on", "ois off",
                        "ois gain", "ois range 5", "ois mode normal", "ois coma", "ois stationary on", "ois read"):
            with self.subTest(command):
                name = " ".join(word for word in command.split() if word.isidentifier())
                self.check_fails(4, f"{name}: no program answers: boot the controller", *command.split())


class Iris(LensTest):
    def test_steps(self):
        self.boot("de015")
        self.check_shows("module  de015\niris    open\nsteps   50\n", "iris", "open", "50", lens="de015")
        self.check_shows("module  de015\niris    close\nsteps   7\n", "iris", "close", "7", lens="de015")
        self.check_shows("module  de015\niris    stopped\npower   off\n", "iris", "stop", lens="de015")
        self.assertEqual(self.violations(), [])

    def test_steps_are_for_one_module(self):
        for lens in ("df033", "t5391"):
            for command in ("open", "close"):
                self.check_fails(8, f"iris {command}: {lens} has no stepped iris: see iris set", "iris", command, "5",
                                 lens=lens)
            self.check_fails(8, f"iris stop: {lens} has no stepped iris", "iris", "stop", lens=lens)

    def test_the_chip_does_not_take_its_words(self):
        self.boot("de015")
        self.check_fails(3, "iris open: /dev/spi_pt5111: takes no words: see kelvoctl doctor", "iris", "open", "5",
                         lens="de015", settings="clock=sleep fault=pt5111:error=EIO")

    def test_the_target(self):
        for lens in LENSES:
            self.remove_camera()
            self.boot(lens)
            self.check_shows(f"module  {lens}\nlevel   4660\n", "iris", "set", "0x1234", lens=lens)
            self.assertEqual(self.status()["dc_iris"], 0x1234)
            self.assertEqual(self.violations(), [])

    def test_the_range(self):
        self.boot()
        self.check_fails(2, "iris range: /bin/DC_S_Cali.dat: cannot be opened: calibrate the iris", "iris", "range")
        self.check_fails(2, "iris range: /bin/DC_S_Cali.dat: cannot be opened: import the unit's record", "iris", "range",
                         lens="t5391")
        self.check_fails(8, "iris range: de015 has no iris loop", "iris", "range", lens="de015")
        self.check(self.ctl("calibrate", "iris", "-y"), 0, None)
        self.check_shows("module   df033\nminimum  403\nmaximum  3708\n", "iris", "range")
        self.check_shows("module   t5391\nminimum  403\nmaximum  3708\n", "iris", "range", lens="t5391")

    def test_a_record_that_is_gone_meanwhile(self):
        self.check(self.ctl("calibrate", "iris", "-y"), 0, None)
        self.check_fails(2, "iris range: /bin/DC_S_Cali.dat: cannot be opened: calibrate the iris", "iris", "range",
                         settings="clock=sleep fault=file:path=/bin/DC_S_Cali.dat:frame=read:nth=2:missing")

    def test_the_range_of_a_damaged_record(self):
        place = self.folder / "bin/DC_S_Cali.dat"
        place.parent.mkdir()
        for size in (10, 23, 25):
            place.write_bytes(bytes(size))
            for lens in ("df033", "t5391"):
                self.check_fails(6, f"iris range: /bin/DC_S_Cali.dat: no iris record: it has {size} bytes and must "
                                    "have 24", "iris", "range", lens=lens,
                                 settings=f"clock=sleep files={self.folder}")

    def test_what_is_no_number(self):
        self.check_numbers("iris set", ([], "LEVEL is required"),
                           (["65536"], 'LEVEL: "65536" is no number from 0 to 65535'))
        self.check_numbers("iris open", ([], "STEPS is required"), (["-1"], 'STEPS: "-1" is no number from 0 to 65535'))


class Filter(LensTest):
    def test_on_and_off(self):
        for lens, steps in (("de015", ["--steps", "400"]), ("df033", []), ("t5391", [])):
            self.remove_camera()
            self.boot(lens)
            for side in ("off", "on"):
                with self.subTest(lens=lens, side=side):
                    result = self.result("filter", side, *steps, lens=lens)
                    self.assertEqual((result["module"], result["filter"], result.get("steps")),
                                     (lens, side, 400 if steps else None))
            self.assertEqual(self.violations(), [])

    def test_the_camera_has_it_there(self):
        self.boot()
        for side in ("off", "on"):
            self.result("filter", side)
            self.assertEqual(self.status()["filter"], side)

    def test_steps_belong_to_a_stepping_motor(self):
        self.check_fails(2, "filter on: how far? The filter of de015 has a stepping motor: say so with --steps",
                         "filter", "on", lens="de015")
        for lens in ("df033", "t5391"):
            self.check_fails(2, f"filter off: --steps: the filter of {lens} has no stepping motor",
                             "filter", "off", "--steps", "5", lens=lens)

    def test_a_transfer_that_fails(self):
        for lens in ("df033", "t5391"):
            self.remove_camera()
            self.boot(lens)
            self.check_fails(4, f"filter on: {LINK}", "filter", "on", lens=lens,
                             settings="clock=sleep fault=spi:frame=command:error=EIO")


class HeaterAndConverter(LensTest):
    def test_the_heater(self):
        for lens in LENSES:
            self.remove_camera()
            self.boot(lens)
            self.check_shows(f"module  {lens}\nlevel   200\n", "heater", "200", lens=lens)
            self.assertEqual(self.status()["heater"], 200)

    def test_the_converter(self):
        for lens in LENSES:
            self.remove_camera()
            self.boot(lens)
            for channel, value in ((0, 0x0A3C), (1, 0x07E1), (9, 0)):
                self.assertEqual(self.result("adc", channel, lens=lens)["value"], value)
        self.check_shows("module   t5391\nchannel  0\nvalue    2620\n", "adc", "0", lens="t5391")

    def test_what_is_no_number(self):
        self.check_numbers("heater", ([], "LEVEL is required"), (["256"], 'LEVEL: "256" is no number from 0 to 255'))
        self.check_numbers("adc", ([], "CHANNEL is required"), (["x"], 'CHANNEL: "x" is no number from 0 to 255'))

    def test_a_transfer_that_fails(self):
        self.boot()
        faulty = "clock=sleep fault=spi:frame=command:error=EIO"
        self.check_fails(4, f"heater: {LINK}", "heater", "5", settings=faulty)
        self.check_fails(4, f"adc: {LINK}", "adc", "5")


class Interrupters(LensTest):
    MOTORS = {"de015": ["focus", "zoom2", "zoom1"], "df033": ["focus", "zoom2", "zoom3", "zoom1"],
              "t5391": ["focus", "zoom1"]}

    def test_all_of_them(self):
        for lens, motors in self.MOTORS.items():
            self.remove_camera()
            self.boot(lens)
            sensors = self.result("pi", "read", lens=lens)["sensors"]
            self.assertEqual([sensor["motor"] for sensor in sensors], motors)
            self.assertFalse(any(sensor["interrupted"] for sensor in sensors))

    def test_one_that_is_interrupted(self):
        self.boot()
        self.check(self.ctl("focus", "move", "-900", "--wait"), 0, None)
        self.check_shows("module  df033\n\nsensor  motor  interrupted\n0       focus  yes\n", "pi", "read", "0")
        self.assertFalse(self.result("pi", "read", "1")["sensors"][0]["interrupted"])

    def test_the_supply(self):
        for lens in LENSES:
            self.remove_camera()
            self.boot(lens)
            for way in ("on", "off"):
                self.check_shows(f"module  {lens}\nsupply  controller\npower   {way}\n", "pi", "power", way, lens=lens)
        self.check_fails(8, "pi power on: t5391 has no PT5111", "pi", "power", "on", "--pt5111", lens="t5391")
        self.remove_camera()
        self.boot()
        self.check_shows("module  df033\nsupply  pt5111\npower   on\n", "pi", "power", "on", "--pt5111")

    def test_the_calibration(self):
        for lens, focus, zoom2 in (("de015", 37, 42), ("df033", 29, None), ("t5391", 9, None)):
            with self.subTest(lens):
                self.remove_camera()
                self.boot(lens)
                self.assertEqual(self.result("pi", "offset", lens=lens)["focus"], 0)
                started = self.result("pi", "calibrate", lens=lens)
                self.assertEqual((started["sensor"], started["calibration"]), ("all", "started"))
                self.check(self.ctl("pi", "calibrate", "1", lens=lens), 0, None)
                self.check(self.ctl("filter", "on", *(["--steps", "9"] if lens == "de015" else []), lens=lens), 0, None)
                self.check(self.ctl("focus", "move", "400", "--wait", lens=lens), 0, None)
                found = self.result("pi", "offset", lens=lens)
                self.assertEqual((found["focus"], found["zoom2"]), (focus, zoom2))
                self.assertEqual(found.get("focus_calibrated"), True if lens == "de015" else None)
                self.assertEqual(self.violations(), [])

    def test_what_is_not_calibrated(self):
        for lens, last in (("de015", 2), ("df033", 2), ("t5391", 1)):
            self.check_fails(8, f"pi calibrate: {lens} calibrates the photo-interrupters 0 to {last} only",
                             "pi", "calibrate", last + 1, lens=lens)

    def test_the_verification(self):
        for lens in LENSES:
            self.remove_camera()
            self.boot(lens)
            self.check_shows(f"module        {lens}\nverification  on\n", "pi", "verify", "on", lens=lens)
        self.check_shows("module        t5391\nverification  off\n", "pi", "verify", "off", lens="t5391")
        self.check_fails(8, "pi verify off: de015 cannot switch the verification off again", "pi", "verify", "off",
                         lens="de015")

    def test_a_transfer_that_fails(self):
        self.boot()
        self.check_fails(4, f"pi read: {LINK}", "pi", "read",
                         settings="clock=sleep fault=spi:query=interrupter-state:error=EIO")
        self.check_numbers("pi read", (["256"], 'SENSOR: "256" is no number from 0 to 255'))

    def test_a_number_that_none_has(self):
        for lens, last in (("de015", 2), ("df033", 3), ("t5391", 1)):
            line = f"{lens} has the photo-interrupters 0 to {last} only"
            self.check_fails(2, f"pi read: {line}", "pi", "read", last + 1, lens=lens)
            self.check_fails(2, f"focus home: {line}", "focus", "home", "--sensor", last + 1, lens=lens)


class Pt5111(LensTest):
    def test_words(self):
        for lens in ("de015", "df033"):
            self.remove_camera()
            self.boot(lens)
            self.check_shows(f"module  {lens}\npt5111  initialised\n", "pt5111", "init", lens=lens)
            self.check_shows(f"module  {lens}\npt5111  stopped\n", "pt5111", "stop", lens=lens)
            self.check_shows(f"module    {lens}\nword      0xCA00\nregister  50\nvalue     512\n",
                             "pt5111", "send", "0xCA00", lens=lens)
            self.assertEqual(self.violations(), [])

    def test_a_module_without_it(self):
        for command in (["init"], ["stop"], ["send", "1"]):
            self.check_fails(8, f"pt5111 {command[0]}: t5391 has no PT5111", "pt5111", *command, lens="t5391")
        self.check_numbers("pt5111 send", ([], "WORD is required"),
                           (["65536"], 'WORD: "65536" is no number from 0 to 65535'))

    def test_a_word_that_does_not_get_through(self):
        self.boot()
        self.check_fails(4, f"pt5111 stop: {LINK}", "pt5111", "stop",
                         settings="clock=sleep fault=spi:command=pt5111-word:error=EIO")


if __name__ == "__main__":
    project.main()
