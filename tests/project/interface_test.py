#!/usr/bin/env python3
"""The headers, the version script and the built library name the same interface."""

import re
import tempfile
import unittest
from pathlib import Path

import project

HEADERS = sorted((project.SOURCE / "include" / "kelvo").glob("*.h"))
VERSION_SCRIPT = project.SOURCE / "include" / "kelvo.map"
STEP_RATES = ["PPS_512uStepPhase1320", "PPS_512uStepPhase", "PPS_1_2Phase", "PPS_2_2Phase",
              "PPS_1_2Phase_800"]


def declarations(text):
    """(functions, data) that a header declares. Whatever is neither raises."""
    text = re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)
    text = re.sub(r"^\s*#.*$", "", text, flags=re.M)
    text = re.sub(r'extern\s*"C"\s*\{', "", text)
    text = re.sub(r"\b(struct|union|enum)(\s+\w+)?\s*\{[^{}]*\}", r"\1\2", text)
    functions, data = [], []
    for statement in (part.strip() for part in text.split(";")):
        if statement in ("", "}") or re.match(r"(typedef|struct|enum|union)\b[^(){}]*$", statement):
            continue
        function = re.fullmatch(r"[\w\s*]+?\b(\w+)\s*\([^()]*\)", statement)
        datum = re.fullmatch(r"extern\s[\w\s*]+?\b(\w+)\s*(\[\w+\]\s*)*", statement)
        if datum:
            data.append(datum[1])
        elif function and not re.match(r"(extern|static|inline)\b", statement):
            functions.append(function[1])
        else:
            raise ValueError(f"neither a function nor extern data: {statement!r}")
    return functions, data


def exports(script):
    """The names between global: and local:."""
    script = re.sub(r"#[^\n]*", "", script)
    match = re.fullmatch(r"\s*\{\s*global:(.*)local:\s*\*;\s*\};\s*", script, flags=re.S)
    if not match:
        raise ValueError("the version script is not one anonymous version that hides the rest")
    names = [name.strip() for name in match[1].split(";")]
    if names.pop() != "":
        raise ValueError("a name without its semicolon")
    return names


def symbols(*nm_arguments):
    """{name: (type, value, size)} by nm."""
    table = {}
    for line in project.output_of(project.setting("nm"), "--format=posix",
                                  *nm_arguments).splitlines():
        name, kind, *numbers = line.split()
        value, size = ([int(number, 16) for number in numbers] + [0, 0])[:2]
        table[name] = (kind, value, size)
    return table


def relocated(*files):
    """{symbol: relocation types} of linked or object files."""
    found = {}
    for line in project.output_of(project.setting("readelf"), "-rW", *files).splitlines():
        match = re.match(r"[0-9a-f]+\s+[0-9a-f]+\s+(R_\w+)\s+[0-9a-f]+\s+([A-Za-z_]\w*)", line)
        if match:
            found.setdefault(match[2], set()).add(match[1])
    if not found:
        raise RuntimeError(f"no relocation by symbol in {files}")
    return found


class Interface(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.library = project.setting("library")
        cls.objects = project.settings("objects")
        cls.functions, cls.data = [], []
        for header in HEADERS:
            functions, data = declarations(header.read_text())
            cls.functions += functions
            cls.data += data
        cls.exports = exports(VERSION_SCRIPT.read_text())
        cls.binary = symbols("-D", "--defined-only", cls.library)

    def test_no_list_is_empty(self):
        for names in (HEADERS, self.functions, self.data, self.exports, self.binary):
            self.assertTrue(names)

    def test_nothing_is_named_twice(self):
        for names in (self.functions + self.data, self.exports):
            self.assertEqual(sorted(set(names)), sorted(names))

    def test_headers_and_version_script_agree(self):
        declared = set(self.functions + self.data)
        self.assertEqual(sorted(declared - set(self.exports)), [], "declared, not exported")
        self.assertEqual(sorted(set(self.exports) - declared), [], "exported, not declared")

    def test_version_script_and_library_agree(self):
        self.assertEqual(sorted(set(self.exports) - set(self.binary)), [], "listed, not in the library")
        self.assertEqual(sorted(set(self.binary) - set(self.exports)), [], "in the library, not listed")

    def test_functions_are_code_and_data_are_data(self):
        for name in self.functions:
            self.assertEqual(self.binary[name][0], "T", name)
        for name in self.data:
            self.assertIn(self.binary[name][0], "BDR", name)

    def test_data_have_the_declared_sizes(self):
        with tempfile.TemporaryDirectory() as folder:
            source, compiled = Path(folder) / "sizes.c", Path(folder) / "sizes.o"
            source.write_text("#include <kelvo.h>\n" + "".join(
                f"char declared_{name}[sizeof({name})];\n" for name in self.data))
            result = project.run(project.setting("c_compiler"), "-std=c11", "-fno-common", "-c",
                                 source, "-o", compiled, "-I", project.SOURCE / "include")
            self.assertEqual(result.returncode, 0, result.stdout)
            declared = symbols(compiled)
        for name in self.data:
            self.assertEqual(self.binary[name][2], declared[f"declared_{name}"][2], name)

    def test_step_rates_lie_one_after_the_other(self):
        self.assertTrue(set(STEP_RATES) <= set(self.data))
        for before, after in zip(STEP_RATES, STEP_RATES[1:]):
            _, value, size = self.binary[before]
            self.assertEqual(value + size, self.binary[after][1], f"{before}, {after}")

    def test_calls_between_exported_functions_stay_inside(self):
        self.assertIn("stop", self.functions)
        outside = set(relocated(self.library)) & set(self.functions)
        self.assertEqual(sorted(outside), [], "an application's own function would be called")

    def test_exported_data_bind_normally(self):
        used = set(relocated(*self.objects)) & set(self.data)
        self.assertIn("fd", used)
        bound = set(relocated(self.library))
        self.assertEqual(sorted(used - bound), [], "the library would not see an application's own")


class Reading(unittest.TestCase):
    """The checks above see only what these functions read."""

    def test_declarations(self):
        functions, data = declarations("""
            #ifdef __cplusplus
            extern "C" {
            #endif
            /* int in_a_comment(void); */
            typedef struct { int32_t member; } row;  // int in_another(void);
            struct tag { int32_t member; };
            extern const uint8_t table[3][4];
            extern int32_t number;
            int32_t first(void);
            const uint8_t *second(uint8_t code, const uint8_t *more,
                                  int32_t length);
            #ifdef __cplusplus
            }
            #endif
        """)
        self.assertEqual(functions, ["first", "second"])
        self.assertEqual(data, ["table", "number"])

    def test_an_unknown_declaration_is_refused(self):
        for text in ("int32_t number;", "extern int32_t f(void);", "static int g(void) { return 0; }"):
            with self.assertRaises(ValueError):
                declarations(text + ";")

    def test_exports(self):
        self.assertEqual(exports("# list\n{ global: a; # b;\n c;\n local: *; };"), ["a", "c"])
        for text in ("{ global: a; };", "{ global: a local: *; };", "V1 { global: a; local: *; };"):
            with self.assertRaises(ValueError):
                exports(text)

    def test_a_failing_tool_is_no_empty_answer(self):
        with self.assertRaises(RuntimeError):
            symbols("-D", "no such library")
        with self.assertRaises(RuntimeError):
            relocated("no such library")


if __name__ == "__main__":
    project.main()
