#!/usr/bin/env python3
"""Which room may include which: every include of the project against one table."""

import re
import unittest

import project

INTERFACE = ("include", "wire")  # what every room of the library reads
MODELS = ("sim/common", "sim/head", "sim/judge", "sim/lens", "wire")  # what knows the simulated devices

# Room: the rooms that it may include, besides itself. A new room needs a row of its own.
ROOMS = {
    "include":           (),
    "wire":              (),
    "bus":               INTERFACE,
    "lens/variant":      INTERFACE + ("bus",),
    "lens/motors":       INTERFACE + ("lens/variant", "bus"),
    "lens/images":       ("wire",),
    "lens/boot":         INTERFACE + ("lens/variant", "lens/motors", "ois/calibration",
                                      "pantilt/link", "bus"),
    "ois/calibration":   INTERFACE + ("lens/variant", "bus"),
    "ois/quality_check": INTERFACE + ("lens/boot", "lens/variant", "ois/calibration", "bus"),
    "ois/stabiliser":    INTERFACE + ("lens/variant", "bus"),
    "pantilt/link":      INTERFACE,
    "pantilt/controller": INTERFACE + ("pantilt/link",),
    "pantilt/motion":    INTERFACE + ("pantilt/controller", "pantilt/link"),
    "sim/seam":          ("wire",),
    "sim/common":        ("wire",),
    "sim/lens":          ("sim/common", "wire"),
    "sim/head":          ("sim/common", "wire"),
    "sim/fault":         ("wire",),
    "sim/judge":         ("sim/common", "wire"),
    "sim/camera":        MODELS,
    "sim/report":        MODELS + ("sim/camera",),
    "sim/trace":         ("wire",),
    "sim/state":         MODELS + ("sim/camera", "sim/fault", "sim/trace"),
    "sim/wrapper":       MODELS + ("sim/camera", "sim/fault", "sim/report", "sim/seam", "sim/state",
                                   "sim/trace"),
    "sim/testing":       MODELS + ("sim/camera", "sim/fault", "sim/report", "sim/seam", "sim/state", "sim/trace",
                                   "sim/wrapper"),
    "tools/common":      ("sim/report",),
    "tools/launch":      ("tools/common", "sim/fault", "sim/state", "sim/wrapper"),
    "tools/kelvo-sim":   MODELS + ("tools/common", "tools/launch", "sim/camera", "sim/fault", "sim/report",
                                   "sim/state", "sim/trace", "sim/wrapper"),
    "tools/kelvoctl/common":  INTERFACE + ("tools/common",),
    "tools/kelvoctl/lens":    INTERFACE + ("tools/kelvoctl/common",),
    "tools/kelvoctl/records": INTERFACE + ("tools/kelvoctl/lens", "tools/kelvoctl/common", "tools/common"),
    "tools/kelvoctl/head":    INTERFACE + ("tools/kelvoctl/common",),
    "tools/kelvoctl/prompt":  ("tools/kelvoctl/common", "tools/common"),
    "tools/kelvoctl":    INTERFACE + ("tools/kelvoctl/common", "tools/kelvoctl/lens", "tools/kelvoctl/head",
                                      "tools/kelvoctl/records", "tools/kelvoctl/prompt",
                                      "tools/launch", "sim/state", "sim/wrapper"),
    "benchmarks":        INTERFACE + ("sim/seam", "sim/state", "sim/wrapper"),
    "examples":          ("include",),
}
UNRESTRICTED = ("tests",)
LIBRARY = ("wire", "bus", "lens", "ois", "pantilt")

# The C++ headers that the library uses: none of them needs the C++ run-time library.
LIBRARY_HEADERS = set("""
    algorithm array bit cmath compare concepts cstdarg cstddef cstdint cstdio cstdlib cstring initializer_list
    iterator limits numeric optional ranges ratio span tuple type_traits utility
""".split())

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:([<"])([^>"]+)[>"]|(.*))')


def includes(text):
    """(line number, bracket, name) of each include; a computed one has no bracket."""
    for number, line in enumerate(text.splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match[1], match[2] or match[3]


def room_of(path):
    """The room that a file stands in, or None."""
    path = str(path)
    for room in sorted([*ROOMS, *UNRESTRICTED], key=len, reverse=True):
        if path.startswith(room + "/"):
            return room
    return None


def resolve(name, includer, files):
    """The project's file that an include names, or None for one of the system."""
    folder = str(includer).rpartition("/")[0]
    for candidate in (f"{folder}/{name}", name, f"include/{name}", f"tests/{name}"):
        if candidate in files:
            return candidate
    return None


def violations(sources):
    """What is wrong with {path: text}, each as one line."""
    for path, text in sources.items():
        room = room_of(path)
        if room is None:
            yield f"{path}: stands in no room of the table"
            continue
        for number, bracket, name in includes(text):
            where = f"{path}:{number}"
            if bracket is None:
                yield f"{where}: an include must name its file: {name}"
                continue
            target = resolve(name, path, sources)
            if target is None:
                if bracket == '"':
                    yield f"{where}: {name} is no file of the project"
                elif (path.split("/")[0] in LIBRARY and "." not in name
                      and name not in LIBRARY_HEADERS):
                    yield f"{where}: <{name}> is not among the headers that the library may use"
                continue
            other = room_of(target)
            if room in UNRESTRICTED or other == room:
                continue
            if other not in ROOMS[room]:
                yield f"{where}: {room} may not include {other} ({name})"
            elif room == "examples" and (bracket, name) != ("<", "kelvo.h"):
                yield f"{where}: an example includes <kelvo.h>, as an integrator does"


class Rooms(unittest.TestCase):
    def setUp(self):
        self.sources = {str(path): (project.SOURCE / path).read_text()
                        for path in project.source_files()}

    def test_every_include_is_an_edge_of_the_table(self):
        found = list(violations(self.sources))
        self.assertEqual(found, [], "\n" + "\n".join(found))

    def test_includes_are_found(self):
        for room in ("include", "wire", "bus", "lens/boot", "sim/seam", "tests"):
            count = sum(len(list(includes(text))) for path, text in self.sources.items()
                        if room_of(path) == room)
            self.assertGreater(count, 0, f"no include found in {room}")

    def test_nothing_reaches_up(self):
        done = set(UNRESTRICTED)
        waiting = dict(ROOMS)
        while waiting:
            ready = [room for room, below in waiting.items() if done.issuperset(below)]
            self.assertTrue(ready, f"the table has a circle among {sorted(waiting)}")
            done.update(ready)
            for room in ready:
                del waiting[room]

    def check_caught(self, path, line, message):
        made_up = dict(self.sources)
        made_up[path] = "\n" + line + "\n"
        self.assertIn(f"{path}:2: {message}", list(violations(made_up)))

    def test_an_include_from_above_is_caught(self):
        self.check_caught("bus/made_up.cpp", '#include "lens/variant/variant.h"',
                          "bus may not include lens/variant (lens/variant/variant.h)")

    def test_a_simulator_that_reads_the_library_is_caught(self):
        self.check_caught("sim/camera/made_up.h", '#  include "kelvo/bus.h"',
                          "sim/camera may not include include (kelvo/bus.h)")

    def test_a_library_that_reads_the_simulator_is_caught(self):
        self.check_caught("lens/boot/made_up.cpp", '#include "sim/seam/host.h"',
                          "lens/boot may not include sim/seam (sim/seam/host.h)")

    def test_a_way_around_by_a_relative_name_is_caught(self):
        self.check_caught("bus/made_up.cpp", '#include "../lens/variant/variant.h"',
                          "../lens/variant/variant.h is no file of the project")

    def test_an_example_with_inside_knowledge_is_caught(self):
        self.check_caught("examples/made_up.c", '#include "kelvo.h"',
                          "an example includes <kelvo.h>, as an integrator does")
        self.check_caught("examples/made_up.c", '#include "wire/paths.h"',
                          "examples may not include wire (wire/paths.h)")

    def test_a_header_of_the_run_time_library_is_caught(self):
        self.check_caught("bus/made_up.cpp", "#include <iostream>",
                          "<iostream> is not among the headers that the library may use")

    def test_a_computed_include_is_caught(self):
        self.check_caught("bus/made_up.cpp", "#include HEADER",
                          "an include must name its file: HEADER")

    def test_a_file_in_no_room_is_caught(self):
        self.assertIn("cellar/made_up.cpp: stands in no room of the table",
                      list(violations({"cellar/made_up.cpp": ""})))


if __name__ == "__main__":
    project.main()
