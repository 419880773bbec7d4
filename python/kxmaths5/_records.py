"""Records: a class for each, and the shape of the array that stands for it."""
import ctypes

SCALARS = {"float": ctypes.c_float, "double": ctypes.c_double, "int32": ctypes.c_int32,
           "uint32": ctypes.c_uint32, "void": None}


class Record(ctypes.Structure):
    """A record of the library, with its fields by name."""

    def __repr__(self):
        fields = ", ".join(f"{name}={_plain(getattr(self, name))!r}" for name, _ in self._fields_)
        return f"{type(self).__name__}({fields})"


def _plain(value):
    return [_plain(each) for each in value] if isinstance(value, ctypes.Array) else value


def make_classes(described):
    """The records' classes by name, from their description."""
    classes = {}
    for record in described:
        if "same_as" in record:
            classes[record["name"]] = classes[record["same_as"]]
            continue
        fields = []
        for field in record["fields"]:
            kind = SCALARS.get(field["type"]) or classes[field["type"]]
            for length in reversed(field["shape"]):
                kind *= length
            fields.append((field["name"], kind))
        text = "\n".join(f"{field['name']}: {field['text']}" for field in record["fields"])
        made = type(record["name"], (Record,), {
            "_fields_": fields, "__doc__": f"{record['text']}\n\n{text}", "__module__": "kxmaths5"})
        assert ctypes.sizeof(made) == record["size"]
        for field in record["fields"]:
            assert getattr(made, field["name"]).offset == field["offset"]
        classes[record["name"]] = made
    return classes


def shape_of(kind):
    """The shape of a float32 array with a record's numbers; None if they aren't all floats."""
    if kind is ctypes.c_float:
        return ()
    if issubclass(kind, ctypes.Array):
        inner = shape_of(kind._type_)
        return None if inner is None else (kind._length_, *inner)
    if not issubclass(kind, ctypes.Structure):
        return None
    inner = {shape_of(field) for _, field in kind._fields_}
    if len(inner) != 1 or None in inner:
        return None
    shape, = inner
    return shape if len(kind._fields_) == 1 else (len(kind._fields_), *shape)


def is_read_by_name(kind):
    """Whether a record has too many numbers in a row to be told apart by their places."""
    shape = shape_of(kind)
    return shape is None or (len(shape) == 1 and shape[0] > 4)
