#!/usr/bin/env python3
"""kelvoctl --sim: the same commands on a simulated camera, which stays between them."""

import kelvoctl_tool
import project


class Simulated(kelvoctl_tool.KelvoctlTest):
    def test_a_camera_that_stays(self):
        boot = kelvoctl_tool.call("--lens", "df033", f"--sim={self.camera}", "boot", "-y")
        self.check(boot, 0, None)
        self.assertIn(self.camera, kelvoctl_tool.call_sim("list").stdout)
        attach = kelvoctl_tool.call("--lens", "df033", f"--sim={self.camera}", "attach")
        self.assertIn("module   df033\n", self.check(attach, 0, None).stdout)

    def test_the_camera_of_the_settings(self):
        variables = {"KELVO_SIM": f"name={self.camera} head=vetra"}
        result = kelvoctl_tool.call("--lens", "df033", "--sim", "attach", variables=variables)
        self.assertIn("head     vetra\n", self.check(result, 4, None, None).stdout)
        self.assertIn(self.camera, kelvoctl_tool.call_sim("list").stdout)

    def test_a_camera_that_is_made_goes_by_the_sleep_clock(self):
        kelvoctl_tool.call("--lens", "df033", f"--sim={self.camera}", "attach")
        refused = kelvoctl_tool.call_sim("run", "--name", self.camera, "--clock", "real", "--", "/bin/true")
        self.assertNotEqual(refused.returncode, 0)
        self.check(kelvoctl_tool.call_sim("run", "--name", self.camera, "--clock", "sleep", "--", "/bin/true"))

    def test_a_camera_that_another_tool_made_keeps_its_clock(self):
        self.check(kelvoctl_tool.call_sim("run", "--name", self.camera, "--clock", "50", "--", "/bin/true"))
        self.check(kelvoctl_tool.call("--lens", "df033", f"--sim={self.camera}", "boot", "-y"), 0, None)

    def test_it_is_over_with_the_command(self):
        """What a process starts is not marked as simulated already."""
        script = self.script("attach")
        self.boot()
        for _ in range(2):
            self.check(self.ctl("run", script), 0, None)


if __name__ == "__main__":
    project.main()
