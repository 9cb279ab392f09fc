#!/usr/bin/env python3
"""kelvoctl on machines that are no simulated camera, mostly doctor: devices, reset line, bus lock, library, images."""

import ctypes
import json
import os

import kelvoctl_tool
import project

LIBC = ctypes.CDLL(None, use_errno=True)
IPC_CREAT, IPC_EXCL, IPC_RMID = 0o1000, 0o2000, 0
DEVICES = ("/dev/spi_renesas", "/dev/spi_pt5111", "/dev/i2c-2")
EXPORT = "/sys/class/gpio/export"
INSTALLED = "/lib/libkelvo.so"
ABSENT = "No such file or directory"


class Semaphore(ctypes.Structure):
    _fields_ = [("number", ctypes.c_ushort), ("change", ctypes.c_short), ("flags", ctypes.c_short)]


class Machine(kelvoctl_tool.KelvoctlTest):
    """A machine in order, until a test takes something away."""

    def setUp(self):
        super().setUp()
        self.key = 0x6B000000 + os.getpid()
        self.root = self.folder / "root"
        for path in (*DEVICES, EXPORT):
            place = self.root / path[1:]
            place.parent.mkdir(parents=True, exist_ok=True)
            place.touch()
        (self.root / "lib").mkdir()
        self.installed = self.root / INSTALLED[1:]
        self.installed.symlink_to(project.setting("library"))

    def call(self, *arguments, **variables):
        """kelvoctl on this machine."""
        preload = f"LD_PRELOAD={project.setting('odd_machine')}"
        name, value = ("QEMU_SET_ENV", preload) if kelvoctl_tool.EMULATED else preload.split("=")
        return kelvoctl_tool.call(*arguments, variables={"ODD_ROOT": str(self.root), "ODD_LOCK_KEY": str(self.key),
                                                         name: value, **variables})

    def doctor(self, code=0, line=None):
        """What it finds on this machine, and how it ends."""
        result = self.call("doctor", "--json")
        self.check(result, code, None, f"kelvoctl: doctor: {line}\n" if line else "")
        return {row["check"]: (row["health"], row["detail"]) for row in json.loads(result.stdout)["checks"]}

    def semaphore(self):
        """A bus lock of the test's own."""
        made = LIBC.semget(self.key, 1, IPC_CREAT | IPC_EXCL | 0o600)
        self.assertGreaterEqual(made, 0, os.strerror(ctypes.get_errno()))
        self.addCleanup(LIBC.semctl, made, 0, IPC_RMID)
        return made

    def change(self, semaphore, change):
        self.assertEqual(LIBC.semop(semaphore, ctypes.byref(Semaphore(0, change, 0)), 1), 0)

    def test_in_order(self):
        found = self.doctor()
        self.assertEqual(found["camera"], ("good", "the real one"))
        for device in DEVICES:
            self.assertEqual(found[device], ("good", "can be opened"))
        self.assertEqual(found["reset line"], ("good", "can be driven"))
        self.assertEqual(found["installed library"], ("good", INSTALLED))
        self.assertEqual(found["bus lock"], ("good", "free; nobody has used it yet"))

    def test_a_device_is_absent(self):
        (self.root / "dev/spi_pt5111").unlink()
        line = f"{ABSENT}: load its driver"
        self.assertEqual(self.doctor(3, f"/dev/spi_pt5111: {line}")["/dev/spi_pt5111"], ("bad", line))

    def test_a_device_that_may_not_be_opened(self):
        line = "/dev/i2c-2: Permission denied: ask for the right to use it"
        result = self.ctl("doctor", settings="clock=sleep fault=i2c:frame=open:error=EACCES")
        self.check(result, 3, None, f"kelvoctl: doctor: {line}\n")
        self.assertRegex(result.stdout, r"(?m)^/dev/i2c-2 +bad +Permission denied: ask for the right to use it$")

    def test_no_reset_line(self):
        (self.root / EXPORT[1:]).unlink()
        line = f"{EXPORT}: {ABSENT}: a boot cannot reset"
        self.assertEqual(self.doctor(3, f"reset line: {line}")["reset line"], ("bad", line))

    def test_no_installed_library(self):
        self.installed.unlink()
        self.assertEqual(self.doctor()["installed library"],
                         ("doubtful", f"not at {INSTALLED}: the bus lock uses a key that it shares with others"))

    def test_another_installed_library(self):
        self.installed.unlink()
        self.installed.write_text("another")
        self.assertEqual(self.doctor()["installed library"],
                         ("doubtful", f"{INSTALLED} is another one than the one that is loaded"))

    def test_a_free_bus_lock(self):
        semaphore = self.semaphore()
        self.change(semaphore, 1)
        self.change(semaphore, -1)
        self.assertEqual(self.doctor()["bus lock"], ("good", "free"))

    def test_a_stuck_bus_lock(self):
        self.change(self.semaphore(), 1)
        line = f"held, and not given back; process {os.getpid()} used it last: end it"
        self.assertEqual(self.doctor(4, f"bus lock: {line}")["bus lock"], ("bad", line))

    def test_a_bus_lock_that_a_process_has_left_behind(self):
        semaphore = self.semaphore()
        process = os.fork()
        if process == 0:
            self.change(semaphore, 1)
            os._exit(0)
        os.waitpid(process, 0)
        line = (f"held, and not given back; process {process} used it last and has ended: remove it with ipcrm -s "
                f"{semaphore}")
        self.assertEqual(self.doctor(4, f"bus lock: {line}")["bus lock"], ("bad", line))

    def test_a_bus_lock_that_nobody_shares(self):
        self.key = 0
        line = "the key is 0, and nothing is shared: copy the library, for another inode"
        self.assertEqual(self.doctor(4, f"bus lock: {line}")["bus lock"], ("bad", line))

    def test_a_driver_with_a_result_of_its_own(self):
        """Only of a result of -1 the link itself tells that it has failed."""
        self.semaphore()
        for result, status in (("5", 5), ("261", 5)):
            self.check(self.call("--lens", "df033", "focus", "off", ODD_RESULT=result), 4, "",
                       f"kelvoctl: focus off: /dev/spi_renesas: a transfer failed: status {status}\n")

    def test_images(self):
        found = self.doctor()
        self.assertEqual(found["images of df033"], ("good", "embedded"))
        for module in ("de015", "t5391"):
            self.assertEqual(found[f"images of {module}"],
                             ("doubtful", "placeholders, which no controller runs: build with real ones"))


if __name__ == "__main__":
    project.main()
