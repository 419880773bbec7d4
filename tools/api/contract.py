"""Reads a contract: the comment above a function in the headers.

The headers phrase what a binding has to know in one way each:

    @param[in,out] name  text               the argument's role
    text; or null                           it may be null
    the points, count of them, packed       it is an array, and the argument count is its length
    the vertices, indexed by triangle, packed   an array whose length is not passed; indices may
                                                also be integers: by first, second and third
    the unit wanted, 0 to 9                 the values that an integer may have
    - Aliasing: out may be a, b or both; a and b may be one record.
    - Null: not allowed. | allowed when count is 0. | a, b or both may be null.

A permission in other words is an error, so that none is missed.
"""
import dataclasses
import re


class ContractError(Exception):
    """A comment that can't be read as a contract."""


@dataclasses.dataclass
class Contract:
    brief: str
    text: str  # what follows the brief sentence; formulas and tables keep their lines
    notes: dict  # Aliasing, Null, Degenerate, On status 1, Rounding
    arguments: dict  # name: (role, text)
    result: str


def body(comment):
    """The text of a comment without its frame, with its lines."""
    inside = re.sub(r"^/\*\*<?|\*/$", "", comment)
    return re.sub(r"^ *\* ?", "", inside, flags=re.MULTILINE).strip()


def one_line(comment):
    return " ".join(body(comment).split())


def read(comment):
    text, *parts = re.split(r"^(?=@|- [A-Z])", body(comment), flags=re.MULTILINE)
    notes, arguments, result = {}, {}, ""
    for part in parts:
        part, _, more_text = part.partition("\n\n")
        text = text.rstrip("\n") + "\n\n" + more_text
        part = " ".join(part.split())
        if match := re.fullmatch(r"@param\[(in|out|in,out)\] (\w+) (.+)", part):
            arguments[match[2]] = (match[1], match[3])
        elif match := re.fullmatch(r"@return (.+)", part):
            result = match[1]
        elif match := re.fullmatch(r"- (Aliasing|Null|Degenerate|On status 1|Rounding): (.+)", part):
            notes[match[1]] = match[2]
        else:
            raise ContractError(f"can't be read: {part}")

    # A line's end became one space, so that both texts have the same length.
    first_paragraph = text.strip("\n").split("\n\n")[0].replace("\n", " ")
    brief = re.match(r".+?\.(?= |$)|.+", first_paragraph)[0]
    rest = re.sub(r"\A(?: |\n+)", "", text.strip("\n")[len(brief):])
    return Contract(brief, rest, notes, arguments, result)


def _named(words, contract, statement):
    names = [word for word in re.findall(r"\w+", words) if word not in ("or", "and", "both")]
    for name in names:
        if name not in contract.arguments:
            raise ContractError(f"no argument is called {name}: {statement}")
    return names


def sharings(contract):
    """The pairs of arguments that may be one record."""
    pairs = set()
    for statement in re.split(r"[;.]\s*", contract.notes.get("Aliasing", "")):
        if match := re.match(r"([\w, ]+) may be one record\b", statement):
            names = _named(match[1], contract, statement)
            pairs |= {frozenset((a, b)) for a in names for b in names if a != b}
        elif match := re.match(r"(\w+) may be (?:the same sixteen floats as )?(.+?)(?=, and must|$)",
                               statement):
            one, *others = _named(f"{match[1]} {match[2]}", contract, statement)
            pairs |= {frozenset((one, other)) for other in others}
        elif re.search(r"\bmay\b", statement) and not statement.startswith("Neither may touch "):
            raise ContractError(f"a permission in other words: {statement}")
    return pairs


def nulls(contract):
    """The arguments that may be null, and the count that makes all of them so by being 0."""
    said = {name for name, (_, text) in contract.arguments.items() if text.endswith("; or null")}
    note = contract.notes.get("Null", "not allowed.")
    noted, count = set(), None
    if match := re.match(r"allowed when (\w+) is 0\b", note):
        count, = _named(match[1], contract, note)
    elif match := re.match(r"any of the outputs may be null\b", note):
        noted = {name for name, (role, _) in contract.arguments.items() if role == "out"}
    elif match := re.match(r"(.+?) may be null\b", note):
        noted = set(_named(match[1], contract, note))
    elif note != "not allowed.":
        raise ContractError(f"a permission in other words: {note}")
    if said != noted:
        raise ContractError(f'the arguments\' "; or null" and the note differ: {note}')
    return said, count


def extent(text):
    """What the text of an argument says of its array or its values."""
    facts = {}
    if match := re.search(r"\b(\w+) of them, packed\b", text):
        facts["count"] = match[1]
    elif match := re.search(r"\bindexed by (\w+(?:, \w+)*(?: and \w+)?), packed\b", text):
        names = re.findall(r"\w+", match[1].replace(" and ", " "))
        facts["indexed_by"] = names[0] if len(names) == 1 else names
    elif "packed" in text:
        raise ContractError(f"an array without a length: {text}")
    if match := re.search(r", (\d+) to (\d+)$", text):
        facts["range"] = [int(match[1]), int(match[2])]
    return facts
