#!/usr/bin/env python3
"""kelvoctl pid: the file of a tuning table, and what a process has of it."""

import re
import struct

import kelvoctl_tool
import project
from head_tool import TABLE, HeadTest

ROW = "1 2 3 4 5 6 7"
TASMERE = {0: ("pan", 0x1000, 1, 0x4000), 1: ("pan", 0x800, 11, 0x2800), 2: ("tilt", 0x1000, 1, 0x4000),
           3: ("tilt", 0x800, 1, 0x1800), 4: ("pan", 0xA00, 16, 0x3000)}


class File(HeadTest):
    """pid show reads the file as every other command does."""

    def show(self, path, code=0):
        return self.result("pid", "show", path, code=code)

    def check_refused(self, line, path):
        self.check_fails(2, f"pid show: {path}{line}", "pid", "show", path)

    def test_text(self):
        shown = self.show(TABLE)
        self.assertEqual({row["row"]: (row["axis"], row["p"], row["i"], row["d"]) for row in shown["tasmere"]}, TASMERE)
        self.assertEqual([row["row"] for row in shown["vetra"]], [8, 9, 10, 11])
        self.assertEqual(shown["vetra"][1], {
            "row": 9, "head": "vetra", "axis": "pan", "for": "to a position", "position_p": 35, "position_i": 0,
            "speed_p": 1152, "speed_i": 100, "current": 600, "acceleration": 400000, "deceleration": 400000})

    def test_the_example_holds_the_numbers_of_the_header(self):
        header = (project.SOURCE / "examples/tuning_table.h").read_text()
        rows = [[int(word, 0) for word in row.split(",")] for row in re.findall(r"(?m)^    \{(.*?)\}", header)]
        self.assertEqual(len(rows), 12)
        words = [word for row in rows for word in row + [0] * (7 - len(row))]
        raw = self.folder / "raw"
        raw.write_bytes(struct.pack("=84i", *words))
        self.assertEqual(self.show(raw), self.show(TABLE))

    def test_raw_has_the_words_in_order(self):
        raw = self.folder / "raw"
        raw.write_bytes(struct.pack("=84i", *range(84)))
        shown = self.show(raw)
        self.assertEqual([shown["tasmere"][0][name] for name in "pid"], [1, 2, 3])
        self.assertEqual(list(shown["vetra"][3].values())[4:], list(range(77, 84)))

    def test_words_that_would_be_cut_on_their_way(self):
        """Of gains and currents 16 bits are sent, of ramps 32; a word that nothing reads can be anything."""
        rows = [["0"] * 7 for _ in range(12)]
        for row, word, value, most in ((0, 1, 65536, 0xFFFF), (3, 3, -1, 0xFFFF), (8, 0, -1, 0xFFFF),
                                       (11, 4, 70000, 0xFFFF), (9, 5, -400000, 0x7FFFFFFF),
                                       (10, 6, -1, 0x7FFFFFFF)):
            with self.subTest(row=row, word=word):
                changed = [list(line) for line in rows]
                changed[row][word] = str(value)
                self.check_refused(f':{row + 1}:{2 * word + 1}: "{value}" is no number from 0 to {most}',
                                   self.script(*map(" ".join, changed)))
                raw = self.folder / "raw"
                raw.write_bytes(struct.pack("=84i", *(int(number) for line in changed for number in line)))
                self.check_refused(f": row {row}, word {word}: {value} is no number from 0 to {most}", raw)
                changed[row][word] = str(most)
                self.check(self.ctl("pid", "show", self.script(*map(" ".join, changed))), 0, None)
        for row, word in ((0, 0), (0, 4), (5, 1), (7, 6)):
            changed = [list(line) for line in rows]
            changed[row][word] = "-7"
            self.check(self.ctl("pid", "show", self.script(*map(" ".join, changed))), 0, None)
            changed[row][word] = "2147483648"
            self.check_refused(f':{row + 1}:{2 * word + 1}: "2147483648" is no number from -2147483648 to 2147483647',
                               self.script(*map(" ".join, changed)))

    def test_the_table_can_come_through_a_pipe(self):
        shown = self.ctl("--json", "pid", "show", "-", stdin=TABLE.open())
        self.check(shown, 0, None)
        self.assertIn('"acceleration": 400000', shown.stdout)

    def test_blanks_comments_and_line_ends_do_not_matter(self):
        path = self.folder / "table"
        path.write_text("# a comment\r\n\r\n" + "\t1  2 3\t0x4 5 6 8 # row\r\n" * 11 + ROW)
        self.assertEqual(self.show(path)["vetra"][2]["deceleration"], 8)

    def test_no_file(self):
        self.check_refused(": No such file or directory", self.folder / "none")
        self.check_refused(": Is a directory", self.folder)

    def test_what_is_no_number(self):
        for word in ("x", "1,", "0x", "1.5", "2147483648", "-1", "0x10000"):
            with self.subTest(word):
                self.check_refused(f':2:7: "{word}" is no number from 0 to 65535',
                                   self.script(ROW, f"  1 2 {word} 4 5 6 7"))

    def test_rows_that_are_too_short_or_too_long(self):
        self.check_refused(":3:12: a row has seven numbers, and this one 6",
                           self.script(ROW, "# comment", "1 2 3 4 5 6"))
        self.check_refused(":1:15: the row is over: it has seven numbers", self.script("1 2 3 4 5 6 7 8"))

    def test_tables_that_are_too_short_or_too_long(self):
        self.check_refused(":12:1: the table has twelve rows, and this one 11", self.script(*[ROW] * 11))
        self.check_refused(":13:1: the table is over: it has twelve rows", self.script(*[ROW] * 13))
        self.check_refused(":1:1: the table has twelve rows, and this one 0", self.script())

    def test_raw_bytes_of_another_size(self):
        for size in (335, 337, 4):
            path = self.folder / "raw"
            path.write_bytes(bytes(size))
            self.check_refused(f": no text, and {size} bytes: a raw tuning table has 336", path)

    def test_the_errors_come_with_a_move_too(self):
        path = self.script("1 2")
        self.check_fails(2, f"pan goto: {path}:1:4: a row has seven numbers, and this one 2", "pan", "goto", 1,
                         "--pid", path)


class Process(HeadTest):
    def test_a_script_loads_the_table_once(self):
        for _ in self.heads():
            result = self.ctl("run", self.script(
                f"pid load {TABLE}", "pan goto 40000 --speed 7200 --wait", "tilt goto 30000 --speed 7200 --wait",
                "pan move 720 --for 100ms", "pid stop"))
            self.check(result, 0, None)
            self.assertEqual(result.stdout.count("at rest    yes"), 3)
            self.assertEqual(self.violations(), [])

    def test_a_script_loads_a_bad_table(self):
        script, table = self.script(f"pid load {self.folder}/table"), self.script("1", name="table")
        self.check_fails(2, f"run: {script}:1: pid load: {table}:1:2: a row has seven numbers, and this one 1",
                         "run", script)

    def test_a_script_shows_what_is_loaded(self):
        script = self.script(f"pid load {TABLE}", "pid freeze", "--json pid show")
        result = self.ctl("run", script)
        self.check(result, 0, None)
        self.assertIn('"frozen": true', result.stdout)
        self.assertIn('"p": 4096', result.stdout)

    def test_nothing_is_loaded(self):
        self.check_fails(8, "pid show: no tuning table is loaded in this process: name its file", "pid", "show")

    def test_a_table_of_zeros_is_loaded_and_shown(self):
        zeros = self.script(*["0 0 0 0 0 0 0"] * 12, name="zeros")
        result = self.ctl("run", self.script(f"pid load {zeros}", "--json pid show"))
        self.check(result, 0, None)
        self.assertEqual(result.stdout.count('"p": 0'), 5)
        self.check_fails(8, "pan goto: the tuning table's row 1 is zeros, and this move would set them: it is for "
                            "tasmere pan, to a position", "pan", "goto", 1000, "--pid", zeros)

    def test_frozen_gains_are_not_written_until_they_are_thawed(self):
        script = self.script(f"pid load {TABLE}", "pid freeze", "pan move 720", "pan stop", "pid thaw", "pan move 720")
        result = self.ctl("--verbose", "run", script)
        self.check(result, 0, None, None)
        before, _, after = result.stderr.rpartition("TServomotor=2")
        self.assertIn("TServomotor=2", before)
        self.assertEqual(before.count("TASMERE"), 1)
        self.assertLess(before.index("TServomotor=2"), before.index("TASMERE"))
        self.assertNotIn("TASMERE", after)

    def test_what_would_end_with_the_command_is_refused(self):
        tail = ", or use a script or a shell"
        self.check_fails(8, f"pid load: it would end with this command: give --pid FILE with the move{tail}",
                         "pid", "load", TABLE)
        for command in ("freeze", "thaw"):
            self.check_fails(8, f"pid {command}: it would end with this command: give --freeze with the move{tail}",
                             "pid", command)

    def test_stop(self):
        for head in self.heads():
            written = self.result("pid", "stop", "--pid", TABLE)["written"]
            self.assertEqual([row["axis"] for row in written], ["pan", "tilt"])
            if head == "tasmere":
                self.assertEqual(written[0], {"axis": "pan", "p": 0xA00, "i": 16, "d": 0x3000})
                self.assertEqual(written[1], {"axis": "tilt", "p": 0x1000, "i": 1, "d": 0x4000})
            else:
                self.assertEqual(list(written[0].values())[1:], [35, 0, 1152, 100, 500, 40000, 40000])

    def test_stop_without_a_table(self):
        for _ in self.heads():
            self.check_fails(8, "pid stop: without a tuning table a move sets gains of zero: give it with --pid FILE, "
                                "or in a script or shell with pid load FILE", "pid", "stop")

    def test_stop_without_a_head(self):
        self.check(kelvoctl_tool.call("pid", "stop", "--pid", TABLE), 3, "",
                   "kelvoctl: pid stop: /dev/i2c-2: No such file or directory: see kelvoctl doctor\n")
        self.check_fails(4, "pid stop: /dev/i2c-2: the tilt controller does not answer: see whether it has power",
                         "pid", "stop", "--pid", TABLE, settings="clock=sleep fault=i2c:slave=tilt:nak")

    def test_wrong_arguments(self):
        self.check_fails(2, "pid load: FILE is required: see kelvoctl pid load --help", "pid", "load")
        self.check_fails(2, "pid: a command is missing: it is one of show, load, freeze, thaw, stop", "pid")


if __name__ == "__main__":
    project.main()
