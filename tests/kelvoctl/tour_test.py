#!/usr/bin/env python3
"""The tour of kelvoctl: what it shows, the pictures that it draws, and how it ends when something is wrong."""

import json
import os
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

import kelvoctl_tool
import project

FOLDER = project.SOURCE / "examples/tour"
PICTURES = "build/demo/pictures"
SVG = "{http://www.w3.org/2000/svg}"
MOVES = ["pan continuously", "tilt continuously", "pan to a position", "tilt to a position"]
ASKED = ["pan", "tilt", "pan, asked", "tilt, asked", "travel limits of pan", "speed of pan", "speed of tilt"]
CURVES = {"motors": ["zoom 1", "zoom 3", "focus", "zoom 1, asked", "zoom 3, asked", "focus, asked",
                     "its counter", "zoom 3", "zoom 3, asked", "end stop"],
          "head": ASKED * 2, "gains": MOVES * 3}
LEVEL = {"travel limits of pan", "end stop"}  # straight lines
GAINS = [3, 2, 1, 1] + [3, 1, 1, 1] + [2, 2, 2, 1]  # how many values, of speed P, speed I and position P


def drawn(path):
    """(name, heights) of each named curve of a picture, without the two of its sample in the key."""
    for group in xml.etree.ElementTree.parse(path).iter(f"{SVG}g"):
        if re.fullmatch(r"gnuplot_plot_\w+", group.get("id", "")):
            strokes = " ".join(stroke.get("d", "") for stroke in group.iter(f"{SVG}path"))
            name = group.find(f"{SVG}title").text
            if name != group.get("id"):
                yield name, re.findall(r"[ML] ?[\d.]+,([\d.]+)", strokes)[2:]


def curves(kind, *lines):
    """What becomes of the lines of a trace."""
    text = "\n".join(json.dumps(line) for line in lines)
    return subprocess.run([sys.executable, "-B", FOLDER / "curves.py", kind], text=True, check=False,
                          input=text, capture_output=True)


class Tour(kelvoctl_tool.KelvoctlTest):
    def tour(self, *arguments, **variables):
        """Its result; no camera of it may be left."""
        programs = self.folder / "bin"
        programs.mkdir(exist_ok=True)
        for name, program in (("kelvoctl", "tool"), ("kelvo-sim", "sim_tool")):
            if not (programs / name).is_symlink():
                (programs / name).symlink_to(project.settings(program)[-1])
        variables = {"PATH": f"{programs}:{os.environ['PATH']}", **variables}
        with subprocess.Popen([FOLDER / "tour", *arguments], text=True, stdin=subprocess.DEVNULL, cwd=self.folder,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=kelvoctl_tool.environment(variables)) as process:
            output, errors = process.communicate(timeout=250)
        self.assertNotIn(f"tour-{process.pid}-", kelvoctl_tool.call_sim("list").stdout)
        return subprocess.CompletedProcess(process.args, process.returncode, output, errors)

    def stand_in(self, program, text):
        """Something else in place of a program; the PATH that finds it."""
        folder = self.folder / "before"
        folder.mkdir()
        path = folder / program
        path.write_text(text)
        path.chmod(0o755)
        return f"{folder}:{self.folder}/bin:{os.environ['PATH']}"

    def check_pictures(self):
        for name, expected in CURVES.items():
            with self.subTest(name):
                found = list(drawn(self.folder / f"{PICTURES}/{name}.svg"))
                self.assertEqual([curve for curve, _ in found], expected)
                values = [len(set(heights)) for _, heights in found]
                if name == "gains":
                    self.assertEqual(values, GAINS)
                else:
                    level = {curve for curve, count in zip(expected, values) if count == 1}
                    self.assertEqual(level, LEVEL & {*expected})

    def check_readme(self, output):
        """Its blocks are what is shown, but for whole parts that it leaves out."""
        shown = re.search(r"(?s)`\./dev demo` prints:\n\n```\n(.*?)```", (project.SOURCE / "README.md").read_text())
        parts = re.split(r"(?m)^\.\.\.\n", shown[1])
        self.assertGreater(len(parts), 1)
        self.assertTrue(output.startswith(parts[0]), output)
        self.assertTrue(output.endswith(parts[-1]), output)
        place = 0
        for part in parts:
            place = output.find(part, place)
            self.assertGreaterEqual(place, 0, f"{part}\n{output}")
            place += len(part)

    def test_the_whole_of_it(self):
        result = self.check(self.tour(PICTURES), 0, None, "")
        self.check_readme(result.stdout)
        rows = re.findall(r"(?m)^  (\w+) .* (\d+)$", result.stdout.split("== The simulated cameras")[1])
        self.assertGreater(len(rows), 7)
        self.assertEqual({violations for _, violations in rows}, {"0"})
        self.check_pictures()
        # Once more: the same text, with more between its lines.
        again = self.check(self.tour("--verbose", PICTURES), 0, None, None)
        self.assertIn("iPos_data", again.stdout + again.stderr)
        rest = iter(again.stdout.splitlines())
        for line in result.stdout.splitlines():
            self.assertIn(line, rest)

    def test_wrong_arguments(self):
        for arguments in ([], ["a", "b"], ["--loud"], ["--verbose"]):
            with self.subTest(arguments):
                result = subprocess.run([FOLDER / "tour", *arguments], text=True, check=False, capture_output=True)
                self.check(result, 2, "", "usage: tour [--verbose] FOLDER\n")

    def test_a_command_that_fails(self):
        path = self.stand_in("kelvoctl", "#!/bin/sh\necho broken\nexit 3\n")
        result = self.check(self.tour("pictures", PATH=path), 1, None,
                            "tour: kelvoctl boot -y: exit code 3 instead of 0\n")
        self.assertTrue(result.stdout.endswith("$ kelvoctl boot -y\nbroken\n"))

    def test_a_program_that_is_not_there(self):
        folder = self.folder / "few"
        folder.mkdir()
        for program, needed in (("kelvoctl", "dirname"), ("kelvo-sim", "kelvoctl"), ("python3", "kelvo-sim"),
                                ("gnuplot", "python3")):
            (folder / needed).symlink_to(shutil.which(needed) or "/bin/true")
            self.check(self.tour("pictures", PATH=str(folder)), 1, "", f"tour: there is no {program} in PATH; the "
                       "pictures take Debian's python3 and gnuplot-nox\n")

    def test_curves_of_motors(self):
        """What was asked counts from where the motor stood; eighth steps are steps."""
        def look(time, position, counter):
            return {"time_ns": time * 1e9, "motors": [{"motor": "zoom 2", "in": "1/8 steps", "position": position,
                                                       "counter": counter}]}
        result = curves("motors", look(3, 80, 0), {"motor": "zoom2", "steps": 20}, look(3.5, 160, 88))
        self.check(result, 0, "# zoom2\n0 10 10 0\n0.5 20 30 11\n")

    def test_curves_of_the_head(self):
        """Counts of a Vetra controller fall as positions grow; who is to move on has no target."""
        def look(time, position, speed):
            return {"time_ns": time * 1e9, "head_axes": [{"axis": "pan", "speed": speed}],
                    "head": [{"axis": "pan", "family": "Vetra", "position": position}]}
        result = curves("head", look(1, 100, 0), {"axis": "pan", "target": 300}, look(2, 200, -9000), {"axis": "pan"},
                        look(4, 400, 4500))
        self.check(result, 0, "# pan\n0 100 100 0\n1 200 300 32768\n3 400 NaN -16384\n")

    def test_curves_of_gains(self):
        """The gains that stand when a move begins are the move's; a stop is none."""
        gains = {"kind": "write", "device": "i2c tilt", "name": "set-speed-gains"}
        move = {"kind": "write", "device": "i2c tilt", "name": "continuous-move", "value": "01 00 12"}
        result = curves("gains", {**gains, "value": "04 80 00 64"}, {**gains, "value": "0B B8 00 64"}, move,
                        {**move, "name": "stop"}, {**gains, "value": "04 80 00 64"}, {**move, "value": "01 1C 20"})
        self.check(result, 0, "# tilt continuously: speed P\n18 3000\n7200 1152\n\n\n"
                   "# tilt continuously: speed I\n18 100\n7200 100\n")

    def test_a_trace_without_curves(self):
        for kind in ("motors", "head", "gains"):
            self.assertEqual(curves(kind, {"kind": "open", "device": "spi"}).returncode, 1)


if __name__ == "__main__":
    project.main()
