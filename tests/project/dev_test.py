#!/usr/bin/env python3
"""The front door: what ./dev says when it is not asked for anything that it knows."""

import subprocess
import unittest

import project

COMMANDS = ["demo", "test", "bench", "costs", "format", "lint", "coverage", "help"]


def dev(*arguments):
    return subprocess.run([project.SOURCE / "dev", *arguments], text=True, check=False, cwd="/",
                          stdin=subprocess.DEVNULL, capture_output=True)


class Dev(unittest.TestCase):
    def check_usage(self, text):
        self.assertIn("Usage: ./dev", text)
        for command in COMMANDS:
            self.assertRegex(text, rf"(?m)^  {command}\b")

    def check_refused(self, *arguments, because):
        result = dev(*arguments)
        self.assertEqual(result.returncode, 2)
        self.assertEqual(result.stdout, "")
        self.assertIn(because, result.stderr)
        self.check_usage(result.stderr)

    def test_help_lists_the_commands(self):
        result = dev("help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.check_usage(result.stdout)

    def test_no_command_is_a_mistake(self):
        self.check_refused(because="Usage")

    def test_an_unknown_command_is_named(self):
        self.check_refused("tset", because="unknown command: tset")

    def test_an_unknown_argument_is_named(self):
        self.check_refused("format", "--chekc", because="unknown argument: --chekc")
        self.check_refused("lint", "bus", because="unknown argument: bus")
        self.check_refused("test", "now", because="unknown argument: now")


if __name__ == "__main__":
    project.main()
