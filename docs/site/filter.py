#!/usr/bin/env python3
"""Turns a guide, which reads well where it lies, into what Doxygen links: filter.py FILE.md, result on standard output.

Markdown's own links to a file or to a heading of it come out dead or as plain addresses there. So each heading gets a
name, links go to these names, and what stands in backticks and is a public class or a member of one links to its
description. A list item of a contents page that begins with a link makes the page behind it a page below that one; a
guide ends with a link to the next.
"""

import functools
import html
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCS = ROOT / "docs"
CONTENTS = ("index", "guides", "reference", "project")  # pages that have pages below them
MAIN_PAGE = "index"
GUIDES = "guides.md"  # whose numbered lists are the order in which the guides are read
INSTEAD = {"README": MAIN_PAGE}  # what the site has another page for

FENCE = re.compile(r"^(```|~~~)")
HEADING = re.compile(r"^(#{1,6}) +(.+?)$")
LINK = re.compile(r"(?<!!)\[((?:[^\[\]`]|`[^`]*`)*)\]\(([^()\s]+)\)")
CONTENTS_ITEM = re.compile(r"^(\s*(?:[-*]|\d+\.) +(?:\*\*)?)\[([^\[\]`]+)\]\(@ref ([\w-]+)\)")
PICTURE = re.compile(r"^!\[([^\]]+)\]\(([\w.-]+)\)$")
CODE_OR_LINK = re.compile(r"\[[^\]]*\]\([^)]*\)|`[^`]+`")


def page_of(path):
    return INSTEAD.get(path.stem, path.stem.lower())


def slug(title):
    """The name of a heading as the places give it where the sources are read."""
    text = re.sub(r"[^\w\- ]", "", title.strip().lower())
    return text.replace(" ", "-")


class Names:
    """Names of the headings of one page, each once."""

    def __init__(self, page):
        self.page = page
        self.met = {}

    def of(self, title):
        name = slug(title)
        count = self.met.get(name, 0)
        self.met[name] = count + 1
        return f"{self.page}--{name}" + (f"-{count}" if count else "")


def is_page(path):
    return path.suffix == ".md" and path.exists() and (path.parent == DOCS or path.parent == ROOT)


def target_of(link, document):
    """What Doxygen shall link instead of \\a link, or nothing where it may stay."""
    address, _, anchor = link.partition("#")
    path = (document.parent / address).resolve() if address else document
    if not is_page(path):
        return None
    return f"@ref {page_of(path)}" + (f"--{anchor}" if anchor else "")


@functools.lru_cache(maxsize=None)
def public_names():
    """Class: the names that its header holds."""
    classes = {}
    for header in sorted((ROOT / "src").glob("*.h")):
        if header.name.endswith("_p.h"):
            continue
        text = header.read_text("utf-8")
        for name in re.findall(r"^class TREL_EXPORT (\w+)", text, re.MULTILINE):
            public = re.split(r"^(?:private|protected):", text, 1, re.MULTILINE)[0]
            classes[name] = set(re.findall(r"\b\w+\b", re.sub(r"//.*", "", public)))
    return classes


def described(code):
    """The public name that a piece of code is; nothing for any other."""
    match = re.fullmatch(r"&?(\w+)(?:::(\w+))?(?:\(\))?", code)
    if not match:
        return None
    owner, member = match.groups()
    names = public_names()
    if owner not in names:
        return None
    if member is None:
        return owner
    return f"{owner}::{member}" if member in names[owner] else None


def linked_code(match):
    name = described(match.group(0).strip("`")) if match.group(0).startswith("`") else None
    return f'<code>@ref {name} "{match.group(0).strip("`")}"</code>' if name else match.group(0)


def named_heading(line, title, level, path, names):
    """A heading that links find. On a contents page it is none to Doxygen, whose tree shows the pages below alone."""
    page = page_of(path)
    if level == 1:
        # The main page goes by the project's name: under another the tree would not have the pages below it.
        return line if page == MAIN_PAGE else f"{line} {{#{page}}}"
    if page in CONTENTS:
        return f"<h{level - 1}>@anchor {names.of(title)} {title}</h{level - 1}>\n"
    return f"{line} {{#{names.of(title)}}}"


def figure(match):
    """A picture that shrinks with the window, which Doxygen's own does not where it is an SVG."""
    caption, name = match.groups()
    picture = f'<figure><img src="{name}" alt=""/><figcaption>{html.escape(caption)}</figcaption></figure>'
    return f"@htmlonly[block]\n{picture}\n@endhtmlonly"


def converted(line, path, names):
    heading = HEADING.match(line)
    if heading:
        return named_heading(line, heading.group(2), len(heading.group(1)), path, names)
    if PICTURE.match(line):
        return PICTURE.sub(figure, line)

    def link(match):
        target = target_of(match.group(2), path)
        return f"[{match.group(1)}]({target})" if target else match.group(0)

    line = CODE_OR_LINK.sub(linked_code, line)
    line = LINK.sub(link, line)
    if page_of(path) in CONTENTS:
        line = CONTENTS_ITEM.sub(r'\1@subpage \3 "\2"', line)
    return line


def guide_behind(path):
    """Link to the guide that is read behind this one; nothing behind the last, and for pages that are no guides."""
    guides = re.findall(r"^\d+\. (\[[^\]]+\]\(([\w-]+)\.md\))", (DOCS / GUIDES).read_text("utf-8"), re.MULTILINE)
    pages = [page for _, page in guides]
    place = pages.index(page_of(path)) + 1 if page_of(path) in pages else len(pages)
    return guides[place][0] if place < len(pages) else None


def filtered(path):
    names = Names(page_of(path))
    inside = False
    for line in path.read_text("utf-8").splitlines():
        if FENCE.match(line):
            inside = not inside
            yield line
        else:
            yield line if inside else converted(line, path, names)
        if line.startswith("# ") and not inside and page_of(path) not in CONTENTS:
            yield "\n[TOC]"
    behind = guide_behind(path)
    if behind:
        yield converted(f"\n**Next guide**: {behind}", path, names)


def main():
    print("\n".join(filtered(pathlib.Path(sys.argv[1]).resolve())))
    return 0


if __name__ == "__main__":
    sys.exit(main())
