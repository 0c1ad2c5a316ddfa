#!/usr/bin/env python3
"""Builds the XPS packages of the tests: makepackages.py TABLE OUTPUT-FOLDER

TABLE is a JSON list of packages. Each is a text tree beside the table ("tree"), or another package of the
table with changes ("from"), under a name of its own, with any of:

  images       {item: [width, height]}   PNG images, drawn here
  tickets      {item: {feature: option}} print tickets; an option may be [name, width, height] in micrometres
  put, remove  {item: text}, [item]      items added or replaced, and left out
  substitute   {text: text}              in every text of the tree
  rename       {item: name}              names in the archive, which may hold backslashes
  fill         {item: megabytes}         blanks behind a text
  utf16        {item: "le"|"be"|"le-bom"|"be-bom"}
  pieces       {item: count}             interleaved pieces, the first ones of all items first
  reverse      true                      items in reverse order
  stored       true                      no compression
  descriptors  true                      sizes in data descriptors after the items
  zip64        true                      ZIP64 records although nothing is large
  twice        {item: name}              an item a second time under another name
  patch        {item: {field: value}}    false claims in both headers of an item
  cut          count                     bytes missing at the end of the file
  file         text                      this text instead of a package
  fault        text                      what the host says of it, to begin with; for the tests
"""

import io
import json
import struct
import sys
import zipfile
import zlib
from pathlib import Path

TIME = (2021, 3, 4, 5, 6, 8)

# Offsets in the local and in the central header, and the format, of what can be falsified.
FIELDS = {"flags": (6, 8, "<H"), "method": (8, 10, "<H"), "crc": (14, 16, "<I"), "size": (22, 24, "<I"),
          "stored": (18, 20, "<I")}


def draw_png(width, height):
    """A picture that looks different in each corner."""
    rows = b""
    for y in range(height):
        rows += b"\0" + bytes(
            value
            for x in range(width)
            for value in (255 * x // width, 255 * y // height, 255 if x + y < (width + height) // 4 else 64)
        )

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def write_ticket(features):
    schema = "http://schemas.microsoft.com/windows/2003/08/printing/printschema"
    text = f'<psf:PrintTicket xmlns:psf="{schema}framework" xmlns:psk="{schema}keywords"'
    text += ' xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema"'
    text += ' version="1">'
    for feature, option in features.items():
        name, *lengths = [option] if isinstance(option, str) else option
        properties = "".join(
            f'<psf:ScoredProperty name="psk:MediaSize{side}"><psf:Value xsi:type="xsd:integer">{length}</psf:Value>'
            "</psf:ScoredProperty>"
            for side, length in zip(("Width", "Height"), lengths)
        )
        text += f'<psf:Feature name="psk:{feature}"><psf:Option name="psk:{name}">{properties}</psf:Option></psf:Feature>'
    return (text + "</psf:PrintTicket>").encode()


def resolve(name, table, folder):
    """The package's items in order and its options, with those of what it is made from."""
    package = table[name]
    if "from" in package:
        items, options = resolve(package["from"], table, folder)
    else:
        tree = folder / package.get("tree", name)
        paths = sorted(path for path in tree.rglob("*") if path.is_file())
        items = {path.relative_to(tree).as_posix(): path.read_bytes() for path in paths}
        options = {}
    items.update({item: draw_png(*size) for item, size in package.get("images", {}).items()})
    items.update({item: write_ticket(features) for item, features in package.get("tickets", {}).items()})
    items.update({item: text.encode() for item, text in package.get("put", {}).items()})
    for item, megabytes in package.get("fill", {}).items():
        items[item] += b" " * (megabytes << 20)
    for item in package.get("remove", []):
        del items[item]
    for old, new in package.get("substitute", {}).items():
        changed = {item: content.replace(old.encode(), new.encode()) for item, content in items.items()}
        if changed == items:
            sys.exit(f"{name}: nothing to substitute for {old}")
        items = changed
    return items, {**options, **package}


def to_utf16(content, form):
    order = form[:2]
    mark = {"le": b"\xff\xfe", "be": b"\xfe\xff"}[order] if form.endswith("-bom") else b""
    return mark + content.decode("utf-8").replace('encoding="utf-8"', 'encoding="utf-16"').encode("utf-16-" + order)


def split(items, pieces):
    """Rounds of pieces: every item's first, every item's second, and so on."""
    rounds = []
    for item, content in items.items():
        count = pieces.get(item, 1)
        size = -(-len(content) // count)
        for number in range(count):
            ending = ".last.piece" if number == count - 1 else ".piece"
            name = f"{item}/[{number}]{ending}" if item in pieces else item
            rounds.append((number, name, content[number * size : (number + 1) * size]))
    return [(name, content) for _, name, content in sorted(rounds, key=lambda entry: entry[0])]


class Unseekable(io.RawIOBase):
    """What makes the ZIP writer use data descriptors."""

    def __init__(self):
        self.data = bytearray()

    def writable(self):
        return True

    def write(self, data):
        self.data += data
        return len(data)


def write_zip(entries, options):
    target = Unseekable() if options.get("descriptors") else io.BytesIO()
    limits = zipfile.ZIP64_LIMIT, zipfile.ZIP_FILECOUNT_LIMIT
    if options.get("zip64"):
        zipfile.ZIP64_LIMIT, zipfile.ZIP_FILECOUNT_LIMIT = 1, 0
    with zipfile.ZipFile(target, "w") as archive:
        for name, content in entries:
            method = zipfile.ZIP_STORED if options.get("stored") else zipfile.ZIP_DEFLATED
            # The lowest level, which nobody takes by default: a copy that was compressed anew differs.
            archive.writestr(zipfile.ZipInfo(name, TIME), content, method, compresslevel=1)
    zipfile.ZIP64_LIMIT, zipfile.ZIP_FILECOUNT_LIMIT = limits
    return bytes(target.data) if options.get("descriptors") else target.getvalue()


def patch(data, item, fields):
    data = bytearray(data)
    with zipfile.ZipFile(io.BytesIO(data)) as archive:
        local = archive.getinfo(item).header_offset
        central = data.find(b"PK\x01\x02", archive.start_dir)
    while data[central + 46 : central + 46 + struct.unpack_from("<H", data, central + 28)[0]] != item.encode():
        central = data.find(b"PK\x01\x02", central + 4)
    for field, value in fields.items():
        local_offset, central_offset, form = FIELDS[field]
        struct.pack_into(form, data, local + local_offset, value)
        struct.pack_into(form, data, central + central_offset, value)
    return bytes(data)


def build(name, table, folder):
    if "file" in table[name]:
        return table[name]["file"].encode()
    items, options = resolve(name, table, folder)
    for item, form in options.get("utf16", {}).items():
        items[item] = to_utf16(items[item], form)
    entries = split(items, options.get("pieces", {}))
    entries = [(options.get("rename", {}).get(item, item), content) for item, content in entries]
    entries += [(again, items[item]) for item, again in options.get("twice", {}).items()]
    if options.get("reverse"):
        entries.reverse()
    data = write_zip(entries, options)
    for item, fields in options.get("patch", {}).items():
        data = patch(data, item, fields)
    return data[: len(data) - options.get("cut", 0)]


def main():
    table_path, output = Path(sys.argv[1]), Path(sys.argv[2])
    table = {package["name"]: package for package in json.loads(table_path.read_text())}
    output.mkdir(parents=True, exist_ok=True)
    for name in table:
        (output / f"{name}.xps").write_bytes(build(name, table, table_path.parent))


if __name__ == "__main__":
    main()
