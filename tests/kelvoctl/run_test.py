#!/usr/bin/env python3
"""kelvoctl run: a file of commands, in one process."""

import json

import kelvoctl_tool
import project


class Run(kelvoctl_tool.KelvoctlTest):
    def test_one_command_a_line(self):
        script = self.script("# a comment", "", "boot -y   # another", "  attach  ")
        result = self.check(self.ctl("run", script), 0, None)
        self.assertEqual(result.stdout.count("module"), 2)
        self.assertEqual(self.violations(), [])

    def test_the_last_line_needs_no_end(self):
        self.boot()
        path = self.folder / "script"
        path.write_text("attach")
        self.assertIn("module", self.check(self.ctl("run", path), 0, None).stdout)

    def test_quotes_keep_words_together(self):
        self.boot()
        self.check(self.ctl("run", self.script("'attach'", '"att"ach', "att\\ach")), 0, None)

    def test_standard_input(self):
        self.boot()
        script = self.script("attach")
        with script.open() as lines:
            result = self.ctl("run", "-", stdin=lines)
        self.assertIn("module", self.check(result, 0, None).stdout)

    def test_json_as_a_stream_of_objects(self):
        self.boot()
        result = self.check(self.ctl("--json", "run", self.script("attach", "attach")), 0, None)
        decoder = json.JSONDecoder()
        first, end = decoder.raw_decode(result.stdout)
        second, _ = decoder.raw_decode(result.stdout[end:].lstrip())
        self.assertEqual(first, second)
        self.assertEqual((first["schema"], first["command"]), (1, "attach"))

    def test_an_option_of_a_line_is_for_that_line(self):
        self.boot()
        result = self.check(self.ctl("run", self.script("attach --json", "attach")), 0, None)
        self.assertEqual(result.stdout.count('"schema"'), 1)
        self.assertTrue(result.stdout.endswith("head     tasmere\n"))

    def test_yes_for_the_whole_script(self):
        self.check(self.ctl("-y", "run", self.script("boot")), 0, None)

    def test_the_first_failure_ends_it(self):
        script = self.script("boot -y", "zoom9 move 5", "attach")
        result = self.check(self.ctl("run", script), 2, None, None)
        self.assertTrue(result.stderr.startswith(f'kelvoctl: run: {script}:2: "zoom9" is no command: it is one of '))
        self.assertEqual(result.stdout.count("module"), 1)

    def test_the_exit_code_is_that_of_the_line(self):
        script = self.script("attach", "attach")
        result = self.check(self.ctl("run", script), 4, None, None)
        self.assertIn(f"kelvoctl: run: {script}:1: attach: no program answers: boot the controller\n", result.stderr)

    def test_a_line_that_is_not_confirmed(self):
        script = self.script("boot")
        result = self.check(self.ctl("run", script), 8, "", None)
        self.assertTrue(result.stderr.startswith(f"kelvoctl: run: {script}:1: boot: The boot resets "))

    def test_a_quote_that_is_not_closed(self):
        script = self.script("attach 'x")
        self.check(self.ctl("run", script), 2, "", f"kelvoctl: run: {script}:1: a ' is not closed\n")

    def test_options_of_the_process_are_none_of_a_line(self):
        script = self.script("--lens de015 attach")
        result = self.check(self.ctl("run", script), 2, "", None)
        self.assertIn(f"kelvoctl: run: {script}:1: ", result.stderr)

    def test_scripts_within_scripts(self):
        self.boot()
        inner = self.script("attach", name="inner")
        outer = self.script(f"run {inner}", f"run {inner}", name="outer")
        self.assertEqual(self.check(self.ctl("run", outer), 0, None).stdout.count("module"), 2)

    def test_a_script_that_runs_itself(self):
        script = self.folder / "script"
        script.write_text(f"run {script}\n")
        result = self.check(self.ctl("run", script), 2, "", None)
        self.assertTrue(result.stderr.endswith(f"{script}: too many scripts within scripts\n"))

    def test_a_script_opens_no_shell(self):
        inner = self.script("shell", name="inner")
        self.check_fails(2, f"run: {inner}:1: shell: a script cannot open a shell", "run", inner)
        outer = self.script(f"run {inner}", name="outer")
        self.check_fails(2, f"run: {outer}:1: run: {inner}:1: shell: a script cannot open a shell", "run", outer)

    def test_a_file_that_is_not_there(self):
        self.check_fails(2, "run: /no/such/file: No such file or directory", "run", "/no/such/file")

    def test_a_folder(self):
        self.check_fails(2, f"run: {self.folder}: Is a directory", "run", self.folder)

    def test_no_file(self):
        self.check_fails(2, "run: FILE is required: see kelvoctl run --help", "run")


if __name__ == "__main__":
    project.main()
