"""What the checks of the project itself share: where things are, and running a program."""

import os
import subprocess
import sys
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
SOURCE_SUFFIXES = {".h", ".c", ".cpp", ".S", ".inc"}
GENERATED = {"build", ".git"}


def settings(name):
    """What CMakeLists.txt says about this build, as a list; nothing is no reason to skip."""
    lines = Path(os.environ["KELVO_SETTINGS"]).read_text().splitlines()
    values = dict(line.split("=", 1) for line in lines)[name]
    if not values:
        raise RuntimeError(f"{name} is empty in {os.environ['KELVO_SETTINGS']}")
    return values.split(";")


def setting(name):
    """A setting of one value."""
    (value,) = settings(name)
    return value


def run(*command, **options):
    """Runs a program to its end, whatever it returns."""
    return subprocess.run([str(part) for part in command], text=True, errors="replace",
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          check=False, **options)


def output_of(*command):
    """The output of a program that must succeed and say something."""
    result = run(*command)
    if result.returncode != 0 or not result.stdout.strip():
        raise RuntimeError(f"{' '.join(map(str, command))}: exit code {result.returncode}, "
                           f"output {result.stdout!r}")
    return result.stdout


def source_files(suffixes=frozenset(SOURCE_SUFFIXES)):
    """The project's own files, relative to its root."""
    files = []
    for folder in sorted(SOURCE.iterdir()):
        if folder.is_dir() and folder.name not in GENERATED:
            files += [path.relative_to(SOURCE) for path in sorted(folder.rglob("*"))
                      if path.suffix in suffixes and path.is_file()]
    if not files:
        raise RuntimeError(f"no source files below {SOURCE}")
    return files


def main():
    """unittest.main, but nothing run, or anything skipped, is a failure."""
    program = unittest.main(module="__main__", exit=False)
    result = program.result
    if result.testsRun == 0 or result.skipped:
        print(f"{result.testsRun} run, {len(result.skipped)} skipped: counted as a failure")
        sys.exit(1)
    sys.exit(0 if result.wasSuccessful() else 1)
