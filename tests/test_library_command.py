#!/usr/bin/env python3
"""The library command as a person uses it: test_library_command.py PATH_TO_TRELCOLOR FOLDER_OF_PRESETS."""

import concurrent.futures
import json
import os
import pathlib
import pty
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import uuid

TRELCOLOR = ""
PRESETS = ""
RED = "aRgb;1;0;#ffffffff00000000"
UIDS = [f"{{00000000-0000-4000-8000-00000000000{i}}}" for i in range(10)]


def color(name, i, value=RED, vendor=""):
    return f'  <Color name="{name}" uid="{UIDS[i]}" value="{value}" originatingPreset="" colorId="{vendor}"/>\n'


def color_list(name, *colors, user=1):
    return f' <ColorLibrary name="{name}" isUserLibrary="{user}">\n' + "".join(colors) + " </ColorLibrary>\n"


def document(*lists):
    return "<ColorLibraryList>\n" + "".join(lists) + "</ColorLibraryList>\n"


class Command(unittest.TestCase):
    """Each test has the command beside the presets, as if installed, and a home folder of its own."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        root = pathlib.Path(folder.name)
        (root / "bin").mkdir()
        cls.trelcolor = shutil.copy(TRELCOLOR, root / "bin" / "trelcolor")
        shutil.copytree(PRESETS, root / "Resources" / "Presets")

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.environment = {**os.environ, "LC_ALL": "C.UTF-8", "HOME": folder.name,
                            "XDG_DATA_HOME": str(self.folder / "data")}
        # The separators of this name are part of it.
        self.user_file = self.folder / "data\\Orvane\\userColors.xml"

    def run_library(self, *arguments, **options):
        return subprocess.run([self.trelcolor, "library", *arguments], capture_output=True, env=self.environment,
                              cwd=self.folder, timeout=120, check=False, **options)

    def output(self, *arguments):
        """Standard output of a run that must succeed without a word on standard error."""
        result = self.run_library(*arguments)
        self.assertEqual((result.returncode, result.stderr.decode()), (0, ""), arguments)
        return result.stdout.decode()

    def json(self, *arguments):
        return json.loads(self.output(*arguments, "--format", "json"))

    def fails(self, code, *arguments, **options):
        """The one line on standard error of a run that must fail; its standard output."""
        result = self.run_library(*arguments, **options)
        self.assertEqual(result.returncode, code, (arguments, result.stderr))
        lines = result.stderr.decode().splitlines()
        self.assertEqual(len(lines), 1, lines)
        self.assertTrue(lines[0].startswith("trelcolor: "), lines)
        return lines[0], result.stdout.decode()

    def write(self, text, name="colors.trelcolors"):
        path = self.folder / name
        path.write_text(text, "utf-8")
        return str(path)

    def write_user_file(self, text):
        self.user_file.write_text(text, "utf-8")

    def user_lists(self):
        return [entry["name"] for entry in self.json("list") if entry["kind"] == "user"]

    def names(self, name):
        return [entry["name"] for entry in self.json("show", name)]


class Presets(Command):
    def test_three_ship(self):
        self.assertEqual([(entry["name"], entry["kind"], entry["colors"]) for entry in self.json("list")],
                         [("Basics", "preset", 19), ("Web Colors", "preset", 148), ("White Points", "preset", 15)])

    def test_each_passes_the_check(self):
        self.assertEqual(self.output("check", *map(str, pathlib.Path(PRESETS).glob("*.trelcolors"))), "")

    def test_web_colors_are_those_of_the_toolkit(self):
        entries = self.json("show", "Web Colors")
        known = [entry for entry in entries if entry["name"] != "rebeccapurple"]
        levels = subprocess.run([self.trelcolor, "convert", "--format", "hex", *(entry["name"] for entry in known)],
                                capture_output=True, env=self.environment, timeout=120, check=True)
        self.assertEqual([entry["hex"] for entry in known], ["#" + line for line in levels.stdout.decode().split()])
        self.assertEqual([entry["hex"] for entry in entries if entry not in known], ["#663399"])
        self.assertEqual(len(known), 147)

    def test_white_points_have_the_temperature_of_their_name(self):
        for entry in self.json("show", "White Points"):
            x, y = entry["value"].split(";")[-2:]
            back = subprocess.run([self.trelcolor, "cct", "--from-xy", x, y, "--format", "json"], capture_output=True,
                                  env=self.environment, timeout=60, check=True)
            self.assertEqual(json.loads(back.stdout)["cct"], entry["name"])

    def test_tints_lie_on_the_way_to_white(self):
        colors = {entry["name"]: bytes.fromhex(entry["hex"][1:]) for entry in self.json("show", "Basics")}
        for name in ("Red", "Green", "Blue", "Cyan", "Magenta", "Yellow"):
            for tint, floor in (("Light ", 0x80), ("Pale ", 0xc0)):
                self.assertEqual(colors[tint + name], bytes(max(level, floor) for level in colors[name]), name)
            self.assertEqual(set(colors[name]), {0, 255})
        self.assertEqual(colors["White"], b"\xff\xff\xff")

    def test_uids_are_fixed(self):
        entries = [entry for name in ("Basics", "Web Colors", "White Points") for entry in self.json("show", name)]
        self.assertEqual(len({entry["uid"] for entry in entries}), 19 + 148 + 15)
        self.assertEqual({uuid.UUID(entry["uid"]).version for entry in entries}, {5})
        self.assertEqual({entry["colorId"] for entry in entries}, {""})
        # Projects refer to them for ever.
        first = {entry["list"]: entry["uid"] for entry in reversed(entries)}
        self.assertEqual(first, {"Basics": "{821e83c3-1e90-54ad-8816-4804e1239bcb}",
                                 "Web Colors": "{2382227f-db16-5383-8b1b-087089ad4b9e}",
                                 "White Points": "{03109a71-7fb3-5661-bc64-3e32f08fd5fc}"})


class Reading(Command):
    def test_tables(self):
        self.assertEqual([line.rsplit(None, 2) for line in self.output("list").splitlines()[2:]],
                         [["Basics", "preset", "19"], ["Web Colors", "preset", "148"],
                          ["White Points", "preset", "15"]])
        self.assertRegex(self.output("show", "Basics").splitlines()[2],
                         rf"^Basics  Red  +#ff0000  {re.escape(RED)}  \{{[-0-9a-f]{{36}}}}$")

    def test_find_looks_at_name_uid_vendor_and_hex(self):
        self.write_user_file(document(color_list("Mine", color("Flame", 1, vendor="L164"))))
        self.assertEqual([entry["name"] for entry in self.json("find", "MEDIUMvi")], ["mediumvioletred"])
        self.assertEqual([entry["name"] for entry in self.json("find", "#66339")], ["rebeccapurple"])
        for text in ("l16", UIDS[1], "flame"):
            self.assertEqual([(entry["list"], entry["name"], entry["colorId"]) for entry in self.json("find", text)],
                             [("Mine", "Flame", "L164")])

    def test_nothing_found(self):
        error, out = self.fails(1, "find", "no such colour", "--format", "json")
        self.assertIn("'no such colour'", error)
        self.assertEqual(json.loads(out), [])

    def test_missing_list(self):
        error, out = self.fails(1, "show", "Explicit Colors")
        self.assertIn("no list 'Explicit Colors'", error)
        self.assertEqual(out, "")

    def test_writes_nothing(self):
        text = "<!-- by hand -->" + document(color_list("Mine", color("Flame", 1)), color_list("Empty"))
        self.write_user_file(text)
        self.assertEqual(self.user_lists(), ["Mine", "Empty"])
        self.output("show", "Mine")
        self.output("find", "Flame")
        self.output("export", "out.trelcolors")
        self.assertEqual(self.user_file.read_text("utf-8"), text)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()),
                         ["data", self.user_file.name, "out.trelcolors"])

    def test_without_a_user_file_none_is_made(self):
        self.output("list")
        self.assertEqual([path.name for path in self.folder.iterdir()], ["data"])

    def test_a_broken_user_file_leaves_the_presets(self):
        self.write_user_file("<ColorLibraryList>\n<")
        result = self.run_library("list")
        self.assertEqual(result.returncode, 0)
        self.assertIn(f"{self.user_file}:2: ", result.stderr.decode())
        self.assertIn("Web Colors", result.stdout.decode())

    def test_strange_names_stay_on_one_line(self):
        self.write_user_file(document(color_list("My&#10;list", color("a&#x9b;b", 1))))
        self.assertEqual(len(self.output("list").splitlines()), 6)
        self.assertNotIn("\x9b", self.output("find", UIDS[1]))
        self.assertEqual(self.json("list")[3]["name"], "My\nlist")


class Editing(Command):
    def test_add_makes_list_and_file(self):
        added, = self.json("add", "Mine", "Warm", "#ff0000")
        self.assertEqual((added["list"], added["name"], added["value"]), ("Mine", "Warm", RED))
        self.assertEqual(self.user_file.read_text("utf-8"),
                         document(color_list("Mine", color("Warm", 1))).replace(UIDS[1], added["uid"]))
        self.json("add", "Mine", "Cold", "aYxy;1;0;65535;1.000000;0.300000;0.300000")
        self.json("add", "Other", "Warm", "blue")
        self.assertEqual((self.user_lists(), self.names("Mine")), (["Mine", "Other"], ["Warm", "Cold"]))

    def test_any_text_is_a_name(self):
        for name in ("Wärme 🔥", 'a"<&>\'b', "%1 %2", "list", "[a,b]", " x ", "a/b", "tab\there"):
            with self.subTest(name):
                self.json("add", name, name, "red")
                self.assertEqual(self.names(name), [name])
        self.assertEqual(len(self.user_lists()), 8)

    def test_color_is_a_name_that_the_library_gives(self):
        self.assertEqual([self.json("add", "Mine", "Color", "red")[0]["name"] for _ in range(2)],
                         ["Color 2", "Color 3"])

    def test_refused_additions(self):
        self.json("add", "Mine", "Warm", "red")
        before = self.user_file.read_bytes()
        for code, reason, arguments in ((1, "has a colour 'Warm' already", ("Mine", "Warm", "blue")),
                                        (1, "'Basics' is a preset", ("Basics", "Mauve", "red")),
                                        (1, "is a list of a project", ("Project Swatches", "x", "red")),
                                        (1, "'mauvish' is no colour", ("Mine", "x", "mauvish")),
                                        (2, "empty", ("", "x", "red")), (2, "empty", ("Mine", "", "red")),
                                        (2, "characters", ("Mine", "a\x01b", "red")),
                                        (2, "characters", ("\ufffe", "x", "red"))):
            with self.subTest(arguments):
                error, out = self.fails(code, "add", *arguments)
                self.assertIn(reason, error)
                self.assertEqual((out, self.user_file.read_bytes()), ("", before))

    def test_rename(self):
        self.write_user_file(document(color_list("Mine", color("a", 1, vendor="V1"), color("b", 2))))
        renamed, = self.json("rename", "Mine/a", "c")
        self.assertEqual((renamed["name"], renamed["uid"], renamed["value"]), ("c", UIDS[1], RED))
        self.json("rename", UIDS[2], "a")
        # Under another name it is no longer the vendor's colour.
        self.assertEqual(self.user_file.read_text("utf-8"),
                         document(color_list("Mine", color("c", 1), color("a", 2))))

    def test_remove(self):
        self.write_user_file(document(color_list("Mine", color("a", 1), color("b", 2), color("c", 3))))
        self.assertEqual(self.json("remove", "Mine/a")[0]["uid"], UIDS[1])
        self.assertEqual(self.json("remove", UIDS[3])[0]["name"], "c")
        self.assertEqual(self.user_file.read_text("utf-8"), document(color_list("Mine", color("b", 2))))

    def test_refused_changes(self):
        text = document(color_list("Mine", color("a", 1), color("b", 2)), color_list("x", color("y/z", 3)),
                        color_list("x/y", color("z", 4)))
        self.write_user_file(text)
        preset, = self.json("find", "rebeccapurple")
        for code, reason, arguments in ((1, "has a colour 'b' already", ("rename", "Mine/a", "b")),
                                        (1, "has a colour 'a' already", ("rename", "Mine/a", "a")),
                                        (2, "empty", ("rename", "Mine/a", "")),
                                        (2, "characters", ("rename", "Mine/a", "\x7f\x1b")),
                                        (1, "is of a preset", ("rename", "Web Colors/red", "rot")),
                                        (1, "is of a preset", ("remove", preset["uid"])),
                                        (1, "no colour 'Mine/d'", ("remove", "Mine/d")),
                                        (1, "no colour 'Mine'", ("remove", "Mine")),
                                        (1, "'x/y/z' stands for 2 colours", ("remove", "x/y/z"))):
            with self.subTest(arguments):
                error, out = self.fails(code, *arguments)
                self.assertIn(reason, error)
                self.assertEqual((out, self.user_file.read_text("utf-8")), ("", text))

    def test_a_file_that_would_lose_something_is_left_alone(self):
        good = document(color_list("Mine", color("a", 1)))
        losses = {
            "not well-formed": (good.replace("</ColorLibrary>", ""), ":5: "),
            "value of another program": (good.replace(RED, "xCmy;1"), ":3: \"value\""),
            "attribute of another program": (good.replace("<Color ", '<Color x="1" '), ":3: <Color> has an unknown"),
            "uid of another colour": (document(color_list("Mine", color("a", 1), color("b", 1))), ":4: another colour"),
            "uid of a preset": (good.replace(UIDS[1], self.json("find", "rebeccapurple")[0]["uid"]), ": a preset has"),
            "no user list": (good.replace('"1"', '"0"'), ": the list 'Mine' is no user list"),
        }
        for name, (text, reason) in losses.items():
            with self.subTest(name):
                self.write_user_file(text)
                for arguments in (("add", "Mine", "b", "red"), ("remove", "Mine/a"), ("rename", "Mine/a", "b"),
                                  ("import", self.write(good))):
                    error, _ = self.fails(1, *arguments)
                    self.assertIn(f"{self.user_file}{reason}", error)
                    self.assertEqual(self.user_file.read_text("utf-8"), text)

    def test_a_save_that_fails_is_no_success(self):
        self.json("add", "Mine", "a", "red")
        before = self.user_file.read_bytes()

        def small_files_only():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (len(before), len(before)))

        error, out = self.fails(1, "add", "Mine", "b", "blue", preexec_fn=small_files_only)
        self.assertIn(f"cannot save '{self.user_file}'", error)
        self.assertEqual((out, self.user_file.read_bytes()), ("", before))

    def test_many_at_once_lose_nothing(self):
        names = [f"c{i}" for i in range(8)]
        with concurrent.futures.ThreadPoolExecutor(len(names)) as pool:
            results = list(pool.map(lambda name: self.run_library("add", "Mine", name, "red"), names))
        self.assertEqual([(result.returncode, result.stderr) for result in results], [(0, b"")] * len(names))
        self.assertEqual(sorted(self.names("Mine")), names)


class ExportAndImport(Command):
    def test_named_lists(self):
        mine, other = color_list("Mine", color("ä", 1, vendor="V")), color_list("[Other]", color("b", 2))
        self.write_user_file(document(mine, other))
        lists = self.json("export", "out.trelcolors", "[Other]", "Basics", "Mine", "[Other]")
        self.assertEqual([(entry["name"], entry["colors"]) for entry in lists],
                         [("[Other]", 1), ("Basics", 19), ("Mine", 1)])
        basics = pathlib.Path(PRESETS, "Basics.trelcolors").read_text("utf-8").replace('isUserLibrary="0"',
                                                                                     'isUserLibrary="1"')
        self.assertEqual((self.folder / "out.trelcolors").read_text("utf-8"),
                         document(other, *basics.splitlines(True)[1:-1], mine))

    def test_all_of_the_users_lists_without_names(self):
        text = document(color_list("Mine", color("a", 1)), color_list("Other", color("b", 2)))
        self.write_user_file(text.replace("</ColorLibraryList>", color_list("Empty") + "</ColorLibraryList>"))
        self.output("export", "out.trelcolors")
        self.assertEqual((self.folder / "out.trelcolors").read_text("utf-8"), text)

    def test_refused_exports(self):
        for code, reason, arguments in ((2, "does not end in .trelcolors", ("out.xml",)),
                                        (1, "no colours of the user's", ("out.trelcolors",)),
                                        (1, "no list 'Nope'", ("out.trelcolors", "Basics", "Nope")),
                                        (1, "cannot write", ("nowhere/out.trelcolors", "Basics"))):
            with self.subTest(arguments):
                self.assertIn(reason, self.fails(code, "export", *arguments)[0])
        self.write_user_file(document(color_list("Empty")))
        self.assertIn("holds no colours", self.fails(1, "export", "out.trelcolors", "Empty")[0])
        self.assertFalse((self.folder / "out.trelcolors").exists())

    def test_import_brings_back_what_was_exported(self):
        text = document(color_list("Mine", color("a", 1, vendor="V"), color("b", 2)),
                        color_list("Other", color("c", 3)))
        self.write_user_file(text)
        self.output("export", "out.trelcolors")
        self.user_file.unlink()
        lists = self.json("import", "out.trelcolors")
        self.assertEqual([(entry["name"], entry["kind"], entry["colors"]) for entry in lists],
                         [("Mine", "user", 2), ("Other", "user", 1)])
        self.assertEqual(self.user_file.read_text("utf-8"), text)

    def test_import_again_gives_other_names_and_uids(self):
        path = self.write(document(color_list("Mine", color("a", 1)), color_list("Basics", color("b", 2), user=0)))
        self.output("import", path)
        self.output("import", path)
        self.assertEqual(self.user_lists(), ["Mine", "Basics 2", "Mine 2", "Basics 3"])
        self.assertEqual([self.json("show", name)[0]["uid"] == UIDS[1] for name in ("Mine", "Mine 2")], [True, False])

    def test_import_gives_what_is_missing(self):
        text = document(color_list("", color("a", 1), color("a", 2).replace(UIDS[2], "{}"),
                                   color("c", 3).replace(UIDS[3], "")),
                        color_list("Empty"))
        lists = self.json("import", self.write(text, "From a friend.trelcolors"))
        self.assertEqual([entry["name"] for entry in lists], ["From a friend"])
        entries = self.json("show", "From a friend")
        self.assertEqual([entry["name"] for entry in entries], ["a", "a 2", "c"])
        self.assertEqual(entries[0]["uid"], UIDS[1])
        self.assertEqual(len({entry["uid"] for entry in entries}), 3)
        self.assertEqual({str(uuid.UUID(entry["uid"])) for entry in entries},
                         {entry["uid"].strip("{}") for entry in entries})

    def test_refused_imports(self):
        good = document(color_list("Mine", color("a", 1)))
        for reason, text in ((":3: \"value\" is no colour", good.replace(RED, "reddish")),
                             (":1: the document element is <Colors>", "<Colors/>"), (":1: ", ""),
                             ("holds no colours", document(color_list("Empty")))):
            with self.subTest(reason):
                self.assertIn(reason, self.fails(1, "import", self.write(text))[0])
        self.assertIn("cannot open", self.fails(1, "import", "nosuch.trelcolors")[0])
        self.assertIn("cannot open", self.fails(1, "import", str(self.folder))[0])
        self.assertEqual(self.user_lists(), [])


class Check(Command):
    GOOD = document(color_list("Mine", color("a", 1), color("b", 2)))
    DTD = "<!DOCTYPE ColorLibraryList [<!{}>]>\n<ColorLibraryList>"
    FAULTS = {
        "not well-formed": (GOOD.replace(' </ColorLibrary>\n', ""), 5, "tag mismatch"),
        "empty": ("", 1, "Premature end"),
        "another document": ("\n<Colors><x/></Colors>", 2, "is <Colors>, not <ColorLibraryList>"),
        "list alone": (color_list("Mine", color("a", 1)), 1, "is <ColorLibrary>, not <ColorLibraryList>"),
        "unknown element": (GOOD.replace(" </ColorLibrary>", "<Colour/>"
                                         " </ColorLibrary>"), 5, "<Colour> has no place in <ColorLibrary>"),
        "colour outside": (document(color("a", 1)), 2, "<Color> has no place in <ColorLibraryList>"),
        "list in a list": (document(color_list("A", color("a", 1), color_list("B", color("b", 2)))), 4,
                           "<ColorLibrary> has no place in <ColorLibrary>"),
        "colour in a colour": (GOOD.replace("/>", "><Color/></Color>", 1), 3, "<Color> has no place in <Color>"),
        "unknown attribute": (GOOD.replace("colorId", "colourId", 1), 3, '<Color> has an unknown attribute "colourId"'),
        "attribute of the document": (GOOD.replace("List>", 'List v="1">', 1), 1, 'unknown attribute "v"'),
        "namespace": (GOOD.replace("List>", 'List xmlns="x">', 1), 1, "namespaces"),
        "text": (GOOD.replace("/>", "/>red", 1), 3, "text has no place"),
        "list without a name": (GOOD.replace(' name="Mine"', ""), 2, '<ColorLibrary> has no "name"'),
        "list without a kind": (GOOD.replace(' isUserLibrary="1"', ""), 2, '<ColorLibrary> has no "isUserLibrary"'),
        "odd kind": (GOOD.replace('"1"', '"yes"'), 2, "neither 0 nor 1: 'yes'"),
        "two lists of a name": (document(color_list("A", color("a", 1)), color_list("A", color("b", 2))), 5,
                                "another list has the name 'A', in line 2"),
        "no name": (GOOD.replace('name="a" ', ""), 3, '<Color> has no "name"'),
        "empty name": (GOOD.replace('name="a"', 'name=""'), 3, '<Color> has no "name"'),
        "two colours of a name": (GOOD.replace('"b"', '"a"'), 4,
                                  "another colour of the list has the name 'a', in line 3"),
        "no uid": (GOOD.replace(f'uid="{UIDS[1]}" ', ""), 3, '<Color> has no "uid"'),
        "uid without braces": (GOOD.replace(UIDS[1], UIDS[1].strip("{}")), 3, "no UUID in braces"),
        "short uid": (GOOD.replace(UIDS[1], "{0}"), 3, "no UUID in braces: '{0}'"),
        "null uid": (GOOD.replace("8000-000000000001", "0000-000000000000").replace("-4000-", "-0000-", 1), 3,
                     "no UUID in braces"),
        "duplicate uid": (GOOD.replace(UIDS[2], UIDS[1]), 4, f"another colour has the uid {UIDS[1]}, in line 3"),
        "duplicate uid in another list": (document(color_list("A", color("a", 1)), color_list("B", color("b", 1))), 6,
                                          "in line 3"),
        "no value": (GOOD.replace(f'value="{RED}" ', "", 1), 3, '<Color> has no "value"'),
        "no colour": (GOOD.replace(RED, "reddish", 1), 3, "\"value\" is no colour: 'reddish'"),
        "empty list": (document(color_list("A", color("a", 1)), color_list("B")), 5, "the list holds no colours"),
        "entity": (GOOD.replace("<ColorLibraryList>", DTD.format('ENTITY e "x"')), 1, "entity declarations"),
        "attribute default": (GOOD.replace("<ColorLibraryList>", DTD.format('ATTLIST Color colorId CDATA "4"')), 1,
                              "document type declaration"),
        "deep": ("<ColorLibraryList>\n" + "<a>" * 100, 2, "nested deeper than 64"),
        "another encoding": ("<?xml version='1.0' encoding='ISO-8859-1'?>\n" + GOOD, 1, "ISO-8859-1, not UTF-8"),
    }

    def faults(self, *paths):
        result = self.run_library("check", "--format", "json", *paths)
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        return json.loads(result.stdout)

    def test_a_good_file(self):
        self.assertEqual(self.output("check", self.write(self.GOOD)), "")
        declared = self.write("<?xml version='1.0' encoding='utf-8'?><!-- -->" + self.GOOD)
        self.assertEqual(self.json("check", declared), [])
        self.assertEqual(self.output("check", self.write(document())), "")

    def test_what_the_command_writes_is_good(self):
        self.output("add", "Mine", "a", "red")
        self.output("export", "out.trelcolors", "Mine", "Web Colors", "White Points")
        self.assertEqual(self.output("check", str(self.user_file), "out.trelcolors"), "")

    def test_each_fault_has_its_line_and_reason(self):
        for name, (text, line, reason) in self.FAULTS.items():
            with self.subTest(name):
                path = self.write(text)
                faults = [fault for fault in self.faults(path) if reason in fault["reason"]]
                self.assertEqual([(fault["file"], fault["line"]) for fault in faults], [(path, line)])

    def test_the_line_is_where_the_element_begins(self):
        fault, = self.faults(self.write(self.GOOD.replace(RED, "reddish", 1).replace(" uid", "\n\nuid")))
        self.assertEqual(fault["line"], 3)

    def test_all_faults_are_reported_by_line(self):
        text = self.GOOD.replace(RED, "reddish").replace('name="a"', 'x="y"')
        paths = [self.write(text.replace(" </", "<Other><Deep/></Other></", 1)), "nosuch.trelcolors",
                 self.write(document(color_list("A")), "2")]
        result = self.run_library("check", *paths)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.decode(),
                         "trelcolor: cannot open 'nosuch.trelcolors': No such file or directory\n")
        prefix = paths[0]
        self.assertEqual(result.stdout.decode().splitlines(),
                         [f'{prefix}:3: <Color> has an unknown attribute "x"', f'{prefix}:3: <Color> has no "name"',
                          f"{prefix}:3: \"value\" is no colour: 'reddish'",
                          f"{prefix}:4: \"value\" is no colour: 'reddish'",
                          f"{prefix}:5: <Other> has no place in <ColorLibrary>",
                          f"{self.folder / '2'}:2: the list holds no colours"])

    def test_a_long_file_is_refused_unread(self):
        path = self.folder / "long.trelcolors"
        with open(path, "wb") as file:
            file.truncate(64 * 1024 * 1024 + 1)
        self.assertEqual(self.run_library("check", str(path)).stdout.decode(),
                         f"{path}:1: it is longer than 67108864 bytes\n")

    def test_a_pipe_is_no_file(self):
        pipe = self.folder / "pipe.trelcolors"
        os.mkfifo(pipe)
        self.user_file.symlink_to(pipe)
        for arguments in (("check", pipe), ("import", pipe), ("export", pipe, "Basics"), ("add", "Mine", "a", "red")):
            with self.subTest(arguments):
                error = self.run_library(*arguments).stderr.decode()
                self.assertIn("It is no file", error)
                self.assertTrue(pipe.is_fifo())

    def test_a_reason_is_one_line(self):
        path = self.write(self.GOOD.replace(RED, "red&#10;dish&#x9b;", 1))
        self.assertEqual(self.run_library("check", path).stdout.decode(),
                         f"{path}:3: \"value\" is no colour: 'red\ufffddish\ufffd'\n")


class Progress(Command):
    def on_terminal(self, *arguments):
        """What a run writes on a terminal, and the seconds that it took."""
        started = time.monotonic()
        terminal, other_end = pty.openpty()
        with subprocess.Popen([self.trelcolor, "library", *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                              stdout=other_end, stderr=other_end) as process:
            os.close(other_end)
            text = b""
            while True:
                try:
                    got = os.read(terminal, 4096)
                except OSError:  # how a terminal ends
                    break
                if not got:
                    break
                text += got
        os.close(terminal)
        return text.decode(), time.monotonic() - started

    def test_short_work_has_none(self):
        self.assertEqual(self.on_terminal("check", self.write(document(color_list("A", color("a", 1)))))[0], "")

    def test_long_work_has_a_bar_that_goes_away(self):
        colors = (color(f"c{i}", 1).replace(UIDS[1], f"{{{uuid.UUID(int=i + 1)}}}") for i in range(10000))
        path = self.write(document(color_list("Many", *colors)))
        seconds, text, count = 0, "", 1
        while "Checking [" not in text:
            self.assertLess(seconds, 20, "a long time without a bar")
            count *= 4
            text, seconds = self.on_terminal("check", *[path] * count)
        self.assertRegex(text, r"^(\rChecking \[#* *\] +\d+ %)+\r\x1b\[K$")

    def test_none_without_a_terminal(self):
        colors = (color(f"c{i}", 1).replace(UIDS[1], f"{{{uuid.UUID(int=i + 1)}}}") for i in range(10000))
        path = self.write(document(color_list("Many", *colors)))
        self.assertEqual(self.output("check", *[path] * 16), "")


class BadArguments(Command):
    def test_each_gives_one_line_and_code_2(self):
        for arguments in ([], ["nosuch"], ["list", "x"], ["show"], ["show", "Basics", "x"], ["find"],
                          ["add", "Mine", "a"],
                          ["add", "Mine", "a", "red", "x"], ["rename", "Mine/a"], ["remove"], ["export"], ["import"],
                          ["import", "a", "b"], ["check"], ["list", "--format", "csv"], ["list", "--nosuch"],
                          ["list", "show", "Basics"]):
            with self.subTest(arguments):
                self.assertEqual(self.fails(2, *arguments)[1], "")

    def test_every_command_has_help(self):
        for command in ([], *([name] for name in "list show find add rename remove export import check".split())):
            self.assertIn("Usage: trelcolor library", self.output(*command, "--help"))

    def test_format_stands_anywhere(self):
        self.assertEqual(self.output("--format", "json", "list"), self.output("list", "--format", "json"))


if __name__ == "__main__":
    TRELCOLOR, PRESETS = (os.path.abspath(sys.argv.pop(1)) for _ in range(2))
    unittest.main()
