#!/usr/bin/env python3
"""kelvo-sim's words: help, version, manual page, and what it makes of wrong arguments."""

import re

import project
import tool

OPTIONS = {
    "run": ["--name", "--head", "--module", "--seed", "--clock", "--corrupt", "--fault", "--report",
            "--stop-at-violation"],
    "list": ["--json"],
    "remove": ["--in-use"],
    "status": ["--json"],
    "violations": ["--json"],
    "fault": ["--json"],
    "peek": ["--json"],
    "poke": [],
    "push": [],
    "power": [],
    "trace": ["--follow", "--for", "--last", "--times", "--json", "--output", "--real"],
}
CODES = ["0", "1", "2", "3", "4", "5", "6", "7", "8", "123", "124", "125", "126", "127"]
ARGUMENTS = {"remove": ["desk"], "status": ["desk"], "violations": ["desk"], "fault": ["list", "desk"],
             "peek": ["desk", "pan", "4"], "poke": ["desk", "pan", "4", "0"], "push": ["desk", "pan", "1"],
             "power": ["desk", "off"]}
NAME_RULE = "up to 32 letters, digits, - and _"


class Arguments(tool.ToolTest):
    def test_help_lists_the_commands(self):
        text = self.check(tool.call("--help"), 0, errors="").stdout
        for command in OPTIONS:
            self.assertRegex(text, rf"(?m)^  {command}  +\w")
        self.assertNotIn("completion", text)

    def test_help_of_each_command_lists_its_options_and_the_exit_codes(self):
        for command, options in OPTIONS.items():
            text = self.check(tool.call(command, "--help"), 0, errors="").stdout
            self.assertEqual(re.findall(r"(?m)^  (--[a-z-]+)", text), options)
            self.assertEqual(re.findall(r"(?m)^  (\d+) +\w", text), CODES)

    def test_usage_shows_where_a_program_stands(self):
        for command, usage in (("run", "[OPTIONS] -- PROGRAM [ARGUMENTS...]"),
                               ("trace", "[OPTIONS] [NAME] [-- PROGRAM [ARGUMENTS...]]")):
            self.assertIn(f"Usage: kelvo-sim {command} {usage}\n", tool.call(command, "--help").stdout)
        manual = tool.call("manual").stdout
        self.assertIn(".SS run \\-\\- PROGRAM [ARGUMENTS...]\n", manual)
        self.assertIn(".SS trace [NAME] [\\-\\- PROGRAM [ARGUMENTS...]]\n", manual)

    def test_the_words_of_a_fault(self):
        help_text = tool.call("fault", "--help").stdout
        manual = tool.call("manual").stdout.split("\n.SH FAULTS\n")[1].split("\n.SH ")[0].replace("\\-", "-")
        words = re.findall(r"(?m)^  ([a-z-]+)(?:=[A-Z-]+)?$", help_text)
        self.assertEqual(words, re.findall(r"(?m)^\\fB([a-z-]+)", manual))
        # Their names are those that the parser knows.
        known = tool.call("fault", "add", "nix", "file nix").stderr
        for word in ("error", "missing", "unreadable", "full", "kill", "frame", "path", "nth", "every", "times"):
            self.assertIn(word, words)
            self.assertIn(word, known)

    def test_the_version_is_the_project_s(self):
        self.check(tool.call("--version"), 0, f"kelvo-sim {project.setting('version')}\n", "")

    def test_no_command(self):
        self.check_refused(2, "kelvo-sim: A subcommand is required: see kelvo-sim --help")

    def test_an_unknown_command(self):
        self.check_refused(2, "kelvo-sim: The following argument was not expected: lsit: see kelvo-sim --help", "lsit")

    def test_an_unknown_option(self):
        for command in OPTIONS:
            name = ARGUMENTS.get(command, [])
            self.check_refused(2, f"kelvo-sim {command}: The following argument was not expected: --no: "
                                  f"see kelvo-sim {command} --help", command, *name, "--no")

    def test_a_camera_s_name_is_missing(self):
        self.check_refused(2, "kelvo-sim fault: NAME is required: see kelvo-sim fault --help", "fault", "list")
        for command in set(ARGUMENTS) - {"fault"}:
            self.check_refused(2, f"kelvo-sim {command}: NAME is required: see kelvo-sim {command} --help", command)

    def test_a_program_is_missing(self):
        for rest in ([], ["--"]):
            self.check_refused(2, "kelvo-sim run: no program: write -- and the program behind the options", "run", *rest)

    def test_a_program_that_the_command_does_not_take(self):
        self.check_refused(2, "kelvo-sim trace: a program is traced with --real: add it, or leave the program away",
                           "trace", "desk", "--", "true")
        for command in ("list", "remove", "status", "violations"):
            name = ARGUMENTS.get(command, [])
            self.check_refused(2, f"kelvo-sim {command}: The following argument was not expected: true: "
                                  f"see kelvo-sim {command} --help", command, *name, "--", "true")

    def test_a_program_without_dashes_before_it(self):
        self.check_refused(2, "kelvo-sim run: The following argument was not expected: true: "
                              "see kelvo-sim run --help", "run", "true")

    def test_values_that_options_do_not_take(self):
        for option, value, rule in (("--name", "a/b", NAME_RULE), ("--name", "a" * 33, NAME_RULE),
                                    ("--head", "vega", "tasmere or vetra"),
                                    ("--module", "de051", "de015, df033 or t5391"),
                                    ("--seed", "-1", "a number below 2^64"),
                                    ("--seed", "1 clock=sleep", "a number below 2^64"),
                                    ("--clock", "5x", "real, sleep, or a number from 0.1 to 1000"),
                                    ("--clock", "0", "real, sleep, or a number from 0.1 to 1000")):
            self.check_refused(2, f'kelvo-sim run: {option}: "{value}" is not {rule}: see kelvo-sim run --help',
                               "run", option, value, "--", "true")

    def test_corrupt_downloads_are_counted_from_1(self):
        for numbers in (["0"], [str(number) for number in range(1, 18)]):
            result = self.check(tool.call("run", "--corrupt", *numbers, "--", "true"), 2, "")
            self.assertIn('KELVO_SIM: "corrupt" cannot be ', result.stderr)
        self.check(tool.call("run", "--corrupt", "one", "--", "true"), 2, "")

    def test_wrong_settings_in_the_environment(self):
        result = self.check(tool.call("run", "--", "true", variables={"KELVO_SIM": "corupt=1"}), 2, "")
        self.assertTrue(result.stderr.startswith('kelvo-sim run: KELVO_SIM: there is no setting "corupt": '))
        self.assertEqual(result.stderr.count("\n"), 1)

    def test_output_that_cannot_be_written(self):
        for arguments in (["--help"], ["list", "--json"]):
            with open("/dev/full", "w", encoding="ascii") as full:
                result = tool.call(*arguments, stdout=full)
            self.assertEqual(result.returncode, 6, result.stderr)
            self.assertIn("standard output: No space left on device: look where it leads\n", result.stderr)

    def test_the_manual_page_has_every_command_option_and_exit_code(self):
        text = self.check(tool.call("manual"), 0, errors="").stdout.replace("\\-", "-")
        self.assertEqual(re.findall(r"(?m)^\.SS ([a-z]+)", text), list(OPTIONS))
        for command, options in OPTIONS.items():
            section = text.split(f".SS {command}")[1].split("\n.S")[0]
            self.assertEqual(re.findall(r"\\fB(--[a-z-]+)", section), options)
        self.assertEqual(re.findall(r"(?m)^\\fB(\d+)", text), CODES)


if __name__ == "__main__":
    project.main()
