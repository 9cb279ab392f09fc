#!/usr/bin/env python3
"""kelvoctl calibration: the records are shown, compared, exported and imported, and nothing else is taken for one."""

import json
import struct

import kelvoctl_tool
import project
from calibrate_test import FILES, IRIS, STABILISER, fields

SIZES = {"iris": 24, "stabiliser": 60}


class Record(kelvoctl_tool.KelvoctlTest):
    def setUp(self):
        super().setUp()
        self.files = self.folder / "camera"
        self.settings = f"clock=sleep files={self.files}"

    def ctl(self, *arguments, lens="df033", settings=None, **options):
        return super().ctl(*arguments, lens=lens, settings=settings or self.settings, **options)

    def stored(self, path):
        return (self.files / path[1:]).read_bytes()

    def store(self, path, content):
        place = self.files / path[1:]
        place.parent.mkdir(parents=True, exist_ok=True)
        place.write_bytes(content)

    def given(self, content, name="given"):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def json_of(self, values, record="iris"):
        return json.dumps({"schema": 1, "record": record, "fields": values})


class Show(Record):
    def test_no_record(self):
        for lens, file in (("df033", "/bin/DC_S_Cali.dat"), ("de015", "/bin/OIS_S_Cali.dat")):
            for command in (["show"], ["diff"], ["export", "-"]):
                self.check_fails(2, f"calibration {command[0]}: {file}: there is no record: "
                                    "the controller keeps its own values", "calibration", *command, lens=lens)

    def test_the_default_of_one_module(self):
        result = self.result("calibration", "show", lens="t5391")
        self.assertEqual((result["record"], result["file"]), ("iris", "/bin/DC_S_Cali_T5391.dat"))
        self.assertEqual(fields(result)["travel_min"], 0x0180)

    def test_a_record(self):
        self.store("/bin/DC_S_Cali.dat", struct.pack("=6I", *IRIS.values()))
        self.assertEqual(fields(self.result("calibration", "show")), IRIS)
        self.assertEqual(self.result("calibration", "show", lens="t5391")["file"], "/bin/DC_S_Cali.dat")
        self.check(self.ctl("calibration", "show"), 0,
                   "module  df033\nrecord  iris\nfile    /bin/DC_S_Cali.dat\n\n"
                   "field        value  hexadecimal\n"
                   "polarity     2      0x0002\nhall_offset  2129   0x0851\nhall_gain    1047   0x0417\n"
                   "travel_min   403    0x0193\ntravel_max   3708   0x0E7C\nsine         530    0x0212\n")

    def test_what_is_no_record(self):
        for content, why in ((b"", "it has 0 bytes and must have 24"), (bytes(23), "it has 23 bytes and must have 24"),
                             (bytes(25), "it has 25 bytes and must have 24"),
                             (struct.pack("=6I", 1, 2, 65536, 4, 5, 6), "hall_gain is 65536, beyond 65535")):
            with self.subTest(why):
                self.store("/bin/DC_S_Cali.dat", content)
                self.check_fails(6, f"calibration show: /bin/DC_S_Cali.dat: no iris record: {why}",
                                 "calibration", "show")

    def test_a_file_that_cannot_be_read(self):
        self.store("/bin/DC_S_Cali.dat", bytes(24))
        self.check_fails(2, "calibration show: /bin/DC_S_Cali.dat: Permission denied", "calibration", "show",
                         settings=f"{self.settings} fault=file:unreadable")


class Import(Record):
    def test_json_and_raw(self):
        for lens, record, values in (("df033", "iris", IRIS), ("de015", "stabiliser", STABILISER)):
            raw = struct.pack(f"={len(values)}I", *values.values())
            for content in (self.json_of(values, record), " \n" + self.json_of(values, record), raw):
                with self.subTest(record=record, content=content):
                    for file in FILES[record]:
                        self.store(file, b"old")
                    result = self.result("calibration", "import", "-y", self.given(content), lens=lens)
                    self.assertEqual(fields(result), values)
                    self.assertEqual(result["files"], [{"file": file, "written": True} for file in FILES[record]])
                    self.assertEqual([self.stored(file) for file in FILES[record]], 3 * [raw])
                    self.assertEqual(list(self.files.rglob("*.new")), [])

    def test_the_next_boot_loads_it(self):
        self.check(self.ctl("calibration", "import", "-y", self.given(self.json_of(IRIS))), 0, None)
        self.boot(settings=self.settings)
        compared = self.result("calibration", "diff")
        self.assertEqual(compared["differences"], 0)
        self.assertEqual([row["controller"] for row in compared["fields"]][:5], list(IRIS.values())[:5])

    def test_standard_input(self):
        with self.given(self.json_of(IRIS)).open() as stream:
            self.check(self.ctl("calibration", "import", "-y", "-", stdin=stream), 0, None)
        self.assertEqual(self.stored("/bin/DC_S_Cali.dat"), struct.pack("=6I", *IRIS.values()))

    def test_asks_first(self):
        self.check_fails(8, "calibration import: This replaces the iris record of the camera. Go on? "
                            "There is no terminal to ask: say so with -y", "calibration", "import",
                         self.given(self.json_of(IRIS)))
        self.assertFalse((self.files / "bin/DC_S_Cali.dat").exists())

    def test_what_is_no_record(self):
        without = dict(IRIS)
        del without["sine"]
        cases = (
            ("", "it has 0 bytes and must have 24"),
            (bytes(60), "it has 60 bytes and must have 24"),
            (struct.pack("=6I", 0x10000, 2, 3, 4, 5, 6), "polarity is 65536, beyond 65535"),
            ("{", "no JSON object"),
            ("{}", "its schema must be 1"),
            (json.dumps({"schema": 2, "record": "iris", "fields": IRIS}), "its schema must be 1"),
            (self.json_of(STABILISER, "stabiliser"), 'its record must be "iris"'),
            (json.dumps({"schema": 1, "record": "iris"}), "it has no fields"),
            (json.dumps({"schema": 1, "record": "iris", "fields": []}), "it has no fields"),
            (self.json_of({**IRIS, "colour": 3}), "it has no field colour"),
            (self.json_of(IRIS).replace('"polarity"', '"sine": 1, "polarity"'), "it has sine twice"),
            (self.json_of(IRIS).replace('{"schema"', '{"schema": 1, "schema"'), "it has schema twice"),
            (self.json_of({**IRIS, "sine": 7})[:-1], "no JSON object"),
            (self.json_of(without), "sine must be a number from 0 to 65535"),
            (self.json_of({**IRIS, "sine": 65536}), "sine must be a number from 0 to 65535, not 65536"),
            (self.json_of({**IRIS, "sine": -1}), "sine must be a number from 0 to 65535, not -1"),
            (self.json_of({**IRIS, "sine": 1.5}), "sine must be a number from 0 to 65535, not 1.5"),
            (self.json_of({**IRIS, "sine": "1"}), 'sine must be a number from 0 to 65535, not "1"'))
        for content, why in cases:
            with self.subTest(why, content=content):
                given = self.given(content)
                self.check_fails(6, f"calibration import: {given}: no iris record: {why}",
                                 "calibration", "import", "-y", given)
        self.assertFalse((self.files / "bin/DC_S_Cali.dat").exists())

    def test_a_file_that_is_not_there(self):
        self.check_fails(2, "calibration import: nowhere: No such file or directory",
                         "calibration", "import", "nowhere")
        self.check_fails(2, "calibration import: FILE is required: see kelvoctl calibration import --help",
                         "calibration", "import")

    def test_the_old_record_stays_where_the_new_one_cannot_be_written(self):
        for fault, why in (("error=EROFS", "Read-only file system"), ("full", "No space left on device")):
            with self.subTest(fault):
                for file in FILES["iris"]:
                    self.store(file, b"old")
                self.remove_camera()
                result = self.ctl("calibration", "import", "-y", self.given(self.json_of(IRIS)),
                                  settings=f"{self.settings} fault=file:path=/tmp/DC_S_Cali.dat:frame=write:{fault}")
                self.check(result, 7, None,
                           f"kelvoctl: calibration import: /tmp/DC_S_Cali.dat: cannot be written: {why}\n")
                self.assertIn("/tmp/DC_S_Cali.dat       no\n", result.stdout)
                self.assertEqual([len(self.stored(file)) for file in FILES["iris"]], [24, 3, 24])

    def test_a_tool_that_is_killed_leaves_the_old_record_whole(self):
        old = struct.pack("=6I", *{**IRIS, "sine": 9}.values())
        for frame in ("write", "read"):  # before the new file is written; before it takes its place
            with self.subTest(frame):
                self.remove_camera()
                for file in FILES["iris"]:
                    self.store(file, old)
                result = self.ctl("calibration", "import", "-y", self.given(self.json_of(IRIS)),
                                  settings=f"{self.settings} fault=file:path=/bin/DC_S_Cali.dat:frame={frame}:kill")
                self.assertNotEqual(result.returncode, 0)
                self.assertEqual(self.stored("/bin/DC_S_Cali.dat"), old)
                self.assertNotEqual(self.stored("/tmp/DC_S_Cali.dat"), old)

    def test_a_yes_on_a_terminal(self):
        terminal = self.terminal("calibration", "import", self.given(self.json_of(IRIS)), settings=self.settings)
        terminal.expect(r"replaces the iris record of the camera\. Go on\? \[y/N\] ")
        terminal.type("yes\n")
        terminal.expect(r"/bin/DC_S_Cali\.dat +yes")
        self.assertEqual(terminal.wait(), 0)


class Export(Record):
    def test_there_and_back(self):
        for lens, record, values in (("df033", "iris", IRIS), ("de015", "stabiliser", STABILISER)):
            with self.subTest(record):
                self.store(FILES[record][2], struct.pack(f"={len(values)}I", *values.values()))
                path = self.folder / f"{record}.json"
                self.check(self.ctl("calibration", "export", path, lens=lens), 0,
                           f"record  {record}\nfrom    {FILES[record][2]}\nto      {path}\n")
                self.assertEqual(json.loads(path.read_text()), {"schema": 1, "record": record, "fields": values})
                self.check(self.ctl("calibration", "import", "-y", path, lens=lens), 0, None)
                self.assertEqual(len(self.stored(FILES[record][0])), SIZES[record])

    def test_a_file_that_is_there_is_not_replaced_without_a_yes(self):
        self.store("/bin/DC_S_Cali.dat", struct.pack("=6I", *IRIS.values()))
        path = self.given("kept")
        self.check_fails(8, f"calibration export: {path} is there already, and this replaces it. Go on? There is no "
                            "terminal to ask: say so with -y", "calibration", "export", path)
        self.assertEqual(path.read_text(), "kept")
        for answer, code in (("n\n", 8), ("y\n", 0)):
            terminal = self.terminal("calibration", "export", "given", settings=self.settings)
            terminal.expect(r"given is there already, and this replaces it\. Go on\? \[y/N\] ")
            terminal.type(answer)
            self.assertEqual(terminal.wait(), code)
            self.assertEqual(path.read_text() == "kept", code == 8)
        self.given("kept")
        self.check(self.ctl("calibration", "export", "-y", path), 0, None)
        self.assertEqual(json.loads(path.read_text())["fields"], IRIS)

    def test_to_standard_output(self):
        self.store("/bin/DC_S_Cali.dat", struct.pack("=6I", *IRIS.values()))
        shown = json.loads(self.check(self.ctl("calibration", "export", "-"), 0, None).stdout)
        self.assertEqual(shown["fields"], IRIS)

    def test_a_place_that_cannot_be_written(self):
        self.store("/bin/DC_S_Cali.dat", bytes(24))
        path = self.folder / "no" / "folder"
        self.check_fails(7, f"calibration export: {path}: cannot be written: No such file or directory",
                         "calibration", "export", path)


class Diff(Record):
    def test_copies_and_controller(self):
        self.boot(settings=self.settings)
        self.store("/bin/DC_S_Cali.dat", struct.pack("=6I", *IRIS.values()))
        self.store("/tmp/DC_S_Cali.dat", struct.pack("=6I", *{**IRIS, "sine": 9}.values()))
        result = self.ctl("calibration", "diff")
        self.check(result, 6, None, "kelvoctl: calibration diff: 6 of 6 fields differ\n")
        self.assertIn("field        boot  /mnt/nand  /tmp  controller  differs\n"
                      "polarity     2     -          2     1           yes\n", result.stdout)
        self.check(self.ctl("boot", "-y"), 0, None)
        compared = self.result("calibration", "diff", code=6)
        self.assertEqual([row["field"] for row in compared["fields"] if row["differs"]], ["sine"])
        self.assertEqual(compared["fields"][5]["/mnt/nand"], None)

    def test_what_is_measured_all_the_time_is_not_compared_with_the_controller(self):
        self.store("/bin/DC_S_Cali.dat", struct.pack("=6I", *{**IRIS, "sine": 9}.values()))
        self.boot(settings=self.settings)
        row = self.result("calibration", "diff")["fields"][5]
        self.assertEqual((row["boot"], row["controller"], row["differs"]), (9, 0x0212, False))

    def test_a_file(self):
        self.store("/bin/DC_S_Cali.dat", struct.pack("=6I", *IRIS.values()))
        self.boot(settings=self.settings)
        self.check(self.ctl("calibration", "diff", self.given(self.json_of(IRIS))), 0, None)
        result = self.result("calibration", "diff", self.given(self.json_of({**IRIS, "hall_gain": 1})), code=6)
        self.assertEqual([row["given"] for row in result["fields"] if row["differs"]], [1])

    def test_a_controller_that_does_not_answer(self):
        self.store("/bin/DC_S_Cali.dat", bytes(24))
        self.assertEqual(self.ctl("calibration", "diff").returncode, 4)


if __name__ == "__main__":
    project.main()
