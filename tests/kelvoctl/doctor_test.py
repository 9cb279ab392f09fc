#!/usr/bin/env python3
"""kelvoctl doctor: what stands in the way, without a lens module and before anything is sent."""

import json

import kelvoctl_tool
import project


class Doctor(kelvoctl_tool.KelvoctlTest):
    def findings(self, result):
        return {row["check"]: (row["health"], row["detail"]) for row in result["checks"]}

    def test_the_simulated_camera(self):
        found = self.findings(self.result("doctor"))
        for check in ("/dev/spi_renesas", "/dev/spi_pt5111", "/dev/i2c-2"):
            self.assertEqual(found[check], ("good", "can be opened"))
        self.assertEqual(found["reset line"], ("good", "simulated"))
        self.assertTrue(found["camera"][1].startswith("simulated: "))
        self.assertEqual(found["images of df033"], ("good", "placeholders, which the simulated camera runs"))
        self.assertEqual(found["loaded library"][1], project.setting("library"))
        self.assertEqual(self.violations(), [])

    def test_records(self):
        self.boot()
        found = self.findings(self.result("doctor"))
        self.assertEqual(found["/bin/DC_S_Cali_T5391.dat"], ("good", "there"))
        self.assertEqual(found["/bin/OIS_S_Cali.dat"], ("good", "none"))

    def test_the_bus_lock(self):
        self.assertEqual(self.findings(self.result("doctor"))["bus lock"],
                         ("good", "free; nobody has used it yet"))
        self.boot()
        self.assertEqual(self.findings(self.result("doctor"))["bus lock"], ("good", "free"))

    def test_no_camera(self):
        result = kelvoctl_tool.call("doctor")
        self.check(result, 3, None, "kelvoctl: doctor: /dev/spi_renesas: No such file or directory: load its driver\n")
        self.assertRegex(result.stdout, r"(?m)^check +health +detail$")
        self.assertRegex(result.stdout, r"(?m)^camera +good +the real one$")
        self.assertRegex(result.stdout, r"(?m)^/dev/i2c-2 +bad +No such file or directory: load its driver$")
        self.assertRegex(result.stdout, r"(?m)^images of t5391 +doubtful +placeholders")

    def test_a_damaged_record(self):
        place = self.folder / "bin/DC_S_Cali.dat"
        place.parent.mkdir()
        place.write_bytes(bytes(10))
        line = "no iris record: it has 10 bytes and must have 24"
        result = self.ctl("doctor", "--json", settings=f"clock=sleep files={self.folder}")
        self.check(result, 6, None, f"kelvoctl: doctor: /bin/DC_S_Cali.dat: {line}\n")
        self.assertEqual(self.findings(json.loads(result.stdout))["/bin/DC_S_Cali.dat"], ("bad", line))

    def test_a_record_that_cannot_be_read(self):
        place = self.folder / "bin/OIS_S_Cali.dat"
        place.parent.mkdir()
        place.write_bytes(bytes(60))
        result = self.ctl("doctor", "--json", settings=f"clock=sleep files={self.folder} fault=file:unreadable")
        self.check(result, 2, None, "kelvoctl: doctor: /bin/OIS_S_Cali.dat: Permission denied\n")
        self.assertEqual(self.findings(json.loads(result.stdout))["/bin/OIS_S_Cali.dat"],
                         ("bad", "Permission denied"))

    def test_the_lock_of_the_simulated_camera_is_its_own(self):
        found = self.findings(self.result("doctor"))
        self.assertEqual(found["installed library"], ("good", "not used: the bus lock is the camera's own"))


if __name__ == "__main__":
    project.main()
