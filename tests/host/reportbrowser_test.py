#!/usr/bin/env python3
"""Looks at the host's HTML report with a browser. Ends with 77 where there is none."""

import sys
import unittest
from pathlib import Path

import browser
from hostprogram import WORK, ProgramTestCase, run, write_document

VISIBLE = ("Array.from(document.querySelectorAll('section.page')).filter((page) => page.checkVisibility())"
           ".map((page) => page.id)")
OVERFLOW = "document.documentElement.scrollWidth - document.documentElement.clientWidth"
UNFOLD = "document.querySelectorAll('details').forEach((each) => { each.open = true; })"
PAGES = [f"page-{number}" for number in range(1, 6)]


class ReportTest(ProgramTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUp(cls)
        cls.browser = cls.enterClassContext(browser.Browser())

    def setUp(self):
        """Reports stay for the tests to come."""
        self.path = None

    def report(self, package, *options, status=0, **look):
        if self.path:
            self.tearDown()
        self.path = Path(WORK, f"{package}.html")
        if not self.path.exists():
            self.take(package)
            done = run("run", "in.xps", "-o", "out.xps", "--again", "--report", self.path.name, *options)
            self.assertEqual(done.returncode, status, done.stderr)
        self.browser.open(self.path, **look)

    def tearDown(self):
        # Nothing that is looked at here complains, and nothing leaves the page.
        self.assertEqual(self.browser.complaints, [])
        self.assertEqual(self.browser.requests, [self.path.resolve().as_uri()])

    def test_every_page_is_drawn_to_scale_turned_and_named(self):
        self.report("sample")
        ask = self.browser.ask
        self.assertEqual(ask(VISIBLE), PAGES)
        drawings = ask("Array.from(document.querySelectorAll('svg')).map((svg) => { const of = (part) =>"
                       " svg.querySelector(part).getBoundingClientRect(); const sheet = of('.sheet'); const page ="
                       " of('.page-box'); return [sheet.width, sheet.height, page.width, page.height]; })")
        sheets = [(215.9, 279.4)] + [(279.4, 215.9), (215.9, 279.4)] + [(215.9, 279.4)] \
            + [(297, 420), (215.9, 279.4)] + [(420, 297), (215.9, 279.4)]
        boxes = [(816, 1056)] + [(1056, 816), (816, 1056)] + [(793.76, 1122.56)] \
            + [(1122.56, 1587.36), (1122.56 * .65, 1587.36 * .65)] + [(1587.36, 1122.56), (1122.56 * .65, 1587.36 * .65)]
        for drawing, sheet, box in zip(drawings, sheets, boxes, strict=True):
            scale = drawing[0] / sheet[0]
            self.assertGreater(scale, 0.3)
            # Within the width of a stroke.
            for drawn, length in zip(drawing, (*sheet, *(pixels * 25.4 / 96 for pixels in box))):
                self.assertAlmostEqual(drawn, length * scale, delta=1)
        # From the foot of the arrow to its head, on the screen.
        arrows = ask(
            "Array.from(document.querySelectorAll('#page-2 svg, #page-4 svg')).map((svg) => { const arrow ="
            " svg.querySelector('.arrow'); const at = (length) => arrow.getPointAtLength(length).matrixTransform("
            "arrow.getScreenCTM()); const foot = at(0), head = at(arrow.getTotalLength() / 3);"
            " return [Math.sign(Math.round(head.x - foot.x)), Math.sign(Math.round(head.y - foot.y))]; })")
        self.assertEqual(arrows, [[0, -1], [-1, 0], [0, -1], [0, -1]])
        # For those who cannot see it.
        names = ask("Array.from(document.querySelectorAll('svg')).map((svg) => svg.getAttribute('role') + ' ' +"
                    " document.getElementById(svg.getAttribute('aria-labelledby')).textContent)")
        self.assertIn("img Page 2 after: sheet 215.9 by 279.4 mm, page 215.9 by 279.4 mm; the content's arrow points "
                      "to the left", names)
        self.assertEqual(ask("document.querySelectorAll('th:not([scope])').length"), 0)
        self.assertEqual(ask("Array.from(document.querySelectorAll('h1, h2, h3, h4')).map((each) => +each.tagName[1])"
                             ".filter((level, index, all) => index && level > all[index - 1] + 1)"), [])
        self.assertEqual(ask("document.querySelectorAll('[id]').length - new Set(Array.from("
                             "document.querySelectorAll('[id]')).map((each) => each.id)).size"), 0)

    def test_the_filter_and_the_overview_lead_to_the_pages_that_are_wanted(self):
        self.report("sample")
        status = "document.getElementById('shown').textContent"
        self.assertIn("turned (2) refitted (2) passed (2) only", self.browser.ask("document.getElementById('filter').innerText.replace(/\\s+/g, ' ')"))
        for kind, left in (("passed", ["page-2", "page-4", "page-5"]), ("turned", ["page-4", "page-5"]), ("refitted", []),
                           ("turned", ["page-2", "page-5"])):
            self.browser.click(f"#filter input[value={kind}]")
            self.assertEqual(self.browser.ask(VISIBLE), left)
            self.assertEqual(self.browser.ask(status), f"{len(left)} of 5 shown")
        self.report("lying-target", "--limits", "76.2x127-300x300")
        self.browser.click("#unstable")
        self.assertEqual(self.browser.ask(VISIBLE), ["page-1"])
        page = "<FixedPage xmlns='http://schemas.microsoft.com/xps/2005/06' Width='816' Height='1056'/>"
        write_document("many.xps", [page] * 13)
        self.assertEqual(run("run", "many.xps", "--dry-run", "--report", "many.html").returncode, 0)
        self.report("many")
        self.assertEqual(self.browser.ask("Array.from(document.querySelectorAll('.overview a')).map((each) => each.textContent)"),
                         ["1-13 passed"])
        self.browser.click("#filter input[value=passed]")
        self.browser.click(".overview a")
        self.assertEqual(self.browser.ask(VISIBLE), ["page-1"])

    def test_can_be_read_on_a_phone_in_light_and_in_dark(self):
        self.report("sample", width=360)
        for act in ("0", UNFOLD):
            self.browser.ask(act)
            self.assertEqual(self.browser.ask(OVERFLOW), 0)
            self.assertEqual(self.browser.ask(
                "Array.from(document.querySelectorAll('body *:not(title)')).filter((each) =>"
                " each.getBoundingClientRect().right > 360).length"), 0)
        for dark in (False, True):
            self.report("sample", dark=dark)
            # The ratio of WCAG, of every element that has a text of its own.
            ratios = self.browser.ask("""Array.from(document.querySelectorAll('body *')).filter((each) =>
                each.checkVisibility() && each.matches(':not(svg *, script, title)') &&
                Array.from(each.childNodes).some((node) => node.nodeType === 3 && node.data.trim())).map((each) => {
                    const light = (text) => { const [r, g, b] = text.match(/[\\d.]+/g).map((value) => { value /= 255;
                        return value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4; });
                        return 0.2126 * r + 0.7152 * g + 0.0722 * b; };
                    let ground = each;
                    while (getComputedStyle(ground).backgroundColor === 'rgba(0, 0, 0, 0)') ground = ground.parentElement;
                    const pair = [getComputedStyle(each).color, getComputedStyle(ground).backgroundColor].map(light);
                    return (Math.max(...pair) + 0.05) / (Math.min(...pair) + 0.05); })""")
            self.assertGreater(len(ratios), 100)
            self.assertGreaterEqual(min(ratios), 4.5)
            ground = self.browser.ask("getComputedStyle(document.body).backgroundColor.match(/\\d+/)[0] * 1")
            self.assertEqual(ground < 128, dark)

    def test_all_is_there_without_scripts(self):
        self.report("sample", scripts=False)
        # Questions are scripts too: what is laid out tells.
        document = self.browser.call("DOM.getDocument")["root"]["nodeId"]
        nodes = self.browser.call("DOM.querySelectorAll", nodeId=document, selector="section.page")["nodeIds"]
        heights = [self.browser.call("DOM.getBoxModel", nodeId=node)["model"]["height"] for node in nodes]
        self.assertEqual(len([height for height in heights if height > 300]), 5)
        bar = self.browser.call("DOM.querySelector", nodeId=document, selector="#filter")["nodeId"]
        with self.assertRaises(RuntimeError):
            self.browser.call("DOM.getBoxModel", nodeId=bar)

    def test_shows_where_and_why_a_run_failed_and_texts_as_they_are(self):
        self.report("bad-page", "--orientation", "Landscape", status=2)
        self.assertEqual(self.browser.ask(VISIBLE), ["page-1", "failed"])
        text = self.browser.ask("document.getElementById('failed').innerText")
        self.assertIn("At /Documents/1/Pages/2.fpage", text)
        self.assertIn("is not well-formed: line 3", text)
        self.assertIn("0x00000000  IFixedPage::GetStream  /Documents/1/Pages/2.fpage", text)
        self.assertNotIn("/Documents/1/Pages/1.fpage", text)
        self.browser.click("#filter input[value=turned]")
        self.assertEqual(self.browser.ask(VISIBLE), ["failed"])
        self.browser.click("a[href='#failed']")
        self.assertEqual(self.browser.ask("location.hash"), "#failed")
        # Texts of a hostile document are texts.
        self.report("hostile-ticket")
        self.browser.ask(UNFOLD)
        text = self.browser.ask("document.getElementById('page-1').innerText")
        for shown in ("<script>pwned = 1</script>", "\"'><img src=http://192.0.2.1/a onerror=pwned=1>",
                      "a\\u{202E}b\\u{200B}c\\u{85}d \u05d0", "</code></table><script src=http://192.0.2.1/b></script>"):
            self.assertIn(shown, text)
        self.assertEqual(self.browser.ask("[typeof pwned, document.scripts.length, document.images.length]"),
                         ["undefined", 1, 0])


if __name__ == "__main__":
    if not browser.EXECUTABLE:
        print("there is no chromium")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
