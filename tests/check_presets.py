#!/usr/bin/env python3
"""The preset files are what their generator writes: check_presets.py PATH_TO_TRELCOLOR FOLDER_OF_PRESETS."""

import pathlib
import subprocess
import sys
import tempfile


def presets_in(folder):
    return {path.name: path.read_bytes() for path in pathlib.Path(folder).glob("*.trelcolors")}


def main(trelcolor, folder):
    with tempfile.TemporaryDirectory() as fresh:
        subprocess.run([sys.executable, pathlib.Path(folder, "generate.py"), trelcolor, fresh], check=True)
        kept, generated = presets_in(folder), presets_in(fresh)
    differing = [name for name in sorted(kept.keys() | generated.keys()) if kept.get(name) != generated.get(name)]
    return f"not as generated: {', '.join(differing)}" if differing or not kept else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
