#!/usr/bin/env python3
"""Runs a document that another producer has made, pages of real markup with much text, through the host."""

import sys
import unittest
from pathlib import Path

from hostprogram import Package, ProgramTestCase


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

    def test_passes_every_page_for_a_user_who_wants_nothing(self):
        pages = self.pages_of("in.xps", "-o", "out.xps")
        self.assertEqual([page["decision"] for page in pages], ["passed"] * 4)
        after = Package("out.xps")
        self.assertEqual(list(after.items), list(self.before.items))
        for name in after.items:
            self.assertEqual(after.stored(name), self.before.stored(name), name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
