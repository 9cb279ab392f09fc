#!/usr/bin/env python3
"""kelvoctl sleep: a pause of a script, by the camera's clock."""

import json

import kelvoctl_tool
import project

HELP = ": see kelvoctl sleep --help"


class Sleep(kelvoctl_tool.KelvoctlTest):
    def time(self):
        """Nanoseconds by the camera's clock."""
        return json.loads(kelvoctl_tool.call_sim("status", self.camera, "--json").stdout)["time_ns"]

    def test_the_cameras_time_passes(self):
        self.ctl("pan", "position")
        before = self.time()
        self.check(self.ctl("sleep", "1.5s"), 0, "")
        self.assertEqual(self.time() - before, 1_500_000_000)

    def test_a_motor_moves_on_meanwhile(self):
        self.boot()
        script = self.script("focus move 200 --speed 150", "sleep 100ms", "focus count", "sleep 1s", "focus count")
        output = self.check(self.ctl("run", script), 0, None).stdout
        early, late = [int(line.split()[1]) for line in output.splitlines() if line.startswith("count   ")]
        self.assertTrue(200 < early < 800, output)
        self.assertEqual(late, 1600)

    def test_what_is_no_time(self):
        self.check_fails(2, "sleep: TIME is required" + HELP, "sleep")
        self.check_fails(2, 'sleep: TIME: "5" is no time up to a day: write 2s, 250ms or 40us' + HELP, "sleep", "5")

    def test_ctrl_c(self):
        script = self.script("pan position", "sleep 1000s")
        terminal = self.terminal("run", script, settings="clock=real")
        terminal.expect("position +32768")
        terminal.interrupt()
        # On a loaded machine it may come before the line that was printed has quite ended.
        terminal.expect(r"run: \S+:(1: pan position|2: sleep): interrupted\r\n")
        self.assertEqual(terminal.wait(), 130)


if __name__ == "__main__":
    project.main()
