"""What help() tells of a function: its contract, with Python's types."""
import textwrap

RESULTS = {"double": "float", "int32": "int", "uint32": "int"}


def docstring(described, group, inputs, outputs):
    texts = {each["name"]: each["text"] for each in described["arguments"]}
    texts = {name + suffix: text for name, text in texts.items() for suffix in ("", "_")}
    parts = [described["brief"], described["text"]]

    parameters = [_entry(each.name, each.type_text, texts[each.name]) for each in inputs]
    for each in outputs:
        left_out = "; False leaves it out" if each.may_be_null else ""
        parameters.append(_entry(each.name, f"{each.type_text}, a new one unless given",
                                 texts[each.name].removesuffix("; or null") + left_out))
    parts.append(_section("Parameters", parameters))

    returned = [_entry(each.name, each.type_text) for each in (*inputs, *outputs)
                if getattr(each, "is_written", False)]
    if described["result"]["text"]:
        returned.insert(0, _entry(RESULTS[described["result"]["type"]], "",
                                  described["result"]["text"]))
    parts.append(_section("Returns", returned))

    # Null is C's; how an output is left out stands with the argument.
    notes = [textwrap.fill(f"{label}: {text}", 96) for label, text in described["notes"].items()
             if label != "Null"]
    parts += [_section("Notes", notes), _section(group["name"], [group["text"]])]
    return "\n\n".join(part for part in parts if part)


def _entry(name, type_text, text=""):
    head = f"{name} : {type_text}" if type_text else name
    return head + ("\n" + textwrap.indent(textwrap.fill(text, 92), "    ") if text else "")


def _section(title, entries):
    text = "\n".join(entry for entry in entries if entry)
    return f"{title}\n{'-' * len(title)}\n{text}" if text else ""
