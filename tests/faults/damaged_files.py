#!/usr/bin/env python3
"""Proves that no user file, however damaged or hostile, costs time, memory, the process or its own content.

Each file is loaded by the library and a colour is then added. Nothing crashes or hangs, what is refused is refused in
little time and memory, and after the save the original is still there: byte for byte in a copy, or untouched where it
is no file, or with every colour that was in it in the new file. Time is judged in the full run only, by the best of
five.
"""

import os
import shutil
import stat
import sys
import xml.etree.ElementTree as ElementTree

from fault_support import Figures, Worker, WorkerDied, parser, temporary_home

COLORS = 3
LONGEST_MS = 100
LARGEST_MIB = 64
MIB = 2**20
TIMES = 5
LIMIT_SECONDS = 120

LOST = "originals lost"
DEAD = "workers that died or hung"
UNSAVED = "edits after the load that were not saved"
TOUCHED = "things in the file's place that were touched"
TAKEN = "files that had to be refused and were not"

LIST = (' <ColorLibrary name="{0}" isUserLibrary="1">\n'
        '  <Color name="{0} 1" uid="{{a1}}" value="aRgb;1;0;#ffffff0000000000" originatingPreset="" colorId=""/>\n'
        '  <Color name="{0} 2" uid="{{a2}}" value="aYxy;1;0;65535;1.000000;0.312700;0.329000" originatingPreset="" '
        'colorId="L201"/>\n'
        ' </ColorLibrary>\n')
GOOD = "<ColorLibraryList>\n" + LIST.format("Grün") + "</ColorLibraryList>\n"


def declared(encoding):
    """A document that says in which encoding it is."""
    return f'<?xml version="1.0" encoding="{encoding}"?>\n{GOOD}'


def colors_in(text):
    """What makes the colours of a document."""
    elements = ElementTree.fromstring(text).iter("Color")
    return {tuple(element.get(name) for name in ("name", "uid", "value", "colorId")) for element in elements}


def encodings():
    """Files in another encoding than they say, or than we write."""
    return {
        "UTF-16, little end first": b"\xff\xfe" + GOOD.encode("utf-16-le"),
        "UTF-16, big end first": b"\xfe\xff" + GOOD.encode("utf-16-be"),
        "UTF-16 without a mark": GOOD.encode("utf-16-le"),
        "UTF-16 that says UTF-8": b"\xff\xfe" + declared("UTF-8").encode("utf-16-le"),
        "UTF-16, cut in a character": (b"\xff\xfe" + GOOD.encode("utf-16-le"))[:-1],
        "UTF-32": GOOD.encode("utf-32"),
        "UTF-8 that says UTF-16": declared("UTF-16").encode(),
        "UTF-8 that says ISO-8859-1": declared("ISO-8859-1").encode(),
        "UTF-8 that says US-ASCII": declared("US-ASCII").encode(),
        "UTF-8 that says windows-1252": declared("windows-1252").encode(),
        "UTF-8 that says an unknown encoding": declared("x-none").encode(),
        "Latin-1 that says UTF-8": declared("UTF-8").encode("latin-1"),
        "Latin-1 that says nothing": GOOD.encode("latin-1"),
    }


def wiped():
    size = len(GOOD.encode())
    return {
        "empty": b"",
        "zeroed": bytes(size),
        "zeroed from the middle on": GOOD.encode()[:size // 2] + bytes(size - size // 2),
        "spaces": b" " * size,
        "ones": b"\xff" * size,
        "only a byte order mark": b"\xff\xfe",
    }


def with_entities(declarations, reference):
    text = GOOD.replace('name="Grün"', f'name="{reference}"')
    return f"<!DOCTYPE ColorLibraryList [\n{declarations}]>\n{text}".encode()


def laughs(levels, times):
    lines = ['<!ENTITY a0 "ha">\n']
    lines += [f'<!ENTITY a{level} "{f"&a{level - 1};" * times}">\n' for level in range(1, levels + 1)]
    return with_entities("".join(lines), f"&a{levels};")


def entities():
    long = "x" * 50000
    parameters = "".join(f'<!ENTITY % p{i} "{f"%p{i - 1};" * 10 if i else "<!--x-->"}">\n' for i in range(9)) + "%p8;\n"
    end = b"</ColorLibrary>"
    in_text = with_entities(f'<!ENTITY a "{long}">\n', "x").replace(end, b"&a;" * 20000 + end)
    return {
        "entities, classic": laughs(10, 10),
        "entities, two levels": laughs(2, 20000),
        "one entity 20,000 times, in an attribute": with_entities(f'<!ENTITY a "{long}">\n', "&a;" * 20000),
        "one entity 20,000 times, in text": in_text,
        "an entity in itself": with_entities('<!ENTITY a "&b;">\n<!ENTITY b "&a;">\n', "&a;"),
        "a file as an entity": with_entities('<!ENTITY a SYSTEM "/dev/zero">\n', "x").replace(b"/>", b">&a;</Color>"),
        "parameter entities": with_entities(parameters, "x"),
    }


def nested(tag, is_closed):
    inner = f"<{tag}>" * 10**6 + (f"</{tag}>" * 10**6 if is_closed else "")
    return f"<ColorLibraryList>{inner}</ColorLibraryList>".encode()


def deep():
    return {
        "10^6 nested elements": nested("a", True),
        "10^6 nested elements, open": nested("a", False),
        "10^6 nested lists": nested("ColorLibrary", True),
    }


def write_long_attribute(path, size):
    """A file of one attribute, written in pieces."""
    head, tail = GOOD.encode().split(b'name="', 1)
    with open(path, "wb") as file:
        file.write(head + b'name="')
        for _ in range(size // MIB):
            file.write(b"a" * MIB)
        file.write(tail)


def same_files(path, other):
    """Whether two files hold the same, without taking both into memory."""
    if not os.path.isfile(path) or os.path.getsize(path) != os.path.getsize(other):
        return False
    with open(path, "rb") as left, open(other, "rb") as right:
        while piece := left.read(MIB):
            if piece != right.read(MIB):
                return False
    return True


class Trial:
    """Files, one after the other, in the user's place."""

    def __init__(self, figures, options, home):
        self.figures, self.options, self.home = figures, options, home
        self.original = home.folder.with_name("original")
        with self.worker() as worker:
            self.plain_peak = worker.load()[3]

    def worker(self):
        return Worker(self.options.worker, self.home, "library", colors=COLORS, limit=LIMIT_SECONDS)

    def load_and_edit(self, name, path, worker, intended):
        """Colours, seconds and peak of the load; misses are noted."""
        colors, seconds, _, peak = worker.load()
        worker.edit(1)
        if not self.is_saved():
            self.figures.example(UNSAVED, name)
        if not self.is_kept(path, intended):
            self.figures.example(LOST, name)
        return colors, seconds, peak

    def is_saved(self):
        text = self.home.bytes()
        try:
            return text is not None and ("Counter", "{00000000-0000-4000-8000-000000000000}",
                                         "aRgb;1;0;#ffff000100000001", "") in colors_in(text)
        except ElementTree.ParseError:
            return False

    def is_kept(self, path, intended):
        copies = [f"{self.home.file}{name}" for name in self.home.names() if name.startswith(".bak")]
        if any(same_files(path, copy) for copy in copies):
            return True
        try:
            return bool(intended) and intended <= colors_in(self.home.bytes())
        except (ElementTree.ParseError, TypeError):
            return False

    def place(self, path):
        """A fresh home with the original in the user's place."""
        self.home.clear()
        shutil.copyfile(path, self.home.file)

    def measure(self, name, path, intended=frozenset(), must_be_refused=True):
        """Milliseconds and MiB above a plain start that a fresh process needs for a file: the best of some runs."""
        results = []
        for _ in range(1 if self.options.short else TIMES):
            self.place(path)
            with self.worker() as worker:
                try:
                    results.append(self.load_and_edit(name, path, worker, intended))
                except WorkerDied as death:
                    self.figures.example(DEAD, f"{name}: {death}")
                    return 0, 0
        if must_be_refused and results[0][0]:
            self.figures.example(TAKEN, f"{name}: {results[0][0]} colours")
        return min(result[1] for result in results) * 1000, min(result[2] for result in results) - self.plain_peak

    def measure_bytes(self, name, text, **more):
        self.original.write_bytes(text)
        return self.measure(name, self.original, **more)

    def judge(self, name, milliseconds, mebibytes):
        self.figures.show(f"{name}: ms", f"{milliseconds:.1f}", f"under {LONGEST_MS} in the full run",
                          self.options.short or milliseconds < LONGEST_MS)
        self.figures.show(f"{name}: MiB above a plain start", f"{mebibytes:.1f}", f"under {LARGEST_MIB}",
                          self.options.any_memory or mebibytes < LARGEST_MIB)


def cut_at_every_byte(trial):
    """In one process, since only the sum of so many is of interest."""
    text = GOOD.encode()
    sizes = range(0, len(text), 11 if trial.options.short else 1)
    longest = 0
    with trial.worker() as worker:
        for size in sizes:
            trial.original.write_bytes(text[:size])
            trial.place(trial.original)
            try:
                longest = max(longest, trial.load_and_edit(f"cut at {size}", trial.original, worker,
                                                           colors_in(text))[1])
            except WorkerDied as death:
                trial.figures.example(DEAD, f"cut at {size}: {death}")
                return
    trial.figures.note(f"cut at {len(sizes)} places, the longest: ms", f"{longest * 1000:.1f}")


def small_files(trial):
    cases = {name: (text, colors_in(GOOD)) for name, text in encodings().items()}
    cases.update({name: (text, frozenset()) for name, text in wiped().items()})
    results = [trial.measure_bytes(name, text, intended=intended, must_be_refused=not intended)
               for name, (text, intended) in cases.items()]
    trial.judge(f"{len(cases)} wiped, or in another encoding", *(max(column) for column in zip(*results)))


def hostile_files(trial):
    for name, text in {**entities(), **deep()}.items():
        trial.judge(name, *trial.measure_bytes(name, text))


def long_attribute(trial):
    """What is refused for its length alone is so at any length; the short run spares the disk."""
    size = 65 * MIB if trial.options.short else 1024 * MIB
    if shutil.disk_usage(trial.home.folder).free < 6 * size:
        print(f"an attribute of {size // MIB} MiB: skipped, the disk has no room to spare")
        return
    write_long_attribute(trial.original, size)
    name = f"an attribute of {size // MIB} MiB"
    trial.judge(name, *trial.measure(name, trial.original))


def make_folder(path):
    path.mkdir()
    (path / "inside").write_bytes(b"content")


def make_link_loop(path):
    other = path.with_name("other end")
    other.symlink_to(path)
    path.symlink_to(other)


def state_of(path):
    """What stands at a path, links not followed."""
    mode = path.lstat().st_mode
    if stat.S_ISLNK(mode):
        return "link", os.readlink(path)
    return stat.S_IFMT(mode), sorted(os.listdir(path)) if stat.S_ISDIR(mode) else path.lstat().st_ino


NO_FILES = {
    "a folder": make_folder,
    "a pipe": os.mkfifo,
    "a loop of links": make_link_loop,
    "a link to nothing": lambda path: path.symlink_to(path.with_name("nothing")),
    "a link to itself": lambda path: path.symlink_to(path),
}


def other_than_files(trial):
    results = []
    for name, make in NO_FILES.items():
        trial.home.clear()
        make(trial.home.file)
        before = state_of(trial.home.file)
        with trial.worker() as worker:
            try:
                _, seconds, _, peak = worker.load()
                worker.edit(1)
                results.append((seconds * 1000, peak - trial.plain_peak))
            except WorkerDied as death:
                trial.figures.example(DEAD, f"{name}: {death}")
        if state_of(trial.home.file) != before:
            trial.figures.example(TOUCHED, name)
    if results:
        trial.judge(f"{len(results)} of {len(NO_FILES)} that are no files", *(max(column) for column in zip(*results)))


def main():
    arguments = parser(__doc__)
    arguments.add_argument("--any-memory", action="store_true",
                           help="do not judge memory, of which a sanitizer takes more")
    options = arguments.parse_args()
    figures = Figures()
    with temporary_home() as home:
        trial = Trial(figures, options, home)
        figures.note("a plain start: MiB", f"{trial.plain_peak:.1f}")
        for part in (cut_at_every_byte, small_files, hostile_files, long_attribute, other_than_files):
            part(trial)
    for name in (LOST, DEAD, UNSAVED, TOUCHED, TAKEN):
        figures.none_of(name)
    return figures.exit_code()


if __name__ == "__main__":
    sys.exit(main())
