#!/usr/bin/env python3
"""The trelcolor command as a person uses it: test_command_line.py PATH_TO_TRELCOLOR."""

import csv
import io
import json
import os
import pathlib
import resource
import signal
import subprocess
import sys
import tempfile
import unittest

TRELCOLOR = ""
WHITE = "aYxy;1;0;65535;1.000000;0.312700;0.329000"
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8"}

DATABASE = """<?xml version="1.0"?>
<Profiles>
  <Profile name="PixelNode RGB" index="7">
    <Channel name="Rouge" index="0" X="400" Y="200" Z="10"/>
    <Channel name="Vert" index="1" X="160" Y="500" Z="90"/>
    <Channel name="Bleu" index="2" X="150" Y="90" Z="760"/>
  </Profile>
</Profiles>
"""


def run(*arguments, stdin=""):
    return subprocess.run([TRELCOLOR, *arguments], input=stdin.encode(), capture_output=True, env=ENVIRONMENT,
                          timeout=60, check=False)


class Command(unittest.TestCase):
    def output(self, *arguments, stdin=""):
        """Standard output of a run that must succeed without a word on standard error."""
        result = run(*arguments, stdin=stdin)
        self.assertEqual((result.returncode, result.stderr.decode()), (0, ""), arguments)
        return result.stdout.decode()

    def fails(self, code, *arguments, stdin=""):
        """The one line on standard error of a run that must fail; its standard output."""
        result = run(*arguments, stdin=stdin)
        self.assertEqual(result.returncode, code, (arguments, result.stderr))
        lines = result.stderr.decode().splitlines()
        self.assertEqual(len(lines), 1, lines)
        self.assertTrue(lines[0].startswith("trelcolor: "), lines)
        return lines[0], result.stdout.decode()


class Convert(Command):
    def test_hex_is_the_bytes_alone(self):
        self.assertEqual(self.output("convert", "--format", "hex", "#ff8000", "blue"), "ff8000\n0000ff\n")

    def test_table_names_the_fixture_and_its_channels(self):
        lines = self.output("convert", "--profile", "5", "--mode", "1", WHITE).splitlines()
        self.assertEqual(lines[0], "WashLine PZ6 RGBA: RGBA In/Out, 4 x 8 bit, curve Linear (Default), "
                                   "onboard curve Normal (Trel Gamma)")
        self.assertEqual(lines[2].split(), "Colour Hex Y x y Red Green Blue Amber Bytes".split())
        self.assertEqual(lines[4].split()[:5], [WHITE, "#ffffff", "1.0000", "0.3127", "0.3290"])

    def test_json_holds_everything(self):
        document = json.loads(self.output("convert", "--format", "json", "--resolution", "16", "#ff0000"))
        self.assertEqual(document["profile"], {"id": 0, "name": "Generic RGB"})
        self.assertEqual(document["mode"], {"id": 0, "name": "RGB In/Out"})
        self.assertEqual((document["channels"], document["resolution"], document["rgbPassThrough"]), (3, 16, False))
        color, = document["colors"]
        self.assertEqual(color["bytes"], [255, 255, 0, 0, 0, 0])
        self.assertEqual(color["hex"], "#ff0000")
        self.assertEqual([channel["name"] for channel in color["channels"]], ["Red", "Green", "Blue"])
        self.assertEqual([channel["level"] for channel in color["channels"]], [1, 0, 0])

    def test_csv_quotes_nothing_that_needs_no_quotes(self):
        rows = list(csv.reader(io.StringIO(self.output("convert", "--format", "csv", "red", "black"), newline="")))
        self.assertEqual(rows[0], ["Colour", "Hex", "Y", "x", "y", "Red", "Green", "Blue", "Bytes"])
        self.assertEqual(rows[2], ["black", "#000000"] + ["0.0000"] * 6 + ["00 00 00"])

    def test_dash_reads_one_colour_a_line(self):
        self.assertEqual(self.output("convert", "--format", "hex", "-", stdin="red\n\n  #00ff00 \nblue"),
                         "ff0000\n00ff00\n0000ff\n")

    def test_defaults_are_the_profiles_own(self):
        names = {0: 3, 1: 5, 2: 5, 3: 4, 4: 1, 5: 4, 6: 4, 7: 3, 8: 4, 9: 4}
        for profile, channels in names.items():
            document = json.loads(self.output("convert", "--format", "json", "--profile", str(profile), WHITE))
            self.assertEqual(document["channels"], channels, profile)
            self.assertEqual(len(document["colors"][0]["bytes"]), channels, profile)
            self.assertEqual(document["onboardCurve"]["id"], 0 if profile in (0, 3, 4) else 1, profile)

    def test_names_in_any_case_stand_for_numbers(self):
        by_name = self.output("convert", "--profile", "floodbar kq2 rgbw", "--mode", "rgb in/out", "--curve",
                              "tungsten/incandescent", "--onboard-curve", "linear (default)", "--format", "json", WHITE)
        by_number = self.output("convert", "--profile", "9", "--mode", "0", "--curve", "2", "--onboard-curve", "0",
                                "--format", "json", WHITE)
        self.assertEqual(by_name, by_number)

    def test_curve_applies_to_levels_that_pass_through(self):
        # The last control point of the normal curve is 65520; the linear one keeps 16-bit full scale.
        self.assertEqual(self.output("convert", "--format", "hex", "--resolution", "16", "--curve", "1", "red"),
                         "fff000000000\n")

    def test_rgb_pass_through_hands_rgb_to_a_pass_through_mode(self):
        self.assertEqual(self.output("convert", "--format", "hex", "--profile", "3", "--rgb-pass-through", "#ff8000"),
                         "ff800000\n")

    def test_more_channels_than_the_mode_stay_dark(self):
        self.assertEqual(self.output("convert", "--format", "hex", "--channels", "6", "#010203"), "010203000000\n")
        header = self.output("convert", "--channels", "4", "red").splitlines()[2]
        self.assertIn("Channel 4", header)

    def test_bad_colour_is_named_and_the_others_still_come(self):
        error, out = self.fails(1, "convert", "--format", "hex", "red", "nosuchcolour", "#00ff00")
        self.assertIn("'nosuchcolour' is no colour", error)
        self.assertEqual(out, "ff0000\n00ff00\n")

    def test_channel_levels_of_another_fixture_are_refused_not_fatal(self):
        error, out = self.fails(1, "convert", "--format", "hex", "--profile", "5", "aNchannel;6;5;65535;1;2;3;0",
                                "aNchannel;6;5;65535;65535;0;0;65535;0")
        self.assertIn("3 channel levels, the fixture takes 4", error)
        self.assertEqual(out, "ff0000ff\n")

    def test_levels_of_generic_rgb_pass_whatever_the_channel_count(self):
        self.assertEqual(self.output("convert", "--format", "hex", "--channels", "4", "aNchannel;1;0;65535;65535;0;0;0"),
                         "ff000000\n")

    def test_control_characters_cost_no_other_line(self):
        error, out = self.fails(1, "convert", "--format", "hex", "-", stdin="re\0d\nred\nblue\n")
        self.assertIn("'re\ufffdd' is no colour", error)
        self.assertEqual(out, "ff0000\n0000ff\n")
        error, _ = self.fails(1, "convert", "two\nlines")
        self.assertIn("'two\ufffdlines' is no colour", error)

    def test_wild_numbers_keep_the_table_narrow(self):
        result = run("convert", "aYxy;1;0;65535;-1e308;1e300;1e-300")
        self.assertEqual(result.returncode, 0)
        self.assertLess(max(map(len, result.stdout.decode().splitlines())), 200)

    def test_full_disk_is_no_success(self):
        with open("/dev/full", "wb") as full:
            result = subprocess.run([TRELCOLOR, "convert", "red"], stdout=full, stderr=subprocess.PIPE, timeout=60,
                                    check=False)
        self.assertEqual((result.returncode, result.stderr), (1, b"trelcolor: cannot write to standard output\n"))

    def test_any_value_string_is_survived(self):
        colors = [f"aNchannel;{configuration};{profile};65535;1;2;3;4;5;1"
                  for configuration in (-1, 0, 1, 2, 3, 4, 5, 6, 77) for profile in (-1, 0, 1, 4, 9, 10, 99)]
        for profile in range(10):
            result = run("convert", "--format", "hex", "--profile", str(profile), *colors)
            self.assertIn(result.returncode, (0, 1), result.stderr)


class BadArguments(Command):
    def test_each_gives_one_line_and_code_2(self):
        for arguments in (["convert"], [], ["nosuch"], ["convert", "--profile", "10", "red"],
                          ["convert", "--profile", "No Such", "red"], ["convert", "--mode", "1", "red"],
                          ["convert", "--mode", "x", "red"], ["convert", "--channels", "0", "red"],
                          ["convert", "--channels", "513", "red"], ["convert", "--resolution", "12", "red"],
                          ["convert", "--curve", "3", "red"], ["convert", "--onboard-curve", "x", "red"],
                          ["convert", "--format", "xml", "red"], ["convert", "--nosuch", "red"], ["inspect"],
                          ["profiles", "--format", "hex"], ["--profile-database", "/nonexistent.xml", "profiles"]):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.fails(2, *arguments)[1], "")

    def test_mode_of_another_profile_lists_the_right_ones(self):
        error, _ = self.fails(2, "convert", "--profile", "5", "--mode", "RGBW In/Out", "red")
        for name in ("RGB In/Out", "RGB In / RGBA Out", "RGBA In/Out"):
            self.assertIn(name, error)


class Help(Command):
    def test_every_command_has_one(self):
        for command in ([], ["convert"], ["inspect"], ["cct"], ["chart"], ["profiles"], ["modes"], ["curves"]):
            self.assertIn("Usage: trelcolor", self.output(*command, "--help"))

    def test_version(self):
        self.assertRegex(self.output("--version"), r"^trelcolor \d+\.\d+\.\d+\n$")


class Listings(Command):
    def test_profiles(self):
        profiles = json.loads(self.output("profiles", "--format", "json"))
        self.assertEqual([profile["id"] for profile in profiles], list(range(10)))
        self.assertEqual(profiles[2]["channels"], ["Red", "Green", "Blue", "Mint", "White"])
        self.assertEqual(len(self.output("profiles").splitlines()), 12)

    def test_modes(self):
        modes = json.loads(self.output("modes", "--format", "json"))
        self.assertEqual([mode["id"] for mode in modes], list(range(10)))
        self.assertEqual(modes[3]["calibration"], ["off"])
        self.assertEqual(len(self.output("modes").splitlines()), 12)

    def test_curves(self):
        curves = json.loads(self.output("curves", "--format", "json"))
        self.assertEqual([curve["name"] for curve in curves],
                         ["Linear (Default)", "Normal (Trel Gamma)", "Tungsten/Incandescent"])
        self.assertEqual(len(self.output("curves").splitlines()), 5)


class Inspect(Command):
    def test_every_form(self):
        forms, = json.loads(self.output("inspect", "--format", "json", "#80ff0000"))
        self.assertEqual(forms["Value string"], "aRgb;1;0;#8080ffff00000000")
        self.assertEqual(forms["RGB, 8 bit"], "255, 0, 0")
        self.assertEqual(forms["HSV, 8 bit"], "0, 255, 255")
        self.assertEqual(forms["Generic RGB, 16 bit"], "65535, 0, 0")
        self.assertEqual(len([name for name in forms if name.endswith(", 16 bit")]), 13)

    def test_bad_colour(self):
        error, _ = self.fails(1, "inspect", "nosuchcolour")
        self.assertIn("'nosuchcolour' is no colour", error)


class WhitePoint(Command):
    def white(self, *arguments):
        return json.loads(self.output("cct", "--format", "json", *arguments))

    def test_start_of_a_region_is_the_table_s_point(self):
        white = self.white("2000")
        self.assertEqual(white["uvPrime"], "0.305048, 0.538599")
        self.assertEqual((white["cct"], white["tint"], white["duv"]), ("2000 K", "0", "0.000000"))

    def test_tint_moves_away_from_the_locus(self):
        green, pink = self.white("4000", "--tint", "32767"), self.white("4000", "--tint", "-32767")
        # The iso-temperature line at 4000 K: (0.225110551, 0.501581061) to (0.213761074, 0.526282805).
        # The line through the pivot misses that point by a little.
        for got, wanted in zip(green["uvPrime"].split(", "), (0.213761074, 0.526282805)):
            self.assertAlmostEqual(float(got), wanted, delta=3e-6)
        self.assertAlmostEqual(float(green["duv"]), 0.02, delta=2e-6)
        self.assertAlmostEqual(float(pink["duv"]), -0.02, delta=2e-6)

    def test_inverse(self):
        white = self.white("5000", "--tint", "-8000")
        back = self.white("--from-xy", *white["xy"].split(", "))
        self.assertEqual(back["cct"], "5000 K")
        self.assertAlmostEqual(int(back["tint"]), -8000, delta=3)

    def test_fixture(self):
        white = self.white("3200", "--profile", "6")
        self.assertEqual(white["profile"], "WashLine PZ6 RGBW")
        self.assertEqual(white["channels"], "Red, Green, Blue, White")
        self.assertEqual(len(white["levels"].split(", ")), 4)
        self.assertEqual(len(white["bytes"].split()), 4)
        self.assertIn("Bytes", self.output("cct", "3200", "--profile", "6"))

    def test_bad_arguments(self):
        for code, arguments in ((2, []), (2, ["1949"]), (2, ["11001"]), (2, ["warm"]), (2, ["3000", "--tint", "32768"]),
                                (2, ["3000", "--from-xy", "0.3", "0.3"]), (2, ["--from-xy", "0.3"]),
                                (2, ["3000", "--profile", "10"]), (1, ["--from-xy", "0.9", "0.3"]),
                                (1, ["--from-xy", "nan", "0.3"])):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.fails(code, "cct", *arguments)[1], "")


class ChartFile(Command):
    @staticmethod
    def limit_files():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (64, 64))

    def test_a_chart_that_cannot_be_written_whole_leaves_the_old_file(self):
        for name in ("chart.svg", "chart.png"):
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                path = pathlib.Path(folder, name)
                path.write_text("old", encoding="utf-8")
                result = subprocess.run([TRELCOLOR, "chart", "--out", path, "--size", "100x100"], capture_output=True,
                                        env=ENVIRONMENT, preexec_fn=self.limit_files, timeout=60, check=False)
                self.assertNotEqual(result.returncode, 0)
                self.assertIn(b"cannot write", result.stderr)
                self.assertEqual(path.read_text(encoding="utf-8"), "old")
                self.assertEqual(os.listdir(folder), [name])


class ProfileDatabase(Command):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = str(pathlib.Path(self.folder.name, "profiles.xml"))

    def write(self, text):
        pathlib.Path(self.path).write_text(text, "utf-8")

    def test_replaces_the_data_for_this_run(self):
        self.write(DATABASE)
        plain = self.output("convert", "--profile", "7", "--format", "json", WHITE)
        replaced = self.output("--profile-database", self.path, "convert", "--profile", "7", "--format", "json", WHITE)
        self.assertNotEqual(json.loads(plain)["colors"][0]["bytes"], json.loads(replaced)["colors"][0]["bytes"])
        names = [channel["name"] for channel in json.loads(replaced)["colors"][0]["channels"]]
        self.assertEqual(names, ["Rouge", "Vert", "Bleu"])

    def test_an_endless_file_is_refused(self):
        error, _ = self.fails(1, "profiles", "--profile-database", "/dev/zero")
        self.assertIn("longer than", error)

    def test_a_fault_is_reported_with_line_and_reason(self):
        channel = '<Channel name="Vert" index="1" X="160" Y="500" Z="90"/>'
        faults = {
            "not well-formed": (DATABASE.replace("</Profile>", ""), 8, "tag mismatch"),
            "another document": ("<Colors/>", 1, "not <Profiles>"),
            "no profile": ("<Profiles/>", 1, "no <Profile>"),
            "unknown profile": (DATABASE.replace('index="7"', 'index="10"'), 3, "no profile 10"),
            "profile index missing": (DATABASE.replace(' index="7"', ""), 3, 'no "index"'),
            "gap": (DATABASE.replace('"Vert" index="1"', '"Vert" index="2"'), 5, "leaves a gap"),
            "negative channel": (DATABASE.replace('"Vert" index="1"', '"Vert" index="-1"'), 5, "leaves a gap"),
            "no number": (DATABASE.replace('X="160"', 'X="many"'), 5, '"X" is no number'),
            "not finite": (DATABASE.replace('X="160"', 'X="nan"'), 5, '"X" is no number'),
            "missing component": (DATABASE.replace(' X="160"', ""), 5, 'no "X"'),
            "too few channels": (DATABASE.replace(channel, "").replace('index="2"', 'index="1"'), 7, "needs 3"),
            "channel outside": (DATABASE.replace("</Profiles>", channel + "</Profiles>"), 8, "outside"),
            "profile inside": (DATABASE.replace(channel, '<Profile index="1"/>'), 5, "inside"),
            "attribute default": (DATABASE.replace("<Profiles>", '<!DOCTYPE Profiles [<!ATTLIST Channel X CDATA "4">]>'
                                                                 "\n<Profiles>"), 2, "document type"),
            "entity": (DATABASE.replace("<Profiles>", '<!DOCTYPE Profiles [<!ENTITY a "b">]>\n<Profiles>'), 2,
                       "document type"),
            "deep": ("<Profiles>" + "<a>" * 100, 1, "nested deeper"),
            "long": (DATABASE + "<!--" + "x" * 300000 + "-->", 1, "longer than"),
            "empty": ("", 1, ""),
        }
        for name, (document, line, reason) in faults.items():
            with self.subTest(name):
                self.write(document)
                error, out = self.fails(1, "profiles", "--profile-database", self.path)
                self.assertTrue(error.startswith(f"trelcolor: {self.path}:{line}: "), error)
                self.assertIn(reason, error)
                self.assertEqual(out, "")


if __name__ == "__main__":
    TRELCOLOR = sys.argv.pop(1)
    unittest.main()
