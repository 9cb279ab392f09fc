#!/usr/bin/env python3
"""kelvoctl on a machine that has nothing left of something: it says of what, and does nothing half-way."""

import resource

import kelvoctl_tool
import project


class Starved(kelvoctl_tool.KelvoctlTest):
    def starve(self, call, *arguments):
        """A command, on this test's camera and a machine that refuses a call."""
        _, variables = self.on_camera(settings="")
        libraries = f"{project.setting('starved_machine')}:{project.setting('sim_library')}"
        preload = f"LD_PRELOAD={libraries}"
        name, value = ("QEMU_SET_ENV", preload) if kelvoctl_tool.EMULATED else preload.split("=")
        variables.update({name: value, "STARVED_OF": call})
        return kelvoctl_tool.call("--lens", "df033", *arguments, variables=variables)

    def check_boot(self, call, line):
        self.boot()
        before = self.result("focus", "count", "77")["count"]
        self.check(self.starve(call, "boot", "-y"), 4, "", f"kelvoctl: boot: {line}\n")
        self.assertEqual(self.result("focus", "count")["count"], before)  # which a boot sets to 0

    def test_it_is_the_same_machine_otherwise(self):
        self.check(self.starve("nothing", "boot", "-y"), 0, None)

    def test_no_memory_to_share(self):
        self.check_boot("mmap", "no memory to share: Cannot allocate memory")

    def test_no_pipe(self):
        self.check_boot("pipe2", "no pipe: Too many open files")

    def test_a_late_turn(self):
        """What is measured waits for it, on a clock that does not."""
        self.boot()
        self.check(self.starve("turns", "calibrate", "iris", "-y", "--timeout", "3s"), 5, "",
                   "kelvoctl: calibrate iris: iris is measured for longer than the time-out: boot the controller\n")
        trace = kelvoctl_tool.call_sim("trace", self.camera).stdout
        self.assertEqual(trace.count(" calibration-state "), 3, trace[-2000:])

    def test_no_process(self):
        self.check_boot("fork", "no process: Resource temporarily unavailable")

    def test_nowhere_to_keep_what_the_library_prints(self):
        self.boot()
        self.check(self.starve("memfd_create", "attach"), 7, "",
                   "kelvoctl: the library's output cannot be kept apart: Cannot allocate memory\n")


# Emulators and instrumented programs need descriptors of their own.
if not kelvoctl_tool.EMULATED and project.setting("instrumented") == "no":
    class Descriptors(kelvoctl_tool.KelvoctlTest):
        """Without the copies of the streams everything printed behind the library's first line was lost."""

        @staticmethod
        def leave_one():
            resource.setrlimit(resource.RLIMIT_NOFILE, (4, 4))

        def test_too_few_for_the_library_s_output(self):
            result = kelvoctl_tool.call("doctor", preexec_fn=self.leave_one)
            self.check(result, 7, "",
                       "kelvoctl: the library's output cannot be kept apart: Too many open files\n")


if __name__ == "__main__":
    project.main()
