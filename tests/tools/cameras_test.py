#!/usr/bin/env python3
"""Cameras with names: run, list, status, violations, remove."""

import json
import os
import re
import signal
import subprocess
import time
from pathlib import Path

import project
import tool

RULE = re.compile(r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")


class NamedCameras(tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.name = self.camera()

    def run_on(self, program, *arguments, options=()):
        return tool.call("run", "--name", self.name, "--clock", "sleep", *options, "--",
                         project.setting(program), *arguments)

    def json_of(self, *arguments, code=0):
        data = json.loads(self.check(tool.call(*arguments, "--json"), code, errors="").stdout)
        self.assertEqual(data["schema"], 1)
        return data

    def entry(self):
        """This camera's entry in the list of all."""
        cameras = self.json_of("list")["cameras"]
        return [camera for camera in cameras if camera["camera"] == self.name]

    def check_missing(self, *arguments):
        self.check_refused(3, f"kelvo-sim {arguments[0]}: {self.name}: there is no camera of this name: "
                              "kelvo-sim list shows those that there are", *arguments)

    def make_unusable(self):
        path = Path(f"/dev/shm/kelvo-sim-{os.getuid()}-{self.name}")
        self.assertTrue(path.exists())
        path.write_bytes(b"no camera" * 1000)


class Looking(NamedCameras):
    def test_a_camera_that_is_not_there(self):
        for command in ("status", "violations", "remove"):
            self.check_missing(command, self.name)
        self.assertEqual(self.entry(), [])

    def test_a_camera_outlives_its_program(self):
        self.check(self.run_on("boot_and_move", "df033"), 0)
        text = self.check(tool.call("status", self.name), 0, errors="").stdout
        for line in ("  1     DF033   0208     1         runs     ", "  1     zoom 1  +250      250      steps\n",
                     "  1     focus   +2000     2000     1/8 steps\n",
                     "  1     on             0        0       off\n", "  protocol violations: 0\n"):
            self.assertIn(line, text)

    def test_programs_share_it(self):
        for module in ("df033", "t5391"):
            self.check(self.run_on("boot_and_move", module), 0)
        boots = self.json_of("status", self.name)["boots"]
        self.assertEqual([boot["module"] for boot in boots], ["DF033", "T5391"])

    def test_status_as_json(self):
        self.check(self.run_on("boot_and_move", "df033", options=["--head", "vetra"]), 0)
        data = self.json_of("status", self.name)
        self.assertEqual(data["camera"], self.name)
        self.assertGreater(data["time_ns"], 1_000_000_000)
        self.assertEqual(data["violations"], 0)
        (boot,) = data["boots"]
        self.assertGreater(boot.pop("boot_time_ns"), 1_000_000_000)
        self.assertEqual(boot, {"boot": 1, "attempts": 1, "program": "runs", "violations": 0, "module": "DF033",
                                "version": 0x208})
        self.assertEqual(data["boot_devices"], [{"boot": 1, "filter": "on", "dc_iris": 0, "heater": 0,
                                                 "stabiliser": "off"}])
        motors = {motor.pop("motor"): motor for motor in data["boot_motors"]}
        self.assertEqual(motors, {"zoom 1": {"boot": 1, "position": 250, "counter": 250, "in": "steps"},
                                  "zoom 2": {"boot": 1, "position": 0, "counter": 0, "in": "1/8 steps"},
                                  "zoom 3": {"boot": 1, "position": 250, "counter": 250, "in": "steps"},
                                  "focus": {"boot": 1, "position": 2000, "counter": 2000, "in": "1/8 steps"}})
        self.assertEqual(data["head"][0]["family"], "Vetra")
        self.assertEqual(data["head"][0]["state"], "at rest")

    def test_status_of_the_head(self):
        self.check(self.run_on("pan_and_tilt"), 0)
        self.assertIn("  pan   Tasmere  32768     32768  on      at rest\n", tool.call("status", self.name).stdout)
        data = self.json_of("status", self.name)
        self.assertGreater(data["head_transfers"], 10)
        self.assertEqual(data["head"], [{"axis": axis, "family": "Tasmere", "position": 32768, "count": 32768,
                                         "limits": "on", "state": "at rest"} for axis in ("pan", "tilt")])

    def test_status_of_a_camera_that_nobody_booted(self):
        self.check(tool.call("run", "--name", self.name, "--clock", "sleep", "--", "true"), 0, "", "")
        text = self.check(tool.call("status", self.name), 0, errors="").stdout
        self.assertTrue(text.endswith("\n  time simulated: 0.000 s\n  protocol violations: 0\n"))
        self.assertEqual(self.json_of("status", self.name)["boots"], [])

    def test_a_clean_run_has_no_violations(self):
        self.check(self.run_on("boot_and_move", "df033"), 0)
        self.check(tool.call("violations", self.name), 0, "", "")
        self.assertEqual(self.json_of("violations", self.name),
                         {"schema": 1, "camera": self.name, "total": 0, "listed": []})

    def test_violations_show_in_the_exit_code(self):
        self.check(self.run_on("hasty_program"), 0)
        result = self.check(tool.call("violations", self.name), 1, errors="")
        self.assertRegex(result.stdout, r"^  time +process +to +frame +reason\n  \d+\.\d{3} s +\d+ +pan controller ")
        data = self.json_of("violations", self.name, code=1)
        self.assertEqual(data["total"], len(data["listed"]))
        self.assertEqual(set(data["listed"][0]), {"time_ns", "process", "to", "frame", "bytes", "reason"})
        self.assertEqual(data["listed"][0]["to"], "pan controller")
        self.assertGreater(data["listed"][0]["process"], 0)
        self.assertEqual(self.json_of("status", self.name)["violations"], data["total"])

    def test_the_list(self):
        self.check(tool.call("run", "--name", self.name, "--", "true"), 0)
        (entry,) = self.entry()
        self.assertRegex(entry.pop("made"), RULE)
        self.assertEqual(entry, {"camera": self.name, "programs": []})
        text = self.check(tool.call("list"), 0, errors="").stdout
        self.assertRegex(text, r"^  camera +made +programs  state\n")
        self.assertRegex(text, rf"(?m)^  {self.name} +\d[^ ]*Z +0 +usable$")

    def test_settings_that_the_camera_has_otherwise(self):
        self.check(tool.call("run", "--name", self.name, "--head", "vetra", "--", "true"), 0)
        result = tool.call("run", "--name", self.name, "--head", "tasmere", "--", "true")
        self.check(result, 4, "")
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        self.assertIn(self.name, result.stderr)

    def test_completion_offers_it(self):
        self.check(tool.call("run", "--name", self.name, "--", "true"), 0)
        (path,) = filter(None, project.settings("tool"))
        script = tool.call("completion", "bash").stdout
        script += (f'kelvo-sim() {{ "{path}" "$@"; }}\nCOMP_WORDS=(kelvo-sim status "") COMP_CWORD=2\n'
                   '_kelvo_sim\nprintf "%s\\n" "${COMPREPLY[@]}"\n')
        offered = subprocess.run(["bash", "-c", script], text=True, capture_output=True, check=True).stdout.split()
        self.assertIn(self.name, offered)


class Removing(NamedCameras):
    def test_a_removed_camera_is_gone(self):
        self.check(self.run_on("boot_and_move", "df033"), 0)
        self.check(tool.call("remove", self.name), 0, "", "")
        self.check_missing("status", self.name)
        self.check(self.run_on("boot_and_move", "t5391"), 0)
        self.assertEqual(len(self.json_of("status", self.name)["boots"]), 1)

    def test_a_camera_in_use_stays(self):
        with self.user() as user:
            self.check_refused(5, f"kelvo-sim remove: {self.name}: 1 program uses this camera: end it, or remove the "
                                  "camera with --in-use", "remove", self.name)
            self.assertEqual(self.entry()[0]["programs"], [user.pid])
            self.check(tool.call("remove", "--in-use", self.name), 0, "", "")
            self.assertEqual(self.entry(), [])
            user.send_signal(signal.SIGKILL)

    def user(self):
        """A program that uses the camera until it is killed."""
        command = [*filter(None, project.settings("tool")), "run", "--name", self.name, "--",
                   project.setting("hasty_program"), "stay"]
        process = subprocess.Popen(command, env={**os.environ, "ASAN_OPTIONS": tool.SANITIZER})
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        for _ in range(1200):
            if any(entry.get("programs") for entry in self.entry()):
                return process
            time.sleep(0.05)
        self.fail("the program does not come to use the camera")

    def test_a_camera_that_cannot_be_used(self):
        self.check(tool.call("run", "--name", self.name, "--", "true"), 0)
        self.make_unusable()
        for command in ("status", "violations"):
            result = self.check(tool.call(command, self.name), 4, "")
            self.assertEqual(result.stderr.count("\n"), 1)
            self.assertIn(self.name, result.stderr)
        result = self.check(tool.call("run", "--name", self.name, "--", "true"), 4, "")
        self.assertEqual(result.stderr.count("\n"), 1)
        self.assertIn("error", self.entry()[0])
        self.assertIn(self.name, tool.call("list").stdout)
        self.check(tool.call("remove", self.name), 0, "", "")
        self.assertEqual(self.entry(), [])


if __name__ == "__main__":
    project.main()
