#!/usr/bin/env python3
"""Output that nobody takes: a reader that goes away, and streams that are closed."""

import os
import subprocess

import kelvoctl_tool
import project
from head_tool import TABLE


def line(error):
    return f"kelvoctl: standard output: {error}: look where it leads\n"


class Output(kelvoctl_tool.KelvoctlTest):
    def unread(self):
        """The end of a pipe whose reader has gone."""
        reader, writer = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, writer)
        return writer

    def without(self, streams, *arguments):
        """A command whose streams are closed, as a shell closes them."""
        before, variables = self.on_camera()
        command = [*filter(None, project.settings("tool")), *before, *arguments]
        return subprocess.run(["sh", "-c", f'"$@" {streams}', "sh", *command], text=True, capture_output=True,
                              check=False, env=kelvoctl_tool.environment(variables), timeout=100)

    def test_a_result_that_nobody_reads(self):
        self.check(self.ctl("doctor", stdout=self.unread()), 7, None, line("Broken pipe"))

    def test_help_that_nobody_reads(self):
        self.check(self.ctl("--help", stdout=self.unread()), 7, None, line("Broken pipe"))

    def test_an_axis_is_stopped_whoever_reads(self):
        before, variables = self.on_camera()
        command = [*filter(None, project.settings("tool")), *before, "--verbose", "pan", "move", "720", "--for", "4s",
                   "--pid", str(TABLE)]
        result = subprocess.run(command, text=True, stdout=subprocess.PIPE, stderr=self.unread(), check=False,
                                env=kelvoctl_tool.environment(variables), timeout=100)
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stdout, r"(?m)^at rest +yes$")

    def test_a_closed_standard_output(self):
        self.check(self.without(">&-", "doctor"), 7, "", line("Bad file descriptor"))

    def test_closed_streams(self):
        """What is opened meanwhile takes nobody's place."""
        self.assertEqual(self.without("<&- >&- 2>&-", "boot", "-y").returncode, 7)
        self.assertEqual(self.without("<&- 2>&-", "attach").stdout.count("module"), 1)
        self.assertEqual(self.violations(), [])


if __name__ == "__main__":
    project.main()
