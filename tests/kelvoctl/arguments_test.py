#!/usr/bin/env python3
"""What kelvoctl says of arguments that it does not take, and of itself."""

import re

import kelvoctl_tool
import project


class Arguments(kelvoctl_tool.KelvoctlTest):
    def check_refused(self, line, *arguments, **options):
        self.check(kelvoctl_tool.call(*arguments, **options), 2, "", f"kelvoctl: {line}\n")

    def check_starts(self, line, *arguments):
        result = self.check(kelvoctl_tool.call(*arguments), 2, "", None)
        self.assertTrue(result.stderr.startswith(f"kelvoctl: {line}"), result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1)

    def test_no_command(self):
        self.check_starts("a command is missing: it is one of boot, attach, status, ")

    def test_an_unknown_command(self):
        self.check_starts('"bot" is no command: it is one of boot, attach, ', "bot")
        self.check_starts('"bot" is no command: it is one of boot, attach, ', "--lens", "df033", "bot", "--json")

    def test_an_unknown_option(self):
        self.check_refused("boot: The following argument was not expected: --foo: see kelvoctl boot --help",
                           "boot", "--foo")

    def test_an_unknown_option_in_a_command_s_place(self):
        self.check_refused('"--foo" is no option: see kelvoctl --help', "--foo")
        self.check_refused('"-x" is no option: see kelvoctl --help', "-x")
        self.check_refused('"--foo" is no option: see kelvoctl --help', "--json", "--foo", "bot")
        self.check_refused('pan: "--foo" is no option: see kelvoctl pan --help', "pan", "--foo")
        self.check_refused('ois stationary: "-x" is no option: see kelvoctl ois stationary --help',
                           "ois", "stationary", "-x")
        self.check_starts('"-" is no command: it is one of boot, ', "-")

    def test_one_command_at_a_time(self):
        self.check_refused("boot: The following argument was not expected: attach: see kelvoctl boot --help",
                           "boot", "attach")

    def test_more_than_nothing_takes(self):
        self.check_refused("boot: The following arguments were not expected: a --foo b c: see kelvoctl boot --help",
                           "boot", "a", "--foo", "b", "--", "c")
        self.check_refused("pan limits set: The following arguments were not expected: 3 4 --x: see kelvoctl pan limits "
                           "set --help", "pan", "limits", "set", "1", "2", "3", "4", "--x")
        self.check_refused('completion: "one" is no command: it is one of bash, zsh', "completion", "one", "two")

    def test_an_unknown_module(self):
        self.check_refused('--lens: "de051" is no lens module: write de015|df033|t5391: see kelvoctl --help',
                           "--lens", "de051")

    def test_the_version(self):
        self.check(kelvoctl_tool.call("--version"), 0, f"kelvoctl {project.setting('version')}\n")

    def test_help_shows_options_commands_and_exit_codes(self):
        text = self.check(kelvoctl_tool.call("--help"), 0, None).stdout
        for part in ("--lens de015|df033|t5391", "--sim [=NAME]", "--json", "--verbose", "-y,--yes"):
            self.assertIn(part, text)
        for command in ("boot", "attach", "status", "run", "shell", "doctor"):
            self.assertRegex(text, rf"(?m)^  {command} +[A-Z]")
        codes = re.findall(r"(?m)^  (\d+) +\w.*$", text)
        self.assertEqual(codes, ["0", "2", "3", "4", "5", "6", "7", "8", "9", "130"])

    def test_help_of_a_command(self):
        text = self.check(kelvoctl_tool.call("run", "--help"), 0, None).stdout
        self.assertIn("Usage: kelvoctl run [OPTIONS] FILE\n", text)
        self.assertNotIn("Exit codes", text)

    def test_a_result_that_cannot_be_written(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            result = kelvoctl_tool.call("--help", stdout=full)
        self.check(result, 7, None, "kelvoctl: standard output: No space left on device: look where it leads\n")


class SimulatedCamera(kelvoctl_tool.KelvoctlTest):
    """One that cannot be used."""

    def test_a_wrong_name_of_a_camera(self):
        result = self.check(kelvoctl_tool.call("--sim=a/b", "attach"), 2, "", None)
        self.assertTrue(result.stderr.startswith('kelvoctl: --sim: "a/b" is not '), result.stderr)

    def test_no_name_of_a_camera(self):
        line = "kelvoctl: --sim=: a name is missing: write --sim=NAME, or --sim for the camera kelvoctl\n"
        for arguments in (["--sim=", "attach"], ["attach", "--sim="], ["--sim="]):
            self.check(kelvoctl_tool.call(*arguments), 2, "", line)

    def test_wrong_settings_of_the_simulated_camera(self):
        result = self.check(kelvoctl_tool.call("--sim", "attach", variables={"KELVO_SIM": "colour=red"}), 2, "", None)
        self.assertIn("colour", result.stderr)

    def test_no_preload_library(self):
        result = kelvoctl_tool.call("--sim", "attach", variables={"KELVO_SIM_LIBRARY": "/no/such.so"})
        self.check(result, 9, "", "kelvoctl: --sim: /no/such.so: there is no such preload library: "
                                  "correct KELVO_SIM_LIBRARY\n")


if __name__ == "__main__":
    project.main()
