#!/usr/bin/env python3
"""Feeds hostile packages to the host and checks what comes of each.

    hostile.py RUNNER BIN PACKAGES WORK-FOLDER [--count N] [--start I] [--traced N] [--index I] [--save FOLDER]

RUNNER starts a Windows program, BIN holds the programs, PACKAGES the packages that are changed. Of N inputs every
one goes through a process of its own; --traced N of them with its file accesses traced. --index runs one input and keeps
its files. --save writes markup and tickets of hostile inputs, for the module's own test.
"""

import argparse
import collections
import io
import os
import re
import shutil
import socket
import subprocess
import sys
import threading
import time
import xml.etree.ElementTree
import zipfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from xml.parsers import expat

from generator import CALLED_PORT, SECRET, SENTINEL, Generator

WORKERS = 2
# Seconds for one input, on a machine that is busy with other things too: a job's ticket with 8,000 parameters takes 28
# of processor time in a Debug build.
TIME_LIMIT = 300
# What a run may take at most, in MB.
MEMORY_LIMIT = 512
# Bytes that a checker unpacks of one item.
CHECKED_SIZE = 700 << 20
SHOWN_FAILURES = 20
# What a run adds: new tickets, and the relationships of parts that had none.
NEW_ITEM = re.compile(r"(^|/)(pagevalidator_[^/]*|_rels/[^/]*\.rels)$")
# The filter escapes the value of UnicodeString only, and writes any other as the reader gave it.
UNESCAPED = re.compile(rb"""\s(?!UnicodeString\b)[\w:.]+\s*=\s*("[^"]*&|'[^'"]*["&])""")
READ_PARTS = re.compile(r"\.(fdseq|fdoc|fpage|rels)$|\[content_types\]\.xml$|\.xml$", re.I)
OPENED = re.compile(r'(?:NtCreateFile|NtOpenFile|CreateFileW)\b.*?L"(.*?)"')
# What the system and the program themselves read.
KNOWN = re.compile(r"^(\\\\[?.]\\+|\\\?\?\\)?(unix|[a-z]:)?\\*(pipe\\lrpc|windows|program|proc|dev|tmp|usr|lib|etc\\nsswitch)", re.I)


def read_items(data):
    """{name: content} of a package; an item that cannot be read is None. None for no package."""
    items = {}
    try:
        with zipfile.ZipFile(io.BytesIO(data)) as archive:
            for item in archive.infolist():
                try:
                    with archive.open(item) as file:
                        content = file.read(CHECKED_SIZE)
                except Exception:  # The reader has many ways to say that it cannot.
                    content = None
                # The host's library takes a name that is not said to be UTF-8 as code page 437, control characters too.
                items[item.filename.replace("\u263a", "\x01")] = content
    except Exception:
        return None
    return items


def parse_fault(content):
    def refuse(*_):
        raise expat.ExpatError("document type")
    parser = expat.ParserCreate()
    parser.StartDoctypeDeclHandler = refuse
    try:
        parser.Parse(content, True)
    except (expat.ExpatError, ValueError, LookupError) as fault:
        return str(fault)
    return None


def output_fault(given, output):
    """What is wrong with an output, by readers that share no code with ours."""
    after = read_items(output)
    if after is None:
        return "the output is no archive"
    before = read_items(given) or {}
    for name, content in after.items():
        if content is not None and SENTINEL in content:
            return f"{name} holds what stands in a file outside"
        if name in before and content == before[name]:
            continue
        if content is None:
            return f"{name} cannot be read"
        if name not in before and before and not NEW_ITEM.search(name):
            return f"{name} is new"
        fault = parse_fault(content) if READ_PARTS.search(name) else None
        if fault and not UNESCAPED.search((before.get(name) or b"").replace(b"\0", b"")):
            return f"{name}: {fault}"
    added = [name for name in after if "pagevalidator_" in name]
    types = next((content for name, content in after.items() if name.lower().lstrip("/\\") == "[content_types].xml"), None)
    if types is not None and added:
        typed = {entry.get("PartName", entry.get("Extension", "")).lower() for entry in xml.etree.ElementTree.fromstring(types)}
        targets = b" ".join(content for name, content in after.items() if content and name.lower().endswith(".rels"))
        for name in added:
            if not typed & {"/" + name.lower(), name.lower().rpartition(".")[2]}:
                return f"{name} has no content type"
            if name.rpartition("/")[2].encode() not in targets:
                return f"{name} has no relationship"
    return None


def message_fault(status, message):
    if message.count(b"\n") != (1 if status else 0) or message and not message.endswith(b"\n"):
        return f"{message.count(10)} lines of messages with status {status}"
    return "the message holds what stands in a file outside" if SENTINEL in message else None


class Listener(threading.Thread):
    """Where nobody may call."""

    def __init__(self):
        super().__init__(daemon=True)
        self.calls = 0
        self.socket = socket.socket()
        # Runs at once, of two builds, listen together.
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEPORT, 1)
        self.socket.bind(("127.0.0.1", CALLED_PORT))
        self.socket.listen()

    def run(self):
        while True:
            self.socket.accept()[0].close()
            self.calls += 1


def listing(root):
    """Files outside the runs' folders that a run could make."""
    return {str(path.relative_to(root)) for path in root.rglob("*") if "Temp" not in path.parts or path.is_file()}


class Judge:
    def __init__(self, options):
        self.options = options
        self.bin, self.work = Path(options.bin).resolve(), Path(options.work).resolve()
        prefix = os.environ.get("WINEPREFIX") or Path(options.runner).resolve().parent.parent / "build" / "wineprefix"
        self.drive = Path(prefix) / "drive_c"
        # As cmake/wine-run sets them.
        self.variables = {**os.environ, "WINEPREFIX": str(prefix), "WINEDLLOVERRIDES": "mscoree,mshtml=",
                          "XDG_RUNTIME_DIR": os.environ.get("XDG_RUNTIME_DIR", str(prefix))}
        self.generator = Generator(Path(options.packages))
        self.counts = collections.defaultdict(collections.Counter)
        self.failures, self.peaks, self.times = [], [], []

    def execute(self, folder, is_traced, arguments):
        """(exit status, peak in MB) of a process of its own; a signal is a negative status."""
        with open(folder / "out.txt", "wb") as output, open(folder / "err.txt", "wb") as errors:
            process = subprocess.Popen(["wine", str(self.bin / "xpsfilterhost.exe"), *arguments], cwd=folder, stdout=output,
                                       env={**self.variables, "WINEDEBUG": "-all,+file" if is_traced else "-all"},
                                       stdin=subprocess.DEVNULL, stderr=errors)
            timer = threading.Timer(TIME_LIMIT, process.kill)
            timer.start()
            _, status, usage = os.wait4(process.pid, 0)
            timer.cancel()
            process.returncode = os.waitstatus_to_exitcode(status)
        return process.returncode, usage.ru_maxrss // 1024

    def judge(self, index, keeps=False):
        """Runs one input and checks what came of it."""
        folder = self.work / str(index)
        folder.mkdir(parents=True)
        kind, options, document = self.generator.make(index)
        package = document.write()
        (folder / "in.xps").write_bytes(package)
        (folder / "hostile-secret.txt").write_bytes(SENTINEL)
        begun = time.monotonic()
        is_traced = bool(self.options.traced) and index % max(1, self.options.count // self.options.traced) == 0
        for _ in range(2):
            status, peak = self.execute(folder, is_traced, ["run", "in.xps", "-o", "out.xps", *options])
            message = (folder / "err.txt").read_bytes()
            # Wine may fail without a word when its server cannot start; the program never should.
            if status != 1 or message:
                break
        seconds = time.monotonic() - begun
        fault = (self.access_fault(folder, message) if is_traced else message_fault(status, message)) \
            or self.fault_of(folder, package, status, peak)
        self.counts[kind]["failed" if fault else {0: "passed", 1: "filter failed", 2: "refused"}[status]] += 1
        self.peaks.append((peak, kind, index))
        self.times.append((seconds, kind, index))
        if fault:
            self.failures.append(f"input {index} ({kind}): {fault}")
            print(self.failures[-1] + f"; {message[:300].decode('utf-8', 'replace').strip()}", flush=True)
        if not keeps:
            shutil.rmtree(folder)

    def fault_of(self, folder, package, status, peak):
        new = set(os.listdir(folder)) - {"in.xps", "hostile-secret.txt", "out.txt", "err.txt"}
        if status not in (0, 1, 2):
            return f"exit status {status}"
        if peak > MEMORY_LIMIT:
            return f"took {peak} MB"
        if new != ({"out.xps"} if status == 0 else set()):
            return f"left {sorted(new)}"
        return output_fault(package, (folder / "out.xps").read_bytes()) if status == 0 else None

    def access_fault(self, folder, trace):
        opened = {name.replace("\\\\", "\\").lower() for name in OPENED.findall(trace.decode("utf-8", "replace"))}
        own = [str(place).replace("/", "\\").lower() for place in (self.bin, folder)]
        foreign = [name for name in opened if "secret" in name or
                   not (any(place in name for place in own) or "\\" not in name or KNOWN.match(name))]
        return f"opens {sorted(foreign)[:4]}" if foreign else None if opened else "no file access is traced"

    def run(self):
        secret = self.drive / Path(SECRET).name
        secret.write_bytes(SENTINEL)
        listener = Listener()
        listener.start()
        before = listing(self.drive)
        begun = time.monotonic()
        with ThreadPoolExecutor(WORKERS) as pool:
            list(pool.map(self.judge, range(self.options.start, self.options.start + self.options.count)))
        appeared = listing(self.drive) - before
        secret.unlink()
        if appeared:
            self.failures.append(f"appeared on the drive: {sorted(appeared)[:5]}")
        if listener.calls:
            self.failures.append(f"{listener.calls} calls over the network")
        return time.monotonic() - begun

    def report(self, seconds):
        columns = ["refused", "filter failed", "passed", "failed"]
        print("%-22s" % "mutation" + "".join("%14s" % column for column in columns))
        for kind, counts in [*sorted(self.counts.items()), ("all", sum(self.counts.values(), collections.Counter()))]:
            print("%-22s" % kind + "".join("%14d" % counts[column] for column in columns))
        peak, slowest = max(self.peaks), max(self.times)
        print(f"{seconds:.0f} s; at most {peak[0]} MB (input {peak[2]}, {peak[1]}), bound {MEMORY_LIMIT} MB; "
              f"at most {slowest[0]:.1f} s (input {slowest[2]}, {slowest[1]}), limit {TIME_LIMIT} s; "
              f"{self.options.traced} with file accesses traced")
        for failure in self.failures[:SHOWN_FAILURES]:
            print("FAILED", failure)


def save_markup(generator, options):
    """Pages and tickets as they stand in hostile packages, for a module that has no host in front of it."""
    folder = Path(options.save)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    unchanged = {item for items in generator.bases for item in items}
    for index in range(options.start, options.start + options.count):
        kind, _, document = generator.make(index)
        for count, (name, content) in enumerate(document.items):
            # Over these the readers of Wine take minutes, so that a host does not hand them out.
            limit = 100 << 10 if kind in ("deep nesting", "many attributes") else 1 << 20
            is_markup = name.endswith(".fpage") or name.endswith(".xml") and not name.startswith("[")
            if is_markup and (name, content) not in unchanged and len(content) < limit:
                (folder / f"{index}-{count}.{'page' if name.endswith('.fpage') else 'ticket'}").write_bytes(content)
    print(f"{len(os.listdir(folder))} files in {folder}")


def main():
    parser = argparse.ArgumentParser()
    for name in ("runner", "bin", "packages", "work"):
        parser.add_argument(name)
    for name, default in (("count", 10000), ("start", 0), ("traced", 0), ("index", None)):
        parser.add_argument("--" + name, type=int, default=default)
    parser.add_argument("--save")
    options = parser.parse_args()
    judge = Judge(options)
    if options.save:
        save_markup(judge.generator, options)
        return 0
    shutil.rmtree(judge.work, ignore_errors=True)
    if options.index is not None:
        judge.judge(options.index, keeps=True)
        print(f"kept in {judge.work / str(options.index)}:", judge.failures or "nothing is wrong")
    else:
        judge.report(judge.run())
    return 1 if judge.failures else 0


if __name__ == "__main__":
    sys.exit(main())
