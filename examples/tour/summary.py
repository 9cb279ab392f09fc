"""A table of cameras, one of which each argument names, from what kelvo-sim status --json prints of each.

The exit code is 1 if there was any protocol violation.
"""

import sys

from curves import objects

COLUMNS = ("camera", "module", "head", "boots", "downloads", "lens frames", "head transfers", "seconds", "violations")


def row(name, status):
    boots, transfers = status["boots"], status["head_transfers"]
    return (name, boots[-1]["module"] if boots else "-", status["head"][0]["family"] if transfers else "-", len(boots),
            sum(boot["attempts"] for boot in boots),
            sum(frame["commands"] + frame["queries"] for frame in status["frames"]), transfers,
            f"{status['time_ns'] / 1e9:.1f}", status["violations"])


def main():
    statuses = list(objects(sys.stdin.read()))
    rows = [COLUMNS, *(row(*pair) for pair in zip(sys.argv[1:], statuses, strict=True))]
    widths = [max(len(str(cell)) for cell in column) for column in zip(*rows)]
    for cells in rows:
        print("  " + "  ".join(f"{cell!s:{width}}" for cell, width in zip(cells, widths)).rstrip())
    return any(status["violations"] for status in statuses)


if __name__ == "__main__":
    sys.exit(main())
