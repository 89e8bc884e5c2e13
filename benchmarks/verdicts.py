#!/usr/bin/env python3
"""Prints what a run of the benchmarks says of each target, as a table.

usage: verdicts.py RUN.json

RUN.json is the output of the benchmarks with --benchmark_out. Every figure is a ratio of medians within that run,
except for the universes and the start-up, whose targets are absolute. A target whose benchmarks did not run is in the
table too.
"""

import collections
import json
import math
import statistics
import sys

TO_NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}

Target = collections.namedtuple("Target", "what unit limit figure library peer")


class Run:
    """The medians of one run, by name of benchmark."""

    def __init__(self, document):
        self.context = document["context"]
        self._times = collections.defaultdict(list)
        self._counters = collections.defaultdict(list)
        for entry in document["benchmarks"]:
            if entry.get("run_type") != "iteration":
                continue
            name = self.name_of(entry)
            if entry.get("error_occurred"):
                raise SystemExit(f"{name}: {entry['error_message']}")
            is_manual = "manual_time" in entry["name"]
            time = entry["real_time" if is_manual else "cpu_time"]
            self._times[name].append(time * TO_NANOSECONDS[entry["time_unit"]])
            for counter in ("heap", "universes"):
                if counter in entry:
                    self._counters[name, counter].append(entry[counter])

    @staticmethod
    def name_of(entry):
        return entry["run_name"].removesuffix("/manual_time")

    def time(self, name):
        return statistics.median(self._times[name])

    def counter(self, name, counter):
        return statistics.median(self._counters[name, counter])

    def repetitions(self):
        return min(len(times) for times in self._times.values())

    def has(self, name):
        return not name or name in self._times


def faster(run, library, peer):
    """How many times faster the library is."""
    return run.time(peer) / run.time(library)


def time_share(run, library, peer):
    """The library's time as a share of the peer's."""
    return run.time(library) / run.time(peer)


def heap_share(run, library, peer):
    return run.counter(library, "heap") / run.counter(peer, "heap")


def growth(run, many, few):
    """The exponent of growth from 10,000 to 100,000."""
    return math.log10(run.time(many) / run.time(few))


def universes(run, library, _):
    return run.counter(library, "universes")


def milliseconds_more(run, library, peer):
    return (run.time(library) - run.time(peer)) / 1e6


AT_LEAST = {faster, universes}

TARGETS = [
    Target("`convertYxyToNChannel`, 5 emitters, beside the plain text", "×", 40, faster,
           "solve/library/1", "solve/plain/1"),
    Target("the same without vector instructions", "×", 15, faster,
           "solve/scalar/1", "solve/plain/1"),
    Target("the same, 4 emitters", "×", 18, faster,
           "solve/library/6", "solve/plain/6"),
    Target("the same, 3 emitters", "×", 6, faster,
           "solve/library/7", "solve/plain/7"),
    Target("5 emitters, beside GLPK with its basis kept", "×", 20, faster,
           "solve/library/1", "solve/glpk/1"),
    Target("`convertTrelColorToDMX`, beside the plain text", "×", 30, faster,
           "dmx/library", "dmx/plain"),
    Target("`updateBuffer`, beside the plain text", "×", 25, faster,
           "buffer/library", "buffer/plain"),
    Target("universes of 5-emitter fixtures at 44 Hz on one core", "", 3000, universes,
           "universes/library", ""),
    Target("`setNamedColor` of hexadecimal text, beside `QColor`", " of its time", 1.2, time_share,
           "hexIn/library", "hexIn/qcolor"),
    Target("`name`, beside `QColor::name(HexArgb)`", " of its time", 0.5, time_share,
           "hexOut/library", "hexOut/qcolor"),
    Target("RGB to HSV, beside `QColor`", " of its time", 1.1, time_share,
           "hsv/library", "hsv/qcolor"),
    Target("`aName`, beside the plain text", "×", 8, faster,
           "valueOut/library", "valueOut/plain"),
    Target("`setNamedColor` of value strings, beside the plain text", "×", 8, faster,
           "valueIn/library", "valueIn/plain"),
    Target("loading colours, exponent of growth, distinct names", "", 1.15, growth,
           "load/library/100000", "load/library/10000"),
    Target("the same, one name for all", "", 1.15, growth,
           "loadSameName/library/100000", "loadSameName/library/10000"),
    Target("inserting 100,000 colours, beside `QStandardItemModel`", " of its time", 1.5, time_share,
           "insert/library/100000", "insert/qstandarditemmodel/100000"),
    Target("the same, memory", " of its heap", 1.0, heap_share,
           "insert/library/100000", "insert/qstandarditemmodel/100000"),
    Target("`getIndexOfUid` among 100,000, beside `QStandardItemModel::match`", "×", 1000, faster,
           "uid/library", "uid/qstandarditemmodel"),
    Target("loading a file of 100,000, beside `QDomDocument` parsing it alone", " of its time", 2.2, time_share,
           "loadFile/library/100000", "loadFile/qdomdocument/100000"),
    Target("start-up to the first conversion, more than a bare Qt program", " ms", 5, milliseconds_more,
           "startUp/library", "startUp/bare"),
]


def number(value):
    return f"{value:,.0f}" if value >= 100 else f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def row(run, target):
    at_least = target.figure in AT_LEAST
    wanted = f"{'≥' if at_least else '≤'} {number(target.limit)}{target.unit}"
    if not (run.has(target.library) and run.has(target.peer)):
        return f"| {target.what} | {wanted} | – | – | not run |"
    value = target.figure(run, target.library, target.peer)
    is_met = value >= target.limit if at_least else value <= target.limit
    peer = target.peer if target.peer and target.figure is not growth else "–"
    return f"| {target.what} | {wanted} | {number(value)}{target.unit} | {peer} | {'met' if is_met else 'missed'} |"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        run = Run(json.load(file))
    print("| What | Target | Measured | Peer | Verdict |")
    print("|---|---|---|---|---|")
    for target in TARGETS:
        print(row(run, target))
    context = run.context
    print(f"\n{context.get('CPU', 'a CPU')}, {context['num_cpus']} cores, Qt {context['Qt']}, "
          f"{context['build type']} build, medians of {run.repetitions()} runs each.")


if __name__ == "__main__":
    main()
