#!/usr/bin/env python3
"""Ctrl-C while something moves that no command waits for."""

import signal
import subprocess
import time
from pathlib import Path

import kelvoctl_tool
import project
from head_tool import TABLE


class Interrupt(kelvoctl_tool.KelvoctlTest):
    def interrupted(self, *lines, settings, fault=None):
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
            if fault:
                self.assertEqual(kelvoctl_tool.call_sim("fault", "add", self.camera, fault).returncode, 0)
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

    def test_an_axis_that_does_not_answer_any_more(self):
        errors = self.interrupted(f"pid load {TABLE}", "pan move 50", settings="clock=real head=vetra",
                                  fault="i2c slave=pan nak")
        self.assertRegex(errors, r"^kelvoctl: run: \S+:\d: (pan move|sleep): interrupted: pan: the axis may still "
                                 r"move: /dev/i2c-2: the pan controller does not answer: see whether it has power\n$")

    def test_a_motor_that_cannot_be_reached_any_more(self):
        self.boot(settings="clock=20")
        errors = self.interrupted("focus move 60000 --speed 1", settings="clock=20",
                                  fault="spi frame=command error=EIO")
        self.assertRegex(errors, r"^kelvoctl: run: \S+:\d: (focus move|sleep): interrupted: "
                                 r"focus may still move: nothing reaches it\n$")

    def test_it_cannot_be_put_to_sleep(self):
        """A process that is stopped and goes on has lost its place in the queue for the bus lock."""
        before, variables = self.on_camera(settings="clock=real")
        command = [*filter(None, project.settings("tool")), *before, "run",
                   str(self.script("pan position", "sleep 2s"))]
        with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, process_group=0,
                              env=kelvoctl_tool.environment(variables)) as process:
            self.assertNotEqual(process.stdout.readline(), "")
            process.send_signal(signal.SIGTSTP)
            time.sleep(0.5)
            state = Path(f"/proc/{process.pid}/status").read_text().split("State:")[1].split()[0]
            process.send_signal(signal.SIGCONT)
            self.assertEqual(process.wait(timeout=60), 0)
        self.assertNotEqual(state, "T")

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
