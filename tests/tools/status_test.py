#!/usr/bin/env python3
"""`kelvo-sim status`: every device, as tables and as JSON."""

import json
import os
import signal
import subprocess
import time

import project
import tool

SECTIONS = ["controller", "motors", "interrupters", "devices", "stabiliser", "head", "head_axes", "head_registers",
            "boots", "frames", "images", "boot_motors", "boot_devices", "bus_lock", "programs"]


class Status(tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.name = self.camera()

    def run_on(self, *program, options=()):
        return self.check(tool.call("run", "--name", self.name, "--clock", "sleep", *options, "--", *program), 0)

    def start(self, program, *arguments):
        parts = [*filter(None, project.settings("tool")), "run", "--name", self.name, "--", project.setting(program)]
        started = subprocess.Popen([*parts, *arguments], stdout=subprocess.PIPE, text=True,
                                   env={**os.environ, "ASAN_OPTIONS": tool.SANITIZER})
        self.addCleanup(started.kill)
        return started

    def json(self):
        return json.loads(self.check(tool.call("status", self.name, "--json"), 0, errors="").stdout)

    def text(self):
        return self.check(tool.call("status", self.name), 0, errors="").stdout

    def test_of_a_camera_that_nobody_booted(self):
        self.run_on("true")
        data = self.json()
        self.assertEqual([key for key, value in data.items() if isinstance(value, list)], SECTIONS)
        self.assertEqual(data["controller"],
                         [{"state": "in its boot loader", "module": None, "version": None, "lens": None,
                           "reset_line": "high", "powered": True}])
        for section in ("motors", "interrupters", "devices", "stabiliser", "boots", "programs"):
            self.assertEqual(data[section], [], section)
        self.assertEqual([axis["count"] for axis in data["head"]], [32768, 32768])
        self.assertEqual(data["bus_lock"], [{"held": False, "process": None}])
        self.assertTrue(self.text().startswith(
            "  lens controller     program  version  lens that stays  reset line  camera powered\n"
            "  in its boot loader  -        -        -                high        yes\n\n"))

    def test_of_a_fitted_lens(self):
        self.run_on("true", options=["--module", "t5391"])
        data = self.json()
        self.assertEqual(data["controller"][0]["state"], "runs a program")
        self.assertEqual(data["motors"][1], {"motor": "focus", "output": "focus channel", "position": 0, "target": 0,
                                             "running": False, "rate": 0.0, "powered": True, "counter": 0,
                                             "in": "steps"})
        self.assertEqual(data["interrupters"][0], {"sensor": 0, "motor": "focus", "edge": -600, "supplied": True,
                                                   "interrupted": False, "calibrated": False, "offset": 0})
        self.assertIn({"device": "IR-cut filter", "kind": "coil of the motor block", "state": "off"},
                      data["devices"])
        self.assertIn({"device": "converter", "kind": "channel 1", "state": 0x07E1}, data["devices"])

    def test_of_every_module_after_a_boot(self):
        for module, filter_kind, iris in (("de015", "motor at PT5111 A", "P-iris"),
                                          ("df033", "pulse of the PT5111", "DC iris")):
            self.run_on(project.setting("boot_and_move"), module)
            data = self.json()
            self.assertEqual(data["controller"][0]["module"], module.upper())
            devices = [(row["device"], row["kind"]) for row in data["devices"]]
            self.assertIn(("IR-cut filter", filter_kind), devices)
            self.assertIn(iris, [device for device, _ in devices])
            self.assertIn("calibration run", [kind for _, kind in devices])
            settings = {row["setting"]: row["value"] for row in data["stabiliser"]}
            self.assertEqual(settings["on"], "no")
            self.assertTrue({"polarity", "coma", "gyro_gain_x", "gyro_gain_y", "hall_offset_x", "hall_xy",
                             "gyro_stable"} <= set(settings))
            self.assertEqual("stabiliser_pause" in settings, module == "de015")
            self.assertNotIn("version", settings)
        self.assertEqual([boot["module"] for boot in data["boots"]], ["DE015", "DF033"])

    def test_of_the_head(self):
        self.run_on(project.setting("pan_and_tilt"), options=["--head", "vetra"])
        data = self.json()
        self.assertEqual(data["head"][0]["family"], "Vetra")
        self.assertEqual([(axis["asleep"], axis["calibrated"], axis["temperature"]) for axis in data["head_axes"]],
                         [(False, True, None)] * 2)
        registers = {row["name"]: row for row in data["head_registers"]}
        self.assertEqual(registers["set_limit_enable"]["pan"], 1)
        self.assertIn("  52        limits ", self.text())

    def test_tables_and_json_have_the_same_rows(self):
        self.run_on(project.setting("boot_and_move"), "df033")
        text = self.text()
        for section in ("motors", "interrupters", "devices", "stabiliser", "head_registers"):
            for row in self.json()[section]:
                first = str(next(iter(row.values())))
                self.assertRegex(text, rf"(?m)^  {first} ")

    def test_the_programs_that_use_it_and_who_holds_the_bus_lock(self):
        self.run_on("true")
        with self.start("lock_holder") as program:
            self.assertEqual(program.stdout.readline(), "holds the bus lock\n")
            data = self.json()
            self.assertEqual(data["bus_lock"], [{"held": True, "process": program.pid}])
            self.assertEqual([row["process"] for row in data["programs"]], [program.pid])
            self.assertIn(f"  yes            {program.pid}\n", self.text())
            program.send_signal(signal.SIGKILL)
            program.wait()
        deadline = time.monotonic() + 10
        while self.json()["bus_lock"][0]["held"] and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertEqual(self.json()["bus_lock"], [{"held": False, "process": None}])
        self.assertEqual(self.json()["programs"], [])

    def test_a_daemon_that_closes_all_descriptors_keeps_its_place(self):
        """A program that closed what the simulated camera keeps open was taken for dead."""
        self.run_on("true")
        for way in ("close", "close_range", "closefrom"):
            with self.start("closing_program", way) as program:
                self.assertEqual(program.stdout.readline(), "closed\n")
                self.assertEqual([row["process"] for row in self.json()["programs"]], [program.pid], way)
                program.kill()


if __name__ == "__main__":
    project.main()
