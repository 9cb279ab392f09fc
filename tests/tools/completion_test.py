#!/usr/bin/env python3
"""What bash and zsh offer with kelvo-sim's completion."""

import subprocess

import project
import tool
from arguments_test import OPTIONS


class Completion:
    """The same for every shell: complete() gives what it offers for the last of some words."""

    def script(self, shell):
        """Completion asks the tool itself for cameras."""
        command = " ".join(f"'{part}'" for part in filter(None, project.settings("tool")))
        return tool.call("completion", shell).stdout + f'\nkelvo-sim() {{ {command} "$@"; }}\n'

    def run_shell(self, *command):
        result = subprocess.run(command, text=True, capture_output=True, check=False, stdin=subprocess.DEVNULL)
        self.assertEqual(result.stderr, "")
        return result.stdout.split("\n")[:-1]

    def test_commands(self):
        self.assertEqual(self.complete("")[:len(OPTIONS)], list(OPTIONS))

    def test_options_of_each_command(self):
        for command, options in OPTIONS.items():
            offered = [word for word in self.complete(command, "--") if word.startswith("-")]
            self.assertEqual(offered, ["--help", *options])

    def test_values(self):
        self.assertEqual(self.complete("run", "--head", ""), ["tasmere", "vetra"])

    def arguments(self, *words):
        return [word for word in self.complete(*words, "") if not word.startswith("-")]

    def test_cameras(self):
        name = self.camera()
        tool.call("run", "--name", name, "--", "true").check_returncode()
        self.assertIn(name, self.complete("status", ""))
        self.assertIn(name, self.complete("run", "--name", ""))

    def test_each_argument_has_its_own(self):
        name = self.camera()
        tool.call("run", "--name", name, "--", "true").check_returncode()
        self.assertEqual(self.arguments("fault"), ["add", "list", "remove"])
        self.assertIn(name, self.arguments("fault", "add"))
        self.assertNotIn("add", self.arguments("fault", "add"))
        self.assertEqual(self.arguments("fault", "add", name), [])
        self.assertNotIn("off", self.arguments("power"))
        self.assertEqual(self.arguments("power", name), ["off", "on"])
        self.assertEqual(self.arguments("power", name, "off"), [])
        self.assertEqual(self.arguments("peek", "--json", name),
                         ["command", "query", "register", "pt5111", "pan", "tilt"])
        self.assertIn(name, self.arguments("trace", "--times", "zero"))
        self.assertEqual(self.arguments("trace", "--times", "zero", name), [])


class Bash(Completion, tool.ToolTest):
    def complete(self, *words):
        listed = " ".join(f"'{word}'" for word in ("kelvo-sim", *words))
        return self.run_shell("bash", "-uc", self.script("bash") + f"""
            COMP_WORDS=({listed}) COMP_CWORD={len(words)}
            _kelvo_sim
            printf '%s\\n' "${{COMPREPLY[@]}}"
            """)

    def test_the_beginning_of_a_word(self):
        self.assertEqual(self.complete("st"), ["status"])
        self.assertEqual(self.complete("run", "--clock", "s"), ["sleep"])

    def test_the_program_behind_the_dashes(self):
        self.assertIn("true", self.complete("run", "--", "tru"))
        self.file("only_one", "")
        self.assertEqual(self.complete("run", "--", "cat", f"{self.folder}/on"), [f"{self.folder}/only_one"])


class Zsh(Completion, tool.ToolTest):
    def complete(self, *words):
        listed = " ".join(f"'{word}'" for word in ("kelvo-sim", *words))
        return self.run_shell("zsh", "-fc", f"""
            _describe() {{ for offer in ${{(P)argv[-1]}}; print -r -- ${{offer%%:*}} }}
            _command_names() {{ print programs }}
            _files() {{ print files }}
            """ + self.script("zsh") + f"words=({listed}) CURRENT={len(words) + 1}\n_kelvo_sim\n")

    def test_the_program_behind_the_dashes(self):
        self.assertEqual(self.complete("run", "--", ""), ["programs"])
        self.assertEqual(self.complete("run", "--", "cat", ""), ["files"])

    def test_a_shell_that_completes_takes_the_script_as_it_is(self):
        (self.folder / "_kelvo-sim").write_text(tool.call("completion", "zsh").stdout)
        self.assertEqual(self.run_shell("zsh", "-fc", f"""
            fpath=({self.folder} $fpath)
            autoload -U compinit && compinit -D -u
            print -r -- $_comps[kelvo-sim]
            """), ["_kelvo-sim"])


if __name__ == "__main__":
    project.main()
