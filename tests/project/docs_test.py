#!/usr/bin/env python3
"""The documentation against the code: tables of codes, and every C fragment that is a whole file."""

import re
import tempfile
import unittest
from pathlib import Path

import project

MODULES = {"all": "all", "de015": "DE015", "df033": "DF033", "t5391": "T5391",
           "df033_t5391": "DF033, T5391", "de015_t5391": "DE015, T5391"}

ROW = re.compile(r'ROW\((\w+),\s*(\w+),\s*(\w+),\s*"([^"]*)"\)')
TABLE = re.compile(r"^\| code \| name +\| modules[^\n]*\n\|[-:|]+\n((?:\|[^\n]*\n)+)", re.MULTILINE)
FRAGMENT = re.compile(r"^```c\n(.*?)^```", re.MULTILINE | re.DOTALL)


def code_rows(text):
    """(code, name, modules, meaning) of each row, commands and then queries."""
    return [(code, name, MODULES[modules], meaning) for name, code, modules, meaning in ROW.findall(text)]


def table_rows(page):
    """The rows of every table of codes on a page, cell by cell."""
    return [tuple(cell.strip() for cell in line.strip("|").split("|"))
            for table in TABLE.findall(page) for line in table.splitlines()]


def fragments(path):
    return FRAGMENT.findall((project.SOURCE / path).read_text())


class Documentation(unittest.TestCase):
    def test_the_code_tables_are_those_of_the_wire(self):
        rows = code_rows((project.SOURCE / "wire/lens_program.h").read_text())
        self.assertGreater(len(rows), 40)
        self.assertEqual(table_rows((project.SOURCE / "docs/wire.md").read_text()), rows)

    def test_the_first_program_is_the_one_in_examples(self):
        program = (project.SOURCE / "examples/first_program.c").read_text()
        self.assertIn(program, fragments("README.md"))

    def test_every_whole_fragment_compiles(self):
        compiler = project.setting("c_compiler")
        compiled = 0
        with tempfile.TemporaryDirectory() as folder:
            for page in ["README.md", *(project.SOURCE / "docs").glob("*.md")]:
                for fragment in fragments(page):
                    if "#include <kelvo.h>" not in fragment:
                        continue
                    source = Path(folder) / "fragment.c"
                    source.write_text(fragment)
                    result = project.run(compiler, "-std=c11", "-Wall", "-Wextra", "-Werror", "-pedantic",
                                         "-Wno-unused-function", "-fsyntax-only",
                                         "-I", project.SOURCE / "include", source)
                    self.assertEqual(result.returncode, 0, f"{page}:\n{fragment}\n{result.stdout}")
                    compiled += 1
        self.assertGreater(compiled, 0)


if __name__ == "__main__":
    project.main()
