#!/usr/bin/env python3
"""`kelvo-sim trace`: what crossed the wires, of a camera with a name and of real devices."""

import json
import os
import re
import signal
import stat
import subprocess
import time

import project
import tool

LINE = re.compile(r"^ *(-?\d+\.\d{6}) +(\d+)  (.*)$")


def parsed(text):
    """(time, process, words) of each line."""
    lines = []
    for line in text.splitlines():
        match = LINE.match(line)
        if not match:
            raise AssertionError(f"not a line of a trace: {line}")
        lines.append((float(match[1]), int(match[2]), match[3]))
    return lines


def words(text):
    return [line[2] for line in parsed(text)]


class CameraTrace(tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.name = self.camera()

    def run_on(self, program, *arguments, name=None):
        return self.check(tool.call("run", "--name", name or self.name, "--clock", "sleep", "--",
                                    project.setting(program), *arguments), 0)

    def trace(self, *options):
        return self.check(tool.call("trace", self.name, *options), 0, errors="").stdout

    def json_lines(self, *options):
        lines = [json.loads(line) for line in self.trace("--json", *options).splitlines()]
        self.assertEqual({line["schema"] for line in lines}, {1})
        return lines

    def follower(self, *options):
        """A trace that goes on, with what it has written so far."""
        path = self.folder / "followed"
        with path.open("wb") as output:
            process = subprocess.Popen([*filter(None, project.settings("tool")), "trace", self.name, "--follow",
                                        *options], stdout=output)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process, path

    def wait_for(self, path, text):
        for _ in range(1200):
            if text in path.read_text():
                return
            time.sleep(0.05)
        self.fail(f"{text} does not come:\n{path.read_text()}")


class Wrong(CameraTrace):
    def check_wrong(self, line, *arguments):
        self.check_refused(2, f"kelvo-sim trace: {line}", "trace", *arguments)

    def test_a_camera_that_is_not_there(self):
        self.check_refused(3, f"kelvo-sim trace: {self.name}: there is no camera of this name: "
                              "kelvo-sim list shows those that there are", "trace", self.name)

    def test_no_camera(self):
        self.check_wrong("no camera: name one, or write --real -- and a program for the real devices")

    def test_values_that_options_do_not_take(self):
        for option, value, rule in (("--times", "relative", "absolute, zero or difference"),
                                    ("--for", "-1", "a number of seconds"), ("--for", "nan", "a number of seconds"),
                                    ("--for", "1s", "a number of seconds"), ("--for", "", "a number of seconds")):
            self.check_wrong(f'{option}: "{value}" is not {rule}: see kelvo-sim trace --help',
                             self.name, "--follow", option, value)
        for value in ("-1", "x", "", "99999999999999999999"):
            result = self.check(tool.call("trace", self.name, "--last", value), 2, "")
            self.assertIn("--last", result.stderr)

    def test_options_that_do_not_go_together(self):
        self.check_wrong("--for goes with --follow: add it", self.name, "--for", "1")
        for more in ([self.name], ["--follow"], ["--last", "3"]):
            self.check_wrong("--real runs a program on the real devices: leave NAME, --follow and --last away",
                             "--real", *more, "--", "true")

    def test_output_that_cannot_be_written(self):
        self.run_on("hasty_program")
        with open("/dev/full", "w", encoding="ascii") as full:
            result = tool.call("trace", self.name, stdout=full)
        self.assertEqual(result.returncode, 6)
        self.assertIn("standard output: No space left on device", result.stderr)
        missing = self.folder / "no/file"
        self.check_refused(6, f"kelvo-sim trace: {missing}: No such file or directory: name another file",
                           "trace", self.name, "--output", missing)
        self.check_refused(6, "kelvo-sim trace: /dev/full: No space left on device: name another file",
                           "trace", self.name, "--output", "/dev/full")


class Afterwards(CameraTrace):
    def test_a_camera_on_which_nothing_happened(self):
        self.check(tool.call("run", "--name", self.name, "--", "true"), 0)
        self.assertEqual(self.trace(), "")
        self.assertEqual(self.trace("--json"), "")

    def test_a_boot_by_its_names(self):
        self.run_on("boot_and_move", "df033")
        shown = words(self.trace())
        for line in ("spi open", "reset assert", "reset release", "spi boot F5 pll-mode 04 00 00",
                     "spi boot E4 download-size 35000", "spi payload CORVO_PROGRAM_DATA_DF033 35000 bytes",
                     "spi boot E2 start-program", "spi command 39 loop-ready 1",
                     "spi command 47 pt5111-word CFC0 power-on", "spi query 86 version -> 0208",
                     "spi command 27 zoom3-enable 1"):
            self.assertIn(line, shown)
        self.assertFalse([line for line in shown if "unknown" in line or "frame" in line or "failed" in line])

    def test_both_paths_of_the_pt5111_and_the_commands_of_another_module(self):
        self.run_on("boot_and_move", "de015")
        shown = words(self.trace())
        self.assertIn("pt5111 word CFC0 power-on", shown)
        self.assertIn("spi command 62 zoom1-enable 1", shown)
        self.assertFalse([line for line in shown if "unknown" in line])

    def test_the_head(self):
        self.run_on("pan_and_tilt")
        shown = words(self.trace())
        self.assertIn("i2c pan read 4 position -> 32768", shown)
        self.assertFalse([line for line in shown if "failed" in line])

    def test_what_is_against_the_protocol_is_marked(self):
        self.run_on("hasty_program")
        (line,) = [line for line in words(self.trace()) if "!" in line]
        self.assertEqual(line, "i2c pan read 50 unknown -> 0  ! there is no register 50")
        (marked,) = [line for line in self.json_lines() if "violations" in line]
        self.assertEqual(marked["violations"], ["there is no register 50"])

    def test_the_three_times(self):
        self.run_on("pan_and_tilt")
        self.run_on("pan_and_tilt")
        absolute, zero, difference = ([line[0] for line in parsed(self.trace("--times", times, "--last", "150"))]
                                      for times in ("absolute", "zero", "difference"))
        self.assertEqual(len(absolute), 150)
        self.assertGreater(absolute[0], 1)
        self.assertEqual(absolute, sorted(absolute))
        for i in range(150):
            self.assertAlmostEqual(zero[i], absolute[i] - absolute[0], delta=2e-6)
            self.assertAlmostEqual(difference[i], absolute[i] - absolute[max(i - 1, 0)], delta=2e-6)

    def test_the_last_lines(self):
        self.run_on("pan_and_tilt")
        every = self.trace().splitlines()
        self.assertEqual(self.trace("--last", "3").splitlines(), every[-3:])
        self.assertEqual(self.trace("--last", "0"), "")
        self.assertEqual(self.trace("--last", "9999").splitlines(), every)

    def test_processes_are_counted(self):
        for _ in range(2):
            self.run_on("pan_and_tilt")
        self.assertEqual(sorted({line[1] for line in parsed(self.trace())}), [1, 2])
        self.assertEqual(len({line["pid"] for line in self.json_lines()}), 2)

    def test_json_lines_have_the_parts(self):
        self.run_on("boot_and_move", "de015")
        lines = self.json_lines()
        self.assertEqual([line["number"] for line in lines], list(range(len(lines))))
        self.assertEqual([line["text"] for line in lines], words(self.trace()))
        enable = next(line for line in lines if line.get("name") == "zoom1-enable")
        self.assertGreater(enable.pop("time_ns"), 10**9)
        self.assertGreater(enable.pop("pid"), 0)
        enable.pop("number")
        self.assertEqual(enable, {"schema": 1, "process": 1, "device": "spi", "kind": "command",
                                  "text": "spi command 62 zoom1-enable 1", "code": 62, "name": "zoom1-enable",
                                  "value": "1", "result": 0, "sent": "3E 00 00 00 01 3F 00", "sent_bytes": 7,
                                  "received": "00 00 00 00 00 00 00", "received_bytes": 7})
        payload = next(line for line in lines if line["kind"] == "payload")
        self.assertEqual(payload["sent_bytes"], 33276)
        self.assertEqual(len(payload["sent"].split()), 48)

    def test_a_file(self):
        self.run_on("pan_and_tilt")
        path = self.folder / "trace.txt"
        self.assertEqual(self.trace("--output", path), "")
        self.assertEqual(path.read_text(), self.trace())

    def test_the_latest_8192_lines_are_kept(self):
        self.run_on("boot_and_move", "df033")
        while self.json_lines("--last", "1")[0]["number"] < 8192:
            self.run_on("boot_and_move", "df033")
        first, *rest = self.trace().splitlines()
        lost = int(re.fullmatch(r"  (\d+) lines are lost", first)[1])
        self.assertEqual(len(rest), 8192)
        opening, *lines = self.json_lines()
        self.assertEqual(opening, {"schema": 1, "lost": lost})
        self.assertEqual(lines[0]["number"], lost)
        self.assertEqual(len(self.trace("--last", "10").splitlines()), 10)

    def test_the_same_program_has_the_same_trace_byte_for_byte(self):
        traces = []
        for _ in range(2):
            tool.call("remove", self.name)
            self.run_on("boot_and_move", "de015")
            self.run_on("pan_and_tilt")
            lines = self.json_lines()
            for line in lines:
                line.pop("pid")
            traces.append((self.trace(), self.trace("--times", "difference"), lines))
        self.assertGreater(len(traces[0][2]), 300)
        self.assertEqual(traces[0], traces[1])

    def both_axes(self):
        """What two programs do at the same time, one to each axis: the processes' numbers in the order of the trace,
        and each one's own lines without the time."""
        tool.call("remove", self.name)
        command = [*filter(None, project.settings("tool")), "run", "--name", self.name, "--clock", "sleep", "--",
                   project.setting("head_program")]
        programs = [subprocess.Popen([*command, axis], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                     env={**os.environ, "ASAN_OPTIONS": tool.SANITIZER}) for axis in ("40", "41")]
        for program in programs:
            self.addCleanup(program.kill)
            self.assertEqual(program.stdout.readline(), "ready\n")
        for program in programs:
            program.stdin.close()
        for program in programs:
            self.assertEqual(program.wait(60), 0)
            program.stdout.close()
        lines = parsed(self.trace())
        processes = [process for _, process, _ in lines]
        own = [[line for _, process, line in lines if process == number] for number in sorted(set(processes))]
        return processes, sorted(own, key=str)

    def test_several_programs_have_each_its_own_lines_in_the_same_order(self):
        processes, own = self.both_axes()
        self.assertEqual([len(lines) for lines in own], [602, 602])
        self.assertNotEqual(processes, sorted(processes), "they did not run at the same time")
        self.assertEqual({line.split()[1] for line in own[0]} | {"open", "close"}, {"pan", "open", "close"})
        self.assertEqual(self.both_axes()[1], own)


class Following(CameraTrace):
    def start(self):
        self.check(tool.call("run", "--name", self.name, "--clock", "sleep", "--", "true"), 0)

    def test_it_shows_what_happens_and_ends_when_it_is_interrupted(self):
        self.start()
        process, path = self.follower()
        self.run_on("pan_and_tilt")
        self.wait_for(path, "i2c close")
        self.assertIsNone(process.poll())
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(20), 0)
        self.assertEqual(path.read_text(), self.trace())

    def test_it_ends_when_the_camera_is_removed(self):
        self.start()
        process, path = self.follower()
        self.run_on("hasty_program")
        self.wait_for(path, "i2c pan read")
        self.check(tool.call("remove", self.name), 0, "", "")
        self.assertEqual(process.wait(20), 0)

    def test_it_ends_when_its_time_is_over(self):
        self.start()
        begun = time.monotonic()
        self.assertEqual(self.trace("--follow", "--for", "0.3"), "")
        self.assertGreaterEqual(time.monotonic() - begun, 0.3)
        self.run_on("hasty_program")
        self.assertEqual(self.trace("--follow", "--for", "0"), self.trace())

    def test_it_begins_with_what_there_is(self):
        self.run_on("hasty_program")
        self.assertEqual(self.trace("--follow", "--for", "0", "--last", "1"), self.trace("--last", "1"))


class RealDevices(tool.ToolTest):
    """A stand-in behind the preload library has the place of the kernel's drivers."""

    def real(self, *program, options=(), stand_in=True):
        variables = {"LD_PRELOAD": project.setting("stand_in")} if stand_in else {}
        return tool.call("trace", "--real", "--output", self.folder / "trace", *options, "--", *program,
                         variables=variables)

    def text(self):
        return (self.folder / "trace").read_text()

    def test_the_program_has_what_the_devices_answer(self):
        program = project.setting("device_program")
        alone = subprocess.run([program], text=True, capture_output=True, check=False,
                               env={**os.environ, "LD_PRELOAD": project.setting("stand_in"),
                                    "ASAN_OPTIONS": tool.SANITIZER})
        self.assertIn("transfer: 0", alone.stdout)
        self.assertIn("C1 FF FF FF FE C0 FF", alone.stdout)
        self.check(self.real(program), 42, alone.stdout, "")

    def test_all_of_it_is_in_the_trace(self):
        self.check(self.real(project.setting("device_program")), 42)
        self.assertEqual(words(self.text()), [
            "spi open", "spi speed 250000", "spi speed 0 failed: EINVAL", "spi command 62 zoom1-enable 1",
            "spi command 238 unknown 1 failed: EIO", "spi close",
            "i2c open", 'i2c pan read 240 family -> "VX"', "i2c tilt read 240 family failed: ENXIO",
            "i2c pan write 6 stop", "i2c close", "pt5111 open failed: EACCES",
            "reset shell exit 3 # /sys/class/gpio failed: exit code 3"])

    def test_a_second_process_is_in_it(self):
        self.check(self.real(project.setting("device_program"), "fork"), 42)
        lines = parsed(self.text())
        self.assertEqual([line[1] for line in lines], [1] * 13 + [2] * 5)
        self.assertEqual(lines[-1][2], "i2c close")

    def test_json(self):
        self.check(self.real(project.setting("device_program"), options=["--json", "--times", "zero"]), 42)
        lines = [json.loads(line) for line in self.text().splitlines()]
        self.assertEqual(len(lines), 13)
        self.assertEqual(lines[0]["time_ns"], 0)
        self.assertEqual((lines[3]["sent"], lines[3]["received"]), ("3E 00 00 00 01 3F 00", "C1 FF FF FF FE C0 FF"))
        self.assertEqual(lines[2]["error"], "EINVAL")
        self.assertNotIn("received", lines[4])

    def test_devices_that_are_not_there(self):
        for path in ("/dev/spi_renesas", "/dev/i2c-2"):
            if os.path.exists(path):
                self.fail(f"{path} is there: this test is for a machine without a camera")
        self.check(self.real(project.setting("pan_and_tilt"), stand_in=False), 3, "")
        self.assertEqual(words(self.text()), ["i2c open failed: ENOENT"])

    def test_standard_output_is_where_it_goes_without_a_file(self):
        result = self.check(tool.call("trace", "--real", "--", project.setting("pan_and_tilt")), 3)
        self.assertEqual(words(result.stdout), ["i2c open failed: ENOENT"])

    def test_the_exit_code_is_the_program_s(self):
        for script, code in (("exit 0", 0), ("exit 77", 77), ("kill -KILL $$", 137), ("kill -TERM $$", 143)):
            self.check(self.real("sh", "-c", script, stand_in=False), code, "", "")
        self.assertEqual(self.text(), "")

    def test_signals_are_the_program_s(self):
        script = "trap 'exit 9' TERM; trap '' INT; echo ready; while :; do sleep 0.05; done"
        process = subprocess.Popen([*filter(None, project.settings("tool")), "trace", "--real", "--", "sh", "-c",
                                    script], text=True, stdout=subprocess.PIPE,
                                   env={**os.environ, "ASAN_OPTIONS": tool.SANITIZER})
        self.addCleanup(process.kill)
        with process:
            self.assertEqual(process.stdout.readline(), "ready\n")
            process.send_signal(signal.SIGINT)
            time.sleep(0.2)
            self.assertIsNone(process.poll())
            process.send_signal(signal.SIGTERM)
            self.assertEqual(process.wait(60), 9)

    def test_a_trace_that_cannot_be_written_leaves_the_program_alone(self):
        result = tool.call("trace", "--real", "--output", "/dev/full", "--", project.setting("device_program"),
                           variables={"LD_PRELOAD": project.setting("stand_in")})
        self.assertIn("close: 0", result.stdout)
        self.assertEqual(result.returncode, 6)
        self.assertEqual(result.stderr, "kelvo-sim trace: /dev/full: No space left on device: name another file\n")

    def test_what_run_refuses_is_refused(self):
        self.check_refused(2, "kelvo-sim trace: no program: write -- and the program behind the options",
                           "trace", "--real")
        self.check_refused(127, "kelvo-sim trace: no-such-program: there is no such program in PATH: name it with its "
                                "folder", "trace", "--real", "--", "no-such-program")
        text = self.file("text", "no program", stat.S_IRWXU)
        self.check_refused(126, f"kelvo-sim trace: {text}: is no program or script that can be read: begin a script "
                                "with #!", "trace", "--real", "--", text)

    def test_nothing_is_left_behind(self):
        self.check(self.real("true", stand_in=False), 0)
        left = [name for name in os.listdir("/dev/shm") if name == f"kelvo-trace-{os.getuid()}-{os.getpid()}"]
        self.assertEqual(left, [])

    def test_a_recording_that_is_not_there(self):
        result = subprocess.run([project.setting("device_program")], text=True, capture_output=True, check=False,
                                env={**os.environ, "KELVO_SIM": "real=/kelvo-no-such", "ASAN_OPTIONS": tool.SANITIZER,
                                     "LD_PRELOAD": project.setting("library")})
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertEqual(result.stderr, "KELVO_SIM: shared memory /kelvo-no-such: No such file or directory\n")


if __name__ == "__main__":
    project.main()
