#!/usr/bin/env python3
"""What the library needs at run time: libc, and nothing that runs before main."""

import re
import unittest

import project

# Every linked library runs crtbegin's frame_dummy, and names this symbol weakly.
COMPILER_INITIALISERS = 1
COMPILER_SYMBOLS = {"__cxa_finalize"}

CXX_RUN_TIME = re.compile(r"__cxa_|__gxx_|_Unwind|__dynamic_cast|_Zn[wa]|_Zd[la]|_ZS|_ZNS|_ZNKS|_ZTV")


def undefined(*nm_arguments):
    """The undefined symbols' names, without their versions."""
    lines = project.output_of(project.setting("nm"), "--undefined-only", "--format=posix",
                              *nm_arguments).splitlines()
    return {line.split()[0].split("@")[0] for line in lines if line.strip() and not line.rstrip().endswith(":")}


class Needs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.library = project.setting("library")
        cls.objects = project.settings("objects")
        text = project.output_of(project.setting("readelf"), "-dW", cls.library)
        cls.dynamic = re.findall(r"^\s*0x[0-9a-f]+\s+\((\w+)\)\s+(.*?)\s*$", text, flags=re.M)

    def entries(self, tag):
        return [value for name, value in self.dynamic if name == tag]

    def names(self, tag):
        return [re.search(r"\[(.*)\]", value)[1] for value in self.entries(tag)]

    def test_soname(self):
        self.assertEqual(self.names("SONAME"), ["libkelvo.so"])

    def test_libc_alone(self):
        needed = self.names("NEEDED")
        if project.setting("processor") == "x86_64":
            # The fused multiply-add is an instruction on the target, and a call into libm here.
            needed = [name for name in needed if name != "libm.so.6"]
        self.assertEqual(needed, ["libc.so.6"])

    def test_no_search_path_and_no_written_code(self):
        for tag in ("RPATH", "RUNPATH", "TEXTREL"):
            self.assertEqual(self.entries(tag), [], tag)
        self.assertFalse(any("TEXTREL" in flags for flags in self.entries("FLAGS")))

    def test_no_static_constructor(self):
        sections = project.output_of(project.setting("readelf"), "-SW", *self.objects)
        self.assertIn(".text", sections)
        self.assertEqual(re.findall(r"\.(?:init_array|ctors|preinit_array)\S*", sections), [])
        size = re.match(r"(\d+)", "".join(self.entries("INIT_ARRAYSZ")))
        self.assertEqual(int(size[1]) // int(project.setting("pointer_size")),
                         COMPILER_INITIALISERS)

    def test_no_run_time_library_of_cxx(self):
        for names in (undefined(*self.objects), undefined("-D", self.library) - COMPILER_SYMBOLS):
            self.assertIn("ioctl", names)
            self.assertEqual(sorted(filter(CXX_RUN_TIME.match, names)), [])

    def test_what_belongs_to_the_run_time_library(self):
        for name in ("__cxa_guard_acquire", "__cxa_throw", "_Unwind_Resume", "_Znwm", "_ZdlPvm",
                     "_ZSt4cout", "_ZNSolsEi", "_ZTVN10__cxxabiv117__class_type_infoE"):
            self.assertTrue(CXX_RUN_TIME.match(name), name)
        for name in ("ioctl", "_ZN5kelvo3bus7BusLockC1Ev", "__stack_chk_fail"):
            self.assertFalse(CXX_RUN_TIME.match(name), name)


if __name__ == "__main__":
    project.main()
