#!/usr/bin/env python3
"""Each file of src/ stands in one layer of docs/architecture.md and includes nothing that lies above it.

Internal headers (*_p.h) stay out of the public ones and out of what is written against the library. Before it looks at
the tree, the script looks at made-up ones, each with one fault.
"""

import pathlib
import re
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
DOCUMENT = "docs/architecture.md"
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*["<]([^">\n]+)([">])', re.MULTILINE)
GENERATED = {"TrelExport.h"}
OUTSIDE = ("cli", "benchmarks", "examples")  # what uses the library as a host does
NOTHING = "nothing"


def code_in(folder):
    return sorted(path for path in folder.rglob("*") if path.suffix in (".h", ".cpp"))


def includes_of(path):
    """Pairs of the included file's name and whether it stands in quotes, as this project's own do."""
    for name, end in INCLUDE.findall(path.read_text("utf-8")):
        yield pathlib.PurePosixPath(name).name, end == '"'


def is_internal(name):
    return name.endswith("_p.h")


def tables_in(text):
    """The Markdown tables of a text, each row as a dictionary by column."""
    for table in re.findall(r"(?:^\|.*\|\n)+", text, re.MULTILINE):
        header, _, *rows = [[cell.strip() for cell in line.strip("|").split("|")] for line in table.splitlines()]
        yield [dict(zip(header, row)) for row in rows]


def quoted(cell):
    return re.findall(r"`([^`]+)`", cell)


class Layers:
    """What the document says of the files in \a present."""

    def __init__(self, document, present):
        self.faults = []
        self.below = {}  # layer: itself and the layers that it stands on
        self.layer_of = {}
        self.upward = set()
        section = re.search(r"^## Layers\n(.*?)(?=^## |\Z)", document, re.DOTALL | re.MULTILINE)
        for row in (row for table in tables_in(section.group(1) if section else "") for row in table):
            if "Stands on" in row:
                layer = row["Layer"].split()[0]
                self.add_layer(layer, row["Stands on"])
                self.place(row["Files"], layer, present)
            elif "Unit" in row:
                self.place(row["Unit"], row["Layer"], present)
            elif "Upward include" in row:
                self.upward.add(tuple(quoted(row["Upward include"])))

    def add_layer(self, layer, stands_on):
        lower = [] if stands_on == NOTHING else stands_on.split(", ")
        self.faults += [f"{DOCUMENT}: layer {layer} stands on {other}, which is not above it in the table"
                        for other in lower if other not in self.below]
        self.below[layer] = {layer, *lower}

    def place(self, cell, layer, present):
        if layer not in self.below:
            self.faults.append(f"{DOCUMENT}: there is no layer {layer}")
        for name in quoted(cell):
            for file in self.files_of(name, present):
                if file in self.layer_of:
                    self.faults.append(f"src/{file} stands in layers {self.layer_of[file]} and {layer}")
                self.layer_of[file] = layer

    def files_of(self, name, present):
        """A class is its header and its source; an internal header brings its source along, if it has one."""
        if "." not in name:
            wanted = optional = [name + ".h", name + ".cpp"]
        else:
            wanted = [name]
            optional = [name, name.replace("_p.h", ".cpp")]
        self.faults += [f"{DOCUMENT} names {file}, which is not in src/" for file in wanted if file not in present]
        return sorted(set(optional) & present)


def faults_in_src(folder, layers):
    met = set()
    for path in code_in(folder):
        layer = layers.layer_of.get(path.name)
        if layer is None:
            yield f"src/{path.name} stands in no layer"
            continue
        for included, is_own in includes_of(path):
            if not is_internal(path.name) and path.suffix == ".h" and is_internal(included):
                yield f"src/{path.name} is public and includes {included}"
            target = layers.layer_of.get(included)
            if target is None:
                if is_own and included not in GENERATED and not (folder / included).exists():
                    yield f"src/{path.name} includes {included}, which is not in src/"
            elif (path.name, included) in layers.upward:
                met.add((path.name, included))
            elif target not in layers.below.get(layer, ()):
                yield (f"src/{path.name} (layer {layer}) includes {included} (layer {target}), "
                       "on which it does not stand")
    yield from (f"{DOCUMENT} allows {' → '.join(pair)}, which nothing needs" for pair in sorted(layers.upward - met))


def faults_outside(root):
    for path in (path for folder in OUTSIDE for path in code_in(root / folder)):
        yield from (f"{path.relative_to(root)} includes {included}, which is internal"
                    for included, _ in includes_of(path) if is_internal(included))


def look_at(root):
    """The faults of a tree, and its layers."""
    present = {path.name for path in code_in(root / "src")}
    layers = Layers((root / DOCUMENT).read_text("utf-8"), present)
    faults = [*layers.faults, *faults_in_src(root / "src", layers), *faults_outside(root)]
    return faults or ([] if present else ["nothing in src/"]), layers


SOUND = {
    DOCUMENT: """# Architecture

## Layers

| Layer | Files | Stands on | What it knows |
|---|---|---|---|
| 1 low | `Low`, `Both.h` | nothing | |
| 2 high | `High`, `Both.cpp` | 1 | |
| 3 aside | `Aside` | nothing | |

| Unit | Layer | What it is for |
|---|---|---|
| `Inner_p.h` | 1 | |

| Upward include | Why |
|---|---|
| `Low.cpp` → `High.h` | |

## Headers

| Header |
|---|
| `None.h` |
""",
    "src/Low.h": '#include "TrelExport.h"\n#include <QString>\n',
    "src/Low.cpp": '#include "Low.h"\n#include "Inner_p.h"\n#include "High.h"\n',
    "src/Both.h": "",
    "src/Both.cpp": '#include "Both.h"\n#include "High.h"\n',
    "src/High.h": '#include "Low.h"\n',
    "src/High.cpp": '#include "High.h"\n',
    "src/Aside.h": "",
    "src/Aside.cpp": '#include "Aside.h"\n',
    "src/Inner_p.h": "",
    "src/Inner.cpp": '#include "Inner_p.h"\n',
    "cli/main.cpp": "#include <High.h>\n",
    "benchmarks/main.cpp": "#include <Low.h>\n",
    "examples/host/main.cpp": "#include <High.h>\n",
}

# File, what is added to it, and the fault that this makes.
FAULTY = [
    ("src/Low.h", '#include "High.h"\n', "src/Low.h (layer 1) includes High.h (layer 2)"),
    ("src/Both.h", "  #  include <High.h>\n", "src/Both.h (layer 1) includes High.h (layer 2)"),
    ("src/Inner.cpp", '#include "High.h"\n', "src/Inner.cpp (layer 1) includes High.h (layer 2)"),
    ("src/Aside.cpp", '#include "Low.h"\n', "src/Aside.cpp (layer 3) includes Low.h (layer 1)"),
    ("src/High.cpp", '#include "Aside.h"\n', "src/High.cpp (layer 2) includes Aside.h (layer 3)"),
    ("src/High.cpp", '#include "../cli/Table.h"\n', "src/High.cpp includes Table.h, which is not in src/"),
    ("src/New.cpp", "", "src/New.cpp stands in no layer"),
    ("src/sub/New_p.h", "", "src/New_p.h stands in no layer"),
    ("src/High.h", '#include "Inner_p.h"\n', "src/High.h is public and includes Inner_p.h"),
    ("cli/main.cpp", '#include "../src/Inner_p.h"\n', "cli/main.cpp includes Inner_p.h, which is internal"),
    ("benchmarks/main.cpp", "#include <Inner_p.h>\n", "benchmarks/main.cpp includes Inner_p.h"),
    ("examples/host/main.cpp", '#include "Inner_p.h"\n', "examples/host/main.cpp includes Inner_p.h"),
]

# What stands in the document, what takes its place, and the fault that this makes.
MISSTATED = [
    ("| `Low.cpp` → `High.h` | |", "", "src/Low.cpp (layer 1) includes High.h (layer 2)"),
    ("`Low.cpp` → `High.h`", "`Both.cpp` → `Low.h`", "allows Both.cpp → Low.h, which nothing needs"),
    ("`Low`, ", "", "src/Low.cpp stands in no layer"),
    ("`High`, ", "`High`, `Low.h`, ", "src/Low.h stands in layers 1 and 2"),
    ("`Aside`", "`Aside`, `Gone`", "names Gone.cpp, which is not in src/"),
    ("| nothing |", "| 2 |", "layer 1 stands on 2, which is not above it"),
    ("`Inner_p.h` | 1", "`Inner_p.h` | 7", "there is no layer 7"),
    ("## Layers", "## Strata", "src/Low.h stands in no layer"),
]


def faults_of(tree):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in tree.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, "utf-8")
        return look_at(pathlib.Path(folder))[0]


def overlooked():
    """What the check says of the sound tree, and what it does not say of the others."""
    yield from (f"self-test: sound, and yet: {fault}" for fault in faults_of(SOUND))
    trees = [({**SOUND, name: SOUND.get(name, "") + text}, fault) for name, text, fault in FAULTY]
    trees += [({**SOUND, DOCUMENT: SOUND[DOCUMENT].replace(old, new, 1)}, fault) for old, new, fault in MISSTATED]
    for tree, fault in trees:
        if not any(fault in found for found in faults_of(tree)):
            yield f"self-test: overlooked: {fault}"
    if not faults_of({DOCUMENT: SOUND[DOCUMENT], "src/CMakeLists.txt": ""}):
        yield "self-test: an empty src/ passed"


def main():
    faults, layers = look_at(ROOT)
    faults = [*overlooked(), *faults]
    print("\n".join(faults) or f"{len(layers.layer_of)} files in {len(layers.below)} layers; upward includes:"
          f" {', '.join(' → '.join(pair) for pair in sorted(layers.upward)) or 'none'}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
