#!/usr/bin/env python3
"""What each public header costs whoever includes it: measure_headers.py BUILD_FOLDER [ROUNDS], by default 5 rounds.

Prints the table of docs/architecture.md, section "Headers": the header's text after the preprocessor, and the processor
time of compiling a file that includes nothing else, as a ratio to one that includes <QString>. Each round times all
files one after the other, and a ratio is taken within its round; the table has the median. The build folder need only
be configured: it says how the test that compiles each header alone would call the compiler.
"""

import json
import pathlib
import resource
import shlex
import statistics
import subprocess
import sys
import tempfile

BASELINE = "<QString>"


def compilers_in(build):
    """By header, the compiler and its options, without input, output and what stands before the compiler."""
    compilers = {}
    for entry in json.loads((build / "compile_commands.json").read_text("utf-8")):
        source = pathlib.Path(entry["file"])
        if source.parent != build / "tests" / "headers":
            continue
        words = shlex.split(entry["command"])
        if pathlib.Path(words[0]).name == "ccache":
            del words[0]
        compilers[source.stem] = [word for word in words[:words.index("-o")] if word != "-c"]
    return compilers


def run(command):
    """Output and processor time of a command."""
    def used():
        usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        return usage.ru_utime + usage.ru_stime
    before = used()
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE).stdout
    return output, used() - before


def main(build, rounds="5"):
    compilers = compilers_in(pathlib.Path(build).resolve())
    if not compilers:
        return f"{build}: no header is compiled alone there"
    compilers[BASELINE] = next(iter(compilers.values()))
    with tempfile.TemporaryDirectory() as folder:
        sources = {header: pathlib.Path(folder, header.strip("<>") + ".cpp") for header in compilers}
        for header, source in sources.items():
            source.write_text(f"#include <{header.strip('<>')}>\n", "utf-8")

        def call(header, *options):
            return run([*compilers[header], *options, str(sources[header])])

        sizes = {header: call(header, "-E", "-P")[0] for header in compilers}
        ratios = {header: [] for header in compilers}
        for _ in range(int(rounds)):
            times = {header: call(header, "-c", "-o", "/dev/null")[1] for header in compilers}
            for header, time in times.items():
                ratios[header].append(time / times[BASELINE])

    print("| Header | Lines | KiB | Compile time |")
    print("|---|---:|---:|---:|")
    for header in sorted(compilers, key=lambda name: (len(sizes[name]), name)):
        text = sizes[header]
        print(f"| `{header}` | {text.count(bytes([10])):,} | {round(len(text) / 1024):,} |"
              f" {statistics.median(ratios[header]):.2f} |")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
