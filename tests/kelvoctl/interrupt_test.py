#!/usr/bin/env python3
"""Ctrl-C while something moves that no command waits for."""

import signal
import subprocess
import time

import kelvoctl_tool
import project
from head_tool import TABLE


class Interrupt(kelvoctl_tool.KelvoctlTest):
    def interrupted(self, *lines, settings):
        """What a script prints that is interrupted in its last line, a long sleep, or just before that."""
        before, variables = self.on_camera(settings=settings)
        command = [*filter(None, project.settings("tool")), *before, "run",
                   str(self.script(*lines, "sleep 1000s"))]
        with subprocess.Popen(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=kelvoctl_tool.environment(variables)) as process:
            line = process.stdout.readline()
            while line and not line.startswith(("stepping", "direction")):
                line = process.stdout.readline()
            time.sleep(0.2)
            process.send_signal(signal.SIGINT)
            _, errors = process.communicate(timeout=100)
        self.assertEqual(process.returncode, 130, errors)
        return errors

    def test_an_axis_that_an_earlier_line_has_moved_is_stopped(self):
        settings = "clock=real head=vetra"
        errors = self.interrupted(f"pid load {TABLE}", "pan move 50", settings=settings)
        self.assertRegex(errors, r"^kelvoctl: run: \S+:\d: (pan move|sleep): interrupted: "
                                 r"pan: the axis was stopped at \d+\n$")
        self.assertIs(self.result("pan", "position", settings=settings)["at_rest"], True)

    def test_a_motor_that_an_earlier_line_has_moved_is_stopped(self):
        self.boot(settings="clock=20")
        errors = self.interrupted("focus move 60000 --speed 1", settings="clock=20")
        self.assertRegex(errors, r"^kelvoctl: run: \S+:\d: (focus move|sleep): interrupted: "
                                 r"focus is stopped, and its power is off\n$")
        motors = {motor["motor"]: motor for motor in self.result("status", settings="clock=20")["motors"]}
        self.assertIs(motors["focus"]["running"], False)

    def test_what_stands_still_is_not_mentioned(self):
        self.boot(settings="clock=20")
        errors = self.interrupted("focus move 10 --wait", settings="clock=20")
        self.assertRegex(errors, r"^kelvoctl: run: \S+:\d: (focus move|sleep): interrupted\n$")

    def test_a_controller_that_restarts_during_a_move_is_missed(self):
        self.boot()
        fault = kelvoctl_tool.call_sim("fault", "add", self.camera, "spi query=0x8C nth=3 reset")
        self.assertEqual(fault.returncode, 0, fault.stderr)
        self.check_fails(4, "focus move: no program answers: boot the controller", "focus", "move", "2000", "--wait")


if __name__ == "__main__":
    project.main()
