#!/usr/bin/env python3
"""Runs the host's program as a user does and checks its outputs with readers of other origin.

program_test.py RUNNER PROGRAM PACKAGES WORK-FOLDER; PROGRAM's rewriter appends a comment to every page.
"""

import os
import pty
import re
import shutil
import subprocess
import sys
import unittest
import zipfile
from pathlib import Path

RUNNER, PROGRAM, PACKAGES, WORK = sys.argv[1:5]
COMMENT = b"<!-- rewritten -->"


def run(*arguments, stderr=subprocess.PIPE):
    return subprocess.run(
        [RUNNER, PROGRAM, *arguments], cwd=WORK, stdout=subprocess.PIPE, stderr=stderr, encoding="utf-8", timeout=60
    )


def stored_bytes(path, item):
    """An item's compressed bytes, found through its local header."""
    with open(path, "rb") as file:
        file.seek(item.header_offset + 26)
        name_length = int.from_bytes(file.read(2), "little")
        extra_length = int.from_bytes(file.read(2), "little")
        file.seek(name_length + extra_length, os.SEEK_CUR)
        return file.read(item.compress_size)


class ProgramTest(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(WORK, ignore_errors=True)
        Path(WORK).mkdir(parents=True)

    def take(self, name):
        shutil.copy(Path(PACKAGES) / f"{name}.xps", Path(WORK) / "in.xps")

    def files(self):
        return sorted(path.name for path in Path(WORK).iterdir())

    def assert_rewritten(self, source, target, pages):
        with zipfile.ZipFile(source) as before, zipfile.ZipFile(target) as after:
            self.assertIsNone(after.testzip())
            self.assertEqual(after.namelist(), before.namelist())
            for old, new in zip(before.infolist(), after.infolist()):
                if old.filename in pages:
                    self.assertEqual(after.read(new), before.read(old) + COMMENT)
                else:
                    self.assertEqual(stored_bytes(target, new), stored_bytes(source, old), old.filename)
                    self.assertEqual((new.CRC, new.date_time), (old.CRC, old.date_time), old.filename)

    def test_rewrites_every_page_and_copies_the_rest(self):
        for name in ["tickets", "openxps", "zip64", "descriptors", "zip64-descriptors"]:
            with self.subTest(name):
                self.take(name)
                done = run("turn", "in.xps", "-o", "out.xps")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.assertEqual(done.stdout.splitlines(), ["turned 3 pages in 2 documents: out.xps"])
                pages = [f"Documents/{page}.fpage" for page in ("1/Pages/1", "1/Pages/2", "2/Pages/1")]
                self.assert_rewritten(f"{WORK}/in.xps", f"{WORK}/out.xps", pages)
                self.assertEqual(self.files(), ["in.xps", "out.xps"])

    def test_output_looks_as_the_input_to_a_renderer(self):
        if shutil.which("mutool") is None:
            self.skipTest("mutool is not installed")
        self.take("sample")
        self.assertEqual(run("turn", "in.xps", "--output=out.xps").returncode, 0)
        pictures = [
            subprocess.run(["mutool", "draw", "-q", "-r", "30", "-o", "-", "-F", "ppm", f"{WORK}/{name}"],
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout
            for name in ("in.xps", "out.xps")
        ]
        self.assertEqual(pictures[0].count(b"P6\n"), 3)
        self.assertEqual(pictures[0], pictures[1])

    def test_failure_is_one_line_that_names_the_part(self):
        page = "/Documents/1/Pages/1.fpage: "
        table = {
            "not-a-zip": "is not a ZIP archive",
            "no-sequence": "/FixedDocumentSequence.fdseq: is missing from the package, and /_rels/.rels refers to it",
            "method-6": page[1:] + "is compressed with method 6, which is not supported",
            "bad-page": "/Documents/1/Pages/2.fpage: is not well-formed: line 2: ",
            "wrong-crc": page[1:] + "cannot be decompressed: CRC error",
        }
        for name, fault in table.items():
            with self.subTest(name):
                self.take(name)
                failed = run("turn", "in.xps", "-o", "out.xps")
                self.assertEqual((failed.returncode, failed.stdout), (2, ""))
                self.assertEqual(len(failed.stderr.splitlines()), 1, failed.stderr)
                self.assertTrue(failed.stderr.startswith("xpsfilterhost: in.xps: " + fault), failed.stderr)
                self.assertEqual(self.files(), ["in.xps"])

    def test_output_must_not_be_the_input(self):
        self.take("plain")
        content = Path(WORK, "in.xps").read_bytes()
        os.link(f"{WORK}/in.xps", f"{WORK}/same.xps")
        for output in ("in.xps", "same.xps"):
            failed = run("turn", "in.xps", "-o", output)
            self.assertEqual(failed.returncode, 2)
            self.assertIn("the output would replace the input", failed.stderr)
        self.assertEqual(Path(WORK, "in.xps").read_bytes(), content)

    def test_takes_paths_beyond_ascii(self):
        name = "\u0434\u043e\u043a \u00e9\U0001f600.xps"
        shutil.copy(Path(PACKAGES) / "plain.xps", Path(WORK) / name)
        done = run("turn", name, "-o", "out " + name)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(done.stdout.splitlines(), [f"turned 1 page in 1 document: out {name}"])
        self.assertEqual(self.files(), sorted([name, "out " + name]))

    def test_help_and_wrong_usage(self):
        for arguments in (["--help"], ["turn", "--help"]):
            helped = run(*arguments)
            self.assertEqual((helped.returncode, helped.stderr), (0, ""))
            self.assertIn("xpsfilterhost turn letter.xps -o turned.xps", helped.stdout)
        for arguments in ([], ["turn"], ["turn", "in.xps"], ["turn", "a", "b", "-o", "c"], ["spin"]):
            wrong = run(*arguments)
            self.assertEqual((wrong.returncode, wrong.stdout), (1, ""), arguments)
            self.assertIn("--help", wrong.stderr)

    def test_progress_is_shown_on_a_terminal_only(self):
        self.take("sample")
        mine, theirs = pty.openpty()
        done = run("turn", "in.xps", "-o", "out.xps", stderr=theirs)
        os.close(theirs)
        shown = b""
        try:
            while chunk := os.read(mine, 4096):
                shown += chunk
        except OSError:
            pass
        os.close(mine)
        self.assertEqual(done.returncode, 0)
        # The emulated console draws with control sequences of its own.
        text = re.sub(rb"\x1b\[[?0-9;]*[A-Za-z]", b"", shown)
        self.assertTrue(text.startswith(b"page 1 (document 1)\r"), shown)
        self.assertTrue(done.stdout.startswith("turned 3 pages in 2 documents"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
