#!/usr/bin/env python3
"""Proves that a full disk costs no colour, whatever room it leaves.

A small disk in memory, mounted where no other process sees it, is filled up to 32 levels of free space, from none to
more than a save needs. After a save at each of them the file is wholly old or wholly new, a save that failed is not
reported as done, and what it must copy aside stands there whenever the new file does. With room again, the next save
goes well.
"""

import os
import subprocess
import sys

from fault_support import Figures, Home, Worker, document, parser, skip, temporary_home

INSIDE = "TREL_FAULTS_MOUNTED"
LEVELS = 32
PAGE = os.sysconf("SC_PAGE_SIZE")
DISK_PAGES = 128
COLORS = 400  # 14 pages of 4 KiB: two copies and a lock need 29 of the 32 levels
OLD, NEW, NEXT = 1, 2, 3
DAMAGED = document(9, 8, COLORS)[:-30]
FOREIGN = document(9, 7, COLORS)

TORN = "files neither wholly old nor wholly new"
FALSE_DONE = "failed saves reported as done"
UNSAVED = "versions replaced without the copy that keeps them"
UNTIDY = "remains of a save beside the file"
STUCK = "saves with room again that did not go well"

# Name, the file at the load, another process's file at the save, where the copy of it is.
SITUATIONS = (
    ("known file", document(1, OLD, COLORS), None, None),
    ("damaged file", DAMAGED, None, ".bak"),
    ("file of another process", document(1, OLD, COLORS), FOREIGN, ".conflict."),
)


def fill(path, free_pages):
    """Takes room until only so many pages are free."""
    with open(path, "wb", buffering=0) as file:
        status = os.statvfs(path)
        left = status.f_bavail * status.f_bsize // PAGE - free_pages
        for _ in range(left):
            file.write(bytes(PAGE))
    status = os.statvfs(path)
    return status.f_bavail * status.f_bsize // PAGE


def save_on_a_full_disk(figures, home, worker, situation, level):
    """One save at a level of free space. Whether it went through."""
    name, old, foreign, copy = situation
    home.clear()
    home.file.write_bytes(old)
    worker.load(is_whole=old != DAMAGED)
    if foreign:
        home.file.write_bytes(foreign)
    before = home.bytes()
    filling = home.folder / "filling"
    if fill(filling, level) != level:
        raise RuntimeError("the disk does not fill as planned")
    word = worker.edit(NEW)
    now = home.bytes()
    where = f"{name}, {level} pages free"
    is_new = now == worker.document(NEW)
    if now != before and not is_new:
        figures.example(TORN, where)
    if word == "done" and not is_new:
        figures.example(FALSE_DONE, where)
    if copy and is_new and before not in home.copies(copy).values():
        figures.example(UNSAVED, where)
    if any(not rest.startswith((".bak", ".conflict.")) for rest in home.names() if rest != filling.name):
        figures.example(UNTIDY, f"{where}: {home.names()}")
    filling.unlink()
    worker.edit(NEXT)
    if home.bytes() != worker.document(NEXT) or (copy and before not in home.copies(copy).values()):
        figures.example(STUCK, where)
    return is_new


def run(options, home):
    figures = Figures()
    levels = range(0, LEVELS, 5) if options.short else range(LEVELS)
    saves, through = 0, 0
    for store in ("file", "library"):
        with Worker(options.worker, home, store, colors=COLORS) as worker:
            for situation in SITUATIONS:
                for level in levels:
                    through += save_on_a_full_disk(figures, home, worker, situation, level)
                    saves += 1
    figures.at_least("levels of free space", len(levels), 7 if options.short else LEVELS)
    figures.at_least("saves on the full disk", saves, len(levels) * len(SITUATIONS) * 2)
    figures.at_least("of them refused for want of room", saves - through, len(SITUATIONS) * 2)
    figures.at_least("of them gone through", through, len(SITUATIONS) * 2)
    for name in (TORN, FALSE_DONE, UNSAVED, UNTIDY, STUCK):
        figures.none_of(name)
    return figures.exit_code()


def start_inside(folder):
    """Runs this program again in a name space of its own, where a mount on `folder` is seen by nobody else."""
    user = [] if os.geteuid() == 0 else ["--map-root-user"]
    mount = f'mount -t tmpfs -o size={DISK_PAGES * PAGE} none "$0" && exec "$@"'
    command = ["unshare", "--mount", "--propagation", "private", *user, "sh", "-c"]
    environment = dict(os.environ, **{INSIDE: str(folder)})
    if subprocess.run([*command, mount, folder, "true"], capture_output=True, check=False).returncode != 0:
        skip("no mount of one's own is permitted here")
    return subprocess.run([*command, mount, folder, sys.executable, *sys.argv], env=environment, check=False).returncode


def main():
    options = parser(__doc__).parse_args()
    if INSIDE in os.environ:
        return run(options, Home(os.environ[INSIDE]))
    with temporary_home() as home:
        return start_inside(home.folder)


if __name__ == "__main__":
    sys.exit(main())
