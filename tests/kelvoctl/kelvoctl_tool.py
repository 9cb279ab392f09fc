"""What the tests of kelvoctl share: calling it on simulated cameras, and typing at it on a terminal."""

import json
import os
import pty
import re
import select
import signal
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

import project

EMULATED = project.setting("emulated") == "yes"
LEAKS_OF_LIBEDIT = Path(__file__).parent / "leaks_of_libedit.supp"
PATIENCE = 60  # seconds, for what must come at once


def environment(variables=None):
    """That of this process without what belongs to kelvoctl, and then `variables`."""
    own = ("KELVO_", "KELVOCTL_", "XDG_STATE_HOME")
    kept = {name: value for name, value in os.environ.items() if not name.startswith(own)}
    kept["ASAN_OPTIONS"] = ":".join(filter(None, [kept.get("ASAN_OPTIONS"), "verify_asan_link_order=0"]))
    return {**kept, **(variables or {})}


def call(*arguments, variables=None, **options):
    """Runs kelvoctl to its end, on no camera unless the arguments or variables name one."""
    options.setdefault("stdin", subprocess.DEVNULL)
    options.setdefault("stdout", subprocess.PIPE)
    options.setdefault("timeout", 100)
    return subprocess.run([*filter(None, project.settings("tool")), *map(str, arguments)], text=True,
                          stderr=subprocess.PIPE, env=environment(variables), check=False, **options)


def call_sim(*arguments):
    """Runs kelvo-sim to its end."""
    variables = environment()
    if "--" in arguments:  # programs that are not the project's own, and leak what they like
        variables["ASAN_OPTIONS"] += ":detect_leaks=0"
    return subprocess.run([*filter(None, project.settings("sim_tool")), *map(str, arguments)], text=True,
                          capture_output=True, stdin=subprocess.DEVNULL, env=variables, check=False, timeout=100)


class KelvoctlTest(unittest.TestCase):
    """A folder of its own, and a camera of its own that goes away with the test."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.camera = f"{type(self).__name__}-{os.getpid()}"[-32:]
        self.remove_camera()
        self.addCleanup(self.remove_camera)

    def remove_camera(self):
        call_sim("remove", "--in-use", self.camera)

    def on_camera(self, lens="df033", settings="clock=sleep", variables=None):
        """Arguments and variables by which kelvoctl runs on this test's camera.

        Under the user-mode emulator no program starts another, so there the library is preloaded from outside.
        """
        chosen = dict(variables or {})
        chosen["KELVO_SIM"] = f"name={self.camera} report=none {settings}"
        if EMULATED:
            chosen["QEMU_SET_ENV"] = f"LD_PRELOAD={project.setting('sim_library')}"
            return ["--lens", lens], chosen
        return ["--lens", lens, f"--sim={self.camera}"], chosen

    def ctl(self, *arguments, lens="df033", settings="clock=sleep", variables=None, **options):
        """Runs a command on this test's camera."""
        before, chosen = self.on_camera(lens, settings, variables)
        return call(*before, *arguments, variables=chosen, **options)

    def check(self, result, code=0, output=None, errors=""):
        """The exit code, and what stands on both streams; None is anything."""
        self.assertEqual(result.returncode, code, f"{result.stdout}\n{result.stderr}")
        if output is not None:
            self.assertEqual(result.stdout, output)
        if errors is not None:
            self.assertEqual(result.stderr, errors)
        return result

    def check_fails(self, code, line, *arguments, **options):
        """Nothing but one line on standard error."""
        return self.check(self.ctl(*arguments, **options), code, "", f"kelvoctl: {line}\n")

    def result(self, *arguments, code=0, **options):
        """What a command prints with --json."""
        result = self.ctl("--json", *arguments, **options)
        self.assertEqual(result.returncode, code, f"{result.stdout}\n{result.stderr}")
        value = json.loads(result.stdout)
        self.assertEqual(value["schema"], 1)
        return value

    def boot(self, lens="df033", **options):
        self.check(self.ctl("boot", "-y", lens=lens, **options), 0, None)

    def violations(self):
        """What this test's camera holds against its users."""
        return json.loads(call_sim("violations", self.camera, "--json").stdout)["listed"]

    def script(self, *lines, name="script"):
        path = self.folder / name
        path.write_text("".join(line + "\n" for line in lines))
        return path

    def terminal(self, *arguments, lens="df033", settings="clock=sleep", variables=None):
        """The same command on a real terminal."""
        before, chosen = self.on_camera(lens, settings, {"TERM": "xterm", **(variables or {})})
        everything = environment(chosen)
        everything["ASAN_OPTIONS"] += ":fast_unwind_on_malloc=0"  # to see whose a leak is
        everything["LSAN_OPTIONS"] = f"suppressions={LEAKS_OF_LIBEDIT}:print_suppressions=0"
        terminal = Terminal([*before, *arguments], everything, self.folder)
        self.addCleanup(terminal.end)
        return terminal


class Terminal:
    """kelvoctl with a terminal for its three streams, and somebody who types."""

    def __init__(self, arguments, variables, folder):
        command = [*filter(None, project.settings("tool")), *map(str, arguments)]
        self.seen = ""
        self.read = 0  # what has been waited for already
        self.process, self.master = pty.fork()
        if self.process == 0:
            os.chdir(folder)
            os.execvpe(command[0], command, variables)
        self.code = None

    def expect(self, pattern):
        """Waits until the pattern appears behind what was waited for before."""
        deadline = time.monotonic() + PATIENCE
        while True:
            match = re.compile(pattern).search(self.seen, self.read)
            if match:
                self.read = match.end()
                return match
            if time.monotonic() > deadline or not self.take(deadline):
                raise AssertionError(f"no {pattern!r} in {self.seen[self.read:]!r}")

    def take(self, deadline):
        """Takes what is shown; False when the program has ended."""
        ready, _, _ = select.select([self.master], [], [], max(0, deadline - time.monotonic()))
        if not ready:
            return False
        try:
            text = os.read(self.master, 65536)
        except OSError:  # as Linux says that nobody has the terminal open any more
            return False
        self.seen += text.decode(errors="replace")
        return bool(text)

    def type(self, text):
        os.write(self.master, text.encode())

    def interrupt(self):
        self.type("\x03")

    def wait(self):
        """Waits for the end; the exit code."""
        deadline = time.monotonic() + PATIENCE
        while self.take(deadline):
            pass
        while self.code is None and time.monotonic() < deadline:
            done, status = os.waitpid(self.process, os.WNOHANG)
            if done:
                self.code = os.waitstatus_to_exitcode(status)
            else:
                time.sleep(0.01)
        if self.code is None:
            raise AssertionError(f"does not end: {self.seen[self.read:]!r}")
        return self.code

    def end(self):
        if self.code is None:
            os.kill(self.process, signal.SIGKILL)
            _, status = os.waitpid(self.process, 0)
            self.code = os.waitstatus_to_exitcode(status)
        os.close(self.master)
