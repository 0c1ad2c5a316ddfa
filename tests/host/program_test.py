#!/usr/bin/env python3
"""Runs the host's program as a user does and checks its outputs with readers of other origin."""

import fnmatch
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
COMMANDS = Path(__file__).resolve().parents[1] / "data" / "commands"
MISBEHAVING = str(Path(PROGRAM).with_name("misbehavingfilter.dll"))


def decisions(pages):
    return [page["decision"] for page in pages]


def transcript():
    """[(packages, command, the lines from the last output to this command, the lines that it prints)]"""
    packages, entries, before = None, [], []
    for line in (COMMANDS / "transcript.txt").read_text(encoding="utf-8").splitlines():
        if line.startswith("$"):
            entries.append((packages, shlex.split(line[1:]), [*before, line], []))
            before = []
        elif line and line[0] not in "#@":
            entries[-1][3].append(line)
        else:
            before.append(line)
            packages = line[2:].split() if line.startswith("@ ") else packages
    return entries


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


class TranscriptTest(ProgramTestCase):
    def take_all(self, first, *others):
        self.setUp()
        shutil.copytree(COMMANDS / "files", WORK, dirs_exist_ok=True)
        self.take(first)
        os.link(f"{WORK}/in.xps", f"{WORK}/same.xps")
        for name in others:
            self.take(name, f"{name}.xps")
        for name in ("misbehavingfilter.dll", "pagevalidatefilter.dll", "offline"):
            os.symlink(Path(PROGRAM).with_name(name), f"{WORK}/{name}")

    def contents(self):
        return {name: Path(WORK, name).read_bytes() for name in self.files() if Path(WORK, name).is_file()}

    def test_commands_print_what_they_should_and_change_no_file_when_they_fail(self):
        taken, told = None, []
        for packages, command, before_it, expected in transcript():
            if packages is not taken:
                taken = packages
                self.take_all(*packages)
            with self.subTest(shlex.join(command), packages=packages):
                before = self.contents()
                done = run(*command)
                printed = re.sub(r"\d+\.\d\d s\b", "0.00 s", done.stdout + done.stderr).splitlines()
                printed += [f"[{done.returncode}]"] if done.returncode else []
                for place, (line, wanted) in enumerate(zip(printed, expected)):
                    if "*" in wanted and fnmatch.fnmatchcase(line, wanted.replace("[", "[[]")):
                        printed[place] = wanted
                told += before_it + printed
                self.assertEqual(printed, expected)
                if done.returncode:
                    self.assertEqual(self.contents(), before)
        # To be taken over where a text is meant to have changed.
        Path(PROGRAM).parents[1].joinpath("transcript.txt").write_text("\n".join(told) + "\n", encoding="utf-8")


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
        for name in names:
            with self.subTest(name):
                self.take(name)
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
        self.assertEqual((output.read_bytes(), self.files()), (contents[0], ["in.xps", "out.xps"]))

    def test_pages_that_are_alike_share_a_line_with_the_whole_reason_in_a_wide_terminal(self):
        write_document("in.xps", ["<FixedPage xmlns='http://schemas.microsoft.com/xps/2005/06' Width='816' Height='1056'/>"] * 300)
        wide = run("run", "in.xps", "--dry-run", env={**os.environ, "COLUMNS": "120"}).stdout.splitlines()
        self.assertEqual(wide[1:-1], ["1-300   passed            216x279             216x279            "
                                      "Portrait on an upright sheet within the limits"])

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

    def test_takes_paths_beyond_ascii_and_with_a_leading_slash(self):
        name = "\u0434\u043e\u043a \u00e9\U0001f600.xps"
        self.take("sample", name)
        shutil.copy(COMMANDS / "files" / "unscaled.xml", f"{WORK}/\u0431.xml")
        printed = self.run_done("run", f"{WORK}/{name}", "-o", "out " + name, "--user-ticket", "\u0431.xml")
        self.assertTrue(printed.splitlines()[-1].endswith(f" s: out {name}"))
        self.assertEqual(self.files(), sorted([name, "out " + name, "\u0431.xml"]))

    def test_progress_is_shown_on_a_terminal_only(self):
        self.take("sample")
        with Terminal() as terminal:
            done = run("run", "in.xps", "-o", "out.xps", stderr=terminal.stderr)
            self.assertTrue(terminal.read_until("page 1 of 5\r").startswith("page 1 of 5\r"))
        self.assertEqual((done.returncode, len(done.stdout.splitlines())), (0, 9))


class FailureTest(ProgramTestCase):
    def test_a_listing_that_cannot_be_written_is_a_failure(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            for command in ([RUNNER, PROGRAM, "--version"], ["wine", PROGRAM, "--version"]):
                # A pipe would be kept open by what Wine leaves running.
                with tempfile.TemporaryFile() as stderr:
                    done = subprocess.run(command, cwd=WORK, stdin=subprocess.DEVNULL, stdout=full, stderr=stderr, check=False,
                                          timeout=120, env={**os.environ, "WINEPREFIX": str(PREFIX), "WINEDEBUG": "-all"})
                    stderr.seek(0)
                    self.assertEqual((done.returncode, stderr.read().count(b"\n")), (2, 1), command)

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


class BatchTest(ProgramTestCase):
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
