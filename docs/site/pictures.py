#!/usr/bin/env python3
"""Draws the pictures of the guides with the command: pictures.py TRELCOLOR [--check].

They stand beside the guides, so that these can be read where they lie. With --check nothing is written: a picture that
the command draws differently by now is a failure.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

DOCS = pathlib.Path(__file__).resolve().parents[1]
SIZE = ["--size", "720x784"]
CHARTS = {
    "white-light.png": ["--profile", "Generic RGB", "--profile", "WashLine PZ6 RGBW"],
    "gamut.png": ["--profile", "WashLine PZ6 RGBW", "--colour", "#ff9329", "--colour", "aYxy;1;0;65535;1;0.36;0.1",
                  "--colour", "aYxy;1;0;65535;1;0.3333;0.166"],
}
CANDLE = "aYxy;1;0;65535;1;0.5378;0.4115"
CURVES = {0: "#555555", 1: "#1f4e9e", 2: "#b03a2e"}
EMITTERS = {"Red": "#d93025", "Green": "#1e9e4a", "Blue": "#2c5fd9", "Amber": "#f0a000", "Mint": "#7fd4a8",
            "White": "#c9c9c9"}
INK = "#202020"
FAINT = "#707070"
GRID = "#d8d8d8"
MOST = 150_000  # bytes of a picture

TRELCOLOR = ""


def run(*arguments):
    environment = {**os.environ, "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen"}
    return subprocess.run([TRELCOLOR, *arguments], capture_output=True, check=True, env=environment).stdout


def answer(*arguments):
    return json.loads(run(*arguments, "--format", "json"))


def chart(arguments):
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "chart.png")
        run("chart", "--out", str(path), *SIZE, *arguments)
        return path.read_bytes()


class Svg:
    """A drawing on white paper, as the charts are."""

    def __init__(self, width, height, title):
        self.lines = [
            f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}"'
            f' height="{height}" font-family="DejaVu Sans, Verdana, sans-serif" font-size="13">',
            f"<title>{title}</title>", f'<rect width="{width}" height="{height}" fill="#ffffff"/>']

    def text(self, x, y, text, color=INK, anchor="start"):
        self.lines.append(f'<text x="{x:g}" y="{y:g}" fill="{color}" text-anchor="{anchor}">{text}</text>')

    def line(self, points, color, width=1):
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.lines.append(f'<polyline points="{path}" fill="none" stroke="{color}" stroke-width="{width}"/>')

    def bar(self, x, y, width, height, color):
        self.lines.append(f'<rect x="{x:g}" y="{y:g}" width="{width:.1f}" height="{height:g}" fill="{color}"/>')

    def bytes(self):
        return ("\n".join([*self.lines, "</svg>"]) + "\n").encode()


def curves():
    """What each software curve makes of the levels 0 to 1, at 16 bits."""
    svg = Svg(720, 400, "Dimming curves: level to output")
    left, top, width, height = 56, 20, 400, 330

    def place(level, output):
        return left + level * width, top + (1 - output) * height

    for quarter in range(5):
        share = quarter / 4
        svg.line([place(share, 0), place(share, 1)], GRID)
        svg.line([place(0, share), place(1, share)], GRID)
        svg.text(place(share, 0)[0], top + height + 20, f"{share:g}", FAINT, "middle")
        svg.text(left - 8, place(0, share)[1] + 5, f"{share:g}", FAINT, "end")
    svg.text(left + width / 2, top + height + 40, "level", FAINT, "middle")

    greys = [f"#{level:04x}{level:04x}{level:04x}" for level in (min(step * 1024, 65535) for step in range(65))]
    for row, (curve, color) in enumerate(CURVES.items()):
        result = answer("convert", "--resolution", "16", "--curve", str(curve), *greys)
        points = [place(one["channels"][0]["level"], (one["bytes"][0] * 256 + one["bytes"][1]) / 65535)
                  for one in result["colors"]]
        svg.line(points, color, 2.5)
        svg.line([(480, 36 + 26 * row), (508, 36 + 26 * row)], color, 2.5)
        svg.text(518, 41 + 26 * row, f'{curve} {result["curve"]["name"]}')
    return svg.bytes()


def fixtures():
    """One colour on every fixture: the level of each emitter."""
    profiles = [profile for profile in answer("profiles") if profile["configuration"] != "Single Channel"]
    svg = Svg(720, 50 + 44 * len(profiles), "Candlelight on the colour fixtures: the level of each emitter")
    svg.text(180, 24, "x = 0.5378, y = 0.4115: the level of each emitter", FAINT)
    svg.text(700, 24, "DMX bytes", FAINT, "end")
    for row, profile in enumerate(profiles):
        top = 44 + 44 * row
        color, = answer("convert", "--profile", str(profile["id"]), *full_mode(profile), CANDLE)["colors"]
        svg.text(16, top + 20, profile["name"])
        svg.text(700, top + 20, " ".join(str(byte) for byte in color["bytes"]), FAINT, "end")
        height = 30 / len(color["channels"])
        for channel, one in enumerate(color["channels"]):
            y = top + channel * height
            svg.bar(180, y, 340, height - 1, "#f2f2f2")
            svg.bar(180, y, 340 * one["level"], height - 1, EMITTERS[one["name"]])
    return svg.bytes()


def full_mode(profile):
    """The mode in which all emitters of the profile are solved."""
    own = f'{profile["configuration"]} In/Out'
    return ["--mode", own] if own in profile["modes"] else []


def pictures():
    for name, arguments in CHARTS.items():
        yield name, chart(arguments)
    yield "curves.svg", curves()
    yield "fixtures.svg", fixtures()


def main():
    global TRELCOLOR
    arguments = sys.argv[1:]
    is_check = "--check" in arguments
    TRELCOLOR, = [argument for argument in arguments if argument != "--check"]
    faults = []
    for name, picture in pictures():
        path = DOCS / name
        if len(picture) > MOST:
            faults.append(f"docs/{name} would have {len(picture)} bytes")
        if not is_check:
            path.write_bytes(picture)
        elif not path.exists() or path.read_bytes() != picture:
            faults.append(f"docs/{name} is not what the command draws: {pathlib.Path(__file__).name} draws it anew")
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
