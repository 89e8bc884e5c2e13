#!/usr/bin/env python3
"""The output that a guide shows is what comes out: check_output.py FOLDER TRELCOLOR FILE.md...

A "text" block shows the output of the "cpp" sample or of the "sh" commands before it. FOLDER has the built samples, and
both run in a folder of their own, with a fixture profile database where the guide shows one. Uids differ with each run,
so that only their places are compared. With --update in front, the blocks are written anew instead.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.DOTALL | re.MULTILINE)
UID = re.compile(r"\{[0-9a-f]{8}(?:-[0-9a-f]{4}){3}-[0-9a-f]{12}\}")
DATABASE = "FixtureProfiles.xml"
LONGEST = 60  # seconds that a sample may take before it counts as hung


class Guide:
    """One document; its samples run in \\a folder."""

    def __init__(self, path, samples, programs, folder):
        self.path = path
        self.samples = samples
        self.folder = folder
        self.environment = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "", "QT_QPA_PLATFORM": "offscreen",
                            "HOME": str(folder), "XDG_DATA_HOME": str(folder),
                            "PATH": f"{programs}:{os.environ['PATH']}"}

    def run(self, arguments, errors):
        return subprocess.run(arguments, cwd=self.folder, env=self.environment, stdout=subprocess.PIPE, stderr=errors,
                              stdin=subprocess.DEVNULL, timeout=LONGEST, check=False)

    def output_of(self, sample, source):
        """What \\a sample prints, be it a number of a C++ sample or None for the commands of \\a source."""
        if sample is None:
            return self.run(["bash", "-c", source], subprocess.STDOUT).stdout.decode()
        result = self.run([str(self.samples / f"sample-{self.path.stem}-{sample}")], subprocess.DEVNULL)
        if result.returncode != 0:
            return f"(sample {sample} ends with {result.returncode})\n"
        return result.stdout.decode()

    def blocks(self, text):
        """Each "text" block: where its content stands, and what should stand there."""
        number = 0
        before = None
        for block in BLOCK.finditer(text):
            language, content = block.groups()
            if language == "cpp":
                number += 1
                before = (number, content)
            elif language == "sh":
                before = (None, content)
            elif language == "xml" and "<Profiles>" in content:
                (self.folder / DATABASE).write_text(content, "utf-8")
            elif language == "text":
                yield block.span(2), self.output_of(*before) if before else "(nothing runs before this block)\n"


def comparable(text):
    met = {}
    named = UID.sub(lambda match: met.setdefault(match.group(0), f"{{uid {len(met)}}}"), text)
    return [line.rstrip() for line in named.rstrip().splitlines()]


def without_trailing_blanks(text):
    return "".join(line.rstrip() + "\n" for line in text.rstrip().splitlines())


def update(path, text, found):
    for (start, end), output in reversed(found):
        text = text[:start] + without_trailing_blanks(output) + text[end:]
    path.write_text(text, "utf-8")


def main():
    arguments = sys.argv[1:]
    is_update = arguments[0] == "--update"
    samples, command, *documents = (pathlib.Path(argument).resolve() for argument in arguments[is_update:])
    faults = []
    count = 0
    for path in documents:
        text = path.read_text("utf-8")
        with tempfile.TemporaryDirectory() as programs, tempfile.TemporaryDirectory() as folder:
            # A build with Qt 6 calls it otherwise than the guides do.
            pathlib.Path(programs, "trelcolor").symlink_to(command)
            found = list(Guide(path, samples, programs, pathlib.Path(folder)).blocks(text))
        count += len(found)
        if is_update:
            update(path, text, found)
        for (start, end), output in found:
            if not is_update and comparable(text[start:end]) != comparable(output):
                line = text.count("\n", 0, start) + 1
                faults.append(f"{path.name}:{line} shows what does not come out. This does:\n{output}")
    if count == 0:
        faults.append("no output in the documents")
    print("\n".join(faults) or f"{count} outputs")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
