#!/usr/bin/env python3
"""What `kelvo-sim run` refuses before it starts anything, because the camera would not be reached."""

import os
import shutil
import stat
import struct
import sys
from pathlib import Path

import project
import tool

OTHER_MACHINES = {183: "aarch64", 62: "x86-64"}
EXECUTABLE = stat.S_IRWXU
# Of a program that may bind low ports: version, permitted and inheritable capabilities.
LOW_PORTS = struct.pack("<5I", 0x0200_0001, 1 << 10, 0, 0, 0)


def library():
    return Path(project.setting("library"))


def own_machine():
    return struct.unpack("<H", library().read_bytes()[18:20])[0]


def another_machine():
    (other,) = set(OTHER_MACHINES) - {own_machine()}
    return other


def elf_header(machine, kind=2, order="<", width=2):
    ident = b"\x7fELF" + bytes([width, 1 if order == "<" else 2, 1]) + bytes(9)
    return ident + struct.pack(order + "HHIQQQIHHHHHH", kind, machine, 1, 0, 64, 0, 0, 64, 56, 0, 64, 0, 0)


class Refusals(tool.ToolTest):
    def check_program(self, code, program, line, **options):
        self.check_refused(code, f"kelvo-sim run: {line}", "run", "--", program, **options)

    def compile(self, name, *flags):
        source = self.file("program.c", "int main(void) { return 0; }\n")
        program = self.folder / name
        project.run(project.setting("c_compiler"), source, "-o", program, *flags).check_returncode()
        return program

    def test_a_program_that_is_not_in_path(self):
        self.check_program(127, "no-such-program",
                           "no-such-program: there is no such program in PATH: name it with its folder")

    def test_a_file_that_is_not_there(self):
        for path in (self.folder / "none", self.file("file", "") / "below"):
            self.check_program(127, path, f"{path}: there is no such program: check its name")

    def test_a_folder(self):
        self.check_program(126, self.folder, f"{self.folder}: Is a directory: name a file that you may execute")

    def test_a_file_that_is_not_executable(self):
        path = self.file("program", "#!/bin/sh\n", stat.S_IRUSR | stat.S_IWUSR)
        line = f"{path}: Permission denied: name a file that you may execute"
        self.check_program(126, path, line)
        self.check_program(126, "program", line, variables={"PATH": str(self.folder)})

    def test_a_file_that_is_no_program(self):
        for content in ("echo no\n", ""):
            path = self.file("text", content)
            self.check_program(126, path, f"{path}: is no program or script that can be read: begin a script with #!")

    def test_a_script_without_its_interpreter(self):
        path = self.file("script", "#!/no/such/shell -e\n")
        self.check_program(126, path, f'{path}: its interpreter "/no/such/shell" cannot be executed '
                                      "(No such file or directory): correct its first line")
        path = self.file("script", "#!\n")
        self.check_program(126, path, f'{path}: its interpreter "" cannot be executed '
                                      "(No such file or directory): correct its first line")

    def test_scripts_in_a_circle(self):
        path = self.folder / "script"
        self.file("script", f"#!{path}\n")
        self.check_program(126, path, f"{path}: too many scripts interpret each other: name the program itself")

    def test_a_static_program(self):
        for flag in ("-static", "-static-pie"):
            path = self.compile("static", flag)
            line = f"{path}: is linked statically, and takes no preload library: link it dynamically"
            self.check_program(125, path, line)
            script = self.file("script", f"#! {path}\n")
            self.check_program(125, script, line)

    def test_a_program_that_changes_its_user_or_group(self):
        path = self.compile("program")
        for bit in (stat.S_ISUID, stat.S_ISGID):
            path.chmod(EXECUTABLE | bit)
            self.check_program(125, path, f"{path}: changes its user or group when it starts (set-user-id or "
                                          "set-group-id), and takes no preload library: run a copy without that")

    def test_a_program_with_capabilities(self):
        path = self.compile("program")
        try:
            os.setxattr(path, "security.capability", LOW_PORTS)
        except PermissionError:  # for those who are not root: by a root of their own
            setting = f'import os; os.setxattr("{path}", "security.capability", {LOW_PORTS})'
            project.run("unshare", "--map-root-user", sys.executable, "-c", setting).check_returncode()
        self.check_program(125, path, f"{path}: has capabilities of its own, and takes no preload library: "
                                      "run a copy without them")

    def test_a_program_for_another_machine(self):
        own = OTHER_MACHINES[own_machine()]
        for header, name in ((elf_header(another_machine()), OTHER_MACHINES[another_machine()]),
                             (elf_header(8, order=">"), "mips"), (elf_header(3, width=1), "i386"),
                             (elf_header(4711), "machine 4711")):
            path = self.file("program", header)
            self.check_program(125, path, f"{path}: is a program for {name}, the simulated camera is for {own}: "
                                          "build it for that")


class Libraries(tool.ToolTest):
    def check_library(self, library_path, line):
        self.check_refused(124, f"kelvo-sim run: {line}", "run", "--", "true",
                           variables={"KELVO_SIM_LIBRARY": str(library_path)})

    def tool_in(self, folder):
        """A copy of the tool there."""
        path = self.folder / folder
        path.mkdir(parents=True)
        return Path(shutil.copy(project.settings("tool")[-1], path))

    def test_that_is_not_there(self):
        path = self.folder / "none.so"
        self.check_library(path, f"{path}: there is no such preload library: correct KELVO_SIM_LIBRARY")

    def test_that_is_none(self):
        path = self.file("library.so", "text")
        self.check_library(path, f"{path}: is no shared library that can be read: build or install it anew")
        path = self.file("library.so", elf_header(own_machine(), kind=1))
        self.check_library(path, f"{path}: is no shared library that can be read: build or install it anew")

    def test_that_is_another(self):
        path = self.file("library.so", elf_header(own_machine(), kind=3))
        self.check_library(path, f"{path}: is another library than libkelvo-sim.so: correct KELVO_SIM_LIBRARY")

    def test_for_another_machine(self):
        path = self.file("library.so", elf_header(another_machine(), kind=3))
        self.check_library(path, f"{path}: is a library for {OTHER_MACHINES[another_machine()]}, this machine's are "
                                 f"for {OTHER_MACHINES[own_machine()]}: name another one in KELVO_SIM_LIBRARY")

    def test_whose_path_the_loader_would_cut(self):
        for name in ("a b.so", "a:b.so"):
            path = self.file(name, library().read_bytes())
            self.check_library(path, f"{path}: the loader takes no path with blanks or colons: put the library "
                                     "elsewhere and name it in KELVO_SIM_LIBRARY")

    def test_beside_the_tool_as_installed(self):
        copy = self.tool_in("bin")
        place = self.folder / "lib/kelvo"
        command = [copy, "run", "--", "sh", "-c", "echo $LD_PRELOAD"]
        result = project.run(*command)
        self.assertEqual((result.returncode, result.stdout),
                         (124, f"kelvo-sim run: {place}/libkelvo-sim.so: there is no preload library: install it "
                               "there, or name it in KELVO_SIM_LIBRARY\n"))
        place.mkdir(parents=True)
        shutil.copy(library(), place)
        result = project.run(*command, env={**os.environ, "ASAN_OPTIONS": tool.SANITIZER})
        self.assertEqual((result.returncode, result.stdout), (0, f"{place}/libkelvo-sim.so\n"))


if __name__ == "__main__":
    project.main()
