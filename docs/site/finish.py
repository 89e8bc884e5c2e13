#!/usr/bin/env python3
"""What Doxygen cannot be told, done to its pages, and a look at each link: finish.py FOLDER_OF_HTML.

The menu gets the contents pages instead of an empty list of pages, and the frame of the search results the look of
the rest. Then no page may load anything from a network, each link and picture of the pages from Markdown must lead
somewhere, and they must lead from the front page to each other and to every class.
"""

import html.parser
import pathlib
import re
import sys
import urllib.parse

HERE = pathlib.Path(__file__).resolve().parent
DOCS = HERE.parent
PAGES = '{text:"Pages",url:"pages.html"}'
MENU = [("Guides", "guides.html"), ("Reference", "reference.html"), ("The project", "project.html")]
FRONT = "index.html"
OUTSIDE = ("http", "https", "mailto")
NOTHING = "javascript:void(0)"  # what the frame of the search results shows at first


class Page(html.parser.HTMLParser):
    """The names that one page has, what it links, and what it loads."""

    def __init__(self, text):
        super().__init__()
        self.names = set()
        self.links = set()
        self.loads = set()
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.names.update(attributes[key] for key in ("id", "name") if attributes.get(key))
        if tag == "a" and attributes.get("href"):
            self.links.add(attributes["href"])
        elif tag == "link" and attributes.get("href"):
            self.loads.add(attributes["href"])
        if attributes.get("src"):
            self.loads.add(attributes["src"])


def finish(folder):
    menu = folder / "menudata.js"
    entries = ",\n".join(f'{{text:"{title}",url:"{address}"}}' for title, address in MENU)
    text = menu.read_text("utf-8")
    if PAGES not in text and entries not in text:
        yield f"menudata.js has no {PAGES}"
    menu.write_text(text.replace(PAGES, entries), "utf-8")

    sheet = folder / "search" / "search.css"
    ours = (HERE / "search.css").read_text("utf-8")
    text = sheet.read_text("utf-8")
    if ours not in text:
        sheet.write_text(text + ours, "utf-8")


class Site:
    """All pages of a folder, read when they are first asked for."""

    def __init__(self, folder):
        self.folder = folder
        self.pages = {}

    def page(self, name):
        if name not in self.pages:
            self.pages[name] = Page((self.folder / name).read_text("utf-8"))
        return self.pages[name]

    def written(self):
        """The pages that come from Markdown: Doxygen says so at the end of each."""
        return sorted(path.name for path in self.folder.glob("*.html")
                      if "<!-- PageDoc -->" in path.read_text("utf-8"))

    def fault_of(self, name, link):
        """Why \\a link of page \\a name leads nowhere; nothing when it does lead somewhere."""
        parts = urllib.parse.urlsplit(link)
        if parts.scheme in OUTSIDE or link == NOTHING:
            return None
        if parts.scheme or parts.netloc:
            return f"{name}: {link} is no address"
        target = urllib.parse.unquote(parts.path) or name
        if not (self.folder / target).is_file():
            return f"{name}: {link} leads to no file"
        anchor = urllib.parse.unquote(parts.fragment)
        if anchor and target.endswith(".html") and anchor not in self.page(target).names:
            return f"{name}: {link} leads to no place in {target}"
        return None

    def reached(self):
        """What can be reached from the front page by links of pages from Markdown."""
        written = set(self.written())
        met = {FRONT}
        waiting = [FRONT]
        while waiting:
            for link in self.page(waiting.pop()).links:
                name = urllib.parse.urlsplit(link).path
                if name and name not in met and (self.folder / name).is_file():
                    met.add(name)
                    if name in written:
                        waiting.append(name)
        return met


def faults_in(site):
    written = site.written()
    if FRONT not in written or len(written) < len(list(DOCS.glob("*.md"))):
        yield f"pages are missing; there are {', '.join(written) or 'none'}"
        return
    for name in written:
        page = site.page(name)
        yield from filter(None, (site.fault_of(name, link) for link in sorted(page.links | page.loads)))
    for name in sorted(path.name for path in site.folder.glob("*.html")):
        yield from (f"{name} loads {link} from a network" for link in sorted(site.page(name).loads)
                    if urllib.parse.urlsplit(link).netloc)
    classes = [path.name for path in site.folder.glob("class*.html")
               if not re.search(r"-members\.html$", path.name) and path.name != "classes.html"]
    reached = site.reached()
    yield from (f"{name} cannot be reached from {FRONT}" for name in sorted({*written, *classes} - reached))


def main():
    folder = pathlib.Path(sys.argv[1])
    site = Site(folder)
    faults = [*finish(folder), *faults_in(site)]
    print("\n".join(faults)
          or f"{folder / FRONT}: {len(site.written())} pages beside the classes, each link leads somewhere")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
