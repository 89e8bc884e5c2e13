#!/usr/bin/env python3
"""Each oddity has an entry in docs/oddities.md, a comment in the code and a test of its own."""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def ids_in(pattern, files):
    return {int(number) for path in files for number in re.findall(pattern, path.read_text("utf-8"))}


def main():
    documented = ids_in(r"(?m)^\| ODD-(\d+) \|", [ROOT / "docs/oddities.md"])
    sources = [path for path in (ROOT / "src").iterdir() if path.suffix in (".h", ".cpp")]
    found = {
        "docs/oddities.md": documented,
        "src/": ids_in(r"ODD-(\d+)", sources),
        "tests/": ids_in(r"\bvoid odd(\d+)_", (ROOT / "tests").glob("tst_*.cpp")),
    }
    everything = set().union(*found.values())
    missing = [f"ODD-{number:02d} is missing in {place}"
               for place, numbers in found.items() for number in sorted(everything - numbers)]
    print("\n".join(missing) or f"{len(documented)} oddities, each documented, commented and tested")
    return 1 if missing or not documented else 0


if __name__ == "__main__":
    sys.exit(main())
