#!/usr/bin/env python3
"""Proves that a save that a system call fails leaves the old file or the new one, whole, and is not reported as done.

Each call that a save makes on the user's folder fails in turn, once and from then on, with each error, in each of the
situations in which a save finds the file. What a save must copy aside first is there, byte for byte, whenever the new
file is; and the next save, without faults, goes well.
"""

import errno
import os
import sys

from fault_support import Figures, Worker, WorkerDied, document, parser, temporary_home

CALLS = ("open", "read", "write", "short", "sync", "locksync", "rename", "link", "unlink", "close", "lock", "chmod",
         "list", "stat")
ERRORS = ("ENOSPC", "EIO", "EACCES")
REQUIRED_RUNS = 800
SHORT_RUNS = 150
COLORS = 120
OLD, NEW, NEXT = 1, 2, 3
FOREIGN = document(9, 7, COLORS)
DAMAGED = document(9, 8, COLORS)[:-30]


class Situation:
    """How a save finds the file: `old` stood there at the load, `foreign` was written by another process since."""

    def __init__(self, name, old, foreign=None, copy=None, conflicts=0):
        self.name, self.old, self.foreign, self.copy, self.conflicts = name, old, foreign, copy, conflicts

    def prepare(self, home, worker):
        home.clear()
        if self.old is not None:
            home.file.write_bytes(self.old)
        worker.load(is_whole=self.old != DAMAGED)
        for number in range(1, self.conflicts + 1):
            (home.folder / f"{home.file.name}.conflict.{number}").write_bytes(b"earlier")
        if self.foreign is not None:
            home.file.write_bytes(self.foreign)
        return home.bytes()


SITUATIONS = (
    Situation("no file", None),
    Situation("known file", document(1, OLD, COLORS)),
    Situation("damaged file", DAMAGED, copy=".bak"),
    Situation("file of another process", document(1, OLD, COLORS), FOREIGN, ".conflict."),
    Situation("eleventh conflict", document(1, OLD, COLORS), FOREIGN, ".conflict.", 10),
)


class Run:
    """One save with one fault, and everything that must hold after it."""

    TORN = "files neither wholly old nor wholly new"
    FALSE_DONE = "failed saves reported as done"
    FALSE_FAILURE = "saves reported as failed with the new file in place"
    UNSYNCED = "saves reported as done although the disk refused the data"
    UNSAVED = "versions replaced without the copy that keeps them"
    UNTIDY = "remains of a save beside the file"
    STUCK = "saves after the fault that did not go well"
    DEAD = "workers that died"

    ALL = (TORN, FALSE_DONE, FALSE_FAILURE, UNSYNCED, UNSAVED, UNTIDY, STUCK, DEAD)

    def __init__(self, figures, home, worker, situation):
        self.figures, self.home, self.worker, self.situation = figures, home, worker, situation

    def run(self, call, at, error, is_lasting):
        """How many calls were struck."""
        self.call, self.error = call, error
        duration = "lasting" if is_lasting else "once"
        self.name = f"{self.situation.name}: {call} {at}, {error or 'no error'}, {duration}"
        before = self.situation.prepare(self.home, self.worker)
        number = getattr(errno, error) if error else 0
        word, struck, _ = self.worker.fault(NEW, call, at, number, is_lasting)
        if struck:
            self.check_file(before, word)
            self.check_copy(before)
            self.check_tidiness()
            self.check_next_save()
        return struck

    def miss(self, what, detail=""):
        self.figures.example(what, f"{self.name} {detail}")

    def check_file(self, before, word):
        now = self.home.bytes()
        new = self.worker.document(NEW)
        if now not in (before, new):
            self.miss(self.TORN, f"({len(now or b'')} bytes)")
        if word == "done" and now != new:
            self.miss(self.FALSE_DONE)
        if word == "failed" and now == new:
            self.miss(self.FALSE_FAILURE)
        if word == "done" and self.call == "sync":
            self.miss(self.UNSYNCED)

    def check_copy(self, before):
        if self.situation.copy is None or self.home.bytes() == before:
            return
        if before not in self.home.copies(self.situation.copy).values():
            self.miss(self.UNSAVED)

    def check_tidiness(self):
        """Where a file could not be removed there may be remains; they are nobody's fault."""
        if self.call == "unlink":
            for name in self.home.names():
                if name == ".lock":
                    os.unlink(f"{self.home.file}.lock")
            return
        names = [name for name in self.home.names() if not name.startswith((".bak", ".conflict."))]
        if names:
            self.miss(self.UNTIDY, str(names))

    def check_next_save(self):
        word = self.worker.edit(NEXT)
        if word == "failed" or self.home.bytes() != self.worker.document(NEXT):
            self.miss(self.STUCK, word)
        if self.situation.copy:
            at_stake = self.situation.foreign or self.situation.old
            if at_stake not in self.home.copies(self.situation.copy).values():
                self.miss(self.UNSAVED, "after the next save")


def faults_of(call, count, errors):
    """Every position, error and duration; a short write may go on without an error."""
    for at in range(1, count + 1):
        for error in errors:
            yield call, at, error, False
            yield call, at, error, True
        if call == "short":
            yield call, at, "", True


def count_calls(home, worker, situation, call):
    """How many calls of a kind a save makes that nothing fails."""
    situation.prepare(home, worker)
    return worker.fault(NEW, call, 0, 0, False)[2]


def run_situation(figures, home, options, store, situation):
    """All faults in one situation; counts the runs whose fault struck."""
    runs = 0
    errors = ERRORS[1:2] if options.short else ERRORS
    worker = Worker(options.worker, home, store, colors=COLORS, shim=options.shim)
    for call in CALLS:
        # A fault may lead the save down a longer road: positions go on until one is not reached.
        count = count_calls(home, worker, situation, call) + 4
        for fault in faults_of(call, count, errors):
            try:
                runs += Run(figures, home, worker, situation).run(*fault) > 0
            except WorkerDied as death:
                figures.example(Run.DEAD, f"{situation.name}: {fault}: {death}")
                worker = Worker(options.worker, home, store, colors=COLORS, shim=options.shim)
    worker.__exit__()
    return runs


def main():
    arguments = parser(__doc__)
    arguments.add_argument("shim", type=os.path.abspath, help="the library fault_shim")
    options = arguments.parse_args()
    figures = Figures()
    runs = 0
    with temporary_home() as home:
        for store in ("file",) if options.short else ("file", "library"):
            for situation in SITUATIONS[2:4] if options.short else SITUATIONS:
                runs += run_situation(figures, home, options, store, situation)
    figures.at_least("saves with a call that failed", runs, SHORT_RUNS if options.short else REQUIRED_RUNS)
    for name in Run.ALL:
        figures.none_of(name)
    return figures.exit_code()


if __name__ == "__main__":
    sys.exit(main())
