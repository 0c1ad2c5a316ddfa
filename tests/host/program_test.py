#!/usr/bin/env python3
"""Runs the host's program as a user does and checks its outputs with readers of other origin."""

import json
import os
import pty
import re
import select
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree
import zipfile
from pathlib import Path

from hostprogram import PACKAGES, PROGRAM, RUNNER, WORK, Package, ProgramTestCase, options_of, run, start, stored_items, write_document

PREFIX = Path(RUNNER).parents[1] / "build" / "wineprefix"
MISBEHAVING = str(Path(PROGRAM).with_name("misbehavingfilter.dll"))
USER_TICKET = """<psf:PrintTicket version="1" xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework"
 xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords">
 <psf:Feature name="psk:PageOrientation"><psf:Option name="psk:Landscape"/></psf:Feature></psf:PrintTicket>"""


def decisions(pages):
    return [page["decision"] for page in pages]


def traced(stderr):
    """[(result, method, subject)]"""
    return [tuple((line + " ").split(" ", 2)) for line in stderr.splitlines()]


class Terminal:
    """What a terminal shows of a program's stderr."""

    # Far more than a start takes on a machine that does much else.
    PATIENCE = 120

    def __enter__(self):
        self.screen, self.stderr = pty.openpty()
        self.written = b""
        return self

    def __exit__(self, *_):
        os.close(self.screen)
        os.close(self.stderr)

    def read_until(self, text):
        """All that was shown up to here, as soon as it holds `text`."""
        deadline = time.monotonic() + self.PATIENCE
        while text not in self.shown():
            if not select.select([self.screen], [], [], max(0, deadline - time.monotonic()))[0]:
                raise AssertionError(f"there is no {text!r} in {self.shown()!r}, written as {self.written!r}")
            self.written += os.read(self.screen, 4096)
        return self.shown()

    def shown(self):
        # The emulated console draws with control sequences of its own. One may come in two reads, so they are taken
        # out of the whole.
        return re.sub(r"\x1b\[[?0-9;]*[A-Za-z]", "", self.written.decode(errors="replace"))


class RunTest(ProgramTestCase):
    def test_writes_each_page_as_was_decided_and_nothing_else(self):
        for name in ("sample", "mixed"):
            with self.subTest(name):
                self.take(name)
                pages = self.pages_of("in.xps", "-o", "out.xps")
                self.assert_written(Package("in.xps"), Package("out.xps"), pages)
                self.assert_looks_right(pages)
                self.assertEqual(self.files(), ["in.xps", "out.xps"])
                after = Package("out.xps")
                if name == "sample":
                    tickets = [options_of(after.read(page["newTicket"])) for page in pages if page["newTicket"]]
                    self.assertEqual([(ticket["PageMediaSize"], ticket["PageOrientation"], ticket["PageScaling"]) for ticket in tickets],
                                     [("NorthAmericaLetter", "Portrait", scaling) for scaling in
                                      ("FitApplicationMediaSizeToPageMediaSize", "Custom", "Custom")])
                else:
                    # A ticket stays for the page that keeps it.
                    self.assertEqual([after.tickets_of(f"/Documents/{page}.fpage") for page in ("2/Pages/2", "1/Pages/3")],
                                     [["/Metadata/shared.xml"], ["/Metadata/pagevalidator_2_shared.xml"]])
                    self.assertIn("Metadata/shared.xml", after.items)
                # What it wrote has nothing left to be decided.
                again = self.pages_of("out.xps", "-o", "again.xps")
                self.assertEqual(set(decisions(again)), {"passed"})
                self.assertEqual(stored_items("again.xps"), stored_items("out.xps"))
                os.remove(f"{WORK}/again.xps")

    def test_takes_packages_however_they_are_stored(self):
        names = ["tickets", "openxps", "pieces", "pieces-reversed", "odd-names", "utf16", "zip64", "descriptors",
                 "zip64-descriptors", "alternate-content"]
        page, ticket = "/Documents/1/Pages/1.fpage", "/Documents/1/Pages/Metadata/page.xml"
        parts = ["job /FixedDocumentSequence.fdseq", "own ticket /Metadata/job.xml", "document /Documents/1/FixedDocument.fdoc",
                 f"page {page}", f"own ticket {ticket}", "page /Documents/1/Pages/2.fpage",
                 "document /Documents/2/FixedDocument.fdoc", "own ticket /Documents/2/Metadata/document.xml",
                 "page /Documents/2/Pages/1.fpage"]
        odd = {page: "/Documents/1/PAGES/a%20-%20b.fpage", ticket: "/documents/1/Pages/metadata/Page.XML",
               "/Documents/2/Pages/1.fpage": "/Documents/2/PAGES/a%20-%20b.fpage"}
        for name in names:
            with self.subTest(name):
                self.take(name)
                listed = self.run_done("tickets", "in.xps").splitlines()
                walk = [line.strip() for line in listed if line and (line[0] != " " or "  own ticket" in line)]
                spelt = re.sub("|".join(odd), lambda found: odd[found[0]], "\n".join(parts)) if name == "odd-names" else None
                self.assertEqual(walk, spelt.split("\n") if spelt else parts)
                pages = self.pages_of("in.xps", "-o", "out.xps")
                after = Package("out.xps")
                self.assertEqual(after.type_of(pages[0]["newTicket"]), "application/vnd.ms-printing.printticket+xml")
                self.assertEqual(set(decisions(self.pages_of("out.xps", "--dry-run"))), {"passed"})
                if name == "openxps":
                    self.assertNotIn(b"microsoft.com/xps", after.read("/Documents/1/Pages/_rels/1.fpage.rels"))
                if name in ("tickets", "openxps", "zip64", "descriptors", "zip64-descriptors"):
                    self.assert_written(Package("in.xps"), after, pages)

    def test_takes_untouched_items_over_byte_for_byte_in_their_order(self):
        # This filter passes every page on.
        arguments = ["run", "in.xps", "-o", "out.xps", "--module", MISBEHAVING]
        for name in ("sample", "pieces-reversed", "odd-names", "zip64", "descriptors", "zip64-descriptors", "unread-oddities"):
            with self.subTest(name):
                self.take(name)
                self.run_done(*arguments)
                self.assertEqual(stored_items("out.xps"), stored_items("in.xps"))
                self.assertEqual(self.files(), ["in.xps", "out.xps"])
        self.take("claims-more-stored")
        os.remove(f"{WORK}/out.xps")
        self.assertEqual(self.assert_refused(2, *arguments), "in.xps: Resources/logo.png: cannot be read from the archive")
        self.assertEqual(self.files(), ["in.xps"])

    def test_a_replaced_part_stands_where_its_first_piece_stood(self):
        for name in ("pieces", "pieces-reversed"):
            with self.subTest(name):
                self.take(name)
                page = self.pages_of("in.xps", "-o", "out.xps")[0]
                before, after = stored_items("in.xps"), [item[:2] for item in stored_items("out.xps")]
                kept, places = dict(after), {}
                for item, time, *_ in before:
                    whole = item.partition("/[")[0]
                    if whole in kept or item in kept:
                        places.setdefault(whole if whole in kept else item, time)
                # What is new follows, with a time of the source's.
                self.assertEqual(after, [*places.items(), (page["newTicket"][1:], before[0][1])])

    def test_an_old_output_is_replaced_by_the_same_bytes_or_stays(self):
        self.take("sample")
        output = Path(WORK, "out.xps")
        contents = []
        for _ in range(2):
            self.run_done("run", "in.xps", "-o", "out.xps")
            contents.append(output.read_bytes())
        self.assertEqual(contents[0], contents[1])
        self.assertEqual(output.stat().st_mode & 0o111, 0, "a document is no program")
        failed = run("run", "in.xps", "-o", "out.xps", "--module", MISBEHAVING, "--ns-prefix", "unended")
        self.assertEqual((failed.returncode, output.read_bytes(), self.files()), (1, contents[0], ["in.xps", "out.xps"]))
        # Nobody may replace what another program holds open.
        holding = ["run", "out.xps", "--dry-run", "--trace", "--module", MISBEHAVING, "--ns-prefix", "waits"]
        with Terminal() as terminal:
            holder = start(*holding, stderr=terminal.stderr, start_new_session=True)
            self.addCleanup(lambda: holder.poll() is None and os.killpg(holder.pid, signal.SIGKILL))
            terminal.read_until("GetXpsPart /Documents/1/Pages/1.fpage")
            message = self.assert_refused(2, "run", "in.xps", "-o", "out.xps", "--orientation", "Landscape")
            os.killpg(holder.pid, signal.SIGINT)
            holder.communicate(timeout=terminal.PATIENCE)
        self.assertTrue(message.startswith("out.xps: cannot be written: "), message)
        self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", "none/out.xps"),
                         "none/out.xps: there is no such folder")
        self.assertEqual((output.read_bytes(), self.files()), (contents[0], ["in.xps", "out.xps"]))

    def test_what_if_options_take_the_place_of_what_a_ticket_says(self):
        self.take("plain")
        default = {"minimum": {"widthMicrometres": 76200, "heightMicrometres": 127000},
                   "maximum": {"widthMicrometres": 215900, "heightMicrometres": 355600}}
        other = {"minimum": {"widthMicrometres": 80000, "heightMicrometres": 130500},
                 "maximum": {"widthMicrometres": 220000, "heightMicrometres": 300000}}
        table = [
            ("--media ISOA4", "Portrait", ("ISOA4", 210000, 297000), default),
            ("--media 210x297", "Portrait", ("ISOA4", 210000, 297000), default),
            ("--media 210X297mm", "Portrait", ("ISOA4", 210000, 297000), default),
            ("--media isoa4", "Portrait", ("ISOA4", 210000, 297000), default),
            ("--media 100.0004x200.5", "Portrait", ("CustomMediaSize", 100000, 200500), default),
            ("--orientation ReverseLandscape --limits 80x130.5-220x300", "ReverseLandscape",
             ("NorthAmericaLetter", 215900, 279400), other),
            ("--limits 80x130.5-220x300 --ns-prefix quell", "Portrait", ("NorthAmericaLetter", 215900, 279400), other),
        ]
        for options, orientation, media, limits in table:
            with self.subTest(options):
                asked = self.pages_of("in.xps", "--dry-run", *options.split())[0]["asked"]
                self.assertEqual((asked["orientation"], tuple(asked["media"][key] for key in
                                                              ("name", "widthMicrometres", "heightMicrometres"))),
                                 (orientation, media))
                self.assertEqual(asked["limits"], limits)

    def test_prints_a_table_of_80_columns_and_the_totals(self):
        self.take("sample")
        table = ["page    decision          page, mm            sheet, mm          reason",
                 "1       passed            216x279             216x279            within limits",
                 "2       turned            279x216 -> 216x279  216x279            Landscape",
                 "3       passed            210x297             216x279            within limits",
                 "        note: the page of 210.02x297.01 mm is larger than its sheet of",
                 "        215.9x279.4 mm",
                 "4       refitted          297x420             297x420 -> 216x279 too large 65 %",
                 "5       turned, refitted  420x297 -> 297x420  297x420 -> 216x279 too large 65 %"]
        *lines, totals = self.run_done("run", "in.xps", "-o", "out.xps").splitlines()
        self.assertEqual(lines, table)
        self.assertRegex(totals, r"^5 pages in 2 documents: 2 passed; 1 turned; 1 refitted; 1 turned, refitted; "
                                 r"\d+\.\d\d s: out.xps$")
        *lines, totals = self.run_done("run", "in.xps", "--dry-run", "--changes", "--pages", "1-3,5").splitlines()
        self.assertEqual(lines, [table[0], table[2], table[7]])
        self.assertRegex(totals, "^5 pages .* s, nothing written$")
        ticket = "/Documents/2/Pages/Metadata/"
        detailed = self.run_done("run", "in.xps", "--dry-run", "--details").splitlines()
        self.assertLessEqual(max(map(len, detailed[:-1])), 80)
        for text in ("why: 297x420 mm is outside the limits: now NorthAmericaLetter 215.9x279.4 (the document's sheet), scaled to 65 %",
                     "asks for: Portrait ISOA3 297x420 mm, limits 76.2x127-215.9x355.6 mm",
                     f"ticket: {ticket}Page2_PT.xml -> {ticket}pagevalidator_2_Page2_PT.xml"):
            self.assertIn(text, re.sub(r"\s+", " ", "\n".join(detailed)))
        # No line is broken before a unit.
        self.take("mixed")
        self.assertIn("        76.2x127-215.9x355.6 mm", self.run_done("run", "in.xps", "--dry-run", "--details", "--pages", "3").splitlines())
        # Pages that are alike share a line, in a wide terminal with the whole reason.
        write_document("in.xps", ["<FixedPage xmlns='http://schemas.microsoft.com/xps/2005/06' Width='816' Height='1056'/>"] * 300)
        wide = run("run", "in.xps", "--dry-run", env={**os.environ, "COLUMNS": "120"}).stdout.splitlines()
        self.assertEqual(wide[1:-1], ["1-300   passed            216x279             216x279            "
                                      "Portrait on an upright sheet within the limits"])

    def test_json_is_one_object_a_page(self):
        self.take("sample")
        first, *_, last = self.pages_of("in.xps", "--dry-run")

        def sheet(width, height):
            return {"widthMicrometres": width, "heightMicrometres": height}

        limits = {"minimum": sheet(76200, 127000), "maximum": sheet(215900, 355600)}
        folder, fit = "/Documents/2/Pages", "FitApplicationMediaSizeToPageMediaSize"
        self.assertEqual(list(last.items()), list({
            "page": 5, "decision": "turned, refitted",
            "reason": "Landscape on an upright sheet; 297x420 mm is outside the limits: now NorthAmericaLetter "
                      "215.9x279.4 (the document's sheet), scaled to 65 %",
            "notes": [], "part": f"{folder}/3.fpage",
            "before": {"width": 1587.36, "height": 1122.56}, "after": {"width": 1122.56, "height": 1587.36},
            "asked": {"orientation": "Landscape", "media": {"name": "ISOA3", **sheet(297000, 420000)}, "scaling": fit, "limits": limits},
            "given": {"orientation": "Portrait", "media": {"name": "NorthAmericaLetter", **sheet(215900, 279400)}, "scaling": "Custom"},
            "replacements": [], "givenReplacement": None, "markupFault": None,
            "oldTicket": f"{folder}/Metadata/Page3_PT.xml",
            "newTicket": f"{folder}/Metadata/pagevalidator_3_Page3_PT.xml"}.items()))
        self.assertEqual((list(first), [first[key] for key in ("given", "oldTicket", "newTicket")]), (list(last), [None] * 3))

    def test_page_sizes_are_read_from_the_start_of_the_markup(self):
        page = "<!-- a --><FixedPage Width='816' Height=\"1122.519685039370\"><Path/><Canvas>"
        sizes = {
            page + "</Canvas></FixedPage>": "816x1122.52",
            page + "<Path Data='cut o": "816x1122.52",
            page.encode() + b"<Path Name='\xe2\x82": "816x1122.52",
            page.encode("utf-16-le"): "816x1122.52",
            (page + "<").encode("utf-16-le") + b"\0": "816x1122.52",
            "<FixedPage Width='3g25' Height=' 5'/>": "?x?",
            "<FixedPage Width='12345.678' Height='1234.567'/>": "12345.68x1234.57",
            "<FixedPage Height='0.004'/>": "?x0",
            "<FixedPage Width='816' Height='10": "?x?",
            "no markup": "?x?",
            "": "?x?",
        }
        write_document("in.xps", list(sizes))
        text = re.sub(r"\s+", " ", self.run_done("run", "in.xps", "--dry-run", "--details"))
        self.assertEqual(re.findall(r"page: (\S+) px", text), list(sizes.values()))
        self.assertIn(" 3266x327 216x279 ", text)
        self.assertEqual(self.pages_of("in.xps", "--dry-run")[7]["after"], {"width": None, "height": 0.004})

    def test_tells_what_the_device_puts_in_place_of_what_is_asked_for(self):
        letter = "NorthAmericaLetter 215.9x279.4"
        self.take("plain")
        page, = self.pages_of("in.xps", "--dry-run", "--media", "500x500", "--report", "report.html")
        self.assertEqual(page["replacements"], [{"wanted": "CustomMediaSize 500x500", "taken": letter}])
        shown = f"CustomMediaSize 500x500 is asked for, in whose place the device puts {letter}"
        self.assertEqual(page["notes"], [shown])
        self.assertIn(shown, Path(WORK, "report.html").read_text())
        page, = self.pages_of("in.xps", "--dry-run", "--limits", "50x50-100x100")
        self.assertEqual((page["replacements"], page["givenReplacement"]["taken"]), ([], letter))
        self.assertRegex(page["reason"], f"now CustomMediaSize 50x50 \\(the lower limit\\), in whose place the device puts {letter}: for that scaled to \\d+ %$")
        # Also of a level above the page.
        self.take("small-document")
        pages = self.pages_of("in.xps", "--dry-run")
        self.assertEqual([[each["wanted"] for each in page["replacements"]] for page in pages],
                         [[], [], ["CustomMediaSize 50x50"]])

    def test_tells_where_an_option_has_no_effect_and_overrides_on_request(self):
        self.take("mixed")
        *_, shown = self.run_done("run", "in.xps", "--dry-run", "--orientation", "landscape").splitlines()
        self.assertEqual(shown, "--orientation had no effect on 5 of 8 pages: their tickets say otherwise; --override changes those, too")
        options = ["--orientation", "ReversePortrait", "--media", "ISOA5", "--override"]
        pages = self.pages_of("in.xps", "-o", "out.xps", *options)
        self.assertEqual({(page["asked"]["orientation"], page["asked"]["media"]["name"]) for page in pages}, {("ReversePortrait", "ISOA5")})
        self.assertEqual(set(decisions(pages)), {"passed"})
        self.assertEqual(Package("out.xps").contents, Package("in.xps").contents)
        listed = self.run_done("tickets", "in.xps", *options)
        self.assertEqual(set(re.findall("PageMediaSize = ([^,]*)", listed)), {"ISOA5"})

    def test_the_paper_of_the_locale_is_told_and_can_be_fixed(self):
        self.take("plain")
        for paper, sheet, shown in (("a4", "210x297", False), ("Letter", "216x279", False), (None, "216x279", True)):
            printed = self.run_done("run", "in.xps", "--dry-run", "--media", "ISOA3", *(["--paper", paper] if paper else []))
            self.assertIn(f" 297x420 -> {sheet} ", printed)
            self.assertEqual("the locale chose NorthAmericaLetter for refitted pages; --paper fixes it" in printed, shown)
        self.assertIn("misbehavingfilter.dll: does not import GetLocaleInfoW, so --paper has no effect on it",
                      self.assert_refused(2, "run", "in.xps", "--dry-run", "--paper", "A4", "--module", MISBEHAVING))

    def test_notes_tell_what_a_decision_alone_does_not(self):
        table = [("plain", ["--ns-prefix", "quell"], "no limits under the prefix quell"),
                 ("plain", ["--media", "279.4x215.9"], "the medium's name becomes NorthAmericaLetter"),
                 ("plain", ["--media", "ISOA5"], "the page of 215.9x279.4 mm is larger than its sheet of 148x210 mm"),
                 ("plain", ["--media", "300x200", "--orientation", "ReversePortrait", "--limits", "76.2x127-400x400"],
                  "the page of 215.9x279.4 mm lies across its sheet of 300x200 mm")]
        for package, options, note in table:
            self.take(package)
            page, = self.pages_of("in.xps", "--dry-run", "--report", "report.html", *options)
            self.assertIn(note, page["notes"])
            self.assertIn(note.replace("'", "&#39;"), Path(WORK, "report.html").read_text(encoding="utf-8").replace("&apos;", "&#39;"))

    def test_takes_paths_beyond_ascii_and_with_a_leading_slash(self):
        name = "\u0434\u043e\u043a \u00e9\U0001f600.xps"
        self.take("sample", name)
        Path(WORK, "\u0431.xml").write_text(USER_TICKET)
        printed = self.run_done("run", f"{WORK}/{name}", "-o", "out " + name, "--user-ticket", "\u0431.xml")
        self.assertTrue(printed.splitlines()[-1].endswith(f" s: out {name}"))
        self.assertEqual(self.files(), sorted([name, "out " + name, "\u0431.xml"]))

    def test_progress_is_shown_on_a_terminal_only(self):
        self.take("sample")
        with Terminal() as terminal:
            done = run("run", "in.xps", "-o", "out.xps", stderr=terminal.stderr)
            self.assertTrue(terminal.read_until("page 1 of 5\r").startswith("page 1 of 5\r"))
        self.assertEqual((done.returncode, len(done.stdout.splitlines())), (0, 9))


class TraceTest(ProgramTestCase):
    def test_tells_every_call_in_the_order_of_the_contract(self):
        self.take("sample")
        calls = traced(run("run", "in.xps", "--dry-run", "--trace", "--tessel-type", "1",
                           "--ns-prefix", "ns0000").stderr)
        self.assertEqual({result for result, _, _ in calls}, {"0x00000000", "0x80070490"})
        methods = [method.rpartition("::")[2] for _, method, _ in calls]
        first = ["DllGetClassObject", "CreateInstance", "GetProperty", "GetString", "InitializeFilter"]
        self.assertEqual(methods[:5], first)
        self.assertEqual(methods[-4:], ["GetXpsPart", "CloseSender", "StartOperation", "DllCanUnloadNow"])
        self.assertEqual([(result, subject) for result, method, subject in calls if "IPrinterPropertyBag" in method],
                         [("0x00000000", "QuellmarkNsPrefix "), ("0x00000000", "QuellmarkTesselType ")])
        self.assertEqual([subject for _, method, subject in calls[:13] if method.endswith("GetProperty")],
                         ["DriverPropertyBag ", "PerUserPrintTicket ", "PrinterName ", "UserSecurityToken ",
                          "DriverPropertyBag "])
        # Each part is sent before the next one is taken, and what is written to is closed before it is sent.
        tree = [method for method in methods if method.startswith("Send") or method == "GetXpsPart"]
        document, page = ["GetXpsPart", "SendFixedDocument"], ["GetXpsPart", "SendFixedPage"]
        self.assertEqual(tree, ["GetXpsPart", "SendXpsDocument", "GetXpsPart", "SendFixedDocumentSequence"]
                         + document + page * 2 + document + page * 3 + ["GetXpsPart"])
        turned = calls[[call[1:] for call in calls].index(("IXpsDocumentProvider::GetXpsPart", "/Documents/1/Pages/2.fpage ")):]
        folder = "/Documents/1/Pages/Metadata"
        part, old, new = "/Documents/1/Pages/2.fpage ", f"{folder}/Page2_PT.xml ", "pagevalidator_1_Page2_PT.xml "
        self.assertEqual([call[1:] for call in turned[5:14]], [
            ("IPartPrintTicket::GetUri", old),
            ("IFixedPage::DeleteResource", old),
            ("IXpsDocumentConsumer::GetNewEmptyPart", f"{folder}\\{new}"),
            ("IPrintWriteStream::Close", f"{folder}/{new}"),
            ("IFixedPage::SetPrintTicket", part),
            ("IFixedPage::GetStream", part),
            ("IFixedPage::GetWriteStream", part),
            ("IPrintWriteStream::Close", part),
            ("IXpsDocumentConsumer::SendFixedPage", part),
        ])

    def test_a_failing_filter_has_asked_for_shutdown(self):
        self.take("foreign-ticket")
        failed = run("run", "in.xps", "--dry-run", "--trace")
        *calls, message = failed.stderr.splitlines()
        methods = [line.split(" ")[1].rpartition("::")[2] for line in calls]
        self.assertEqual(failed.returncode, 1)
        self.assertEqual(methods[-4:], ["CloseSender", "RequestShutdown", "StartOperation", "DllCanUnloadNow"])
        self.assertIn(calls[-3].split(" ")[2].lower(), message.lower())
        # The driver lacks what no option gives it.
        self.assertEqual({call for call in traced("\n".join(calls)) if "IPrinterPropertyBag" in call[1]},
                         {("0x80070490", "IPrinterPropertyBag::GetString", "QuellmarkNsPrefix "),
                          ("0x80070490", "IPrinterPropertyBag::GetInt32", "QuellmarkTesselType ")})


class FailureTest(ProgramTestCase):
    def test_an_unusable_package_is_one_line_that_names_the_part(self):
        page = "Documents/1/Pages/1.fpage: "
        table = [
            ("not-a-zip", [], "is not a ZIP archive"),
            ("no-sequence", [], "/FixedDocumentSequence.fdseq: is missing from the package, and /_rels/.rels refers to it"),
            ("method-6", ["--orientation", "Landscape"], page + "is compressed with method 6, which is not supported"),
            ("wrong-crc", [], page + "cannot be decompressed: CRC error"),
            ("bad-page", ["--orientation", "Landscape"], "/Documents/1/Pages/2.fpage: is not well-formed: line 3, column "),
            ("page-document-type", ["--orientation", "Landscape"], "/" + page + "declares a document type"),
            ("ticket-bomb", [], "Documents/1/Pages/Metadata/page.xml: is longer than 4194304 bytes"),
            ("bad-ticket", [], "/Documents/1/Pages/Metadata/page.xml: is not well-formed: "),
            ("no-ticket", [], "/Documents/2/Metadata/document.xml: is missing from the package, and "),
        ]
        for name, options, fault in table:
            with self.subTest(name):
                self.take(name)
                failed = run("run", "in.xps", "-o", "out.xps", "--json", *options)
                message = failed.stderr.removeprefix("xpsfilterhost: ")
                self.assertEqual((failed.returncode, message.count("\n")), (2, 1), message)
                self.assertTrue(message.startswith("in.xps: " + fault), message)
                outcome = json.loads(failed.stdout.splitlines()[-1])
                self.assertEqual((outcome["outcome"], outcome["hresult"], outcome["message"]), ("unusable", None, message[:-1]))
                self.assertEqual(self.files(), ["in.xps"])

    def test_a_document_that_is_none_and_an_empty_part_are_told(self):
        Path(WORK, "folder").mkdir()
        for command in (["run", "--dry-run"], ["tickets"]):
            self.assertEqual(self.assert_refused(2, *command, "folder"), "folder: is a folder")
        Path(WORK, "cases.txt").write_text("folder | | | unusable\n")
        self.assertRegex(self.run_done("batch", "cases.txt"), "^ok .*folder: unusable\n")
        self.take("tickets", "full.xps")
        ticket = "Documents/1/Pages/Metadata/page.xml"
        with zipfile.ZipFile(Path(WORK, "full.xps")) as full, zipfile.ZipFile(Path(WORK, "in.xps"), "w") as emptied:
            for item in full.infolist():
                emptied.writestr(item.filename, "" if item.filename == ticket else full.read(item.filename))
        message = self.assert_refused(2, "run", "in.xps", "--dry-run")
        self.assertTrue(message.startswith(f"in.xps: /{ticket}: is empty (the filter answered 0x8"), message)

    def test_an_unusable_argument_is_one_line_with_the_reason(self):
        self.take("plain")
        option = "; see --help"
        table = {
            "run in.xps --dry-run": {
                "--limits 76x127": "--limits 76x127: is not MINWxMINH-MAXWxMAXH in millimetres",
                "--printer none": "printer none: ",
                "--tessel-type x": "Could not convert: --tessel-type = x" + option,
                "--device other.xml --printer none": "--device excludes --printer" + option,
                "--module none.dll": "Z:" + str(Path(WORK, "none.dll")).replace("/", "\\") + ": cannot be loaded: ERROR_MOD_NOT_FOUND, ",
                "--compression 10": "--compression: Value 10 not in range ",
                "--colour": "--colour is no option of run" + option,
                "--detials": "--detials is no option of run; did you mean --details? See --help",
                "x.xps": "x.xps is one argument too many" + option,
                "--pages 3-1": "--pages 3-1: is no list of pages as 1-3,7" + option,
                "--report -": "--report: - is no file; name one",
                "-o c": "--output excludes --dry-run" + option,
                "--again": "--again requires --output" + option},
            "run": {"": "IN is required" + option, "none.xps -o out.xps": "none.xps: there is no such file",
                    "in.xps": "--output or --dry-run is required" + option},
            "tickets in.xps": {"-o c": "-o is no option of tickets" + option, "--module=x.dll": "--module=x.dll is no option of tickets",
                               "--ns-prefix psk": "--ns-prefix psk: is no prefix that XML leaves to a driver"},
            "": {"": "no command; the commands are run, tickets, batch, diff" + option,
                 "foo": "foo is no command; the commands are run, tickets, batch, diff" + option,
                 "tikets in.xps": "tikets is no command; did you mean tickets? See --help"},
        }
        for command, faults in table.items():
            for arguments, fault in faults.items():
                with self.subTest(arguments, command=command):
                    message = self.assert_refused(2, *command.split(), *arguments.split())
                    self.assertTrue(message.startswith(fault), message)
        for command, name in {"run in.xps --dry-run --media": "--media", "run in.xps -o": "--output", "tickets": "IN", "batch": "CASES",
                              "diff": "A"}.items():
            self.assertEqual(self.assert_refused(2, *command.split(), ""), f"{name}: must not be empty; see --help")
        names = self.run_done("run", "--list-media").splitlines()
        self.assertEqual((names[0], names == sorted(set(names)), "NorthAmericaLetter" in names), ("BusinessCard", True, True))
        self.assertRegex(self.run_done("--version"), r"^xpsfilterhost \d+\.\d+\.\d+\n$")

    def test_an_output_that_cannot_be_is_named_before_the_job_starts(self):
        self.take("plain")
        os.link(f"{WORK}/in.xps", f"{WORK}/same.xps")
        Path(WORK, "folder").mkdir()
        for name in ("user.xml", "device.xml", "filter.dll"):
            Path(WORK, name).write_text("<a/>")
        before = {name: Path(WORK, name).read_bytes() for name in self.files() if name != "folder"}
        options = ["--user-ticket", "user.xml", "--device", "device.xml", "--module", "filter.dll"]
        table = {"in.xps": "would replace the input", "same.xps": "would replace the input", "IN.XPS": "would replace the input",
                 "USER.xml": "would replace the user's ticket", "device.xml": "would replace the device's description",
                 "./filter.dll": "would replace the filter"}
        for file, fault in table.items():
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", file, *options), f"{file}: the output {fault}")
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", "out.xps", "--report", file, *options),
                             f"{file}: the report {fault}")
        self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", "out.xps", "--report", "./OUT.xps"),
                         "./OUT.xps: the report would replace the output")
        for file, fault in {"none/out.xps": "there is no such folder", "folder": "is a folder"}.items():
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", file), f"{file}: {fault}")
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "--dry-run", "--report", file), f"{file}: {fault}")
        self.assertIn("/dev/full: is not a file that can be replaced", self.assert_refused(2, "run", "in.xps", "-o", "/dev/full"))
        self.assertEqual({name: Path(WORK, name).read_bytes() for name in self.files() if name != "folder"}, before)

    def test_a_listing_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            for command in ([RUNNER, PROGRAM, "--version"], ["wine", PROGRAM, "--version"]):
                # A pipe would be kept open by what Wine leaves running.
                with tempfile.TemporaryFile() as stderr:
                    done = subprocess.run(command, cwd=WORK, stdin=subprocess.DEVNULL, stdout=full, stderr=stderr, check=False,
                                          timeout=120, env={**os.environ, "WINEPREFIX": str(PREFIX), "WINEDEBUG": "-all"})
                    stderr.seek(0)
                    self.assertEqual((done.returncode, stderr.read().count(b"\n")), (2, 1), command)

    def test_a_failing_filter_is_named_with_its_result_and_the_part(self):
        self.take("tickets")
        page, unexpected = "/Documents/1/Pages/1.fpage: ", "0x8000ffff: E_UNEXPECTED, a failure that has no code of its own"
        table = {
            "fails": page + "the filter failed with 0x80070005: ",
            "unclosed": page + "the filter failed with " + unexpected,
            "uninitialised": "the filter failed with 0x8007000e: ",
            "shutdown": "the filter failed with 0x80070005: ",
            "drops": "/Documents/2/FixedDocument.fdoc: the filter failed with 0x8000ffff: ",
            "unended": "the filter did not close its sender: " + unexpected,
            "stops": "the filter did not send every part on: 0x8000ffff: ",
        }
        for fault, expected in table.items():
            with self.subTest(fault):
                arguments = ["run", "in.xps", "-o", "out.xps", "--module", MISBEHAVING, "--ns-prefix", fault]
                failed = run(*arguments)
                message = failed.stderr
                self.assertEqual((failed.returncode, message.count("\n")), (1, 1), message)
                self.assertTrue(message.startswith("xpsfilterhost: in.xps: " + expected), message)
                self.assertEqual(self.files(), ["in.xps"])
        self.take("plain")
        message = self.assert_refused(1, "run", "in.xps", "-o", "out.xps", "--module", MISBEHAVING, "--ns-prefix", "drops")
        self.assertTrue(message.startswith("in.xps: the filter did not send every part on: 0x8000ffff: "), message)
        self.take("foreign-ticket")
        self.assertEqual(self.assert_refused(1, "run", "in.xps", "-o", "out.xps"),
                         f"in.xps: {page}the filter failed with 0x80040005: E_DELTA_PRINTTICKET_FORMAT, the print ticket that is "
                         "merged in is not valid; /Documents/1/Pages/Metadata/page.xml: line 1, column 1: the root is not the "
                         "Print Schema's PrintTicket")

    def test_what_a_filter_keeps_is_told(self):
        self.take("plain")
        done = run("run", "in.xps", "-o", "out.xps", "--module", MISBEHAVING, "--ns-prefix", "leaks")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stderr, "xpsfilterhost: the filter keeps 1 object of the pipeline, and its module is "
                                      "still in use\n")
        self.assertEqual(self.files(), ["in.xps", "out.xps"])

    def test_ctrl_c_shuts_the_filter_down(self):
        self.take("plain")
        with Terminal() as terminal:
            job = start("run", "in.xps", "-o", "out.xps", "--trace", "--json", "--report", "report.html",
                        "--module", MISBEHAVING, "--ns-prefix", "waits", stderr=terminal.stderr, start_new_session=True)
            self.addCleanup(lambda: job.poll() is None and os.killpg(job.pid, signal.SIGKILL))
            terminal.read_until("GetXpsPart /Documents/1/Pages/1.fpage")
            os.killpg(job.pid, signal.SIGINT)
            shown = terminal.read_until("interrupted")
            printed, _ = job.communicate(timeout=terminal.PATIENCE)
        self.assertEqual(job.returncode, 130)
        outcome = json.loads(printed.splitlines()[-1])
        self.assertEqual([outcome[key] for key in ("outcome", "message", "hresult", "name", "pages", "pagesInAll", "output")],
                         ["interrupted", "interrupted", "0x80004004", "E_ABORT", 1, 1, None])
        self.assertIn("the filter answered <code>0x80004004</code> (E_ABORT, the operation was stopped)",
                      Path(WORK, "report.html").read_text(encoding="utf-8"))
        self.assertIn("0x00000000 IPrintPipelineFilter::ShutdownOperation", shown)
        self.assertIn("0x80004004 IPrintPipelineFilter::StartOperation", shown)
        self.assertEqual(self.files(), ["in.xps", "report.html"])

    def test_ctrl_c_is_never_success(self):
        self.take("plain")
        for wait in (0.02, 0.1, 0.3):
            job = start("run", "in.xps", "-o", "out.xps", "--module", MISBEHAVING, "--ns-prefix", "waits",
                        start_new_session=True)
            time.sleep(wait)
            os.killpg(job.pid, signal.SIGINT)
            _, errors = job.communicate(timeout=Terminal.PATIENCE)
            # The shell itself may not have come to its trap.
            self.assertIn((job.returncode, "interrupted\n" in errors), [(130, True), (-signal.SIGINT, False)], errors)
            self.assertEqual(self.files(), ["in.xps"])


class MalformedTest(ProgramTestCase):
    TURNED = ["--orientation", "Landscape"]
    PAGE = "/Documents/1/Pages/1.fpage"
    FAULTS = {"ampersand": r"the new markup is not well-formed: line 1, column \d+: .*",
              "prefixed-root": r"the new markup is no XPS page: line 1, column \d+: <Canvas> lies in no XPS or OpenXPS namespace"}

    def test_a_page_that_a_filter_wrote_so_fails_the_run(self):
        for package, fault in self.FAULTS.items():
            with self.subTest(package):
                self.take(package)
                failed = run("run", "in.xps", "-o", "out.xps", "--json", "--report", "report.html", *self.TURNED)
                self.assertEqual((failed.returncode, failed.stderr.count("\n")), (1, 1), failed.stderr)
                self.assertRegex(failed.stderr, f"^xpsfilterhost: in.xps: {self.PAGE}: the filter failed with 0x80070057: {fault}; "
                                                "--accept-malformed takes it all the same$")
                page, outcome = map(json.loads, failed.stdout.splitlines())
                self.assertEqual([outcome[key] for key in ("outcome", "name", "part", "pages", "pagesInAll", "output")],
                                 ["failed", "E_INVALIDARG", self.PAGE, 1, 1, None])
                self.assertRegex("the new markup " + page["markupFault"], f"^{fault}$")
                self.assertEqual((page["part"], page["decision"]), (self.PAGE, "turned"))
                report = Path(WORK, "report.html").read_text(encoding="utf-8")
                self.assertIn(f"At <code>{self.PAGE}</code>", report)
                self.assertIn("--accept-malformed", report)
                self.assertEqual(self.files(), ["in.xps", "report.html"])

    def test_it_is_taken_on_request_and_told_but_not_judged(self):
        for package, fault in self.FAULTS.items():
            with self.subTest(package):
                self.take(package)
                arguments = ["run", "in.xps", "-o", "out.xps", "--accept-malformed", "--again", *self.TURNED]
                printed = self.run_done(*arguments, "--report", "report.html")
                self.assertRegex(re.sub(r"\s+", " ", printed), f" Landscape note: the page .* mm note: {fault}")
                *_, again, sum_again = printed.splitlines()
                self.assertRegex(again, f"^run again: page 1 not judged: {fault}$")
                self.assertEqual(sum_again, "run again: 0 pages stable; 0 would change; 1 not judged")
                report = Path(WORK, "report.html").read_text(encoding="utf-8")
                self.assertIn('<span class="tag failed">malformed</span>', report)
                self.assertIn('<span class="tag changes">not judged</span>', report)
                first, second, _ = (json.loads(line) for line in self.run_done(*arguments, "--json").splitlines())
                self.assertRegex("the new markup " + first["markupFault"], f"^{fault}$")
                self.assertIsNone(second["again"]["isStable"])


class BatchTest(ProgramTestCase):
    def run_table(self, *lines):
        Path(WORK, "cases").mkdir()
        Path(WORK, "cases", "table.txt").write_text("\n".join(lines), encoding="utf-8")
        return run("batch", "cases/table.txt")

    def test_tells_each_case_and_what_differs_with_the_reason(self):
        name = "\u0434 1.xps"
        for package, target in {"sample": name, "foreign-ticket": "foreign.xps", "plain": "in.xps"}.items():
            self.take(package, target)
        leaks = f"--module {MISBEHAVING} --ns-prefix leaks"
        done = self.run_table("\ufeff# document | options | device | expected", "",
                              f"../{name}|--media ISOA3||passed turned passed refitted turned+refitted #comment\r",
                              f"../{name} | | | passed*3 refitted turned+refitted turned*2",
                              "../in.xps | --limits 76.2x127-100x200 | | passed turned",
                              "../in.xps | --orientation Landscape | | failed",
                              "../foreign.xps | | | passed failed 0x80040005",
                              "../foreign.xps | | | failed 0x80004005",
                              "../foreign.xps | | | failed",
                              "../none.xps | | | failed",
                              f"../in.xps | {leaks} | | passed")
        failure = "/Documents/1/Pages/1.fpage: the filter failed with 0x80040005: "
        *lines, totals = done.stdout.splitlines()
        self.assertEqual((done.returncode, done.stderr), (1, ""))
        self.assertEqual([re.sub("with 0x80040005: .*$", "with 0x80040005: ", line.rstrip("\r")) for line in lines], [
            f"ok         3  ../{name} --media ISOA3: passed turned passed refitted turned+refitted",
            f"differs    4  ../{name}: passed turned passed refitted turned+refitted",
            "              page 2: expected passed, was turned: Landscape on an upright sheet",
            "              page 6: expected turned, was not sent",
            "              page 7: expected turned, was not sent",
            "differs    5  ../in.xps --limits 76.2x127-100x200: refitted",
            "              page 1: expected passed, was refitted: 215.9x279.4 mm is outside the limits: now "
            "CustomMediaSize 76.2x127 (the lower limit), scaled to 32 %",
            "              page 2: expected turned, was not sent",
            "differs    6  ../in.xps --orientation Landscape: turned",
            "              page 1: expected no such page, was turned: Landscape on an upright sheet; the page of 279.4x215.9 mm "
            "lies across its sheet of 215.9x279.4 mm",
            "              job: expected failed, was done",
            "differs    7  ../foreign.xps: failed 0x80040005",
            "              page 1: expected passed, was not sent",
            "differs    8  ../foreign.xps: failed 0x80040005",
            f"              job: expected failed 0x80004005, was failed 0x80040005: {failure}",
            "ok         9  ../foreign.xps: failed 0x80040005",
            "differs   10  ../none.xps: unusable",
            "              job: expected failed, was unusable: there is no such file",
            f"differs   11  ../in.xps {leaks}: passed",
            "              the filter keeps 1 object of the pipeline, and its module is still in use",
        ])
        self.assertRegex(totals, r"^9 cases: 2 as expected; 7 not; \d+\.\d\d s$")
        self.assertEqual(len(self.files()), 4)

    def test_each_decision_comes_with_its_reason(self):
        self.take("plain")
        Path(WORK, "none.xml").write_text(USER_TICKET.replace("PageOrientation", "PageScaling").replace("Landscape", "None"))
        passed, letter = "Portrait on an upright sheet within the limits", "now NorthAmericaLetter 215.9x279.4 (the user's paper), "
        reasons = {
            "": f"passed: {passed}",
            "--media 215.9x355.6": f"passed: {passed}",
            "--orientation Landscape": "turned: Landscape on an upright sheet",
            "--media 279.4x215.9": "turned: Portrait on a landscape sheet",
            "--media 215.9x215.9 --orientation Landscape": "passed: Landscape on an upright sheet within the limits",
            "--media ISOA3": f"refitted: 297x420 mm is outside the limits: {letter}scaled to 65 %",
            "--orientation ReverseLandscape": "refitted: 279.4x215.9 mm is outside the limits: now NorthAmericaLetter "
                                              "215.9x279.4 (the document's sheet), scaled to 76 %",
            "--media ISOA3 --orientation Landscape": "turned+refitted: Landscape on an upright sheet; 297x420 mm is "
                                                     f"outside the limits: {letter}scaled to 65 %",
            "--media ISOA3 --user-ticket ../none.xml": "refitted: 297x420 mm is outside the limits: "
                                                       f"{letter}scaling stays None",
        }
        done = self.run_table(*(f"../in.xps | {options} | | failed" for options in reasons))
        self.assertEqual(re.findall(r"page 1: expected no such page, was (.*?)(?:; the (?:page|medium's name)[ ,][^\r\n]*)?[\r\n]", done.stdout),
                         list(reasons.values()))

    def test_a_table_that_cannot_be_used_is_a_line_for_each_fault(self):
        self.take("plain")
        Path(WORK, "text.xml").write_text("no markup")
        Path(WORK, "other.xml").write_text("<other/>")
        offline = Path(PROGRAM).with_name("offline") / "prntvpt.dll"
        columns, option = "does not have the four columns document | options | device | expected", "is no such option of the Print Schema"
        # What does not need the files is found first.
        texts = {"in.xps | | passed": columns, "in.xps | | | passed | x": columns, "| | | passed": "names no document",
                 "in.xps | --colour | | passed": "--colour is no option", "in.xps | -o x.xps | | passed": "-o is no option",
                 "in.xps | --tessel-type x | | passed": "Could not convert: --tessel-type = x",
                 "in.xps | --device x | y | passed": "has --device or --printer and a device of its column",
                 "in.xps | | |": "expected: says nothing"}
        texts |= {f"in.xps | | | {outcome}": f"expected: {outcome.split()[-1]} cannot be understood"
                  for outcome in ("pass", "passed*0", "turned*x", "failed 5", "failed 0x00000005")}
        texts |= {f"in.xps | | | {outcome}": f"expected: {outcome.split()[-1]} stands after the end of the job"
                  for outcome in ("failed unusable", "unusable passed", "failed 0x80070005 passed")}
        set_ups = {f"--{option} ../{file}.xml": fault for option, file, fault in (
            ("user-ticket", "none", "cases\\../none.xml: there is no such file"), ("user-ticket", "text", "text.xml: is not a print ticket"),
            ("user-ticket", "other", "other.xml: is not a print ticket"), ("device", "none", "none.xml: there is no such file"),
            ("device", "text", "text.xml: is not well-formed: line 1, column "), ("device", "other", "other.xml: "))}
        set_ups |= {"--module none.dll": "cannot be loaded: ERROR_MOD_NOT_FOUND, ", f"--module {offline}": "does not export what the host calls",
                    "--orientation lanscape": f"{option}; did you mean Landscape?; the names are Landscape, Portrait, Reverse",
                    "--orientation ISOA4": option, "--media A4": f"{option}, nor a size in millimetres, as 210x297; did you mean ISOA4?"}
        set_ups |= {f"--media={media}": f"--media {media}: {option}, nor a size"
                    for media in ("210x297cm", "210x", "-210x297", "nanx297", "210x2000000.1", "1e3x10", "210,5x297", "0x0")}
        set_ups["--media=0x0"] += " in millimetres, as 210x297; run --list-media prints the names"
        set_ups |= {f"--limits {limits}": f"--limits {limits}: is not MINWxMINH-MAXWxMAXH in millimetres"
                    for limits in ("76x127", "76x127-215x0", "76x127-215x355cm", "76x127_215x355")}
        set_ups |= {f"--limits {limits}": "has a lower sheet that is wider or higher than the upper one"
                    for limits in ("100x10-99x20", "10x100-20x99")}
        set_ups |= {f"--ns-prefix={prefix}": f"--ns-prefix {prefix}: is no prefix that XML leaves to a driver"
                    for prefix in ("q:", "1a", "-a", "xmlns", "XML", "psk", "psf", "xsi", "xsd")}
        done = self.run_table(*texts, *(f"in.xps | {options} | | unusable" for options in set_ups))
        lines = done.stderr.splitlines()
        faults = [*texts.values(), *set_ups.values()]
        self.assertEqual((done.returncode, done.stdout, len(lines)), (2, "", len(faults)), done.stderr)
        for number, (line, fault) in enumerate(zip(lines, faults), 1):
            self.assertTrue(line.startswith(f"xpsfilterhost: cases/table.txt:{number}: ") and fault in line, (line, fault))

    def test_a_case_that_cannot_be_set_up_does_not_pass_for_a_result(self):
        self.take("plain")
        no_filter = "--module C:/windows/system32/msxml6.dll"
        faults = {"--user-ticket none.xml": "there is no such file", "--module none.dll": "cannot be loaded",
                  no_filter: "creates no filter: ", "--printer none": "printer none: "}
        taken = ["--ns-prefix _a", "--ns-prefix a-1.b", "--ns-prefix p\u00e9", "--ns-prefix psk2", "--limits 100x100-100x100"]
        done = self.run_table(*(f"../in.xps | {options} | | unusable" for options in faults),
                              *(f"../in.xps | --limits 76.2x127-215.9x355.6 {options} | | passed" for options in taken[:4]),
                              f"../in.xps | {taken[4]} | | refitted")
        lines = done.stderr.splitlines()
        self.assertEqual((done.returncode, len(lines)), (2, len(faults)), done.stderr)
        for number, (line, fault) in enumerate(zip(lines, faults.values()), 1):
            self.assertTrue(line.startswith(f"xpsfilterhost: cases/table.txt:{number}: ") and fault in line, line)
        self.assertRegex(done.stdout, r"\n9 cases: 5 as expected; 0 not; 4 could not be run; ")

    def test_a_table_that_is_no_text_is_one_line(self):
        self.take("plain", "table.xps")
        row = "in.xps | | | passed\n"
        for name, text in {"utf16.txt": row.encode("utf-16"), "plain16.txt": row.encode("utf-16-le"), "latin1.txt": b"caf\xe9.xps\n"}.items():
            Path(WORK, name).write_bytes(text)
        for name in ("table.xps", "utf16.txt", "plain16.txt", "latin1.txt"):
            self.assertEqual(self.assert_refused(2, "batch", name), f"{name}: is not a text in UTF-8")

    def test_records_a_table_and_writes_results_for_a_test_server(self):
        self.take("sample")
        Path(WORK, "cases.txt").write_text("# a comment\nin.xps | | | passed # stays\n\nin.xps|--media ISOA3||passed*5\n")
        self.run_done("batch", "cases.txt", "--record", "new.txt", "--junit", "junit.xml")
        outcome = "passed turned passed refitted turned+refitted"
        self.assertEqual(Path(WORK, "new.txt").read_text(),
                         f"# a comment\nin.xps | | | {outcome}  # stays\n\nin.xps|--media ISOA3|| {outcome}\n")
        self.run_done("batch", "new.txt")
        suite = xml.etree.ElementTree.parse(Path(WORK, "junit.xml")).getroot()
        self.assertEqual((suite.tag, suite.get("tests"), suite.get("failures"), suite.get("errors")), ("testsuite", "2", "2", "0"))
        self.assertEqual([case.get("name") for case in suite], ["2: in.xps", "4: in.xps --media ISOA3"])
        self.assertIn("page 2: expected passed, was turned", suite[1].find("failure").get("message"))

    def test_takes_a_module_for_all_cases_that_name_none(self):
        self.take("sample")
        Path(WORK, "cases.txt").write_text("# nothing\n")
        self.assertEqual(self.assert_refused(2, "batch", "cases.txt"), "cases.txt: has no case")
        own = Path(PROGRAM).with_name("pagevalidatefilter.dll")
        # The other one passes every page on.
        Path(WORK, "cases.txt").write_text("in.xps | | | passed*5\n"
                                           f"in.xps | --module {own} | | passed turned passed refitted turned+refitted\n")
        self.run_done("batch", "cases.txt", "--module", MISBEHAVING)


class DiffTest(ProgramTestCase):
    PSF = "http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework"
    TYPES = '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">{}</Types>'
    LINKS = '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">{}</Relationships>'

    @classmethod
    def types(cls, *entries):
        return cls.TYPES.format("".join(f'<Default Extension="{name}" ContentType="{kind}"/>' for name, kind in entries))

    @classmethod
    def links(cls, *entries):
        return cls.LINKS.format("".join(f'<Relationship Id="i{number}" Target="{target}" Type="{kind}" {mode}/>'
                                        for number, target, kind, mode in entries))

    def diff(self, one, other, *options):
        types = [("xml", "application/xml"), ("rels", "application/vnd.openxmlformats-package.relationships+xml")]
        for name, items in {"a.xps": one, "b.xps": other}.items():
            with zipfile.ZipFile(Path(WORK, name), "w") as archive:
                for item, content in {"[Content_Types].xml": self.types(*types), **items}.items():
                    archive.writestr(item, content)
        done = run("diff", "a.xps", "b.xps", *options)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout.splitlines()

    def test_compares_markup_as_xml(self):
        declared = f"xmlns:{{0}}='{self.PSF}' xmlns:{{1}}='urn:k'"
        ticket = "<{0}:T " + declared + " {2}><{0}:F name='{1}:A'/><{0}:F name='{1}:B'><{0}:Value> 1 </{0}:Value></{0}:F></{0}:T>"
        long = "M " + "0,0 " * 30
        same = [
            ("<a x='1' y=\"2\"><b/></a>", "<?xml version='1.0'?><!-- c --><a\n y='2' x='&#49;'>\r\n <b></b><?p q?>\n</a>\n"),
            ("<a xmlns='u'><b/></a>", "<p:a xmlns:p='u' xmlns:unused='v'><q:b xmlns:q='u'/></p:a>"),
            (ticket.format("psf", "psk", ""), ticket.format("x", "y", "")),
            ("<a>t&amp;u<b/>v</a>", "<a>t<!-- c --><![CDATA[&]]>u<b/>v</a>"),
            ("<a b='\u0434'/>", "\ufeff<a b='\u0434'/>".encode("utf-16-le")),
        ]
        different = [
            ("<a/>", "<b/>", "/: <a> -> <b>"),
            ("<a/>", "<a xmlns='u'/>", "/: <a> -> <{u}a>"),
            ("<a><b/><b x='1'/></a>", "<a><b/><b x='2'/></a>", "/a/b[2]/@x: 1 -> 2"),
            ("<a><b/><c><b/></c><b x='1'/></a>", "<a><b/><c><b/></c><b y='1'/></a>", "/a/b[2]/@x: 1 -> none"),
            ("<a><b/></a>", "<a><b/><c/></a>", "/a: nothing more -> <c>"),
            ("<a><b/><c/></a>", "<a><b><c/></b></a>", "/a/b[1]: nothing more -> <c>"),
            ("<a><b><c/></b></a>", "<a><b/><c/></a>", "/a/b[1]: <c> -> nothing more"),
            ("<a>1<b/></a>", "<a>2<b/></a>", "/a: 1 -> 2"),
            ("<a>1<b/></a>", "<a><b/>1</a>", "/a: text -> <b>"),
            ("<a x='1 2'/>", "<a x='1&#10;2'/>", "/a/@x: 1 2 -> 1\\n2"),
            (f"<a d='{long}1,1'/>", f"<a d='{long}2,2'/>", "/a/@d: ...0,0 0,0 0,0 0,0 0,0 1,1 -> ...0,0 0,0 0,0 0,0 0,0 2,2"),
            (f"<a d='1{long}'/>", f"<a d='2{long}'/>", f"/a/@d: {('1' + long)[:60]}... -> {('2' + long)[:60]}..."),
            (ticket.format("p", "k", ""), ticket.format("p", "k", "x='1'"), "/T/@x: none -> 1"),
            (ticket.format("p", "k", ""), ticket.format("p", "k", "").replace("k:B", "p:B"),
             f"/T/F[2]/@name: B in urn:k -> B in {self.PSF[:55]}..."),
            ("<a x='psk:A'/>", "<a x='k:A'/>", "/a/@x: psk:A -> k:A"),
            ("<a/>", "<a>", "4 bytes -> 3 bytes, first different at offset 2; B is not well-formed: "),
        ]
        one = {f"{number:02}.xml": pair[0] for number, pair in enumerate(same + different)}
        other = {f"{number:02}.xml": pair[1] for number, pair in enumerate(same + different)}
        status, lines = self.diff(one, other)
        self.assertEqual((status, lines[0], lines[-1]),
                         (1, "identical  [Content_Types].xml", "22 parts: 6 identical; 16 changed; 0 added; 0 removed"))
        self.assertEqual(lines[1:6], [f"identical  /{number:02}.xml" for number in range(5)])
        for number, (line, (_, _, what)) in enumerate(zip(lines[6:], different), len(same)):
            self.assertTrue(line.startswith(f"changed    /{number:02}.xml: {what}"), f"{line} is not {what}")

    def test_compares_sets_names_and_bytes(self):
        part, other = self.links((1, "../A.bin", "t", ""), (2, "http://x", "u", "TargetMode='External'")), "_rels/.RELS"
        types = [("xml", "text/xml"), ("Bin", "b/c"), ("rels", "r")]
        one = {"[Content_Types].xml": self.types(*types), "a.bin": "0123456789", "x/_rels/p.bin.rels": part,
               "_rels/.rels": self.links((1, "a.bin", "t", "")), "gone.bin": "1", "cut.bin": "1234"}
        two = {"[Content_Types].xml": self.types(*reversed([("XML", "text/xml"), ("bin", "b/c"), ("rels", "r")])),
               other: self.links((1, "a.bin", "t", ""), (2, "b.bin", "t", "")),
               "X/_rels/P.BIN.rels": self.links((7, "http://x", "u", "TargetMode='External'"), (9, "/a.bin", "t", "")),
               "A.BIN": "012x45678", "new.bin": "", "cut.bin": "123"}
        self.assertEqual(self.diff(one, two, "--changes"), (1, [
            "changed    /_rels/.rels: nothing -> /b.bin as t",
            "changed    /a.bin: 10 bytes -> 9 bytes, first different at offset 3",
            "changed    /cut.bin: 4 bytes -> 3 bytes, first different at offset 3",
            "removed    /gone.bin", "added      /new.bin",
            "7 parts: 2 identical; 3 changed; 1 added; 1 removed"]))
        two["[Content_Types].xml"] = self.types(*types[1:], ("xml", "text/plain"))
        self.assertEqual(self.diff(one, two)[1][0], "changed    [Content_Types].xml: *.xml text/xml -> *.xml text/plain")

    def test_tells_packages_that_are_stored_differently_for_the_same(self):
        self.take("tickets")
        for name in ("pieces", "pieces-reversed", "utf16", "zip64-descriptors"):
            self.take(name, "b.xps")
            self.assertEqual(self.run_done("diff", "in.xps", "b.xps").splitlines()[-1],
                             "15 parts: 15 identical; 0 changed; 0 added; 0 removed")

    def test_shows_what_the_filter_did(self):
        self.take("tickets")
        self.run_done("run", "in.xps", "-o", "out.xps")
        done = run("diff", "in.xps", "out.xps", "--changes")
        pages, kind = "/Documents/1/Pages", "http://schemas.microsoft.com/xps/2005/06/printticket"
        old, new = f"{pages}/Metadata/page.xml", f"{pages}/Metadata/pagevalidator_1_page.xml"
        *lines, _ = done.stdout.splitlines()
        self.assertEqual((done.returncode, [line for line in lines if "[Content" not in line]), (1, [
            f"changed    {pages}/1.fpage: /FixedPage/@Height: 1056 -> 816.00",
            f"changed    {pages}/_rels/1.fpage.rels: {old} as {kind} -> {new} as {kind}",
            f"removed    {old}", f"added      {new}"]))

    def test_names_the_document_that_cannot_be_used(self):
        self.take("plain")
        self.take("wrong-crc", "bad.xps")
        fault = "bad.xps: Documents/1/Pages/1.fpage: cannot be decompressed: CRC error"
        for arguments, message in {("none.xps", "in.xps"): "none.xps: there is no such file",
                                   ("in.xps", "none.xps"): "none.xps: there is no such file",
                                   ("in.xps", "bad.xps"): fault, ("bad.xps", "in.xps"): fault}.items():
            self.assertEqual(self.assert_refused(2, "diff", *arguments), message)


class TicketsTest(ProgramTestCase):
    def test_lists_each_levels_own_and_effective_ticket_with_origins(self):
        self.take("mixed")
        blocks = re.split(r"^(?=\S)", self.run_done("tickets", "in.xps", "--tessel-type", "1"), flags=re.M)[1:]
        heads = [block.splitlines()[0] for block in blocks]
        self.assertEqual(heads[:3] + heads[6:7],
                         ["job /FixedDocumentSequence.fdseq", "document /Documents/1/FixedDocument.fdoc",
                          "page /Documents/1/Pages/1.fpage", "document /Documents/2/FixedDocument.fdoc"])
        letter = "PageMediaSize = NorthAmericaLetter, MediaSizeWidth 215900 (215.9 mm), MediaSizeHeight 279400 (279.4 mm)"
        a4 = "PageMediaSize = ISOA4, MediaSizeWidth 210000 (210 mm), MediaSizeHeight 297000 (297 mm)"
        for block, lines in {
            0: ["  own ticket /Metadata/job.xml", "    " + letter, f"    {letter}  (job)",
                "    JobInputBin = AutoSelect  (user)", "    ns0000:JobTesselType = ns0000:Type1  (driver default)"],
            2: ["  no ticket of its own", f"    {a4}  (document)", "    PageOrientation = Landscape  (document)"],
            3: ["    PageOrientation = Portrait", "    PageOrientation = Portrait  (page)", f"    {a4}  (document)"],
        }.items():
            self.assertEqual([line for line in lines if line not in blocks[block].splitlines()], [])
        # The second document's own ticket, and nothing of the first one's.
        self.assertIn("PageMediaSize = ISOA5, MediaSizeWidth 148000 (148 mm), MediaSizeHeight 210000 (210 mm)  (document)", blocks[7])
        self.assertIn("PageOrientation = Portrait  (job)", blocks[7])

        objects = [json.loads(line) for line in self.run_done("tickets", "in.xps", "--tessel-type", "1", "--json").splitlines()]
        self.assertEqual([f"{each['level']} {each['part']}" for each in objects], heads)
        self.assertEqual((objects[0]["own"]["ticket"], objects[2]["own"]), ("/Metadata/job.xml", None))
        self.assertIn({"name": "PageMediaSize", "value": "ISOA4", "origin": "document",
                       "properties": {"MediaSizeWidth": "210000", "MediaSizeHeight": "297000"}}, objects[2]["effective"]["settings"])

    def test_names_have_readable_prefixes_whatever_the_document_binds(self):
        self.take("vendor-prefix")
        listed = self.run_done("tickets", "in.xps", "--limits", "76.2x127-215.9x355.6")
        effective = re.split("  effective ticket\n", listed)[1:]
        for block in (re.match(r"(?:    .*\n)*", each)[0] for each in effective):
            names = re.findall(r"^    (\S+) = ", block, re.M)
            self.assertEqual([name for name in names if "/" in name or names.count(name) > 1], [], block)
            self.assertEqual(len(names), len({name.rpartition(":")[2] for name in names}), block)
            self.assertRegex(block, r"    \w+ is http://vendor\.example/A Printer PS/6\.0\n")

    def test_an_unusable_ticket_is_named(self):
        for name in ("bad-ticket", "foreign-ticket"):
            self.take(name)
            failed = run("tickets", "in.xps")
            self.assertEqual((failed.returncode, failed.stderr.count("\n")), (2, 1))
            self.assertIn("in.xps: /Documents/1/Pages/Metadata/page.xml: ", failed.stderr)


class HelpTest(ProgramTestCase):
    def test_gives_units_and_examples_that_work_when_pasted(self):
        self.take("sample", "sample.xps")
        Path(WORK, "cases.txt").write_text("sample.xps | | | passed turned passed refitted turned+refitted\n")
        shutil.copy(Path(PROGRAM).with_name("pagevalidatefilter.dll"), WORK)
        for arguments in (["--help"], ["run", "--help"], ["tickets", "--help"], ["batch", "--help"],
                          ["diff", "--help"]):
            helped = self.run_done(*arguments)
            examples = re.findall(r"^  xpsfilterhost (.*)$", helped, re.M)
            self.assertGreaterEqual(len(examples), 2)
            self.assertIn("Exit status" if arguments[0] == "diff" else "millimetres", helped)
            for example in examples:
                expected = 1 if example.startswith("diff") else 0
                self.assertEqual(run(*shlex.split(example)).returncode, expected, example)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
