#!/usr/bin/env python3
"""Proves that a process killed in the middle of a save loses no colour.

Workers that save without a pause are killed at random moments. What a worker reported as done is then on disk, or the
save under way when it was killed, whole, byte for byte. The control is the same run with files written in place, which
must lose or tear some, or the run could not have found any.
"""

import random
import sys
import time

from fault_support import Figures, Worker, document, parser, temporary_home

KILLS = 2000
CONTROL_KILLS = 200
SHORT_KILLS = 20
LONGEST_WAIT = 0.025
COLORS = 120
ENDLESS = 10**6

LOST = "versions lost"
TORN = "files torn"
REFUSED = "saves refused that nothing stood against"
UNSIGNED = "edits not on disk behind a lock left unsigned"


class Killer:
    """Starts, kills and looks, over and over, on one file."""

    def __init__(self, program, home, figures, chance):
        self.program, self.home, self.figures, self.chance = program, home, figures, chance
        self.version = 0
        self.kills, self.saves, self.empty_locks, self.remains = 0, 0, 0, 0
        home.file.write_bytes(document(1, 0, COLORS))

    def kill_one(self, store):
        """A worker's life. Only what hits a save counts as a kill."""
        begun, done = self.version, self.version
        with Worker(self.program, self.home, store, colors=COLORS) as worker:
            worker.load()
            worker.send("run", self.version + 1, ENDLESS)
            worker.answer()
            begun += 1
            time.sleep(self.chance.uniform(0, LONGEST_WAIT))
            worker.process.kill()
            lines = worker.process.stdout.read().split("\n")
        for line in lines[:-1]:
            word, number = line.split()
            if word == "begin":
                begun = int(number)
            elif word == "failed":
                self.figures.example(REFUSED, line)
            else:
                done = int(number)
        self.saves += done - self.version
        self.kills += begun > done
        self.look(begun, done, store)

    def look(self, begun, done, store):
        """At what is on disk: the version reported last, or the one that was under way."""
        now = self.home.bytes()
        versions = [number for number in range(self.version, begun + 1) if now == document(1, number, COLORS)]
        if not versions:
            self.figures.example(TORN, f"{store}: {len(now or b'')} bytes, save {begun}")
        elif versions[0] < done:
            self.figures.example(LOST, f"{store}: version {versions[0]} is there, {done} was reported")
        self.version = versions[0] if versions else begun
        if not versions:
            self.home.file.write_bytes(document(1, begun, COLORS))
        self.clear_away()

    def clear_away(self):
        """A lock whose owner had no time to sign it is counted, and removed for the sake of the run's length; what
        becomes of an edit behind one is looked at once, in edit_behind_an_unsigned_lock()."""
        for name in self.home.names():
            path = self.home.file.with_name(self.home.file.name + name)
            if name != ".lock":
                self.remains += 1
                path.unlink()
            elif path.stat().st_size == 0:
                self.empty_locks += 1
                path.unlink()


def run(options, stores, kills):
    figures = Figures()
    chance = random.Random(options.seed)
    with temporary_home() as home:
        killer = Killer(options.worker, home, figures, chance)
        while killer.kills < kills:
            killer.kill_one(stores[killer.kills % len(stores)])
    return figures, killer


def edit_behind_an_unsigned_lock(options, figures):
    """A process killed between making its lock and signing it must not cost the next one its edits."""
    with temporary_home() as home:
        home.file.write_bytes(document(1, 0, COLORS))
        with Worker(options.worker, home, "library", colors=COLORS) as worker:
            worker.load()
            home.file.with_name(home.file.name + ".lock").touch()
            start = time.monotonic()
            worker.edit(1)
            figures.note("seconds that an edit took behind a lock left unsigned", f"{time.monotonic() - start:.1f}")
            if home.bytes() != worker.document(1):
                figures.example(UNSIGNED, "the old version is there")
    figures.none_of(UNSIGNED)


def prove(options):
    kills = SHORT_KILLS if options.short else KILLS
    figures, killer = run(options, ("file", "library"), kills)
    figures.at_least("kills in the middle of a save", killer.kills, kills)
    figures.note("saves that came through before", killer.saves)
    for name in (LOST, TORN, REFUSED):
        figures.none_of(name)
    figures.note("temporary files left beside the file", killer.remains)
    figures.note("locks left unsigned", killer.empty_locks)
    edit_behind_an_unsigned_lock(options, figures)
    return figures.exit_code()


def control(options):
    kills = SHORT_KILLS if options.short else CONTROL_KILLS
    figures, killer = run(options, ("plain",), kills)
    found = sum(len(figures.examples.get(name, [])) for name in (LOST, TORN))
    figures.at_least("control: kills in the middle of a write in place", killer.kills, kills)
    figures.at_least("control: files torn or versions lost", found, 1)
    return figures.exit_code()


def main():
    arguments = parser(__doc__)
    arguments.add_argument("--control", action="store_true", help="the control alone")
    options = arguments.parse_args()
    code = 0 if options.control else prove(options)
    return control(options) or code


if __name__ == "__main__":
    sys.exit(main())
