#!/usr/bin/env python3
"""Files that kelvoctl is given which are no files, have no end, or have names and contents that are no text."""

import json
import os
import signal
import socket
import subprocess
import threading

import kelvoctl_tool
import project

ESCAPE = "\x1b[31m"
SHOWN = "\\x1B[31m"


class Read(kelvoctl_tool.KelvoctlTest):
    def test_a_folder(self):
        for command in (["run"], ["pid", "show"], ["calibration", "import", "-y"]):
            with self.subTest(command):
                name = " ".join(command[:2]).replace(" -y", "")
                self.check_fails(2, f"{name}: {self.folder}: Is a directory", *command, self.folder)

    def test_a_file_without_an_end(self):
        for command in (["run"], ["pid", "show"], ["calibration", "import", "-y"]):
            with self.subTest(command):
                name = " ".join(command[:2]).replace(" -y", "")
                self.check_fails(2, f"{name}: /dev/zero: more than 16 MiB", *command, "/dev/zero")

    def test_a_closed_standard_input(self):
        before, variables = self.on_camera()
        command = [*filter(None, project.settings("tool")), *before, "run", "-"]
        result = subprocess.run(["sh", "-c", '"$@" <&-', "sh", *command], text=True, capture_output=True, check=False,
                                env=kelvoctl_tool.environment(variables), timeout=100)
        self.check(result, 2, "", "kelvoctl: run: -: Bad file descriptor\n")

    def test_a_pipe_that_nobody_writes(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        before, variables = self.on_camera()
        command = [*filter(None, project.settings("tool")), *before, "run", pipe]
        with subprocess.Popen(command, stderr=subprocess.PIPE, text=True,
                              env=kelvoctl_tool.environment(variables)) as process:
            with self.assertRaises(subprocess.TimeoutExpired):
                process.wait(5)
            process.send_signal(signal.SIGTERM)
            self.assertEqual(process.stderr.read(), "kelvoctl: run: interrupted\n")
            self.assertEqual(process.wait(), 130)

    def test_a_pipe(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        writer = threading.Thread(target=pipe.write_text, args=["run --help\n"])
        writer.start()
        result = self.ctl("run", pipe)
        writer.join()
        self.assertIn("Usage: kelvoctl run", self.check(result, 0, None).stdout)


class Written(kelvoctl_tool.KelvoctlTest):
    """A calibration record that is exported."""

    def setUp(self):
        super().setUp()
        self.boot("t5391")

    def export(self, path, *options):
        return self.ctl(*options, "calibration", "export", path, lens="t5391")

    def test_a_pipe_is_written_to_and_not_replaced(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        read = []
        reader = threading.Thread(target=lambda: read.append(pipe.read_text()))
        reader.start()
        result = self.export(pipe)
        if not pipe.is_fifo():
            pipe.unlink()
            self.fail("it was replaced")
        reader.join()
        self.check(result, 0, None)
        self.assertEqual(json.loads(read[0])["record"], "iris")
        self.assertEqual(list(self.folder.iterdir()), [pipe])

    def test_what_takes_no_bytes(self):
        place = self.folder / "socket"
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(str(place))
            self.check(self.export(place), 7, "",
                       f"kelvoctl: calibration export: {place}: cannot be written: No such device or address\n")
        self.assertEqual(list(self.folder.iterdir()), [place])

    def test_a_folder(self):
        place = self.folder / "folder"
        place.mkdir()
        self.check(self.export(place), 7, "",
                   f"kelvoctl: calibration export: {place}: cannot be written: Is a directory\n")
        self.assertEqual(list(self.folder.iterdir()), [place])

    def test_a_folder_that_is_not_there(self):
        place = self.folder / "none/file"
        self.check(self.export(place), 7, "",
                   f"kelvoctl: calibration export: {place}: cannot be written: No such file or directory\n")

    def test_a_name_that_is_no_text(self):
        place = os.fsdecode(os.fsencode(self.folder) + b"/\xff")
        result = self.check(self.export(place, "--json"), 0, None)
        self.assertEqual(json.loads(result.stdout)["to"], f"{self.folder}/\N{REPLACEMENT CHARACTER}")
        self.assertTrue(os.path.exists(place))

    def test_a_name_with_control_characters(self):
        result = self.check(self.export(self.folder / f"a\n{ESCAPE}"), 0, None)
        self.assertIn(f"/a\\x0A{SHOWN}\n", result.stdout)


class Shown(kelvoctl_tool.KelvoctlTest):
    """Errors stay one line, and move nothing on a terminal."""

    def test_an_argument(self):
        self.check_fails(2, f'attach: The following argument was not expected: {SHOWN}: see kelvoctl attach --help',
                         "attach", ESCAPE)

    def test_a_name(self):
        self.check_fails(2, f"run: /no\\x0A{SHOWN}: No such file or directory", "run", f"/no\n{ESCAPE}")

    def test_what_stands_in_a_file(self):
        script = self.script(ESCAPE)
        result = self.check(self.ctl("run", script), 2, "", None)
        self.assertTrue(result.stderr.startswith(f'kelvoctl: run: {script}:1: "{SHOWN}" is no command: '),
                        result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1)

    def test_in_the_shell(self):
        with self.script(ESCAPE).open() as lines:
            result = self.check(self.ctl("shell", stdin=lines), 0, "", None)
        self.assertTrue(result.stderr.startswith(f'kelvoctl: "{SHOWN}" is no command: '), result.stderr)

    def test_a_very_long_word(self):
        script = self.script("1" * 100000)
        result = self.check(self.ctl("pid", "show", script), 2, "", None)
        self.assertLess(len(result.stderr), 1100)
        self.assertTrue(result.stderr.endswith('1" is no number from -2147483648 to 2147483647\n'), result.stderr[-100:])


if __name__ == "__main__":
    project.main()
