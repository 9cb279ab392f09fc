#!/usr/bin/env python3
"""`kelvo-sim fault` and `run --fault`: faults are added, strike, show, and go away again."""

import json
import re
import signal

import project
import tool

PAGE = (project.SOURCE / "docs/simulator.md").read_text()
DEVICES = ("spi", "pt5111", "i2c", "gpio", "file")


class Faults(tool.ToolTest):
    def setUp(self):
        super().setUp()
        self.name = self.camera()

    def run_on(self, program, *arguments, options=()):
        return tool.call("run", "--name", self.name, "--clock", "sleep", *options, "--",
                         project.setting(program), *arguments)

    def make(self):
        self.check(tool.call("run", "--name", self.name, "--clock", "sleep", "--", "true"), 0, "", "")

    def fault(self, action, *rest, code=0, output=None):
        return self.check(tool.call("fault", action, self.name, *rest), code, output, "").stdout

    def listed(self):
        """(text, matches, struck) of each fault by its number."""
        data = json.loads(self.fault("list", "--json"))
        self.assertEqual((data["schema"], data["camera"]), (1, self.name))
        return {entry["number"]: (entry["fault"], entry["matches"], entry["struck"]) for entry in data["faults"]}


class Adding(Faults):
    def setUp(self):
        super().setUp()
        self.make()

    def test_a_camera_without_faults(self):
        self.fault("list", output="")
        self.assertEqual(self.listed(), {})

    def test_a_number_comes_back_and_the_list_shows_it(self):
        self.fault("add", "spi command=62 nth=3 error=EIO", output="1\n")
        self.fault("add", "i2c", "slave=tilt", "busy", output="2\n")
        self.fault("add", "file:path=OIS_S_Cali.dat:full", output="3\n")
        self.fault("list", output="  number  matches  struck  fault\n"
                                  "  1       0        0       spi command=62 nth=3 error=EIO\n"
                                  "  2       0        0       i2c slave=tilt busy\n"
                                  "  3       0        0       file path=OIS_S_Cali.dat full\n")

    def test_numbers_stay(self):
        for number in (1, 2, 3):
            self.fault("add", "gpio kill", output=f"{number}\n")
        self.fault("remove", "2", output="")
        self.assertEqual(list(self.listed()), [1, 3])
        self.fault("add", "gpio kill", output="4\n")
        self.fault("remove", "all", output="")
        self.assertEqual(self.listed(), {})

    def test_there_is_room_for_32(self):
        for number in range(1, 33):
            self.fault("add", "gpio kill", output=f"{number}\n")
        self.check_refused(4, f"kelvo-sim fault: {self.name}: there is room for 32 faults: remove one first",
                           "fault", "add", self.name, "gpio kill")
        result = self.check(self.run_on("boot_and_move", options=["--fault", "spi kill"]), 4, "")
        self.assertEqual(result.stderr, f"kelvo-sim run: {self.name}: there is room for 32 faults: remove one first\n")

    def test_wrong_faults(self):
        for text, line in (("spy", 'there is no device "spy": begin with one of spi, pt5111, i2c, gpio, file'),
                           ("gpio nth=3", "it has no effect: add one of error, kill"),
                           ("i2c nth=0 nak", '"nth" cannot be "0": it takes a number from 1')):
            self.check_refused(2, f"kelvo-sim fault: {line}", "fault", "add", self.name, text)
            self.check_refused(2, f"kelvo-sim run: --fault: {line}: see kelvo-sim run --help",
                               "run", "--fault", text, "--", "true")
        self.check_refused(2, "kelvo-sim fault: the fault is empty: begin with one of spi, pt5111, i2c, gpio, file",
                           "fault", "add", self.name)
        self.assertEqual(self.listed(), {})

    def test_a_wrong_fault_in_the_environment(self):
        result = self.check(tool.call("run", "--", "true", variables={"KELVO_SIM": "fault=gpio"}), 2, "")
        self.assertEqual(result.stderr, 'kelvo-sim run: KELVO_SIM: "fault" cannot be "gpio": it has no effect: add one '
                                        "of error, kill\n")

    def test_a_fault_that_is_not_there(self):
        self.check_refused(7, f"kelvo-sim fault: {self.name}: there is no fault 5: kelvo-sim fault list {self.name} "
                              "shows those that there are", "fault", "remove", self.name, "5")
        for rest in ([], ["0"], ["x"], ["-1"], ["1", "2"]):
            result = self.check(tool.call("fault", "remove", self.name, *rest), 2, "")
            self.assertEqual(result.stderr.count("\n"), 1, result.stderr)

    def test_other_wrong_arguments(self):
        self.check_refused(2, 'kelvo-sim fault: ACTION: "ad" is not add, list or remove: see kelvo-sim fault --help',
                           "fault", "ad", self.name)
        self.check_refused(2, "kelvo-sim fault: NAME is required: see kelvo-sim fault --help", "fault", "list")
        self.check_refused(2, "kelvo-sim fault: --json is for list alone: leave it away",
                           "fault", "add", self.name, "gpio kill", "--json")
        self.check_refused(2, 'kelvo-sim fault: "1" is too much: list takes a camera\'s name',
                           "fault", "list", self.name, "1")

    def test_a_camera_that_is_not_there(self):
        tool.call("remove", self.name)
        for arguments in (["list"], ["add", "gpio kill"], ["remove", "all"]):
            self.check_refused(3, f"kelvo-sim fault: {self.name}: there is no camera of this name: kelvo-sim list "
                                  "shows those that there are", "fault", arguments[0], self.name, *arguments[1:])


class Striking(Faults):
    def test_while_the_camera_stays(self):
        self.check(self.run_on("boot_and_move", "de015"), 0)
        self.fault("add", "spi command=zoom1-start error=EIO")
        self.assertIn("zoom 1 NOT MOVED", self.check(self.run_on("boot_and_move", "de015"), 1).stdout)
        self.assertEqual(self.listed(), {1: ("spi command=zoom1-start error=EIO", 2, 2)})
        self.fault("remove", "1")
        self.assertIn("zoom 1 moved", self.check(self.run_on("boot_and_move", "de015"), 0).stdout)

    def test_from_the_start_on_a_private_camera(self):
        result = tool.call("run", "--clock", "sleep", "--fault", "spi frame=payload nth=2 flip=9.1", "--report", "--",
                           project.setting("boot_and_move"), "df033")
        self.check(result, 1)
        self.assertEqual(result.stderr.count("NOT INTACT"), 1)

    def test_from_the_start_on_a_camera_with_a_name(self):
        fault = ["--fault", "spi missing nth=1"]
        self.assertNotEqual(self.run_on("boot_and_move", "df033", options=fault).returncode, 0)
        self.assertEqual(self.listed(), {1: ("spi missing nth=1", 1, 1)})
        self.check(self.run_on("boot_and_move", "df033"), 0)
        self.assertNotEqual(self.run_on("boot_and_move", "df033", options=fault).returncode, 0, "armed anew")
        self.assertEqual(self.listed()[1][2], 1)

    def test_by_the_preload_library_alone(self):
        environment = {"KELVO_SIM": "clock=sleep fault=spi:missing"}
        result = tool.call("run", "--", project.setting("boot_and_move"), "df033", variables=environment)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("/dev/spi_renesas", result.stderr)

    def test_a_removed_fault_does_not_come_back_with_the_next_program_of_a_script(self):
        tool_path = next(filter(None, project.settings("tool")))
        script = '"$0" df033 && exit 1; LD_PRELOAD= "$1" fault remove "$2" all && "$0" df033'
        result = tool.call("run", "--name", self.name, "--clock", "sleep", "--fault", "spi missing", "--", "sh", "-c",
                           script, project.setting("boot_and_move"), tool_path, self.name)
        self.check(result, 0)
        self.assertIn("df033: result 0", result.stdout)

    def test_a_killed_program_leaves_the_camera_to_others(self):
        result = self.run_on("boot_and_move", "df033", options=["--fault", "spi frame=payload nth=2 kill"])
        self.check(result, -signal.SIGKILL)
        self.assertEqual(self.listed(), {1: ("spi frame=payload nth=2 kill", 2, 1)})
        self.check(self.run_on("boot_and_move", "df033"), 0)
        self.check(tool.call("violations", self.name), 0, "", "")


class Page(Faults):
    def test_it_has_every_word_of_every_device(self):
        self.make()
        section = PAGE.split("\nOne word is the effect:\n")[1].split("\n## ")[0]
        shown = set(re.findall(r"(?m)^\|[^|]*\| `([a-z-]+)(?:=[^`]*)?` \|", section))
        words = set()
        for device in DEVICES:
            result = self.check(tool.call("fault", "add", self.name, f"{device} x"), 2, "")
            words.update(result.stderr.strip().split("there are ")[1].split(", "))
        self.assertGreater(len(words), 10)
        self.assertEqual(shown, words)


if __name__ == "__main__":
    project.main()
