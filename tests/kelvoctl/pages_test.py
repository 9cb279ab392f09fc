#!/usr/bin/env python3
"""Completion and the manual page, made from the table of commands."""

import re
import subprocess

import kelvoctl_tool
import project


class Pages(kelvoctl_tool.KelvoctlTest):
    def bash_offers(self, *words):
        """What bash offers for the last of the words."""
        page = self.check(kelvoctl_tool.call("completion", "bash"), 0, None).stdout
        numbered = " ".join(f"'{word}'" for word in ("kelvoctl", *words))
        script = (f"{page}\nCOMP_WORDS=({numbered})\nCOMP_CWORD={len(words)}\n_kelvoctl\n"
                  'printf "%s\\n" "${COMPREPLY[@]}"')
        return subprocess.run(["bash", "-c", script], text=True, capture_output=True, check=True,
                              stdin=subprocess.DEVNULL).stdout.split()

    def test_commands(self):
        self.assertEqual(self.bash_offers("bo"), ["boot"])
        self.assertLessEqual({"attach", "boot", "run", "shell", "status"}, set(self.bash_offers("")))

    def test_options_and_their_values(self):
        self.assertIn("--lens", self.bash_offers("--"))
        self.assertEqual(self.bash_offers("--lens", "d"), ["de015", "df033"])

    def test_options_of_the_tool_behind_a_command(self):
        options = {"--json", "--verbose", "--yes", "--lens", "--sim"}
        self.assertLessEqual({"--help", *options}, set(self.bash_offers("boot", "--")))
        self.assertLessEqual({"--speed", *options}, set(self.bash_offers("zoom1", "move", "5", "--")))
        self.assertEqual(len(self.bash_offers("boot", "--")), len(set(self.bash_offers("boot", "--"))))
        self.assertEqual(self.bash_offers("zoom1", "move", "--lens", "d"), ["de015", "df033"])

    def test_files(self):
        self.assertIn("/etc/passwd", self.bash_offers("run", "/etc/passw"))

    def test_zsh(self):
        page = self.check(kelvoctl_tool.call("completion", "zsh"), 0, None).stdout
        self.assertTrue(page.startswith("#compdef kelvoctl\n"))
        path = self.folder / "_kelvoctl"
        path.write_text(page)
        result = subprocess.run(["zsh", "-n", path], capture_output=True, check=False, text=True)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertRegex(page, r"(?m)^    \(/boot:\*\) offers=\(.*'--lens:The lens module ")
        self.assertRegex(page, r"(?m)^    \(\*:--lens\) offers=\('de015' 'df033' 't5391'\) ;;$")

    def test_another_shell(self):
        result = self.check(kelvoctl_tool.call("completion", "fish"), 2, "", None)
        self.assertIn('"fish" is no command: it is one of bash, zsh', result.stderr)

    def test_the_manual_page(self):
        page = self.check(kelvoctl_tool.call("manual"), 0, None).stdout
        self.assertTrue(page.startswith(".TH KELVOCTL 1\n"))
        for part in (".SS boot\n", ".SS run FILE\n", "\\fB130\\fR\ninterrupted\n", "\\fB\\-\\-lens\\fR"):
            self.assertIn(part, page)

    def test_the_manual_page_shows_what_may_be_left_out(self):
        page = self.check(kelvoctl_tool.call("manual"), 0, None).stdout
        for part in (".SS zoom1 count [N]\n", ".SS pi read [SENSOR]\n", ".SS raw query CODE [ARGUMENT]\n",
                     ".SS i2c write SLAVE REGISTER [NUMBER...]\n", "\\fB\\-\\-sim\\fR\\fI[=NAME]\\fR\n",
                     "\\fB\\-\\-width\\fR \\fIN\\fR\n", "\\fB\\-\\-json\\fR\n"):
            self.assertIn(part, page)

    def test_the_manual_page_has_the_environment(self):
        page = self.check(kelvoctl_tool.call("manual"), 0, None).stdout.split(".SH ENVIRONMENT\n")[1]
        self.assertEqual(re.findall(r"(?m)^\.TP\n\\fB(\w+)\\fR\n\w", page),
                         ["KELVO_LENS", "KELVO_SIM", "KELVO_SIM_LIBRARY", "KELVOCTL_HISTORY", "XDG_STATE_HOME"])


if __name__ == "__main__":
    project.main()
