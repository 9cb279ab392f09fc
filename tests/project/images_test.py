#!/usr/bin/env python3
"""The build takes its nine program images from a folder, and only at their exact sizes."""

import re
import shutil
import tempfile
import unittest
from pathlib import Path

import project

IMAGES = project.SOURCE / "lens" / "images"
ROWS = re.findall(r"^KELVO_IMAGE\((\w+),\s*(\w+\.bin),\s*(\d+),",
                  (project.SOURCE / "wire" / "program_images.inc").read_text(), flags=re.M)


class Images(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.images = Path(folder.name) / "images"
        self.build_folder = Path(folder.name) / "build"
        self.images.mkdir()
        for number, (_, name, size) in enumerate(ROWS):
            (self.images / name).write_bytes(bytes([0xA0 + number]) * int(size))

    def configure(self):
        return project.run(
            "cmake", "-S", project.SOURCE, "-B", self.build_folder, "-G", "Ninja",
            *project.settings("configure"), f"-DKELVO_IMAGE_DIR={self.images}",
            "-DKELVO_BUILD_SIM=OFF", "-DKELVO_BUILD_EXAMPLES=OFF", "-DKELVO_BUILD_TESTS=OFF")

    def build(self):
        configured = self.configure()
        self.assertEqual(configured.returncode, 0, configured.stdout)
        return project.run("cmake", "--build", self.build_folder, "--target", "kelvo_image_objects")

    def embedded(self):
        (compiled,) = self.build_folder.rglob("images.S.o")
        return compiled.read_bytes()

    def test_there_are_nine(self):
        self.assertEqual(len({name for _, name, _ in ROWS}), 9)

    def test_another_folder_is_embedded_byte_for_byte(self):
        result = self.build()
        self.assertEqual(result.returncode, 0, result.stdout)
        content = self.embedded()
        for _, name, _ in ROWS:
            self.assertIn((self.images / name).read_bytes(), content, name)

    def test_a_changed_image_is_embedded_by_the_next_build(self):
        self.build()
        changed = self.images / ROWS[0][1]
        changed.write_bytes(b"\x5a" * len(changed.read_bytes()))
        result = project.run("cmake", "--build", self.build_folder, "--target", "kelvo_image_objects")
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertIn(changed.read_bytes(), self.embedded())

    def check_size_refused(self, change):
        for _, name, size in (ROWS[0], ROWS[-1]):
            with self.subTest(name):
                intact = (self.images / name).read_bytes()
                (self.images / name).write_bytes(change(intact))
                result = self.build()
                (self.images / name).write_bytes(intact)
                self.assertNotEqual(result.returncode, 0)
                self.assertIn(f"{name} must have exactly {size} bytes", result.stdout)

    def test_an_image_that_is_too_short_is_refused(self):
        self.check_size_refused(lambda image: image[:-1])

    def test_an_image_that_is_too_long_is_refused(self):
        self.check_size_refused(lambda image: image + b"\0")

    def test_a_missing_image_is_refused_by_name(self):
        missing = self.images / ROWS[4][1]
        missing.unlink()
        result = self.configure()
        self.assertNotEqual(result.returncode, 0)
        said = " ".join(result.stdout.split())
        self.assertIn(f"Program image {missing} is missing.", said)
        self.assertIn("Set KELVO_IMAGE_DIR", said)

    def test_the_build_says_whose_images_it_takes(self):
        self.assertIn(f"-- Program images: from {self.images}", self.configure().stdout)
        shutil.rmtree(self.images)
        shutil.copytree(IMAGES, self.images)
        shutil.rmtree(self.build_folder)
        said = self.configure().stdout
        if (IMAGES / "PLACEHOLDER").exists():
            self.assertIn("-- Program images: PLACEHOLDERS", said)
        else:
            self.assertIn(f"-- Program images: from {self.images}", said)


if __name__ == "__main__":
    project.main()
