"""What the tests of kelvo-sim share: calling it, and cameras and files that go away again."""

import os
import stat
import subprocess
import tempfile
import unittest
from pathlib import Path

import project

SANITIZER = ":".join([os.environ.get("ASAN_OPTIONS", ""), "verify_asan_link_order=0", "detect_leaks=0"])


def call(*arguments, variables=None, **options):
    """Runs kelvo-sim to its end. Its own variables come from `variables` alone."""
    environment = {name: value for name, value in os.environ.items() if not name.startswith("KELVO_SIM")}
    # Programs that are not the project's own do not care for the sanitizer that a preload library brings.
    if "--" in arguments:
        environment["ASAN_OPTIONS"] = SANITIZER
    environment.update(variables or {})
    options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", subprocess.PIPE)
    return subprocess.run([*filter(None, project.settings("tool")), *map(str, arguments)], text=True,
                          stderr=subprocess.PIPE, env=environment, check=False, **options)


class ToolTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def check(self, result, code, output=None, errors=None):
        self.assertEqual(result.returncode, code, f"{result.stdout}\n{result.stderr}")
        if output is not None:
            self.assertEqual(result.stdout, output)
        if errors is not None:
            self.assertEqual(result.stderr, errors)
        return result

    def check_refused(self, code, line, *arguments, **options):
        """Nothing but one line on standard error."""
        result = self.check(call(*arguments, **options), code, "")
        self.assertEqual(result.stderr, line + "\n")

    def file(self, name, content, mode=stat.S_IRWXU):
        path = self.folder / name
        if isinstance(content, bytes):
            path.write_bytes(content)
        else:
            path.write_text(content)
        path.chmod(mode)
        return path

    def camera(self):
        """A name that no other test has; the camera goes away with the test."""
        name = f"{type(self).__name__}-{os.getpid()}"[:32]
        call("remove", "--in-use", name)
        self.addCleanup(call, "remove", "--in-use", name)
        return name
