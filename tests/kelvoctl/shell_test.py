#!/usr/bin/env python3
"""kelvoctl shell: commands one after the other, typed on a terminal or not."""

import os
import signal
import stat
import subprocess

import kelvoctl_tool
import project

PROMPT = "kelvoctl> "
EDITING = project.setting("editing") == "yes"


class Piped(kelvoctl_tool.KelvoctlTest):
    def shell(self, text, **options):
        path = self.folder / "input"
        path.write_text(text)
        with path.open() as lines:
            return self.ctl("shell", stdin=lines, **options)

    def test_no_prompt(self):
        result = self.check(self.shell("boot -y\nattach\n"), 0, None)
        self.assertEqual(result.stdout.count("module"), 2)

    def test_it_goes_on_after_a_failure(self):
        self.boot()
        result = self.check(self.shell("run /no/such/file\nattach"), 0, None,
                            "kelvoctl: run: /no/such/file: No such file or directory\n")
        self.assertIn("module", result.stdout)

    def test_exit_ends_it(self):
        self.check(self.shell("exit\nattach\n"), 0, "", "")

    def test_help(self):
        result = self.check(self.shell("help\nhelp run\n"), 0, None)
        self.assertIn("Usage: kelvoctl [OPTIONS]", result.stdout)
        self.assertIn("Usage: kelvoctl run [OPTIONS] FILE", result.stdout)

    def test_help_shows_what_the_shell_has_of_its_own(self):
        text = self.check(self.shell("help\n"), 0, None).stdout
        for word in ("help", "exit"):
            self.assertRegex(text, rf"(?m)^  {word}\b.* [A-Z]")
            self.assertRegex(self.check(self.shell(f"help {word}\n"), 0, None).stdout, rf"(?m)^  {word}\b.* [A-Z]")
        self.assertNotIn("exit   ", self.check(self.shell("help run\n"), 0, None).stdout)

    def test_help_for_what_is_no_command(self):
        for line, start in (("help nix", '"nix" is no command: it is one of boot, '),
                            ("help pan nix", 'pan: "nix" is no command: it is one of ')):
            result = self.check(self.shell(line + "\n"), 0, "", None)
            self.assertTrue(result.stderr.startswith(f"kelvoctl: {start}"), result.stderr)
            self.assertEqual(result.stderr.count("\n"), 1)

    def test_exit_takes_no_arguments(self):
        self.boot()
        result = self.check(self.shell("exit 3\nattach\n"), 0, None,
                            'kelvoctl: exit: "3" is too much: it takes no arguments\n')
        self.assertIn("module", result.stdout)

    def test_a_shell_within_the_shell(self):
        self.check(self.shell("shell\n"), 0, "", "kelvoctl: shell: this is a shell already\n")

    def test_a_quote_that_is_not_closed(self):
        self.check(self.shell('"\n'), 0, "", 'kelvoctl: a " is not closed\n')

    def test_output_that_cannot_be_written_ends_it(self):
        self.boot()
        with open("/dev/full", "w", encoding="ascii") as full:
            result = self.shell("attach\nattach\n", stdout=full)
        self.check(result, 7, None, None)
        self.assertEqual(result.stderr.count("\n"), 1)

    def test_a_signal_ends_it(self):
        before, variables = self.on_camera()
        command = [*filter(None, project.settings("tool")), *before, "shell"]
        with subprocess.Popen(command, stdin=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                              env=kelvoctl_tool.environment(variables)) as process:
            process.stdin.write("nonsense\n")
            process.stdin.flush()
            self.assertIn("is no command", process.stderr.readline())
            process.send_signal(signal.SIGTERM)
            self.assertEqual(process.stderr.read(), "kelvoctl: shell: interrupted\n")
            self.assertEqual(process.wait(), 130)


class Typed(kelvoctl_tool.KelvoctlTest):
    def start(self, **variables):
        self.history = self.folder / "history"
        terminal = self.terminal("shell", variables={"KELVOCTL_HISTORY": str(self.history), **variables})
        terminal.expect(PROMPT)
        return terminal

    def test_commands_and_their_results(self):
        terminal = self.start()
        terminal.type("boot -y\n")
        terminal.expect("attempts +1\r\n")
        terminal.expect(PROMPT)
        terminal.type("attach\n")
        terminal.expect("head +tasmere\r\n")
        terminal.expect(PROMPT)
        terminal.type("exit\n")
        self.assertEqual(terminal.wait(), 0)

    def test_an_error_is_one_line(self):
        terminal = self.start()
        terminal.type("bot\n")
        terminal.expect('\nkelvoctl: "bot" is no command: ')
        terminal.expect(PROMPT)

    def test_a_question(self):
        terminal = self.start()
        terminal.type("boot\n")
        terminal.expect(r"Go on\? \[y/N\] ")
        terminal.type("n\n")
        terminal.expect("not confirmed: nothing was done")
        terminal.expect(PROMPT)

    def test_control_d_ends_it(self):
        terminal = self.start()
        terminal.type("\x04")
        self.assertEqual(terminal.wait(), 0)
        self.assertRegex(terminal.seen, r"kelvoctl> [^\n]*\r\n$")  # what comes next has a line of its own

    def test_control_c_throws_the_line_away(self):
        terminal = self.start()
        terminal.type("nonsense")
        terminal.expect("nonsense")
        terminal.interrupt()
        terminal.expect(PROMPT)
        terminal.type("help run\n")
        terminal.expect("Usage: kelvoctl run")
        self.assertNotIn("is no command", terminal.seen)

    def test_other_signals_end_it(self):
        terminal = self.start()
        os.kill(terminal.process, signal.SIGHUP)
        self.assertEqual(terminal.wait(), 130)


if EDITING:
    class Edited(Typed):
        """With line editing; what is typed without it as well."""

        def test_a_command_is_completed(self):
            terminal = self.start()
            terminal.type("doc\t")
            terminal.expect("tor ")
            terminal.type("\n")
            terminal.expect("bus lock")

        def test_several_that_fit_are_shown(self):
            terminal = self.start()
            terminal.type("he\t\x15s\t\t")
            terminal.expect("shell  .*status")

        def test_options_are_completed(self):
            terminal = self.start()
            terminal.type("attach --js\t")
            terminal.expect("on ")

        def test_files_are_completed(self):
            self.script("run --help", name="a_file_of_commands")
            terminal = self.start()
            terminal.type("run a_fi\t\n")
            terminal.expect("Usage: kelvoctl run")

        def test_nothing_fits(self):
            terminal = self.start()
            terminal.type("xyzzy\t\n")
            terminal.expect('"xyzzy" is no command')

        def test_the_line_before_comes_back(self):
            terminal = self.start()
            terminal.type("help run\n")
            terminal.expect("Usage: kelvoctl run")
            terminal.expect(PROMPT)
            terminal.type("\x10\n")  # Ctrl-P
            terminal.expect("Usage: kelvoctl run")

        def test_history_is_kept_for_the_next_shell(self):
            terminal = self.start()
            terminal.type("help run\n")
            terminal.expect("Usage: kelvoctl run")
            terminal.expect(PROMPT)
            terminal.type("exit\n")
            self.assertEqual(terminal.wait(), 0)
            self.assertEqual(stat.S_IMODE(self.history.stat().st_mode), 0o600)
            terminal = self.start()
            terminal.type("\x10\x10\n")
            terminal.expect("Usage: kelvoctl run")

        def test_where_history_lies(self):
            terminal = self.terminal("shell", variables={"XDG_STATE_HOME": str(self.folder / "state")})
            terminal.expect(PROMPT)
            terminal.type("help run\nexit\n")
            self.assertEqual(terminal.wait(), 0)
            self.assertIn("help", (self.folder / "state/kelvoctl/history").read_text())

        def test_letters_of_more_than_one_byte(self):
            terminal = self.start()
            terminal.type("é\n")
            terminal.expect('"é" is no command')


if __name__ == "__main__":
    project.main()
