#!/usr/bin/env python3
"""kelvoctl while another process holds the bus lock: it waits where it can be seen, and not for ever."""

import os
import signal
import subprocess
import time

import kelvoctl_tool
import project

# What takes the lock, by module, and what does without it.
SENDING = {
    "de015": ("zoom1 move 10", "zoom2 move 10 --micro", "focus home", "zoom1 count 0", "focus off", "iris open 5",
              "iris close 5", "iris stop", "iris set 5", "filter on --steps 5", "filter off --steps 5", "heater 1",
              "pi power on", "pi calibrate", "pi verify on", "pi read", "adc 0", "ois on", "ois off", "ois pause",
              "ois resume", "ois gain 1", "ois range 1", "ois mode normal", "ois coma 1", "ois stationary on",
              "ois stability 1", "calibrate stabiliser -y", "boot -y"),
    "df033": ("zoom3 move -10", "focus move 10 --wait", "focus home", "filter on", "pt5111 init", "pt5111 stop",
              "pt5111 send 1", "pi power on --pt5111", "raw send 34 0 0 0 5", "frame 34 0 0 0 5", "calibrate iris -y",
              "boot -y"),
    "t5391": ("zoom1 move -10 --two-phase", "filter off", "focus off", "boot -y"),
}
ASKING = {
    "de015": ("status", "attach", "zoom1 count", "pi offset", "ois gain", "ois read", "raw query 0x86",
              "head version", "pan position"),
    "df033": ("status", "pi read", "attach", "focus count", "frame 0x86 0 0 0 0", "tilt limits show",
              "i2c read pan 4 2"),
    "t5391": ("status", "pi read"),
}


class Holding(kelvoctl_tool.KelvoctlTest):
    def hold(self, *arguments):
        """A process that has taken the bus lock of this test's camera."""
        preload = f"LD_PRELOAD={project.setting('sim_library')}"
        name, value = ("QEMU_SET_ENV", preload) if kelvoctl_tool.EMULATED else preload.split("=")
        variables = {**self.on_camera(settings="")[1], name: value}
        process = subprocess.Popen([*filter(None, project.settings("lock_holder")), *arguments], text=True,
                                   stdout=subprocess.PIPE, env=kelvoctl_tool.environment(variables))
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.assertEqual(process.stdout.readline(), "holds the bus lock\n")
        return process

    def held_by(self, process):
        return f"the bus lock is not free in time: process {process.pid} holds it: see kelvoctl doctor"


class BusLock(Holding):
    def check_refused(self, process, command, **options):
        name = command.split(" -")[0]
        result = self.ctl("--patience", "60ms", *command.split(), settings="", timeout=60, **options)
        self.assertEqual((result.returncode, result.stdout), (5, ""), f"{name}\n{result.stderr}")
        self.assertIn(self.held_by(process), result.stderr)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        return result.stderr

    def test_what_takes_the_lock_fails_in_time(self):
        for lens, commands in SENDING.items():
            self.remove_camera()
            self.boot(lens)
            holder = self.hold()
            for command in commands:
                with self.subTest(lens=lens, command=command):
                    self.check_refused(holder, command, lens=lens)
            self.assertEqual(self.violations(), [])
            holder.kill()
            holder.wait()

    def test_what_asks_questions_goes_on(self):
        for lens, commands in ASKING.items():
            self.remove_camera()
            self.boot(lens)
            holder = self.hold()
            for command in commands:
                with self.subTest(lens=lens, command=command):
                    self.check(self.ctl(*command.split(), lens=lens, settings="", timeout=20), 0, None)
            holder.kill()
            holder.wait()

    def test_the_line_that_ends_it(self):
        self.boot()
        holder = self.hold()
        self.assertEqual(self.check_refused(holder, "heater 1"), f"kelvoctl: heater: {self.held_by(holder)}\n")

    def test_a_lock_that_nobody_has_made_yet(self):
        """The first call of all makes it."""
        self.check_fails(4, "heater: no program answers: boot the controller", "heater", 1)
        self.boot()

    def test_a_lock_that_becomes_free(self):
        self.boot()
        holder = self.hold()
        command = [*filter(None, project.settings("tool")), *self.on_camera(settings="")[0], "focus", "move", "10"]
        with subprocess.Popen(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              env=kelvoctl_tool.environment(self.on_camera(settings="")[1])) as process:
            time.sleep(1.5)
            self.assertIsNone(process.poll())
            holder.kill()
            output, errors = process.communicate(timeout=60)
        self.assertEqual((process.returncode, errors), (0, ""))  # no progress without a terminal
        self.assertIn("steps         10\n", output)
        self.assertEqual(self.violations(), [])

    def test_the_time_out_of_a_command_is_kept(self):
        self.boot()
        holder = self.hold()
        for command in (["focus", "move", 10, "--wait"], ["focus", "home"], ["calibrate", "iris", "-y"]):
            begun = time.monotonic()
            result = self.ctl(*command, "--timeout", "300ms", settings="")
            self.assertEqual(result.returncode, 5, result.stderr)
            self.assertIn(self.held_by(holder), result.stderr)
            self.assertTrue(0.3 <= time.monotonic() - begun < 10)  # its patience otherwise

    def test_patience_ends_after_ten_seconds(self):
        self.boot()
        holder = self.hold()
        begun = time.monotonic()
        self.check_fails(5, f"heater: {self.held_by(holder)}", "heater", 1, settings="")
        self.assertTrue(10 <= time.monotonic() - begun < 30)

    def test_each_line_of_a_shell_is_patient_anew(self):
        self.boot()
        holder = self.hold()
        path = self.script("heater 1 --patience 300ms", "heater 1 --patience 300ms")
        begun = time.monotonic()
        with path.open() as lines:
            result = self.ctl("shell", stdin=lines, settings="")
        self.check(result, 0, "", 2 * f"kelvoctl: heater: {self.held_by(holder)}\n")
        self.assertGreaterEqual(time.monotonic() - begun, 0.6)

    def test_patience_is_a_time(self):
        self.check_fails(2, 'heater: --patience: "5" is no time up to a day: write 2s, 250ms or 40us: see kelvoctl '
                            "heater --help", "--patience", 5, "heater", 1)

    def test_a_holder_that_has_ended(self):
        self.boot()
        holder = self.hold("and leaves it")
        holder.wait()
        self.check_fails(5, f"heater: the bus lock is not free in time: process {holder.pid} has ended without giving "
                            "it back: see kelvoctl doctor", "--patience", "50ms", "heater", 1, settings="")
        result = self.check(self.ctl("doctor", settings=""), 4, None, None)
        found = f"process {holder.pid} used it last and has ended: remove it with ipcrm -s "
        self.assertRegex(result.stderr, f"^kelvoctl: doctor: bus lock: held, and not given back; {found}\\d+\n$")


class OnATerminal(Holding):
    """What a person sees and can do meanwhile."""

    def moving(self, *options):
        """A motor that moves for long, and then the lock is taken."""
        self.boot(settings="clock=20")
        terminal = self.terminal(*options, "focus", "move", "60000", "--speed", "1", "--wait", settings="")
        terminal.expect(r"focus: [1-9]\d*")
        return terminal, self.hold()

    def test_it_is_said_who_is_waited_for(self):
        self.boot()
        holder = self.hold()
        terminal = self.terminal("heater", "1", settings="")
        terminal.expect(f"waiting for the bus lock: process {holder.pid} holds it")
        terminal.interrupt()
        terminal.expect(f"kelvoctl: heater: interrupted while it waited for the bus lock: process {holder.pid} "
                        "holds it\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_a_signal_ends_the_wait(self):
        self.boot()
        holder = self.hold()
        terminal = self.terminal("--patience", "1000s", "heater", "1", settings="")
        terminal.expect("waiting for the bus lock")
        os.kill(terminal.process, signal.SIGTERM)
        terminal.expect(f"kelvoctl: heater: interrupted while it waited for the bus lock: process {holder.pid} "
                        "holds it\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_the_line_goes_away_when_the_lock_is_free(self):
        self.boot()
        holder = self.hold()
        terminal = self.terminal("heater", "1", settings="")
        terminal.expect("waiting for the bus lock")
        os.kill(holder.pid, signal.SIGKILL)
        terminal.expect("\r\x1b\\[Kmodule  df033\r\n")
        self.assertEqual(terminal.wait(), 0)

    def test_a_motor_is_stopped_as_soon_as_the_lock_is_free(self):
        terminal, holder = self.moving()
        terminal.interrupt()
        terminal.expect("waiting for the bus lock")
        holder.kill()
        terminal.expect("kelvoctl: focus move: interrupted: focus is stopped, and its power is off\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_a_motor_that_cannot_be_stopped_is_said_to_move(self):
        terminal, holder = self.moving("--patience", "300ms")
        terminal.interrupt()
        terminal.expect(f"kelvoctl: focus move: interrupted: focus may still move: {self.held_by(holder)}\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_a_second_control_c_ends_that_too(self):
        terminal, holder = self.moving("--patience", "1000s")
        terminal.interrupt()
        terminal.expect("waiting for the bus lock")
        terminal.interrupt()
        terminal.expect("kelvoctl: focus move: interrupted: focus may still move: interrupted while it waited for the "
                        f"bus lock: process {holder.pid} holds it\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_a_boot_that_waits_in_the_middle_says_so(self):
        terminal = self.terminal("boot", "-y", settings="clock=real")
        terminal.expect("image 1 of 3")
        holder = self.hold()
        terminal.expect(f"waiting for the bus lock: process {holder.pid} holds it")
        terminal.interrupt()
        terminal.expect("kelvoctl: ends as soon as it can without leaving it half-way\r\n")
        holder.kill()
        terminal.expect("kelvoctl: boot: interrupted: the boot was carried through\r\n")
        self.assertEqual(terminal.wait(), 130)
        self.assertEqual(self.violations(), [])

    def test_a_homing_that_the_lock_ends(self):
        self.boot(settings="clock=20")
        terminal = self.terminal("--patience", "300ms", "focus", "home", "--speed", "1", settings="")
        terminal.expect(r"focus: \d+")
        holder = self.hold()
        terminal.expect(f"kelvoctl: focus home: {self.held_by(holder)}: focus may still move: "
                        f"{self.held_by(holder)}\r\n")
        self.assertEqual(terminal.wait(), 5)


if __name__ == "__main__":
    project.main()
