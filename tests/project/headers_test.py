#!/usr/bin/env python3
"""Every header compiles alone, and the interface in each language that it promises."""

import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import project

INCLUDE_PATHS = [f"-I{project.SOURCE / folder}" for folder in ("", "include", "tests")]
WARNINGS = ["-Wall", "-Wextra", "-Werror", "-pedantic"]
# A program of its own beside the project's header reads it this way.
INTERFACE_LANGUAGES = [
    ("c_compiler", ["-xc", "-std=c11", "-Wstrict-prototypes"]),
    ("cxx_compiler", ["-xc++", "-std=c++17"]),
    ("cxx_compiler", ["-xc++", "-std=c++20"]),
]


def compile_header(compiler, options, name):
    """What the compiler says about a file that includes the header, twice, and nothing else."""
    with tempfile.TemporaryDirectory() as folder:
        source = Path(folder) / "alone"
        source.write_text(f'#include "{name}"\n#include "{name}"\nint alone;\n')
        result = project.run(project.setting(compiler), *options, *WARNINGS, *INCLUDE_PATHS,
                             *(f"-idirafter{path}" for path in project.settings("other_includes")),
                             "-fsyntax-only", source)
        if result.returncode == 0:
            return []
        return [f"{name} ({' '.join(options)}): {result.stdout}"]


class Headers(unittest.TestCase):
    def check_all(self, work):
        with ThreadPoolExecutor(max_workers=2) as pool:
            complaints = sum(pool.map(lambda arguments: compile_header(*arguments), work), [])
        self.assertGreater(len(work), 0)
        self.assertEqual(complaints, [], "\n" + "\n".join(complaints))

    def test_every_header_compiles_alone(self):
        headers = project.source_files({".h"})
        self.assertGreater(len(headers), 20)
        self.check_all([("cxx_compiler", ["-xc++", "-std=c++20"], header)
                        for header in headers])

    def test_the_interface_is_c11_and_cxx17_and_cxx20(self):
        interface = [path.relative_to(project.SOURCE / "include")
                     for path in (project.SOURCE / "include").rglob("*.h")]
        self.check_all([(compiler, options, header) for header in interface
                        for compiler, options in INTERFACE_LANGUAGES])

    def test_a_header_that_leans_on_another_is_caught(self):
        with tempfile.TemporaryDirectory() as folder:
            header = Path(folder) / "leaning.h"
            header.write_text("#ifndef L\n#define L\ninline std::size_t leaning = 1;\n#endif\n")
            self.assertTrue(compile_header("cxx_compiler", ["-xc++", "-std=c++20"], header))


if __name__ == "__main__":
    project.main()
