#!/usr/bin/env python3
"""kelvoctl raw, frame and i2c: what goes over the wires, by its numbers."""

import kelvoctl_tool
import project
from head_tool import AXES, HEADS, TABLE, HeadTest

NO_SPI = "/dev/spi_renesas: No such file or directory: see kelvoctl doctor"
FAILED = "/dev/spi_renesas: a transfer failed: see whether the controller has power, and boot it"
VERSION = {"de015": 0x85, "df033": 0x86, "t5391": 0x86}  # the query of each module's program


class Raw(kelvoctl_tool.KelvoctlTest):
    def test_no_device(self):
        for command in ("raw send 7 0 0 0 1", "raw query 0x86", "frame 0x86 0 0 0 0"):
            name = " ".join(word for word in command.split() if word.isalpha())
            self.check(kelvoctl_tool.call("--lens", "df033", *command.split()), 3, "", f"kelvoctl: {name}: {NO_SPI}\n")

    def test_no_lens_module(self):
        self.check(kelvoctl_tool.call("raw", "query", "0x86"), 2, "",
                   "kelvoctl: raw query: which lens module is fitted? Say so with --lens de015|df033|t5391, or set "
                   "KELVO_LENS\n")

    def test_transfers_that_fail(self):
        for command, frame in (("raw send 7", "command"), ("raw query 0x86", "query"), ("frame 0x86 0 0 0 0", "query"),
                               ("frame 7 0 0 0 1", "command")):
            with self.subTest(command):
                name = " ".join(word for word in command.split() if word.isalpha())
                self.check_fails(4, f"{name}: {FAILED}", *command.split(),
                                 settings=f"clock=sleep fault=spi:frame={frame}:error=EIO")
                self.remove_camera()

    def test_query(self):
        for lens, code in VERSION.items():
            version = self.result("boot", "-y", lens=lens)["version"]
            result = self.result("raw", "query", code, lens=lens)
            self.assertEqual(f"0x{result['value']:04X}", version)
            self.assertEqual(result["reply"].replace(" ", "")[-4:], version[2:])
            self.assertEqual((result["query"], result["argument"]), (f"0x{code:02X}", 0))
            framed = self.result("frame", code, 0, 0, 0, 0, lens=lens)
            self.assertEqual(framed["reply"], result["reply"])
            self.assertEqual(self.violations(), [])
            self.remove_camera()

    def test_send(self):
        """Command 34 sets the coma, and its query has the top bit set."""
        self.boot()
        for command, level in (("raw send", "0x1234"), ("frame", "0x0567")):
            result = self.result(*command.split(), 34, 0, 0, f"0x{level[2:4]}", f"0x{level[4:]}")
            self.assertEqual(result["sent"], f"22 00 00 {level[2:4]} {level[4:]}")
            self.assertIsNone(result.get("reply"))
            self.assertEqual(self.result("raw", "query", 0x80 | 34)["value"], int(level, 0))

    def test_arguments_that_are_left_out_are_zero(self):
        self.boot()
        self.check(self.ctl("raw", "send", "7", "0"), 0, "sent  07 00 00 00 00\n")

    def test_wrong_arguments(self):
        for arguments, line in (
                ("raw send", "raw send: CODE is required: see kelvoctl raw send --help"),
                ("raw send 256", 'raw send: CODE: "256" is no number from 0 to 255: see kelvoctl raw send --help'),
                ("raw send 1 2 3 4 x", 'raw send: A4: "x" is no number from 0 to 255: see kelvoctl raw send --help'),
                ("raw query", "raw query: CODE is required: see kelvoctl raw query --help"),
                ("raw query 1 -1", None),
                ("frame 1 2 3 4", "frame: A4 is required: see kelvoctl frame --help"),
                ("raw", "raw: a command is missing: it is one of send, query")):
            with self.subTest(arguments):
                if line:
                    self.check_fails(2, line, *arguments.split())
                else:
                    self.assertEqual(self.ctl(*arguments.split()).returncode, 2)


class I2c(HeadTest):
    def test_no_device(self):
        for command in ("read", "write"):
            self.check(kelvoctl_tool.call("i2c", command, "pan", 4), 3, "",
                       f"kelvoctl: i2c {command}: /dev/i2c-2: No such file or directory: see kelvoctl doctor\n")

    def test_nobody_answers(self):
        for command in ("read", "write"):
            self.check_fails(4, f"i2c {command}: /dev/i2c-2: slave 9 does not answer", "i2c", command, 9, 1)
            self.check_fails(4, f"i2c {command}: /dev/i2c-2: slave 41 does not answer", "i2c", command, "tilt", 18,
                             settings="clock=sleep fault=i2c:slave=tilt:nak")

    def test_read(self):
        """The tilt axis of either family is in the middle of its range, a vetra one with its zero at 3500."""
        for self.head, number, value in (("tasmere", 4, 32768), ("vetra", 50, 12500)):
            for slave, shown in (("tilt", "tilt"), ("41", 41), ("0x29", 41)):
                self.assertEqual(self.result("i2c", "read", slave, number, 2), {
                    "schema": 1, "command": "i2c read", "slave": shown, "register": number,
                    "bytes": f"{value >> 8:02X} {value & 0xFF:02X}", "value": value})
            self.assertEqual(self.violations(), [])
            self.remove_camera()

    def test_one_byte_is_read_without_a_length(self):
        self.check(self.ctl("i2c", "read", "pan", 254), 0, "slave     pan\nregister  254\nbytes     01\nvalue     1\n")

    def test_what_is_no_number_is_bytes_alone(self):
        self.assertIsNone(self.result("i2c", "read", "pan", 254, 5)["value"])
        self.assertEqual(self.result("i2c", "read", "pan", 254, 0)["bytes"], "")

    def test_a_longer_index(self):
        """No controller of this head has one."""
        self.result("i2c", "read", "pan", 4, 2, "--more", 1, "--more", "0xFF")
        violations = self.violations()
        self.assertEqual(len(violations), 1)
        self.assertIn("neither a write nor a read of a register with one byte", str(violations))

    def test_write(self):
        """Register 18 of a tasmere controller can be read back at 74."""
        for arguments in (["0x12", "0x34"], ["0x1234", "--width", "2"]):
            self.assertEqual(self.result("i2c", "write", "pan", 18, *arguments)["bytes"], "12 34")
            self.assertEqual(self.result("i2c", "read", "pan", 74, 2)["value"], 0x1234)
            self.result("i2c", "write", "pan", 18, 0, 0)
        self.assertEqual(self.violations(), [])

    def test_write_without_data(self):
        for self.head, register in zip(HEADS, (28, 6)):
            self.assertEqual(self.result("i2c", "write", "tilt", register)["bytes"], "")
            self.assertEqual(self.violations(), [])
            self.remove_camera()

    def test_what_resets_or_writes_flash_asks(self):
        for self.head, register, effect in (("tasmere", 1, "restarts the controller"),
                                            ("tasmere", 35, "writes the controller's flash"),
                                            ("vetra", 34, "restarts the controller")):
            for axis in AXES:
                self.check_fails(8, f"i2c write: Register {register} of {axis} {effect}. Go on? There is no terminal "
                                    "to ask: say so with -y", "i2c", "write", axis, register)
                self.check(self.ctl("i2c", "write", axis, register, "-y"), 0, None)
            self.remove_camera()

    def test_moves_write_their_gains_again_after_a_write(self):
        script = self.script(f"pid load {TABLE}", "pan move 720", "i2c write pan 12 0x1234 --width 2", "pan move 720")
        result = self.ctl("--verbose", "run", script)
        self.check(result, 0, None, None)
        self.assertEqual(result.stderr.count("TASMERE"), 2)

    def test_wrong_arguments(self):
        see = ": see kelvoctl i2c"
        for arguments, line in (
                ("read", f"i2c read: SLAVE is required{see} read --help"),
                ("read pan", f"i2c read: REGISTER is required{see} read --help"),
                ("read roll 1",
                 'i2c read: "roll" is no slave: write pan, tilt or 0 to 127'),
                ("read 128 1",
                 'i2c read: "128" is no slave: write pan, tilt or 0 to 127'),
                ("read pan 256", f'i2c read: REGISTER: "256" is no number from 0 to 255{see} read --help'),
                ("read pan 1 257", f'i2c read: BYTES: "257" is no number from 0 to 256{see} read --help'),
                ("read pan 1 --more 256", 'i2c read: "256" is no number from 0 to 255'),
                ("write pan 1 256", 'i2c write: "256" is no number from 0 to 255'),
                ("write pan 1 65536 --width 2", 'i2c write: "65536" is no number from 0 to 65535'),
                ("write pan 1 1 --width 5", f'i2c write: --width: "5" is no number from 1 to 4{see} write --help'),
                ("write pan 1" + 256 * " 0", "i2c write: 256 bytes: a message has 255 at most"),
                ("", "i2c: a command is missing: it is one of read, write")):
            with self.subTest(arguments):
                self.check_fails(2, line, "i2c", *arguments.split())


if __name__ == "__main__":
    project.main()
