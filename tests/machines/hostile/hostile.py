#!/usr/bin/env python3
"""Feeds hostile packages to the host and checks what comes of each.

    hostile.py RUNNER BIN PACKAGES WORK-FOLDER [--count N] [--start I] [--direct N] [--index I] [--save FOLDER]

RUNNER starts a Windows program, BIN holds the programs, PACKAGES the packages that are changed. Of N inputs every
one goes through a process that runs many; --direct N of them also through the program itself, with its file accesses
traced. --index runs one input through the program itself and keeps its files. --save writes markup and tickets of
hostile inputs, for the module's own test.
"""

import argparse
import collections
import io
import os
import queue
import re
import resource
import selectors
import shutil
import socket
import subprocess
import sys
import threading
import time
import zipfile
from pathlib import Path
from xml.parsers import expat

from generator import CALLED_PORT, SECRET, SENTINEL, Generator

WORKERS = 2
# Seconds for one input, on a machine that is busy with other things too: a job's ticket with 8,000 parameters takes 28
# of processor time in a Debug build.
TIME_LIMIT = 300
# What a run may take at most, in MB.
MEMORY_LIMIT = 512
# Runs of one process. Each loads the offline ticket service, which leaves a TLS index of the thread library behind: after
# some 1080 there are none left, and the process aborts.
RUNS_OF_A_PROCESS = 250
# Bytes that a checker unpacks of one item.
CHECKED_SIZE = 700 << 20
SHOWN_FAILURES = 20
# What a run adds: new tickets, and the relationships of parts that had none.
NEW_ITEM = re.compile(r"(^|/)(pagevalidator_[^/]*|_rels/[^/]*\.rels)$")
# The filter escapes the value of UnicodeString only, and writes any other as the reader gave it.
UNESCAPED = re.compile(rb"""\s(?!UnicodeString\b)[\w:.]+\s*=\s*("[^"]*&|'[^'"]*["&])""")
READ_PARTS = re.compile(r"\.(fdseq|fdoc|fpage|rels)$|\[content_types\]\.xml$|\.xml$", re.I)


def environment(runner):
    prefix = Path(os.environ.get("WINEPREFIX") or Path(runner).resolve().parent.parent / "build" / "wineprefix")
    return {**os.environ, "WINEPREFIX": str(prefix), "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml="}, prefix


def clear(folder):
    """All but the two files that a process has open: Wine does not always open anew what was deleted meanwhile."""
    for path in folder.iterdir():
        if path.name not in ("out.txt", "err.txt"):
            path.unlink()


class Stopped(Exception):
    """The process ended, or had to be ended, within an input."""


class Batch:
    """A process that runs input after input. Its peak of memory is taken anew for each."""

    def __init__(self, program, folder, variables):
        self.command = ["wine", str(program)]
        self.folder, self.variables, self.process, self.runs = folder, variables, None, 0

    def start(self):
        self.process = subprocess.Popen(self.command, cwd=self.folder, env=self.variables, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def stop(self):
        if self.process:
            self.process.stdin.close()
            self.process.kill()
            self.process.stdout.close()
            self.process.wait()
            self.process = None

    def proc(self, file):
        return Path(f"/proc/{self.process.pid}/{file}")

    def run(self, arguments):
        """(exit status, peak in MB)"""
        self.runs += 1
        if self.runs % RUNS_OF_A_PROCESS == 0:
            self.stop()
        if self.process is None:
            self.start()
        else:
            self.proc("clear_refs").write_text("5")
        try:
            self.process.stdin.write("\t".join(["out.txt", "err.txt", *arguments]).encode() + b"\n")
            self.process.stdin.flush()
            with selectors.DefaultSelector() as selector:
                selector.register(self.process.stdout, selectors.EVENT_READ)
                if not selector.select(TIME_LIMIT):
                    raise Stopped(f"did not end within {TIME_LIMIT} s")
            answer = self.process.stdout.readline()
            if not answer:
                raise Stopped(f"crashed with status {self.process.wait()}")
            peak = re.search(r"VmHWM:\s+(\d+)", self.proc("status").read_text())
        except (OSError, Stopped) as fault:
            self.stop()
            raise Stopped(str(fault)) from fault
        return int(answer), int(peak[1]) // 1024


def run_directly(program, folder, variables, arguments):
    """(exit status, peak in MB) of a process of its own."""
    with open(folder / "out.txt", "wb") as output, open(folder / "err.txt", "wb") as errors:
        process = subprocess.Popen(["wine", str(program), *arguments], cwd=folder, env=variables, stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=errors)
        timer = threading.Timer(TIME_LIMIT, process.kill)
        timer.start()
        _, status, usage = os.wait4(process.pid, 0)
        timer.cancel()
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode < 0:
        raise Stopped(f"ended by signal {-process.returncode}")
    return process.returncode, usage.ru_maxrss // 1024


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


def names_in(content, element, attribute):
    found = []
    parser = expat.ParserCreate()
    parser.StartElementHandler = lambda name, values: name.split(":")[-1] == element and attribute in values and found.append(values[attribute])
    parser.Parse(content, True)
    return found


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
        overrides = {name.lower() for name in names_in(types, "Override", "PartName")}
        extensions = {name.lower() for name in names_in(types, "Default", "Extension")}
        targets = " ".join(content.decode("utf-8", "replace") for name, content in after.items() if content and name.lower().endswith(".rels"))
        for name in added:
            if "/" + name.lower() not in overrides and name.lower().rpartition(".")[2] not in extensions:
                return f"{name} has no content type"
            if name.rpartition("/")[2] not in targets:
                return f"{name} has no relationship"
    return None


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


FOREIGN_OPEN = re.compile(r'(?:NtCreateFile|NtOpenFile|CreateFileW)\b.*?L"(.*?)"')
# What the system and the program themselves read.
KNOWN = re.compile(r"^(\\\\\?\\+|\\\?\?\\)?(unix|[a-z]:)?\\+(windows|program|proc|dev|tmp|usr|lib|etc\\nsswitch)", re.I)


class Judge:
    def __init__(self, options):
        self.options = options
        self.bin = Path(options.bin).resolve()
        self.variables, self.prefix = environment(options.runner)
        self.generator = Generator(Path(options.packages))
        self.lock = threading.Lock()
        self.counts = collections.defaultdict(collections.Counter)
        self.failures, self.peaks, self.times = [], [], []
        self.direct = 0

    def judge(self, index, folder, execute):
        """Runs one input and checks what came of it."""
        kind, options, package = self.generator.make(index)
        (folder / "in.xps").write_bytes(package)
        (folder / "hostile-secret.txt").write_bytes(SENTINEL)
        before = set(os.listdir(folder)) | {"out.txt", "err.txt"}
        begun = time.monotonic()
        fault, status, peak = None, None, 0
        try:
            status, peak = execute(["run", "in.xps", "-o", "out.xps", *options])
        except Stopped as stop:
            fault = str(stop)
        seconds = time.monotonic() - begun
        fault = fault or self.fault_of(folder, before, package, status, peak)
        message = (folder / "err.txt").read_bytes().decode("utf-8", "replace")[:300] if (folder / "err.txt").exists() else ""
        with self.lock:
            self.counts[kind]["failed" if fault else {0: "passed", 1: "filter failed", 2: "refused"}[status]] += 1
            self.peaks.append((peak, kind, index))
            self.times.append((seconds, kind, index))
            if fault:
                self.failures.append((index, kind, fault, message))
                print(f"input {index} ({kind}): {fault}; {message.strip()}", flush=True)
        return status

    def fault_of(self, folder, before, package, status, peak):
        errors = (folder / "err.txt").read_bytes()
        new = set(os.listdir(folder)) - before
        if status not in (0, 1, 2):
            return f"exit status {status}"
        if peak > MEMORY_LIMIT:
            return f"took {peak} MB"
        if status != 0 and (errors.count(b"\n") != 1 or not errors.endswith(b"\n")):
            return f"{errors.count(10)} lines of messages"
        if status == 0 and errors:
            return "messages although it is done"
        if SENTINEL in errors:
            return "the message holds what stands in a file outside"
        if new != ({"out.xps"} if status == 0 else set()):
            return f"left {sorted(new)}"
        if status != 0:
            return None
        output = (folder / "out.xps").read_bytes()
        (folder / "out.xps").unlink()
        return output_fault(package, output)

    def work(self, number, indices):
        folder = Path(self.options.work).resolve() / str(number)
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        batch = Batch(self.bin / "batchhost.exe", folder, self.variables)
        try:
            while True:
                index = indices.get_nowait()
                clear(folder)
                status = self.judge(index, folder, batch.run)
                if self.options.direct and index % max(1, self.options.count // self.options.direct) == 0:
                    self.compare(index, folder, status)
                if sum(sum(count.values()) for count in self.counts.values()) % 500 == 0:
                    print(f"{index} ...", flush=True)
        except queue.Empty:
            pass
        finally:
            batch.stop()

    def compare(self, index, folder, status):
        """The same input through the program itself, its file accesses traced."""
        clear(folder)
        kind, options, package = self.generator.make(index)
        (folder / "in.xps").write_bytes(package)
        variables = {**self.variables, "WINEDEBUG": "-all,+file"}
        try:
            direct, _ = run_directly(self.bin / "xpsfilterhost.exe", folder, variables, ["run", "in.xps", "-o", "out.xps", *options])
        except Stopped as stop:
            direct = str(stop)
        trace = (folder / "err.txt").read_bytes().decode("utf-8", "replace")
        own = str(self.bin).replace("/", "\\").lower(), str(folder).replace("/", "\\").lower()
        foreign = []
        for name in FOREIGN_OPEN.findall(trace):
            plain = name.replace("\\\\", "\\").lower()
            inside = any(place in plain for place in own) or "\\" not in plain
            if not inside and not KNOWN.match(plain):
                foreign.append(plain)
        with self.lock:
            self.direct += 1
            if direct != status:
                self.failures.append((index, kind, f"the program itself ends with {direct}, not {status}", ""))
            if foreign or "secret" in "".join(line for line in trace.splitlines() if "CreateFile" in line):
                self.failures.append((index, kind, f"opens {sorted(set(foreign))[:4]}", ""))

    def run(self):
        secret = self.prefix / "drive_c" / Path(SECRET).name
        secret.write_bytes(SENTINEL)
        listener = Listener()
        listener.start()
        before = listing(self.prefix / "drive_c")
        indices = queue.Queue()
        for index in range(self.options.start, self.options.start + self.options.count):
            indices.put(index)
        workers = [threading.Thread(target=self.work, args=(number, indices)) for number in range(WORKERS)]
        begun = time.monotonic()
        for worker in workers:
            worker.start()
        for worker in workers:
            worker.join()
        left = self.options.count - sum(sum(count.values()) for count in self.counts.values())
        if left:
            self.failures.append((-1, "all", f"{left} inputs were not run", ""))
        appeared = listing(self.prefix / "drive_c") - before
        secret.unlink()
        if appeared:
            self.failures.append((-1, "all", f"appeared on the drive: {sorted(appeared)[:5]}", ""))
        if listener.calls:
            self.failures.append((-1, "all", f"{listener.calls} calls over the network", ""))
        return time.monotonic() - begun

    def report(self, seconds):
        columns = ["refused", "filter failed", "passed", "failed"]
        print("%-22s %6s" % ("mutation", "inputs") + "".join("%14s" % column for column in columns))
        total = collections.Counter()
        for kind, counts in sorted(self.counts.items()):
            total.update(counts)
            print("%-22s %6d" % (kind, sum(counts.values())) + "".join("%14d" % counts[column] for column in columns))
        print("%-22s %6d" % ("all", sum(total.values())) + "".join("%14d" % total[column] for column in columns))
        peak, slowest = max(self.peaks), max(self.times)
        print(f"{seconds:.0f} s; at most {peak[0]} MB (input {peak[2]}, {peak[1]}), bound {MEMORY_LIMIT} MB; "
              f"at most {slowest[0]:.1f} s (input {slowest[2]}, {slowest[1]}), limit {TIME_LIMIT} s; "
              f"{self.direct} also by the program itself with file accesses traced")
        for index, kind, fault, _ in self.failures[:SHOWN_FAILURES]:
            print(f"FAILED input {index} ({kind}): {fault}")


def run_one(judge, options):
    folder = Path(options.work).resolve() / f"input-{options.index}"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    program = judge.bin / "xpsfilterhost.exe"
    judge.judge(options.index, folder, lambda arguments: run_directly(program, folder, judge.variables, arguments))
    print(f"kept in {folder}: {' '.join(sorted(os.listdir(folder)))}")
    print((folder / "err.txt").read_text("utf-8", "replace"), end="")


def save_markup(judge, options):
    """Pages and tickets as they stand in hostile packages, for a module that has no host in front of it."""
    folder = Path(options.save)
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    unchanged = {item for items in judge.generator.bases.values() for item in items}
    count = 0
    for index in range(options.start, options.start + options.count):
        kind, _, document = judge.generator.document(index)
        for name, content in document.items:
            # Over these the readers of Wine take minutes, so that a host does not hand them out.
            if kind in ("deep_nesting", "many_attributes") and len(content) > 100 << 10:
                continue
            is_page, is_ticket = name.endswith(".fpage"), name.endswith(".xml") and not name.startswith("[")
            if (is_page or is_ticket) and (name, content) not in unchanged and len(content) < 1 << 20:
                count += 1
                (folder / f"{index}-{count}-{kind}.{'page' if is_page else 'ticket'}").write_bytes(content)
    print(f"{count} files in {folder}")


def main():
    parser = argparse.ArgumentParser()
    for name in ("runner", "bin", "packages", "work"):
        parser.add_argument(name)
    for name, default in (("count", 10000), ("start", 0), ("direct", 0), ("index", None)):
        parser.add_argument("--" + name, type=int, default=default)
    parser.add_argument("--save")
    options = parser.parse_args()
    judge = Judge(options)
    if options.save:
        return save_markup(judge, options)
    if options.index is not None:
        run_one(judge, options)
    else:
        judge.report(judge.run())
    return 1 if judge.failures else 0


if __name__ == "__main__":
    sys.exit(main())
