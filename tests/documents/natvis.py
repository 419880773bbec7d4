"""Prints a C++ source that compiles if each expression of a natvis file is one of its record:
natvis.py FILE HEADER. Each record of the header must have a view, but for those of the host's own.
"""
import re
import sys
import xml.etree.ElementTree as xml

SPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
views = {}
for view in xml.parse(sys.argv[1]).getroot().iter(SPACE + "Type"):
    found = views[view.get("Name")] = []
    for element in view.iter():
        if element.tag == SPACE + "DisplayString":
            found += [re.sub(",g$", "", text) for text in re.findall("{(.*?)}", element.text)]
        elif element.tag == SPACE + "Item":
            found.append(element.text)
        found.append(element.get("Condition", "0"))

with open(sys.argv[2], encoding="utf-8") as header:
    records = set(re.findall(r"^typedef struct (\w+)", header.read(), re.MULTILINE))
unseen = records - views.keys() - {"KXTriangleCorner"}
if unseen:
    sys.exit(f"without a view: {unseen}")

for name, size in ("KXM3", 3), ("KXM4", 4):
    places = [(r, size - 1) for r in range(size - 1)] + [(r, c) for r in range(size) for c in range(size)]
    if [each for each in views[name] if each.startswith("m[")] != [f"m[{r}][{c}]" for r, c in places]:
        sys.exit(f"{name}: not its translation and then its rows")

print("#include <kxmaths5.h>")
for name, expressions in views.items():
    print(f"struct View{name} : {name} {{ void show() {{")
    print("".join(f"(void)({expression});\n" for expression in expressions) + "} };")
