#!/usr/bin/env python3
"""`kelvo-sim run`: a program keeps all that is its own, and finds a camera."""

import os
import signal
import subprocess

import project
import tool


def sh(script, *options, **more):
    return tool.call("run", *options, "--", "sh", "-c", script, **more)


class Programs(tool.ToolTest):
    def test_the_exit_code_is_the_program_s(self):
        for code in (0, 1, 77, 125):
            self.check(sh(f"exit {code}"), code, "", "")

    def test_a_signal_ends_the_program_itself(self):
        self.check(sh("kill -TERM $$"), -signal.SIGTERM, "", "")

    def test_it_takes_the_tool_s_place(self):
        parts = [*filter(None, project.settings("tool")), "run", "--", "sh", "-c", "echo $$"]
        environment = {**os.environ, "ASAN_OPTIONS": tool.SANITIZER}
        with subprocess.Popen(parts, text=True, stdout=subprocess.PIPE, env=environment) as process:
            self.assertEqual(int(process.stdout.read()), process.pid)

    def test_arguments_are_left_alone(self):
        arguments = ["--help", "--", "-x", "", "[a,b]", "{}", "%%", "a b", "run", "--name", "desk"]
        result = tool.call("run", "--", "printf", "<%s>\n", *arguments)
        self.check(result, 0, "".join(f"<{argument}>\n" for argument in arguments), "")

    def test_standard_input_is_passed_on(self):
        with subprocess.Popen(["echo", "said"], stdout=subprocess.PIPE) as speaker:
            self.check(sh("cat", stdin=speaker.stdout), 0, "said\n", "")

    def test_a_script_runs_by_its_first_line(self):
        outer = self.file("outer", "#!/bin/sh -e\necho $0 $1\n")
        self.check(tool.call("run", "--", outer, "one"), 0, f"{outer} one\n", "")

    def test_path_is_searched_past_what_cannot_be_executed(self):
        (self.folder / "first").mkdir()
        (self.folder / "second").mkdir()
        self.file("first/program", "#!/bin/sh\necho first\n", 0o600)
        self.file("second/program", "#!/bin/sh\necho second\n")
        path = f"{self.folder}/first:{self.folder}/none:{self.folder}/second:/bin:/usr/bin"
        self.check(tool.call("run", "--", "program", variables={"PATH": path}), 0, "second\n", "")


class Environment(tool.ToolTest):
    def check_settings(self, expected, *options, settings):
        self.check(sh("echo $KELVO_SIM", *options, variables={"KELVO_SIM": settings}), 0, expected + "\n", "")

    def test_the_preload_library_comes_before_others(self):
        library = project.setting("library")
        self.check(sh("echo $LD_PRELOAD"), 0, f"{library}\n", "")
        other = "libm.so.6"
        self.check(sh("echo $LD_PRELOAD", variables={"LD_PRELOAD": other}), 0, f"{library}:{other}\n", "")

    def test_another_library_may_be_named(self):
        copy = self.folder / "mine.so"
        os.symlink(project.setting("library"), copy)
        self.check(sh("echo $LD_PRELOAD", variables={"KELVO_SIM_LIBRARY": str(copy)}), 0, f"{copy}\n", "")

    def test_options_become_settings(self):
        self.check_settings("head=vetra clock=2.5 corrupt=1+4 report=text", "--head", "vetra", "--clock", "2.5",
                            "--corrupt", "1", "4", "--report", settings="")
        self.check_settings("module=t5391 seed=12 report=none", "--seed", "12", "--module", "t5391", settings="")
        self.check_settings("violations=fatal report=none", "--stop-at-violation", settings="")
        self.check_settings("report=none", settings="")
        self.check_settings("fault=spi:nth=2:kill fault=i2c:nak report=none", "--fault", "spi nth=2 kill",
                            "--fault", "i2c:nak", settings="fault=gpio:kill")

    def test_options_replace_settings_of_the_environment(self):
        self.check_settings("clock=sleep head=vetra report=none", "--clock", "sleep",
                            settings="head=vetra, clock=real")

    def test_the_environment_may_ask_for_a_report(self):
        self.check_settings("report=text", settings="report=text")
        self.check_settings("report-file=x", settings="report-file=x")
        self.check_settings("report=text", "--report", settings="report=none")


class Cameras(tool.ToolTest):
    def test_a_program_finds_a_camera_of_its_own(self):
        result = tool.call("run", "--clock", "sleep", "--", project.setting("boot_and_move"), "df033")
        self.check(result, 0, errors="")
        self.assertIn("df033: result 0, variant 8", result.stdout)

    def test_a_report_when_it_is_asked_for(self):
        result = tool.call("run", "--clock", "sleep", "--report", "--", project.setting("boot_and_move"), "df033")
        self.check(result, 0)
        self.assertIn("  1     DF033   0208     1         runs     ", result.stderr)
        self.assertIn("  protocol violations: 0\n", result.stderr)

    def test_downloads_that_are_damaged(self):
        result = tool.call("run", "--clock", "sleep", "--corrupt", "1", "--report", "--",
                           project.setting("boot_and_move"), "df033")
        self.check(result, 1)
        self.assertEqual(result.stderr.count("NOT INTACT"), 1)

    def test_a_program_that_is_stopped_at_its_first_violation(self):
        result = tool.call("run", "--clock", "sleep", "--stop-at-violation", "--", project.setting("hasty_program"))
        self.check(result, 123)
        self.assertRegex(result.stderr, r"^KELVO_SIM: violation at 0\.000 s by process \d+ against the pan controller: "
                                        r"32: there is no register 50\n$")

    def test_a_program_without_violations_is_not_stopped(self):
        self.check(tool.call("run", "--clock", "sleep", "--stop-at-violation", "--",
                             project.setting("boot_and_move"), "df033"), 0, errors="")

    def test_both_families_of_heads(self):
        for family in ("Vetra", "Tasmere"):
            result = tool.call("run", "--clock", "sleep", "--head", family.lower(), "--",
                               project.setting("pan_and_tilt"))
            self.check(result, 0)
            self.assertIn(f"{family} head, pan from", result.stdout)

    def test_a_script_may_start_programs_on_the_camera(self):
        result = tool.call("run", "--clock", "sleep", "--", "sh", "-c", '"$0" t5391',
                           project.setting("boot_and_move"))
        self.check(result, 0)
        self.assertIn("t5391: result 0", result.stdout)


if __name__ == "__main__":
    project.main()
