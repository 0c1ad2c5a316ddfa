"""What the tests of the whole program share: running it, and readers of XPS packages that are not its own.

The command line of a test is RUNNER PROGRAM PACKAGES WORK-FOLDER.
"""

import json
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zipfile
from pathlib import Path

RUNNER, PROGRAM, PACKAGES, WORK = sys.argv[1:5]
TICKET_TYPE = "application/vnd.ms-printing.printticket+xml"
SCHEMA = "{http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework}"


def start(*arguments, **options):
    return subprocess.Popen(
        [RUNNER, PROGRAM, *arguments], cwd=WORK, stdout=subprocess.PIPE,
        **{"stderr": subprocess.PIPE, "encoding": "utf-8", **options})


def run(*arguments, **options):
    process = start(*arguments, **options)
    output, errors = process.communicate(timeout=120)
    return subprocess.CompletedProcess(process.args, process.returncode, output, errors)


def stored_bytes(path, item):
    """An item's compressed bytes, found through its local header."""
    with open(path, "rb") as file:
        file.seek(item.header_offset + 26)
        lengths = file.read(4)
        file.seek(int.from_bytes(lengths[:2], "little") + int.from_bytes(lengths[2:], "little"), 1)
        return file.read(item.compress_size)


def stored_items(name):
    """What an archive holds, in its order, whether it can be decompressed or not."""
    with zipfile.ZipFile(Path(WORK, name)) as archive:
        return [(item.filename, item.date_time, item.compress_type, item.CRC, item.file_size,
                 stored_bytes(Path(WORK, name), item)) for item in archive.infolist()]


class Package:
    """A package as the standard has it: parts by name, their types and their relationships."""

    def __init__(self, name):
        self.path = Path(WORK, name)
        with zipfile.ZipFile(self.path) as archive:
            if archive.testzip() is not None:
                raise AssertionError(f"{name} is damaged")
            self.items = {item.filename: item for item in archive.infolist()}
            self.contents = {name: archive.read(name) for name in self.items}
        types = next(content for name, content in self.contents.items() if name.lower() == "[content_types].xml")
        self.types = {entry.get("PartName", entry.get("Extension")): entry.get("ContentType") for entry in xml.etree.ElementTree.fromstring(types)}

    def stored(self, name):
        """An item's compressed bytes, with its checksum and time."""
        item = self.items[name]
        return stored_bytes(self.path, item), item.CRC, item.date_time

    def read(self, part):
        return self.contents[part[1:]]

    def type_of(self, part):
        return self.types.get(part, self.types.get(part.rpartition(".")[2]))

    def tickets_of(self, part):
        """What the part's relationships name as print tickets."""
        folder, _, file = part.rpartition("/")
        relationships = self.contents.get(f"{folder}/_rels/{file}.rels"[1:])
        if relationships is None:
            return []
        targets = [
            entry.get("Target")
            for entry in xml.etree.ElementTree.fromstring(relationships)
            if entry.get("Type").endswith("/printticket")
        ]
        return [str(resolve(folder, target)) for target in targets]


def write_document(name, pages):
    """The package "plain" with this markup in its pages."""
    links = "".join(f'<PageContent Source="Pages/{number}.fpage"/>' for number in range(len(pages)))
    with zipfile.ZipFile(Path(PACKAGES, "plain.xps")) as plain, zipfile.ZipFile(Path(WORK, name), "w") as archive:
        for item in plain.namelist():
            if item.endswith(".fdoc"):
                archive.writestr(item, f'<FixedDocument xmlns="http://schemas.microsoft.com/xps/2005/06">{links}</FixedDocument>')
            elif ".fpage" not in item:
                archive.writestr(item, plain.read(item))
        for number, page in enumerate(pages):
            archive.writestr(f"Documents/1/Pages/{number}.fpage", page)


def resolve(folder, target):
    segments = []
    for segment in (target if target.startswith("/") else f"{folder}/{target}").split("/"):
        if segment == "..":
            segments.pop()
        elif segment:
            segments.append(segment)
    return "/" + "/".join(segments)


def options_of(ticket):
    """{feature: option} of a ticket's bytes, without prefixes."""
    return {
        feature.get("name").partition(":")[2]: feature.find(f"{SCHEMA}Option").get("name").partition(":")[2]
        for feature in xml.etree.ElementTree.fromstring(ticket).iter(f"{SCHEMA}Feature")
    }


def look_at(names, folder):
    """Draws the pages of packages: [a picture of each package, by page]"""
    for name in names:
        subprocess.run(["mutool", "draw", "-q", "-r", "36", "-o", f"{folder}/{name}.%03d.png", name], cwd=WORK, check=True,
                       stderr=subprocess.DEVNULL)
    return zip(*(sorted(Path(folder).glob(f"{name}.*.png")) for name in names), strict=True)


def difference(one, other, turn):
    """The share of colour values that differ visibly once the other picture is turned; 1 for pictures of different sizes."""
    told = subprocess.run(["convert", one, "-print", "%w %h ", "(", other, "-rotate", str(turn), "+repage", "-print", "%w %h ", ")",
                           "-compose", "difference", "-composite", "-threshold", "25%", "-format", "%[fx:mean]", "info:"],
                          stdout=subprocess.PIPE, check=True, encoding="ascii").stdout
    width, height, other_width, other_height, share = map(float, told.split())
    return share if abs(width - other_width) <= 1 and abs(height - other_height) <= 1 else 1


class ProgramTestCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        shutil.rmtree(WORK, ignore_errors=True)
        Path(WORK).mkdir(parents=True)

    def take(self, name, target="in.xps"):
        shutil.copy(Path(PACKAGES) / f"{name}.xps", Path(WORK) / target)

    def files(self):
        return sorted(path.name for path in Path(WORK).iterdir())

    def run_done(self, *arguments):
        done = run(*arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""), arguments)
        return done.stdout

    def pages_of(self, *arguments):
        """Runs with --json; what it tells of each page."""
        *pages, outcome = [json.loads(line) for line in self.run_done("run", *arguments, "--json").splitlines()]
        self.assertEqual((outcome["outcome"], outcome["hresult"]), ("done", "0x00000000"))
        return pages

    def assert_refused(self, status, *arguments):
        """The failure's only line, without the program's name."""
        failed = run(*arguments)
        self.assertEqual((failed.returncode, failed.stderr.count("\n")), (status, 1), (arguments, failed.stderr))
        self.assertTrue(failed.stderr.startswith("xpsfilterhost: "), failed.stderr)
        return failed.stderr[len("xpsfilterhost: ") : -1]

    def assert_written(self, before, after, pages):
        """Whether a package is another one as its pages were reported to have been changed, and no more."""
        kept = set(before.items) - {"[Content_Types].xml"}
        removed, added = set(), set()
        for page in pages:
            part, old, new = page["part"], page["oldTicket"], page["newTicket"]
            if "turned" in page["decision"]:
                kept.remove(part[1:])
                self.assertIn(b'<Canvas RenderTransform="0.00,-1.00,1.00,0.00,0.00,', after.read(part))
            self.assertEqual(new is None, page["decision"] == "passed")
            self.assertEqual(after.tickets_of(part), [ticket for ticket in [new or old] if ticket])
            if new:
                self.assertRegex(new, r"^(/[A-Za-z0-9_.%-]*[A-Za-z0-9_-])+$")
                self.assertEqual(after.type_of(new), TICKET_TYPE)
                kept.discard(re.sub(r"([^/]+)$", r"_rels/\1.rels", part)[1:])
                added.add(new[1:])
                removed |= {old[1:]} if old else set()
        removed -= {page["oldTicket"][1:] for page in pages if page["oldTicket"] and not page["newTicket"]}
        self.assertEqual(set(after.items) & (removed | added), added)
        self.assertEqual(set(after.types) & {"/" + name for name in removed}, set())
        for name in kept - removed:
            self.assertEqual(after.stored(name), before.stored(name), name)

    def assert_looks_right(self, pages, before="in.xps", after="out.xps"):
        # Pages of whole pixels agree wholly, others lie a fraction of a pixel apart when they are turned.
        tolerance = 0.02
        with tempfile.TemporaryDirectory() as folder:
            for page, (old, new) in zip(pages, look_at([before, after], folder), strict=True):
                turn = 90 if "turned" in page["decision"] else 0
                self.assertLess(difference(old, new, turn), tolerance, page["part"])
                # And the picture does tell one way up from the other.
                self.assertGreater(difference(old, new, turn + 180), tolerance, page["part"])
