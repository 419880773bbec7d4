"""What documents name exists: links.py FILE... Every link and picture of Markdown files or HTML pages is followed
to a file and a place in it; links to other sites are left alone. The project's commands in Markdown files are there,
docs/functions.md has every function once, by names that exist; the changelog begins with the headers' version.
"""
import collections
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
    """The same of a Markdown file, whose headings are its places, and the commands that it names."""

    def __init__(self, path):
        text = path.read_text(encoding="utf-8")
        self.commands = set(re.findall(r"\./scripts/[a-z]+|\.ci/[a-z]+", text))
        text = re.sub("^```.*?^```", "", text, flags=re.S | re.M)
        self.links = set(re.findall(r"\]\(([^)]+)\)", text))
        headings = re.findall("^#+ (.+)", text, re.M)
        self.places = {re.sub(r"[^\w -]", "", h.lower()).replace(" ", "-") for h in headings}


@functools.lru_cache(maxsize=None)
def read(path):
    return Markdown(path) if path.suffix == ".md" else Page(path)


ROOT = pathlib.Path(__file__).resolve().parents[2]
faults = []
pages = [pathlib.Path(name).resolve() for name in sys.argv[1:]]
for source in pages:
    for link in sorted(read(source).links):
        url = urllib.parse.urlsplit(link)
        if url.scheme in ("http", "https", "javascript"):
            continue
        target = (source.parent / urllib.parse.unquote(url.path)).resolve() if url.path else source
        if not target.exists() or url.fragment and url.fragment not in read(target).places:
            faults.append(f"{source}: leads nowhere: {link}")
    for command in sorted(getattr(read(source), "commands", ())):
        if not (ROOT / command).exists():
            faults.append(f"{source}: there is no {command}")

if ROOT / "docs/functions.md" in pages:
    rows = re.findall(r"^\|.*", (ROOT / "docs/functions.md").read_text(encoding="utf-8"), re.M)
    named = collections.Counter(re.findall(r"KX[A-Za-z]\w*", "\n".join(rows)))
    wanted = set((ROOT / "src/exports.txt").read_text().split())
    faults += [f"docs/functions.md has {name} {named[name]} times" for name in sorted(wanted | set(named))
               if named[name] != (name in wanted)]
    known = "".join((ROOT / "include" / name).read_text() for name in ("kxmaths5.hpp", "kxmaths5/everyday.h"))
    faults += [f"docs/functions.md has {name}, which is not in C++" for name in sorted(set(
        re.findall(r"[a-z]\w+(?=\()|kx_\w+", "\n".join(rows)))) if not re.search(rf"\b{name}\b", known)]

if ROOT / "CHANGELOG.md" in pages:
    types = (ROOT / "include/kxmaths5/types.h").read_text()
    version = ".".join(re.findall(r"#define KX_VERSION_(?:MAJOR|MINOR|PATCH) +(\d+)", types))
    newest = re.search("^## (.*)", (ROOT / "CHANGELOG.md").read_text(), re.M).group(1)
    if not newest.startswith(version + ", "):
        faults.append(f"CHANGELOG.md begins with {newest}, the headers have {version}")

sys.exit("\n".join(faults) or 0)
