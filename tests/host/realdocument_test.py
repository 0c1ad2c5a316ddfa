#!/usr/bin/env python3
"""Runs a document that another producer has made, pages of real markup with much text, through the host."""

import resource
import signal
import sys
import unittest
from pathlib import Path

from hostprogram import Package, ProgramTestCase, run, stored_items


class RealDocumentTest(ProgramTestCase):
    def setUp(self):
        super().setUp()
        self.take("report")
        self.before = Package("in.xps")

    def test_turns_every_page_for_a_user_who_wants_landscape(self):
        pages = self.pages_of("in.xps", "-o", "out.xps", "--orientation", "Landscape")
        self.assertEqual([page["decision"] for page in pages], ["turned"] * 4)
        self.assertEqual([(page["after"]["width"], page["after"]["height"]) for page in pages], [(1056, 816)] * 4)
        self.assert_written(self.before, Package("out.xps"), pages)
        self.assert_looks_right(pages)
        # And passes every page for a user who wants nothing.
        pages = self.pages_of("in.xps", "-o", "out.xps")
        self.assertEqual([page["decision"] for page in pages], ["passed"] * 4)
        self.assertEqual(stored_items("out.xps"), stored_items("in.xps"))

    def test_compresses_new_parts_as_it_is_told(self):
        packages = []
        for level in "069":
            self.pages_of("in.xps", "-o", f"{level}.xps", "--orientation", "Landscape", "--compression", level)
            packages.append(Package(f"{level}.xps"))
        self.assertTrue(all(package.contents == packages[0].contents for package in packages))
        sizes = [package.path.stat().st_size for package in packages]
        self.assertEqual(sizes, sorted(set(sizes), reverse=True))

    def test_a_full_disk_is_not_the_filters_failure(self):
        def limit_files():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100_000, 100_000))

        failed = run("run", "in.xps", "-o", "out.xps", "--orientation", "Landscape", preexec_fn=limit_files)
        fault = "xpsfilterhost: out.xps: the temporary file beside it cannot be written\n"
        self.assertEqual((failed.returncode, failed.stderr, self.files()), (2, fault, ["in.xps"]))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
