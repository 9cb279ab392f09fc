#!/usr/bin/env python3
"""The tools are built unless somebody says otherwise; what they lack stops the configuration by its name."""

import project
import tool


class Build(tool.ToolTest):
    def configure(self, *options):
        return project.run("cmake", "-S", project.SOURCE, "-B", self.folder, "-G", "Ninja",
                           *project.settings("configure"), "-DKELVO_BUILD_EXAMPLES=OFF", "-DKELVO_BUILD_TESTS=OFF",
                           *options)

    def test_missing_headers_are_named_with_their_package(self):
        for variable, package in (("KELVO_CLI11_FOLDER", "libcli11-dev"), ("KELVO_JSON_FOLDER", "nlohmann-json3-dev")):
            result = self.configure(f"-D{variable}={self.folder}/none")
            self.assertNotEqual(result.returncode, 0)
            text = " ".join(result.stdout.split())
            self.assertIn(f"install Debian's package {package}, set {variable} to the folder that holds it, or set "
                          "KELVO_BUILD_TOOLS to OFF.", text)
            result = self.configure(f"-D{variable}={self.folder}/none", "-DKELVO_BUILD_TOOLS=OFF")
            self.assertEqual(result.returncode, 0, result.stdout)
            project.run("rm", "-r", self.folder / "CMakeCache.txt").check_returncode()

    def test_without_a_simulated_camera_there_are_no_tools(self):
        result = self.configure("-DKELVO_CLI11_FOLDER=/none", "-DKELVO_BUILD_SIM=OFF")
        self.assertEqual(result.returncode, 0, result.stdout)


if __name__ == "__main__":
    project.main()
