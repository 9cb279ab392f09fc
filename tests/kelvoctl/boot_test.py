#!/usr/bin/env python3
"""kelvoctl boot and attach: the controller comes up, or it is said why it does not."""

import os
import signal

import kelvoctl_tool
import project

IMAGES = {"de015": (33276, 1228, 944), "df033": (35000, 1160, 648), "t5391": (33000, 1160, 648)}
QUESTION = "The boot resets the lens controller; whoever uses it is interrupted. Go on?"
NO_DEVICE = "/dev/spi_renesas: No such file or directory: see kelvoctl doctor"


class Boot(kelvoctl_tool.KelvoctlTest):
    def test_no_device(self):
        result = kelvoctl_tool.call("--lens", "df033", "boot", "-y")
        self.check(result, 3, "", f"kelvoctl: boot: {NO_DEVICE}\n")

    def test_no_module(self):
        result = kelvoctl_tool.call("boot", "-y")
        self.check(result, 2, "", "kelvoctl: boot: which lens module is fitted? Say so with --lens "
                                  "de015|df033|t5391, or set KELVO_LENS\n")

    def test_is_refused_without_somebody_to_ask(self):
        self.check_fails(8, f"boot: {QUESTION} There is no terminal to ask: say so with -y", "boot")

    def test_every_module(self):
        for lens, sizes in IMAGES.items():
            with self.subTest(lens):
                self.remove_camera()
                result = self.result("boot", "-y", lens=lens)
                self.assertEqual((result["module"], result["attempts"], result["result"]), (lens, 1, 0))
                self.assertEqual(tuple(download["bytes"] for download in result["downloads"]), sizes)
                self.assertTrue(all(download["confirmed"] for download in result["downloads"]))
                self.assertEqual(self.violations(), [])

    def test_as_a_table(self):
        result = self.check(self.ctl("boot", "--yes"), 0, None)
        self.assertRegex(result.stdout, r"\Amodule    df033\nattempts  1\nresult    0\nversion   0x[0-9A-F]{4}\n\n"
                                        r"attempt  image  bytes  expected    received    confirmed\n"
                                        r"1        1      35000  0xA7980342  0xA7980342  yes\n")

    def test_a_damaged_download(self):
        result = self.result("boot", "-y", settings="clock=sleep corrupt=2", code=6)
        self.assertEqual((result["attempts"], result["result"]), (10, 1))
        self.assertEqual([download["confirmed"] for download in result["downloads"]], [True, False] + 28 * [True])
        damaged = result["downloads"][1]
        self.assertEqual((damaged["attempt"], damaged["image"]), (1, 2))
        self.assertNotEqual(damaged["expected"], damaged["received"])

    def test_a_damaged_download_is_complained_of(self):
        result = self.ctl("boot", "-y", settings="clock=sleep corrupt=2")
        self.check(result, 6, None, "kelvoctl: boot: a download failed its checksum: the last of all attempts was "
                                    "confirmed and runs, but see to the wires\n")

    def test_no_download_gets_through_undamaged(self):
        output = self.check_fails_after_all(
            6, "a download failed its checksum: the program does not run; see that the images fit",
            "spi:frame=payload:every=1:flip=9.1")
        self.assertIn("attempts  10\n", output)

    def test_a_damaged_record(self):
        for lens, name, kind, size in (("df033", "DC_S_Cali", "iris", 24), ("de015", "OIS_S_Cali", "stabiliser", 60),
                                       ("t5391", "DC_S_Cali_T5391", "iris", 24)):
            self.remove_camera()
            place = self.folder / f"bin/{name}.dat"
            place.parent.mkdir(exist_ok=True)
            place.write_bytes(bytes(10))
            result = self.ctl("boot", "-y", lens=lens, settings=f"clock=sleep files={self.folder}")
            self.check(result, 6, None, f"kelvoctl: boot: /bin/{name}.dat: no {kind} record: it has 10 bytes and must "
                                        f"have {size}: the unit runs without its calibration\n")
            self.assertIn("result    0\n", result.stdout)
            place.unlink()

    def test_a_record_that_cannot_be_read(self):
        place = self.folder / "bin/DC_S_Cali.dat"
        place.parent.mkdir()
        place.write_bytes(bytes(24))
        result = self.ctl("boot", "-y", settings=f"clock=sleep files={self.folder} fault=file:unreadable")
        self.check(result, 2, None, "kelvoctl: boot: /bin/DC_S_Cali.dat: Permission denied: the unit runs without its "
                                    "calibration\n")

    def check_fails_after_all(self, code, line, fault):
        """The result comes first, if there is one."""
        result = self.ctl("boot", "-y", settings=f"clock=sleep fault={fault}")
        return self.check(result, code, None, f"kelvoctl: boot: {line}\n").stdout

    def test_no_transfer_gets_through(self):
        output = self.check_fails_after_all(
            4, "transfers to the boot loader failed: see whether the controller has power", "spi:error=EIO")
        self.assertIn("attempts  10\n", output)

    def test_a_controller_that_is_dead(self):
        line = "the controller answers nothing: see to its power, the reset line and the wires"
        self.boot()
        self.assertEqual(kelvoctl_tool.call_sim("power", self.camera, "off").returncode, 0)
        self.check(self.ctl("boot", "-y", settings=""), 4, None, f"kelvoctl: boot: {line}\n")

    def test_the_program_does_not_answer(self):
        self.check_fails_after_all(4, "the program does not answer after the boot", "spi:query=0x86:error=EIO")

    def test_no_head(self):
        self.check_fails_after_all(3, "/dev/i2c-2: cannot be opened: see kelvoctl doctor", "i2c:frame=open:missing")

    def test_a_boot_that_dies(self):
        self.assertEqual(self.check_fails_after_all(4, "ended half-way (Killed): boot the controller",
                                                    "spi:nth=30:kill"), "")

    def test_what_the_library_prints_is_kept_apart(self):
        silent = self.check(self.ctl("boot", "-y"), 0, None)
        talkative = self.check(self.ctl("boot", "-y", "--verbose"), 0, None, None)
        self.assertEqual(talkative.stdout, silent.stdout)
        self.assertIn("Download FW size:35000\n", talkative.stderr)
        self.assertIn("ChecksumError:0\n", talkative.stderr)

    def test_no_progress_without_a_terminal(self):
        self.check(self.ctl("boot", "-y"), 0, None, "")

    def test_output_that_cannot_be_written(self):
        with open("/dev/full", "w", encoding="ascii") as full:
            result = self.ctl("boot", "-y", stdout=full)
        self.check(result, 7, None, "kelvoctl: standard output: No space left on device: look where it leads\n")


class OnATerminal(kelvoctl_tool.KelvoctlTest):
    def test_the_question_answered_with_no(self):
        terminal = self.terminal("boot")
        terminal.expect(r"Go on\? \[y/N\] ")
        terminal.type("n\n")
        terminal.expect("kelvoctl: boot: not confirmed: nothing was done\r\n")
        self.assertEqual(terminal.wait(), 8)

    def test_the_question_answered_with_yes(self):
        terminal = self.terminal("boot")
        terminal.expect(r"Go on\? \[y/N\] ")
        terminal.type("y\n")
        terminal.expect("attempts +1\r\n")
        self.assertEqual(terminal.wait(), 0)

    def test_the_question_answered_with_control_c(self):
        terminal = self.terminal("boot")
        terminal.expect(r"Go on\? \[y/N\] ")
        terminal.interrupt()
        terminal.expect("kelvoctl: boot: interrupted: nothing was done\r\n")
        self.assertEqual(terminal.wait(), 130)

    def test_progress(self):
        terminal = self.terminal("boot", "-y")
        terminal.expect("boot: attempt 1 of 10, image 1 of 3, 35000 bytes")
        terminal.expect("image 1 of 3, 35000 bytes, checksum 0xA7980342 confirmed")
        terminal.expect("image 3 of 3, 648 bytes, checksum 0x01911A0B confirmed")
        self.assertEqual(terminal.wait(), 0)

    def check_carried_through(self, end):
        terminal = self.terminal("boot", "-y", settings="clock=real")
        terminal.expect("image 1 of 3")
        end(terminal)
        terminal.expect("kelvoctl: ends as soon as it can without leaving it half-way\r\n")
        terminal.expect("image 3 of 3, 648 bytes, checksum 0x01911A0B confirmed")
        terminal.expect("kelvoctl: boot: interrupted: the boot was carried through\r\n")
        self.assertEqual(terminal.wait(), 130)
        self.assertEqual(self.result("attach", settings="")["module"], "df033")
        self.assertEqual(self.violations(), [])

    def test_control_c_does_not_end_it_half_way(self):
        self.check_carried_through(lambda terminal: terminal.interrupt())

    def test_nor_does_a_signal(self):
        self.check_carried_through(lambda terminal: os.kill(terminal.process, signal.SIGTERM))


class Attach(kelvoctl_tool.KelvoctlTest):
    def test_a_running_controller(self):
        self.boot()
        result = self.check(self.ctl("attach"), 0, None)
        self.assertRegex(result.stdout, r"\Amodule   df033\nversion  0x[0-9A-F]{4}\nhead     tasmere\n\Z")
        self.assertEqual(self.violations(), [])

    def test_the_other_family(self):
        self.boot(settings="clock=sleep head=vetra")
        self.assertEqual(self.result("attach", settings="")["head"], "vetra")
        self.assertEqual(self.violations(), [])

    def test_a_controller_without_a_program(self):
        result = self.result("attach", code=4)
        self.assertEqual(result["version"], "0x0000")
        self.assertIn("kelvoctl: attach: no program answers: boot the controller\n", self.ctl("attach").stderr)

    def test_a_transfer_that_fails(self):
        self.boot(settings="clock=sleep fault=spi:query=0x86:nth=2:error=EIO")
        self.check_fails(4, "attach: /dev/spi_renesas: a transfer failed: see whether the controller has power, and "
                            "boot it", "attach", settings="")

    def check_fails_for_the_head(self, code, line):
        """The lens can be used."""
        self.check(self.ctl("attach", settings=""), code, "module   df033\nversion  0x0208\nhead     -\n",
                   f"kelvoctl: attach: /dev/i2c-2: {line}\n")

    def test_a_head_that_is_silent(self):
        self.boot(settings="clock=sleep fault=i2c:error=EIO")
        self.check_fails_for_the_head(4, "the pan controller does not answer: see whether it has power")

    def test_no_head(self):
        self.boot(settings="clock=sleep fault=i2c:frame=open:nth=2:missing")
        self.check_fails_for_the_head(3, "No such file or directory: see kelvoctl doctor")

    def test_no_device(self):
        result = kelvoctl_tool.call("--lens", "t5391", "attach")
        self.check(result, 3, "", f"kelvoctl: attach: {NO_DEVICE}\n")

    def test_the_module_of_the_environment(self):
        before, variables = self.on_camera()
        variables["KELVO_LENS"] = "t5391"
        result = kelvoctl_tool.call(*before[2:], "boot", "-y", variables=variables)
        self.assertIn("module    t5391\n", self.check(result, 0, None).stdout)

    def test_a_wrong_module_of_the_environment(self):
        result = kelvoctl_tool.call("attach", variables={"KELVO_LENS": "9"})
        self.check(result, 2, "", 'kelvoctl: attach: KELVO_LENS: "9" is no lens module: write de015|df033|t5391\n')


if __name__ == "__main__":
    project.main()
