"""Curves for gnuplot, from JSON on standard input.

Usage: curves.py motors|head|gains|steps

`motors` and `head` read results of kelvoctl and, between these, what kelvo-sim status says of the camera again and
again. A curve is a comment with its name and lines of numbers, NaN for none; two empty lines part it from the
next. Columns: seconds, position, what was asked; then a motor's counter, or an axis's positions a second.

`gains` reads a trace: what each kind of move of a Vetra head had in force, by its speed. `steps` reads these curves and
prints where they change, as a table.
"""

import json
import re
import sys

COUNTS = {"steps": 1, "1/2 steps": 2, "1/8 steps": 8}  # of a step
POSITIONS = 65536  # of a circle
CIRCLES = {"Tasmere": 65536, "Vetra": -18000}  # counts of the controllers; those of Vetra fall as positions grow

# Vetra: the register of gains, and the place of each word in what is written there.
GAINS = {"set-position-gains": ("position P", None), "set-speed-gains": ("speed P", "speed I")}
MOVES = {"continuous-move": "continuously", "absolute-move": "to a position"}


def objects(text):
    """JSON values that stand one behind the other."""
    decoder, space, at = json.JSONDecoder(), re.compile(r"\s*"), 0
    while (at := space.match(text, at).end()) < len(text):
        value, at = decoder.raw_decode(text, at)
        yield value


def seconds(first, status):
    return (status["time_ns"] - first["time_ns"]) / 1e9


def motor_points(values):
    """Steps; what was asked is so many of them from where the motor stood."""
    first, asked, last = None, {}, {}
    for value in values:
        if "steps" in value:
            asked[value["motor"]] = last[value["motor"]] + value["steps"]
        if "motors" not in value:
            continue
        first = first or value
        for row in value["motors"]:
            motor, size = row["motor"].replace(" ", ""), COUNTS[row["in"]]
            last[motor] = row["position"] / size
            yield motor, seconds(first, value), last[motor], asked.get(motor, last[motor]), row["counter"] / size


def head_points(values):
    """An axis that is to move on and on has been asked for no position."""
    first, asked = None, {}
    for value in values:
        if "axis" in value:
            asked[value["axis"]] = value.get("target")
        if "head" not in value:
            continue
        first = first or value
        for row, move in zip(value["head"], value["head_axes"]):
            axis, position = row["axis"], row["position"]
            speed = move["speed"] * POSITIONS / CIRCLES[row["family"]]
            yield axis, seconds(first, value), position, asked.setdefault(axis, position), speed


def words(value):
    """Bytes as the trace shows them, as words of 16 bits."""
    data = bytes.fromhex(value)
    return [int.from_bytes(data[at:at + 2], "big") for at in range(0, len(data) - 1, 2)]


def gain_points(lines):
    """A move's speed is the last word of what starts it; it goes by the gains that were written last."""
    force = {"pan": {}, "tilt": {}}
    for line in lines:
        axis, name = line["device"].split()[-1], line.get("name")
        if line["kind"] != "write":
            continue
        if name in GAINS:
            force[axis].update((gain, word) for gain, word in zip(GAINS[name], words(line["value"])) if gain)
        elif name in MOVES:
            for gain, word in force[axis].items():
                yield f"{axis} {MOVES[name]}: {gain}", words(line["value"][-5:])[0], word


def text_of(number):
    return "NaN" if number is None else f"{number + 0:.6g}"  # no -0


def show(points):
    curves = {}
    for name, *numbers in points:
        curves.setdefault(name, []).append(" ".join(map(text_of, numbers)))
    print("\n\n\n".join(f"# {name}\n" + "\n".join(lines) for name, lines in curves.items()))
    return bool(curves)


def show_steps(text):
    print(f"  {'move':18}  {'gain':10}  by speed")
    for curve in text.strip().split("\n\n\n"):
        name, *lines = curve.splitlines()
        steps = []
        for line in lines:
            speed, gain = line.split()
            if not steps or steps[-1][1] != gain:
                steps.append((speed, gain))
        move, gain = name.removeprefix("# ").split(": ")
        print(f"  {move:18}  {gain:10}  " + ", ".join(f"from {speed}: {value}" for speed, value in steps))


POINTS = {"motors": motor_points, "head": head_points, "gains": gain_points}

if __name__ == "__main__":
    if sys.argv[1:] == ["steps"]:
        show_steps(sys.stdin.read())
    else:
        sys.exit(0 if show(POINTS[sys.argv[1]](objects(sys.stdin.read()))) else 1)
