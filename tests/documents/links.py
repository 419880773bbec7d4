"""Follows every link and picture of Markdown files or HTML pages to a file and a place in it that
exist: links.py FILE... Links to other sites are left alone.
"""
import functools
import html.parser
import pathlib
import re
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    """Where an HTML page leads to, and the places in it that have a name."""

    def __init__(self, path):
        super().__init__()
        self.links, self.places = set(), set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name in ("href", "src", "data"):
                self.links.add(value)
            elif name in ("id", "name"):
                self.places.add(value)


class Markdown:
    """The same of a Markdown file, whose headings are its places."""

    def __init__(self, path):
        text = re.sub("^```.*?^```", "", path.read_text(encoding="utf-8"), flags=re.S | re.M)
        self.links = set(re.findall(r"\]\(([^)]+)\)", text))
        headings = re.findall("^#+ (.+)", text, re.M)
        self.places = {re.sub(r"[^\w -]", "", h.lower()).replace(" ", "-") for h in headings}


@functools.lru_cache(maxsize=None)
def read(path):
    return Markdown(path) if path.suffix == ".md" else Page(path)


broken = 0
for source in (pathlib.Path(name).resolve() for name in sys.argv[1:]):
    for link in sorted(read(source).links):
        url = urllib.parse.urlsplit(link)
        if url.scheme in ("http", "https", "javascript"):
            continue
        target = (source.parent / urllib.parse.unquote(url.path)).resolve() if url.path else source
        if not target.exists() or url.fragment and url.fragment not in read(target).places:
            print(f"{source}: leads nowhere: {link}", file=sys.stderr)
            broken = 1
sys.exit(broken)
