#!/usr/bin/env python3
"""Runs the host with --report and --again: which files there are afterwards, and what is said of a second run."""

import os
import re
import sys
import unittest
from pathlib import Path

from hostprogram import WORK, ProgramTestCase, run

LYING = ["--limits", "76.2x127-300x300"]


def text_of(name="report.html"):
    return Path(WORK, name).read_text(encoding="utf-8")


class ReportFileTest(ProgramTestCase):
    def test_is_whole_and_changes_nothing_else_of_the_run(self):
        self.take("sample")
        Path(WORK, "report.html").write_text("an older one")
        plain = self.run_done("run", "in.xps", "-o", "plain.xps")
        shown = self.run_done("run", "in.xps", "-o", "out.xps", "--report", "report.html")
        self.assertEqual(shown.splitlines()[:-1], plain.splitlines()[:-1])
        self.assertEqual(Path(WORK, "out.xps").read_bytes(), Path(WORK, "plain.xps").read_bytes())
        self.assertEqual(self.files(), ["in.xps", "out.xps", "plain.xps", "report.html"])
        self.assertTrue(text_of().startswith("<!DOCTYPE html>") and text_of().endswith("</html>\n"))
        self.assertIn("default-src 'none'", text_of())
        self.assertIn("<td><code>out.xps</code></td>", text_of())
        self.run_done("run", "in.xps", "--dry-run", "--report", "report.html")
        self.assertIn("nothing written", text_of())
        self.assertNotIn("Run again", text_of())

    def test_tells_the_edges_of_a_sheet_in_one_line_where_two_would_lie_over_each_other(self):
        for package, labels in (("plain", ["215.9 mm", "279.4 mm"]), ("huge-page", ["215.9 &#215; 279.4 mm"])):
            self.take(package)
            self.run_done("run", "in.xps", "--dry-run", "--report", "report.html")
            self.assertEqual(re.findall("<text[^>]*>([^<]*)</text>", text_of()), labels)
            self.assertIn("Upper limit</th><td>215.9 &#215;&#160;355.6&#160;mm", text_of())

    def test_shows_the_notes_of_a_page(self):
        self.take("plain")
        self.run_done("run", "in.xps", "--dry-run", "--report", "report.html", "--media", "279.4x215.9")
        self.assertRegex(text_of(), "the medium(&#39;|&apos;|')s name becomes NorthAmericaLetter")

    def test_of_a_run_that_fails_says_where_and_why(self):
        page = "/Documents/1/Pages/1.fpage"
        table = [("no-page", 2, ["the package"], []),
                 ("not-a-zip", 2, ["Before the first part", "is not a ZIP archive"], []),
                 ("foreign-ticket", 1, [f"At <code>{page}</code>", "the filter failed with 0x"], []),
                 ("ampersand", 1, [f"At <code>{page}</code>", "--accept-malformed"], ["--orientation", "Landscape"]),
                 ("prefixed-root", 1, [f"At <code>{page}</code>", "--accept-malformed"], ["--orientation", "Landscape"]),
                 ("plain", 2, ["none.xml: there is no such file"], ["--user-ticket", "none.xml"])]
        for package, status, said, options in table:
            with self.subTest(package):
                self.take(package)
                failed = run("run", "in.xps", "-o", "out.xps", "--report", "report.html", *options)
                self.assertEqual((failed.returncode, failed.stderr.count("\n")), (status, 1), failed.stderr)
                for words in (*said, "not written"):
                    self.assertIn(words, text_of())
                self.assertEqual(self.files(), ["in.xps", "report.html"])
                os.remove(f"{WORK}/report.html")


class DrawingTest(ProgramTestCase):
    def boxes(self, page, side):
        """{what: (x, y, width, height)} in millimetres, and the drawing's field of view."""
        drawing = re.search(rf'<svg [^>]*viewBox="([^"]*)"[^>]*"drawing-{page}-{side}".*?</svg>', text_of())
        boxes = re.findall(r'<rect class="([\w-]+)" x="(\S+)" y="(\S+)" width="(\S+)" height="(\S+)"/>', drawing[0])
        return {what: tuple(map(float, box)) for what, *box in boxes}, drawing[1]

    def test_a_turned_page_lies_across_its_sheet_and_limits_first(self):
        self.take("sample")
        self.run_done("run", "in.xps", "--dry-run", "--report", "report.html")
        self.assertEqual(self.boxes(2, "before")[0], {
            "sheet": (0, 0, 279.4, 215.9), "page-box": (0, 0, 279.4, 215.9), "imageable": (4.23, 4.23, 270.94, 207.44),
            "largest": (0, 0, 355.6, 215.9), "smallest": (0, 0, 127, 76.2)})
        after = {"sheet": (0, 0, 215.9, 279.4), "page-box": (0, 0, 215.9, 279.4), "imageable": (4.23, 4.23, 207.44, 270.94),
                 "largest": (0, 0, 215.9, 355.6), "smallest": (0, 0, 76.2, 127)}
        self.assertEqual(self.boxes(2, "after")[0], after)
        # A page that is refitted as well is scaled about the corner of what can be printed on.
        self.assertEqual(self.boxes(5, "after")[0], {**after, "page-box": (1.43, 1.43, 193.06, 272.99)})
        self.assertNotIn("drawing-1-after", text_of())

    def test_the_sheet_stays_in_sight_however_far_the_limits_are(self):
        self.take("plain")
        self.run_done("run", "in.xps", "--dry-run", "--report", "report.html", "--limits", "76.2x127-2000000x2000000")
        boxes, view = self.boxes(1, "before")
        self.assertEqual(boxes["largest"], (0, 0, 2000000, 2000000))
        # As wide as the sheet and its margins.
        self.assertTrue(view.startswith("-25.91 -25.91 248.29 "), view)


class AgainTest(ProgramTestCase):
    def again(self, package, *options):
        self.take(package)
        lines = self.run_done("run", "in.xps", "-o", "out.xps", "--again", "--report", "report.html", *options).splitlines()
        return [line for line in lines if line.startswith("run again: ")]

    def test_a_turned_or_refitted_page_is_stable_and_a_malformed_one_is_not_judged(self):
        for package, count in (("sample", 5), ("mixed", 8)):
            self.assertEqual(self.again(package), [f"run again: {count} pages stable; 0 would change"])
            self.assertEqual(text_of().count('<span class="tag stable">stable</span>'), count)
        for package in ("ampersand", "prefixed-root"):
            self.again(package, "--accept-malformed", "--orientation", "Landscape")
            self.assertIn('<span class="tag failed">malformed</span>', text_of())
            self.assertIn('<span class="tag changes">not judged</span>', text_of())

    def test_a_page_that_was_put_on_a_sheet_that_lies_would_be_turned(self):
        self.again("lying-target", *LYING)
        self.assertIn('<span class="tag changes">would be turned</span> ISOA4Rotated 297x210 mm; Portrait on a '
                      'landscape sheet; the medium', text_of())
        # And so it is.
        self.assertEqual([page["decision"] for page in self.pages_of("out.xps", "--dry-run", *LYING)],
                         ["turned", "passed", "passed"])


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
