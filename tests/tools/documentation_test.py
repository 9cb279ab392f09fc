#!/usr/bin/env python3
"""docs/simulator.md against the tool: its tables, and every command that it shows."""

import os
import re
import subprocess

import project
import tool

PAGE = (project.SOURCE / "docs/simulator.md").read_text()
COMMANDS = ("run", "list", "remove", "status", "violations", "fault", "peek", "poke", "push", "power", "trace")


class Documentation(tool.ToolTest):
    def test_the_exit_codes_are_those_of_help(self):
        shown = re.findall(r"(?m)^  (\d+) +(\w.*)$", tool.call("--help").stdout)
        self.assertGreater(len(shown), 5)
        self.assertEqual(re.findall(r"(?m)^\| (\d+) \| (.*) \|$", PAGE), shown)

    def test_every_option_of_run_has_a_row(self):
        shown = re.findall(r"(?m)^  (--[a-z]+ ?[^ ]*(?: \.\.\.)?)  +", tool.call("run", "--help").stdout)
        self.assertGreater(len(shown), 3)
        rows = [row.replace("\\|", "|") for row in re.findall(r"(?m)^\| `(--[^`]*)` \|", PAGE)]
        self.assertEqual(rows, [option.strip() for option in shown])

    def test_every_other_command_has_a_row_with_its_options(self):
        section = PAGE.split("\n## Cameras with names\n")[1].split("\n## ")[0]
        rows = dict(re.findall(r"(?m)^\| `([a-z]+)([^`]*)` \|", section))
        self.assertEqual(set(rows), set(COMMANDS) - {"run"})
        for command, arguments in rows.items():
            shown = re.findall(r"(?m)^  (--[a-z-]+)", tool.call(command, "--help").stdout)
            self.assertEqual(re.findall(r"--[a-z-]+", arguments), shown)

    def test_every_command_that_is_shown_works(self):
        """In order, in one shell, with a camera that nobody else has."""
        blocks = re.findall(r"(?ms)^```sh\n(.*?)^```$", PAGE)
        self.assertGreater(len(blocks), 6)
        script = re.sub(r"\bdesk\b", self.camera(), "".join(blocks))
        for name, program in (("kelvo-sim", project.settings("tool")[-1]),
                              ("boot_and_move", project.setting("boot_and_move")),
                              ("pan_and_tilt", project.setting("pan_and_tilt"))):
            (self.folder / name).symlink_to(program)
        result = subprocess.run(["bash", "-euo", "pipefail", "-c", script], cwd=self.folder, text=True, check=False,
                                capture_output=True, stdin=subprocess.DEVNULL,
                                env={**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}",
                                     "ASAN_OPTIONS": tool.SANITIZER})
        self.check(result, 0)
        for line in ("t5391: result 0", "Vetra head, pan from", "exit code 1", '"module": "T5391"'):
            self.assertIn(line, result.stdout)
        self.assertEqual(result.stderr.count("Simulated camera"), 1)
        self.assertIn("protocol violations: 0", (self.folder / "report.txt").read_text())
        self.assertTrue((self.folder / "kelvo-sim.1").read_text().startswith(".TH KELVO"))


if __name__ == "__main__":
    project.main()
