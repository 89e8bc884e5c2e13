"""What the fault drivers share: the worker and what it writes, a private home for it, and the figures of a run."""

import argparse
import contextlib
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
from pathlib import Path

SKIPPED = 77
FILE_NAME = "data\\Orvane\\userColors.xml"  # the backslashes are part of the name


def document(writer, number, colors):
    """The bytes of a user file as worker `writer` writes it in edit `number`."""
    lines = ["<ColorLibraryList>\n", ' <ColorLibrary name="Work" isUserLibrary="1">\n']
    for row in range(colors):
        name = f"Padding {row}" if row else "Counter"
        value = f"{row:04x}00000000" if row else f"{writer:04x}{number >> 16:04x}{number & 0xffff:04x}"
        lines.append(f'  <Color name="{name}" uid="{{00000000-0000-4000-8000-{row:012}}}" '
                     f'value="aRgb;1;0;#ffff{value}" originatingPreset="" colorId=""/>\n')
    return "".join(lines + [" </ColorLibrary>\n", "</ColorLibraryList>\n"]).encode()


class Home:
    """A folder of its own that stands for the user's. The user's file lies beside the folder for data, with backslashes
    in its name."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.file = self.folder / FILE_NAME
        self.environment = dict(os.environ, HOME=str(folder), XDG_DATA_HOME=str(self.folder / "data"))

    def bytes(self):
        """The user's file; None where there is none."""
        try:
            return self.file.read_bytes()
        except FileNotFoundError:
            return None

    def names(self):
        """What follows the file's name in the names beside it, and other names whole; the file itself is left out."""
        names = (name for name in os.listdir(self.folder) if name not in ("data", "data\\Orvane", FILE_NAME))
        return sorted(name[len(FILE_NAME):] if name.startswith(FILE_NAME) else name for name in names)

    def copies(self, prefix):
        """Contents of the copies whose names go on with `prefix`, by number; 0 where there is none."""
        names = (name for name in self.names() if name.startswith(prefix))
        return {int(name[len(prefix):].lstrip(".") or 0): Path(f"{self.file}{name}").read_bytes() for name in names}

    def clear(self):
        for name in os.listdir(self.folder):
            path = self.folder / name
            if path.is_dir() and not path.is_symlink():
                shutil.rmtree(path)
            else:
                path.unlink()


@contextlib.contextmanager
def temporary_home():
    """A home for the length of a run, in a folder where more may be put."""
    with tempfile.TemporaryDirectory(prefix="trel-faults-") as folder:
        home = Path(os.path.realpath(folder)) / "home"
        home.mkdir()
        yield Home(home)


class WorkerDied(Exception):
    """The worker ended where an answer was due."""


class Worker:
    """A process that edits the user's file on command. It is killed after `limit` seconds, so that one that hangs
    dies."""

    def __init__(self, program, home, store, writer=1, colors=120, shim=None, limit=600):
        environment = dict(home.environment, LD_PRELOAD=str(shim)) if shim else home.environment
        self.process = subprocess.Popen([program, store, str(writer), str(colors)], env=environment,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1)
        self.writer, self.colors = writer, colors
        self.watchdog = threading.Timer(limit, self.process.kill)
        self.watchdog.daemon = True
        self.watchdog.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.watchdog.cancel()
        self.process.kill()
        self.process.communicate()

    def document(self, number):
        return document(self.writer, number, self.colors)

    def send(self, *words):
        try:
            self.process.stdin.write(" ".join(map(str, words)) + "\n")
            self.process.stdin.flush()
        except BrokenPipeError:
            raise WorkerDied(self.end()) from None

    def answer(self):
        """The words of the next line."""
        line = self.process.stdout.readline()
        if not line.endswith("\n"):
            raise WorkerDied(self.end())
        return line.split()

    def end(self):
        """How the process ended."""
        code = self.process.wait()
        return f"signal {signal.Signals(-code).name}" if code < 0 else f"exit code {code}"

    def load(self, is_whole=True):
        """Colours, seconds, and the peaks of memory before and after, in MiB."""
        self.send("load", int(is_whole))
        _, colors, microseconds, before, after = self.answer()
        return int(colors), int(microseconds) / 1e6, int(before) / 1024, int(after) / 1024

    def begin(self, number):
        self.send("edit", number)
        self.answer()

    def finish(self):
        """The word for how the edit went."""
        return self.answer()[0]

    def edit(self, number):
        self.begin(number)
        return self.finish()

    def fault(self, number, call, at, error, is_lasting):
        """Edits while the shim strikes. How it went, how many calls were struck, and of how many."""
        self.send("fault", call, at, error, int(is_lasting), number)
        if self.answer()[0] != "begin":
            raise RuntimeError("the worker runs without the shim")
        word = self.finish()
        _, struck, _, calls = self.answer()
        return word, int(struck), int(calls)


class Figures:
    """Prints what was measured next to what is required, and keeps whether all of it was reached."""

    def __init__(self):
        self.missed = 0
        self.examples = {}

    def example(self, name, text):
        """Keeps the first few cases behind a figure, to be printed with it."""
        self.examples.setdefault(name, []).append(text)

    def show(self, name, value, required, is_met):
        verdict = "" if is_met else "   MISSED"
        print(f"{name:<58} {value!s:>10}   required: {required}{verdict}", flush=True)
        if not is_met:
            self.missed += 1
            for text in self.examples.get(name, [])[:10]:
                print(f"    {text}", flush=True)

    def none_of(self, name):
        """For what must not happen: counts its examples."""
        count = len(self.examples.get(name, []))
        self.show(name, count, 0, count == 0)

    def at_least(self, name, value, least):
        self.show(name, value, f"at least {least}", value >= least)

    def equal(self, name, value, required):
        self.show(name, value, required, value == required)

    def note(self, name, value):
        """A figure that nothing is required of."""
        print(f"{name:<58} {value!s:>10}", flush=True)

    def exit_code(self):
        return 1 if self.missed else 0


def parser(description):
    result = argparse.ArgumentParser(description=description)
    result.add_argument("worker", type=os.path.abspath, help="the program save_worker")
    result.add_argument("--short", action="store_true", help="a few seconds, for every run of the tests")
    result.add_argument("--seed", type=int, default=1, help="of everything random")
    return result


def skip(why):
    print(f"skipped: {why}")
    sys.exit(SKIPPED)
