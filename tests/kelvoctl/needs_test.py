#!/usr/bin/env python3
"""What kelvoctl needs at run time: on the camera, libc and the library."""

import re
import unittest

import project


class Needs(unittest.TestCase):
    def test_what_it_is_linked_with(self):
        text = project.output_of(project.setting("readelf"), "-dW", project.settings("tool")[-1])
        needed = set(re.findall(r"\(NEEDED\)\s+Shared library: \[(.*)\]", text))
        self.assertIn("libkelvo.so", needed)
        if project.setting("emulated") == "yes":
            # The loader is libc's, and its name stands there where thread-local variables are used.
            self.assertEqual(needed - {"ld-linux-aarch64.so.1"}, {"libc.so.6", "libkelvo.so"})


if __name__ == "__main__":
    project.main()
