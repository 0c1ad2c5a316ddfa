#!/usr/bin/env python3
"""Runs the host with arguments that cannot be used, or files that cannot be read or written: what it says and leaves."""

import os
import subprocess
import sys
import unittest
import zipfile
from pathlib import Path

from hostprogram import PROGRAM, RUNNER, WORK, ProgramTestCase, run

PREFIX = Path(RUNNER).parents[1] / "build" / "wineprefix"


class FileTest(ProgramTestCase):
    def test_an_output_that_cannot_be_is_named_before_the_job_starts(self):
        self.take("plain")
        Path(WORK, "folder").mkdir()
        table = [("none/out.xps", "there is no such folder"), ("folder", "is a folder"),
                 ("/dev/full", "is not a file that can be replaced")]
        for file, fault in table:
            failed = run("run", "in.xps", "-o", file)
            self.assertEqual((failed.returncode, failed.stdout, failed.stderr.count("\n")), (2, "", 1), failed.stderr)
            self.assertTrue(failed.stderr.startswith(f"xpsfilterhost: {file}: {fault}"), failed.stderr)
        for file, fault in table[:2]:
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "--dry-run", "--report", file), f"{file}: {fault}")
        self.assertEqual(self.files(), ["folder", "in.xps"])

    def test_a_run_writes_over_none_of_its_files(self):
        self.take("plain")
        for name in ("user.xml", "device.xml", "filter.dll"):
            Path(WORK, name).write_text("<a/>")
        before = {name: Path(WORK, name).read_bytes() for name in self.files()}
        options = ["--user-ticket", "user.xml", "--device", "device.xml", "--module", "filter.dll"]
        table = {"in.xps": "the input", "USER.xml": "the user's ticket", "device.xml": "the device's description",
                 "./filter.dll": "the filter"}
        for file, what in table.items():
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", file, *options),
                             f"{file}: the output would replace {what}")
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "--dry-run", "--report", file, *options),
                             f"{file}: the report would replace {what}")
        self.assertEqual({name: Path(WORK, name).read_bytes() for name in self.files()}, before)

    def test_a_document_that_is_none_is_told(self):
        Path(WORK, "folder").mkdir()
        for command in (["run", "--dry-run"], ["tickets"]):
            self.assertEqual(self.assert_refused(2, *command, "folder"), "folder: is a folder")
        Path(WORK, "cases.txt").write_text("folder | | | unusable\n")
        self.assertRegex(self.run_done("batch", "cases.txt"), "^ok .*folder: unusable\n")

    def test_an_empty_part_is_told_to_be_empty(self):
        self.take("tickets", "full.xps")
        ticket = "Documents/1/Pages/Metadata/page.xml"
        with zipfile.ZipFile(Path(WORK, "full.xps")) as full, zipfile.ZipFile(Path(WORK, "in.xps"), "w") as emptied:
            for item in full.infolist():
                emptied.writestr(item.filename, "" if item.filename == ticket else full.read(item.filename))
        message = self.assert_refused(2, "run", "in.xps", "--dry-run")
        self.assertTrue(message.startswith(f"in.xps: /{ticket}: is empty (the filter answered 0x8"), message)

    def test_a_listing_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            for command in ([RUNNER, PROGRAM, "--version"], ["wine", PROGRAM, "--version"]):
                errors = Path(WORK, "errors.txt")
                with open(errors, "w", encoding="utf-8") as stderr:
                    done = subprocess.run(command, cwd=WORK, stdin=subprocess.DEVNULL, stdout=full, stderr=stderr, check=False,
                                          timeout=120, env={**os.environ, "WINEPREFIX": str(PREFIX), "WINEDEBUG": "-all"})
                self.assertEqual((done.returncode, errors.read_text().count("\n")), (2, 1), command)


class ArgumentTest(ProgramTestCase):
    def test_an_empty_value_is_not_taken_for_none(self):
        self.take("plain")
        for option in ("--user-ticket", "--device", "--printer", "--ns-prefix", "--orientation", "--media", "--limits",
                       "--module", "--report"):
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "--dry-run", option, ""),
                             f"{option}: must not be empty; see --help")
        self.assertEqual(self.assert_refused(2, "run", "in.xps", "-o", ""), "--output: must not be empty; see --help")
        for command, name in {"run": "IN", "tickets": "IN", "batch": "CASES", "diff": "A"}.items():
            self.assertEqual(self.assert_refused(2, command, ""), f"{name}: must not be empty; see --help")

    def test_a_prefix_that_no_driver_can_have_is_refused(self):
        self.take("plain")
        for prefix in ("a b", "q:", "1a", "-a", "xmlns", "XML", "psk", "psf", "xsi", "xsd"):
            for command in (["run", "--dry-run"], ["tickets"]):
                self.assertEqual(self.assert_refused(2, *command, "in.xps", "--ns-prefix", prefix),
                                 f"--ns-prefix {prefix}: is no prefix that XML leaves to a driver")
        for prefix in ("_a", "a-1.b", "p\u00e9", "psk2"):
            page = self.pages_of("in.xps", "--dry-run", "--ns-prefix", prefix, "--limits", "76.2x127-215.9x355.6")[0]
            self.assertEqual(page["decision"], "passed", prefix)

    def test_a_size_that_is_none_is_told_what_it_could_be(self):
        self.take("plain")
        for media in ("1e3x10", "210,5x297", "0x0", "A4"):
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "--dry-run", "--media", media),
                             f"--media {media}: is no such option of the Print Schema, nor a size in millimetres, as 210x297" +
                             ("; did you mean ISOA4?" if media == "A4" else ""))
        for media in ("210X297", "210x297mm", "isoa4"):
            self.assertEqual(self.pages_of("in.xps", "--dry-run", "--media", media)[0]["asked"]["media"]["name"], "ISOA4")
        for limits in ("100x10-99x20", "10x100-20x99"):
            self.assertEqual(self.assert_refused(2, "run", "in.xps", "--dry-run", "--limits", limits),
                             f"--limits {limits}: has a lower sheet that is wider or higher than the upper one")
        self.pages_of("in.xps", "--dry-run", "--limits", "100x100-100x100")

    def test_the_tickets_command_takes_no_module(self):
        self.assertIn("--module=x.dll is no option of tickets", self.assert_refused(2, "tickets", "--module=x.dll", "in.xps"))


class TicketTest(ProgramTestCase):
    def test_a_ticket_that_cannot_be_merged_is_named_with_the_code_of_the_print_ticket_calls(self):
        self.take("foreign-ticket")
        self.assertEqual(self.assert_refused(1, "run", "in.xps", "--dry-run"),
                         "in.xps: /Documents/1/Pages/1.fpage: the filter failed with 0x80040005: E_DELTA_PRINTTICKET_FORMAT, "
                         "the print ticket that is merged in is not valid; /Documents/1/Pages/Metadata/page.xml: "
                         "line 1, column 1: the root is not the Print Schema's PrintTicket")


class TableTest(ProgramTestCase):
    def test_a_table_that_is_no_text_is_one_line(self):
        self.take("plain", "table.xps")
        Path(WORK, "utf16.txt").write_text("in.xps | | | passed\n", encoding="utf-16")
        Path(WORK, "plain16.txt").write_text("in.xps | | | passed\n", encoding="utf-16-le")
        Path(WORK, "latin1.txt").write_bytes(b"caf\xe9.xps | | | passed\n")
        for name in ("table.xps", "utf16.txt", "plain16.txt", "latin1.txt"):
            self.assertEqual(self.assert_refused(2, "batch", name), f"{name}: is not a text in UTF-8")

    def test_nothing_follows_the_end_of_a_job(self):
        Path(WORK, "cases.txt").write_text("in.xps | | | passed failed 0x80070005 passed\n")
        self.assertEqual(self.assert_refused(2, "batch", "cases.txt"),
                         "cases.txt:1: expected: passed stands after the end of the job")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
