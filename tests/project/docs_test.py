#!/usr/bin/env python3
"""The documentation against the code: tables of codes and registers, and every C fragment that is a
whole file."""

import re
import tempfile
import unittest
from pathlib import Path

import project

MODULES = {"all": "all", "de015": "DE015", "df033": "DF033", "t5391": "T5391",
           "de015_df033": "DE015, DF033", "df033_t5391": "DF033, T5391", "de015_t5391": "DE015, T5391"}

ROW = re.compile(r'ROW\((\w+),\s*(\w+),\s*(\w+),\s*"([^"]*)"\)')
REGISTER = re.compile(r'ROW\((\w+),\s*(\d+), ([rw]), (\d+),\s*"((?:[^"\\]|\\.)*)"\)')
CHANNEL = re.compile(r"constexpr MotorChannel (\w+)_channel\s*\{([\d,\s]+)\};")
BYTES = re.compile(r"bytes\(([^)]*)\)")
FRAGMENT = re.compile(r"^```c\n(.*?)^```", re.MULTILINE | re.DOTALL)


def code_rows(text):
    """(code, name, modules, meaning) of each row, commands and then queries."""
    return [(code, name, MODULES[modules], meaning) for name, code, modules, meaning in ROW.findall(text)]


def table_rows(page, *head):
    """The rows of every table whose head begins with these cells, cell by cell."""
    start = r"\|".join(rf" *{re.escape(cell)} *" for cell in head)
    tables = re.findall(rf"^\|{start}\|[^\n]*\n\|[-:|]+\n((?:\|[^\n]*\n)+)", page, re.MULTILINE)
    return [tuple(cell.strip() for cell in line.strip("|").split("|"))
            for table in tables for line in table.splitlines()]


def source(path):
    return (project.SOURCE / path).read_text()


def register_rows(text):
    """(register, name, access, bytes, meaning) of each row of the register maps."""
    return [(number, name, access.upper(), width, meaning.replace('\\"', '"'))
            for name, number, access, width, meaning in REGISTER.findall(text)]


def channel_rows(text):
    """(register, focus channel, zoom channel) of each register of a motor channel."""
    members = re.findall(r"std::uint8_t (\w+);", text.split("struct MotorChannel {")[1].split("};")[0])
    channels = {name: re.findall(r"\d+", values) for name, values in CHANNEL.findall(text)}
    return list(zip(members, channels["focus"], channels["zoom"], strict=True))


def written(data):
    """`10 00` for 0x10, 0x00."""
    digits = re.findall(r"0x(\w\w)", data)
    return f"`{' '.join(digits)}`" if digits else "none"


def profile_rows(text, numbers):
    """(register, name, pan A, pan B, tilt A, tilt B) of each write of the profiles."""
    return [(numbers[name], name, *map(written, BYTES.findall(data)))
            for name, data in re.findall(r"\{tasmere::(\w+),((?:\s*bytes\([^)]*\),?){4})\}", text)]


def set_up_writes(text, numbers, axis):
    """(register, name, data) of each write of an axis's set-up, in order."""
    writes = {group: re.findall(r"\{(\w+), bytes\(([^)]*)\)\}", rows) for group, rows
              in re.findall(r"constexpr Write (\w+)\[\] = \{(.*?)\};\n", text, re.DOTALL)}
    groups = re.search(rf"SetUpGroup {axis}_set_up\[\] = \{{(.*?)\}};\n", text, re.DOTALL)[1]
    return [(numbers[name], name, written(data))
            for group in re.findall(r'\{(?:nullptr|"[^"]*"), (\w+)', groups)
            for name, data in writes[group]]


def fragments(path):
    return FRAGMENT.findall(source(path))


class Documentation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page = source("docs/wire.md")

    def test_the_code_tables_are_those_of_the_wire(self):
        rows = code_rows(source("wire/lens_program.h"))
        self.assertGreater(len(rows), 90)
        self.assertEqual(table_rows(self.page, "code", "name", "modules"), rows)

    def test_the_register_tables_are_those_of_the_wire(self):
        rows = register_rows(source("wire/pan_tilt_registers.h"))
        self.assertGreater(len(rows), 50)
        self.assertEqual(table_rows(self.page, "register", "name", "access"), rows)

    def test_the_channel_table_is_that_of_the_wire(self):
        rows = channel_rows(source("wire/motor_channels.h"))
        self.assertGreater(len(rows), 5)
        shown = table_rows(self.page, "register", "focus channel", "zoom channel")
        self.assertEqual(sorted(row[:3] for row in shown), sorted(rows))

    def test_the_blocks_for_a_tasmere_controller_are_those_that_are_sent(self):
        tasmere = source("wire/pan_tilt_registers.h").split("#define KELVO_TASMERE_REGISTERS")[1]
        numbers = {name: number for number, name, *_ in register_rows(tasmere)}
        profiles = profile_rows(source("pantilt/controller/current.cpp"), numbers)
        self.assertGreater(len(profiles), 10)
        self.assertEqual(table_rows(self.page, "register", "name", "pan, A"), profiles)
        set_up = table_rows(self.page, "register", "name", "pan", "tilt")
        for column, axis in ((2, "pan"), (3, "tilt")):
            writes = set_up_writes(source("pantilt/controller/set_up.cpp"), numbers, axis)
            self.assertGreater(len(writes), 20)
            self.assertEqual([(*row[:2], row[column]) for row in set_up if row[column]], writes)

    def test_the_first_program_is_the_one_in_examples(self):
        self.assertIn(source("examples/first_program.c"), fragments("README.md"))

    def test_the_test_with_a_camera_is_the_one_that_is_built(self):
        self.assertIn(f"```cpp\n{source('tests/sim/testing/example.cpp')}```\n", source("docs/simulator.md"))

    def test_every_whole_fragment_compiles(self):
        compiler = project.setting("c_compiler")
        compiled = 0
        with tempfile.TemporaryDirectory() as folder:
            for page in ["README.md", *(project.SOURCE / "docs").glob("*.md")]:
                for fragment in fragments(page):
                    if "#include <kelvo.h>" not in fragment:
                        continue
                    file = Path(folder) / "fragment.c"
                    file.write_text(fragment)
                    result = project.run(compiler, "-std=c11", "-Wall", "-Wextra", "-Werror", "-pedantic",
                                         "-Wno-unused-function", "-fsyntax-only",
                                         "-I", project.SOURCE / "include", file)
                    self.assertEqual(result.returncode, 0, f"{page}:\n{fragment}\n{result.stdout}")
                    compiled += 1
        self.assertGreater(compiled, 0)


if __name__ == "__main__":
    project.main()
