#!/usr/bin/env python3
"""Writes each C++ sample of Markdown files into a source file of its own: extract_samples.py FOLDER FILE.md...

Prints the paths, separated by ";". A source is written anew only when its sample has changed.
"""

import pathlib
import re
import sys

folder = pathlib.Path(sys.argv[1])
folder.mkdir(parents=True, exist_ok=True)
sources = []
for document in map(pathlib.Path, sys.argv[2:]):
    samples = re.findall(r"^```cpp\n(.*?)^```$", document.read_text(encoding="utf-8"), re.DOTALL | re.MULTILINE)
    for number, sample in enumerate(samples, 1):
        source = folder / f"{document.stem}-{number}.cpp"
        if not source.exists() or source.read_text(encoding="utf-8") != sample:
            source.write_text(sample, encoding="utf-8")
        sources.append(str(source))
print(";".join(sources), end="")
