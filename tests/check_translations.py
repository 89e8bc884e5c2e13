#!/usr/bin/env python3
"""The catalogues hold the library's texts, all of them and no others: check_translations.py LUPDATE SRC CATALOGUES."""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

LOST = "No text of the library"


def texts_of(catalogue):
    return {(context.findtext("name"), message.findtext("source"))
            for context in ElementTree.parse(catalogue).iter("context") for message in context.iter("message")}


def differences(lupdate, sources, catalogues, folder):
    """What lupdate would change in copies of the catalogues, a line for each text, and what it complains of."""
    copies = [pathlib.Path(shutil.copy(path, folder)) for path in catalogues]
    before = [texts_of(path) for path in copies]
    run = subprocess.run([lupdate, "-silent", "-no-obsolete", "-locations", "none", sources, "-ts", *copies],
                         stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=True)
    lines = run.stderr.splitlines()
    for path, had in zip(copies, before):
        has = texts_of(path)
        lines += [f"{path.name}: lacks {context}, \"{text}\"" for context, text in sorted(has - had)]
        lines += [f"{path.name}: has {context}, \"{text}\", which no source has" for context, text in sorted(had - has)]
    return lines


def untranslated(catalogue):
    """A line for each message without a translation."""
    lines = []
    for message in ElementTree.parse(catalogue).iter("message"):
        translation = message.find("translation")
        forms = list(translation) or [translation]
        if translation.get("type") == "unfinished" or not all((form.text or "").strip() for form in forms):
            lines.append(f"{catalogue.name}: \"{message.findtext('source')}\" is not translated")
    return lines


def damaged(catalogue, folder):
    """A copy of a catalogue in which one text has become another, without a translation; the path and the text."""
    tree = ElementTree.parse(catalogue)
    source = next(tree.iter("source"))
    text, source.text = source.text, LOST
    next(tree.iter("translation")).text = None
    path = pathlib.Path(folder, "damaged.ts")
    tree.write(path, encoding="utf-8")
    return path, text


def main(lupdate, sources, folder):
    catalogues = sorted(pathlib.Path(folder).glob("*.ts"))
    with tempfile.TemporaryDirectory() as fresh, tempfile.TemporaryDirectory() as other:
        lines = differences(lupdate, sources, catalogues, fresh)
        lines += [line for path in catalogues for line in untranslated(path)]
        # A text that is missing and one that is left over are found: otherwise this check says nothing.
        path, text = damaged(catalogues[0], other)
        found = differences(lupdate, sources, [path], fresh)
        if not untranslated(path):
            lines.append("nothing is said of a text without a translation")
    lines += [f"nothing is said of \"{word}\" in a damaged catalogue" for word in (text, LOST)
              if not any(f'"{word}"' in line for line in found)]
    print("\n".join(lines) or f"{len(catalogues)} catalogues hold all texts of the library")
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
