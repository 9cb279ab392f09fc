#!/usr/bin/env python3
"""docs/kelvoctl.md against the tool: its tables, its commands, and the output that it shows."""

import os
import re
import subprocess

import kelvoctl_tool
import project

PAGE = (project.SOURCE / "docs/kelvoctl.md").read_text()
BLOCK = re.compile(r"(?ms)^```sh\n(.*?)^```\n(?:\n```text\n(.*?)^```$)?")


class Documentation(kelvoctl_tool.KelvoctlTest):
    def test_the_exit_codes_are_those_of_help(self):
        shown = re.findall(r"(?m)^  (\d+) +(\w.*)$", kelvoctl_tool.call("--help").stdout)
        self.assertGreater(len(shown), 8)
        self.assertEqual(re.findall(r"(?m)^\| (\d+) \| (.*) \|$", PAGE), shown)

    def test_every_command_is_there(self):
        commands = re.findall(r"(?m)^  ([a-z0-9]+) +[A-Z]", kelvoctl_tool.call("--help").stdout.split("Subcommands")[1])
        self.assertGreater(len(commands), 5)
        for command in commands:
            self.assertRegex(PAGE, rf"kelvoctl (--[a-z=0-9]+ )*{command}\b|`{command}\b")

    def test_every_block_shows_what_comes(self):
        """In order, on one camera; what stands in a text block behind commands is their output, exactly."""
        blocks = BLOCK.findall(PAGE)
        self.assertGreater(len([output for _, output in blocks if output]), 3)
        script = "set -uo pipefail\n" + "".join(f"echo '@@@ {number}'\n{commands}"
                                                for number, (commands, _) in enumerate(blocks))
        for name, program in (("kelvoctl", "tool"), ("kelvo-sim", "sim_tool")):
            (self.folder / name).symlink_to(project.settings(program)[-1])
        (self.folder / "head.pid").symlink_to(project.SOURCE / "examples/head.pid")
        variables = {"KELVO_SIM": f"name={self.camera}", "HOME": str(self.folder),
                     "PATH": f"{self.folder}:{os.environ['PATH']}"}
        result = subprocess.run(["bash", "-c", script], cwd=self.folder, text=True, check=False, timeout=100,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                                env=kelvoctl_tool.environment(variables))
        outputs = re.split(r"(?m)^@@@ \d+\n", result.stdout)[1:]
        self.assertEqual(len(outputs), len(blocks), result.stdout)
        for (commands, expected), output in zip(blocks, outputs):
            if expected:
                self.assertEqual(output, expected, commands)
            elif "kelvoctl: " in output:
                self.fail(f"{commands}\n{output}")


if __name__ == "__main__":
    project.main()
