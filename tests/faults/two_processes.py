#!/usr/bin/env python3
"""Proves that two processes on one user file never tear it, and that what one replaces unseen is kept aside.

First in turns: each turn lets one worker or both at once make an edit, so that the order of all versions is known from
what is on disk after it; the versions kept aside must be the ones that another worker replaced, all of them, in order,
and no others. Then both at full speed, where one may wait in vain for the other's lock: such an edit is refused, says
so, and the next one brings it. A reader looks all the time.
"""

import contextlib
import random
import sys
import threading
import time

from fault_support import Figures, Worker, document, parser, temporary_home

EDITS = 1000
SHORT_EDITS = 20
KEPT = 10
PAUSE = 0.0002
LIMIT_SECONDS = 3600
COLORS = 120

TORN = "torn files seen by the reader"
REFUSED = "edits refused in a turn"
UNKNOWN = "versions on disk after a turn that nobody made in it"
NOT_KEPT = "versions replaced unseen that were not kept aside"
NEEDLESS = "versions kept aside that were not replaced unseen"
RENUMBERED = "copies changed after they were made"
TORN_COPY = "torn files among the copies"


def version_of(text):
    """Writer and number of a whole version; None for anything else."""
    marker = text.find(b"#ffff") + 5 if text else 4
    try:
        writer, number = int(text[marker:marker + 4], 16), int(text[marker + 4:marker + 12], 16)
    except (TypeError, ValueError):
        return None
    return (writer, number) if text == document(writer, number, COLORS) else None


class Reader(threading.Thread):
    """Looks at the file all the time."""

    def __init__(self, home, figures):
        super().__init__()
        self.home, self.figures = home, figures
        self.looks, self.versions, self.is_over = 0, set(), False

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.is_over = True
        self.join()

    def run(self):
        last = None
        while not self.is_over:
            time.sleep(PAUSE)
            text = self.home.bytes()
            self.looks += 1
            if text == last:
                continue
            last = text
            version = version_of(text)
            if version is None:
                self.figures.example(TORN, f"{len(text or b'')} bytes")
            self.versions.add(version)


class Ledger:
    """The versions in the order in which they came to be, and those that the folder kept aside."""

    def __init__(self, home, figures):
        self.home, self.figures = home, figures
        self.order = [(0, 0)]
        self.kept = {}

    def add_turn(self, made):
        """Notes what one turn made: what is on disk now came last."""
        last = version_of(self.home.bytes())
        if last not in made:
            self.figures.example(UNKNOWN, f"{last} after {made}")
        self.order += [version for version in made if version != last] + [last]

    def collect(self):
        """Looks at the copies, of which a turn can add two: none goes before it was seen."""
        for number, text in self.home.copies(".conflict.").items():
            version = version_of(text)
            if version is None:
                self.figures.example(TORN_COPY, f".conflict.{number}")
            if self.kept.setdefault(number, version) != version:
                self.figures.example(RENUMBERED, f".conflict.{number}: {self.kept[number]}, {version}")

    def replaced_unseen(self):
        """Versions that somebody else came after. The first was seen by both; the first to replace it knew it."""
        pairs = list(zip(self.order, self.order[1:]))[1:]
        return [old for old, new in pairs if old[0] != new[0]]

    def compare(self):
        expected = self.replaced_unseen()
        kept = [self.kept[number] for number in sorted(self.kept)]
        for version in expected:
            if version not in kept:
                self.figures.example(NOT_KEPT, str(version))
        for version in kept:
            if version not in expected:
                self.figures.example(NEEDLESS, str(version))
        return kept == expected and sorted(self.kept) == list(range(1, len(expected) + 1))


@contextlib.contextmanager
def two_workers(home, options, store):
    """Both have read the first version."""
    home.clear()
    home.file.write_bytes(document(0, 0, COLORS))
    with Worker(options.worker, home, store, 1, COLORS, limit=LIMIT_SECONDS) as first, \
            Worker(options.worker, home, store, 2, COLORS, limit=LIMIT_SECONDS) as second:
        first.load()
        second.load()
        yield first, second


def in_turns(figures, home, options, store, edits):
    chance = random.Random(options.seed)
    ledger = Ledger(home, figures)
    left = {writer: edits for writer in (1, 2)}
    races = 0
    with two_workers(home, options, store) as (first, second), Reader(home, figures) as reader:
        workers = {1: first, 2: second}
        while any(left.values()):
            able = [writer for writer in workers if left[writer]]
            turn = able if chance.random() < 0.5 else [chance.choice(able)]
            numbers = {writer: edits - left[writer] + 1 for writer in turn}
            for writer in turn:
                workers[writer].send("edit", numbers[writer])
            for writer in turn:
                workers[writer].answer()
                if workers[writer].finish() == "failed":
                    figures.example(REFUSED, f"{writer}: {numbers[writer]}")
                left[writer] -= 1
            races += len(turn) == 2
            ledger.add_turn(list(numbers.items()))
            ledger.collect()
    figures.equal(f"{store}, in turns: edits made", len(ledger.order) - 1, 2 * edits)
    figures.at_least(f"{store}, in turns: of them at the same time", 2 * races, edits // 3)
    figures.at_least(f"{store}, in turns: versions replaced unseen", len(ledger.replaced_unseen()), edits // 3)
    figures.equal(f"{store}, in turns: all of them kept, in order, and no others", ledger.compare(), True)
    figures.at_least(f"{store}, in turns: versions that the reader saw", len(reader.versions), edits // 4)


def read_to_the_end(worker, refused):
    while (answer := worker.answer())[0] != "ran":
        if answer[0] == "failed":
            refused.append(answer)


def at_full_speed(figures, home, options, store, edits):
    refused = []
    with two_workers(home, options, store) as (first, second), Reader(home, figures) as reader:
        threads = [threading.Thread(target=read_to_the_end, args=(worker, refused)) for worker in (first, second)]
        for worker in (first, second):
            worker.send("run", 1, edits)
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    last = version_of(home.bytes())
    copies = home.copies(".conflict.")
    for number, text in copies.items():
        if version_of(text) is None:
            figures.example(TORN_COPY, f".conflict.{number}")
    changes = max(copies, default=0)
    figures.note(f"{store}, at full speed: edits that waited in vain", len(refused) if store == "file" else "unknown")
    figures.at_least(f"{store}, at full speed: looks of the reader", reader.looks, edits)
    figures.at_least(f"{store}, at full speed: versions replaced unseen", changes, 1)
    figures.equal(f"{store}, at full speed: copies kept, the newest", sorted(copies),
                  list(range(max(1, changes - KEPT + 1), changes + 1)))
    figures.equal(f"{store}, at full speed: an edit of the last number is there",
                  last is not None and last[1] == edits, True)


def main():
    options = parser(__doc__).parse_args()
    edits = SHORT_EDITS if options.short else EDITS
    figures = Figures()
    with temporary_home() as home:
        for store in ("file", "library"):
            in_turns(figures, home, options, store, edits)
            at_full_speed(figures, home, options, store, edits)
    for name in (TORN, REFUSED, UNKNOWN, NOT_KEPT, NEEDLESS, RENUMBERED, TORN_COPY):
        figures.none_of(name)
    return figures.exit_code()


if __name__ == "__main__":
    sys.exit(main())
