"""What the tests of the head's commands share."""

import kelvoctl_tool
import project

HEADS = ("tasmere", "vetra")
AXES = ("pan", "tilt")
TABLE = project.SOURCE / "examples/head.pid"


class HeadTest(kelvoctl_tool.KelvoctlTest):
    """Its camera has a head of one family or the other. The commands name no lens module: they need none."""

    head = "tasmere"

    def on_camera(self, lens=None, settings="", variables=None):
        before, chosen = super().on_camera("df033", f"head={self.head} {settings or 'clock=sleep'}", variables)
        return [argument for argument in before if argument not in ("--lens", "df033")], chosen

    def heads(self):
        """Each family in turn, on a new camera."""
        for self.head in HEADS:
            self.remove_camera()
            yield self.head

    def position(self, axis, **options):
        return self.result(axis, "position", **options)["position"]
