#!/usr/bin/env python3
"""Measures what the module costs and prints it as tables: measure.py BIN_FOLDER WORK_FOLDER [--quick]

What is compared is measured by turns, so that both meet the same machine. Times are processor time and, in brackets,
time on the clock; of several measurements the median, of small jobs the mean, and of ratios the least and the
greatest after it.
"""
import os
import shutil
import statistics
import subprocess
import sys
import time
import xml.etree.ElementTree as ElementTree
import zipfile
from pathlib import Path

BENCH = Path(__file__).resolve().parent
WINE_RUN = BENCH.parent / "cmake" / "wine-run"
BIN, WORK = Path(sys.argv[1]), Path(sys.argv[2])
IS_QUICK = "--quick" in sys.argv

ROUNDS, COPIES = (3, 2) if IS_QUICK else (10, 4)
# How many jobs of each number of pages.
JOBS = {10: 1, 100: 3, 1000: 1} if IS_QUICK else {10: 5, 100: 10, 1000: 3, 10_000: 1}
HOST_ROUNDS, SMALL_PAGES, REAL_PAGES = (1, 200, 16) if IS_QUICK else (3, 1000, 40)
KINDS = ("passed", "turned", "refitted")
TICKET_SIZES = (1000, 8000)
CROWDS = ("pages", "parts that nothing names", "relationships of a page", "content types of single parts",
          "characters in a part's name")
CROWD_SIZES = (2000, 8000)

XPS = "http://schemas.microsoft.com/xps/2005/06"
SMALL_PAGE = (f'<FixedPage xmlns="{XPS}" xml:lang="en" Width="816" Height="1056">'
              '<Path Stroke="#FF000000" Data="M 96,96 L 720,96"/></FixedPage>')
LANDSCAPE = ('<psf:PrintTicket version="1"'
             ' xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework"'
             ' xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords">'
             '<psf:Feature name="psk:PageOrientation"><psf:Option name="psk:Landscape"/></psf:Feature>'
             '</psf:PrintTicket>')


def run(command):
    """Runs a program and gives its output, its processor and wall time, and its peak memory in bytes."""
    start = time.monotonic()
    with subprocess.Popen(command, stdout=subprocess.PIPE) as process:
        output = process.stdout.read()
        _, status, used = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return output, (used.ru_utime + used.ru_stime, time.monotonic() - start), used.ru_maxrss * 1024


def bench(*arguments):
    return run([WINE_RUN, BIN / "bench.exe", *map(str, arguments)])[0]


def windows_path(path):
    return "Z:" + str(path.resolve())


def make_real_pages():
    """Page markup that Ghostscript makes of text and drawings."""
    package = WORK / "pages.xps"
    run(["gs", "-q", "-dNOPAUSE", "-dBATCH", "-sDEVICE=xpswrite", "-o", package, BENCH / "pages.ps"])
    with zipfile.ZipFile(package) as archive:
        names = sorted(name for name in archive.namelist() if name.endswith(".fpage"))
        return [keep(f"real{number}.fpage", archive.read(name)) for number, name in enumerate(names)]


def make_glyphs_pages():
    """A page of 5,000 words, each an element of its own."""
    words = "".join(
        f'<Glyphs OriginX="{50 + word * 37 % 650}.{word % 100:02}" OriginY="{50 + word // 20 * 4}.5" '
        f'FontRenderingEmSize="12" FontUri="/Resources/Fonts/font1.odttf" Fill="#FF000000" '
        f'UnicodeString="word{word} &amp; co" Indices="36,55;12;{word % 90},61"/>\n' for word in range(5000))
    markup = f'<FixedPage xmlns="{XPS}" Width="816" Height="1056" xml:lang="en-US">\n{words}</FixedPage>'
    return [keep("glyphs.fpage", markup.encode())] * 8


def keep(name, content):
    path = WORK / name
    path.write_bytes(content)
    return path


def require_same_turn(page):
    """A comparison of speed needs programs that do the same."""
    ours = bench("turn", page)
    other = run(["xsltproc", BENCH / "turn.xsl", page])[0]

    def tree(markup):
        return [(element.tag, element.attrib) for element in ElementTree.fromstring(markup).iter()]

    if tree(ours) != tree(other):
        sys.exit("bench: the stylesheet and the filter turn a page differently")


def measure_markup(pages, has_rival):
    """The times of each pass over the pages, by its name."""
    files = pages * COPIES
    times = {}
    for _ in range(ROUNDS):
        for line in bench("markup", 1, *files).decode().splitlines():
            name, processor, wall = line.split()
            times.setdefault(name, []).append((float(processor), float(wall)))
        if has_rival:
            rival = run(["xsltproc", BENCH / "turn.xsl", *files])[1]
            times.setdefault("xsltproc", []).append(rival)
    return times


def measure_jobs():
    """Processor and wall time a page, and peak memory, of each job, by kind and number of pages."""
    results = {}
    for turn in range(max(JOBS.values())):
        for count in (count for count, times in JOBS.items() if turn < times):
            for kind in KINDS:
                _, processor, wall, peak = bench("job", kind, count).split()
                results.setdefault((kind, count), []).append(
                    (float(processor) / count, float(wall) / count, int(peak)))
    return results


def named(kind, name, content=""):
    return f'<psf:{kind} name="{name}">{content}</psf:{kind}>'


def large_tickets(count):
    """Tickets by which a page is turned, with `count` of something each, by its name."""
    landscape = named("Feature", "psk:PageOrientation", named("Option", "psk:Landscape"))
    parameters = "".join(
        named("Feature", f"psk:F{n}", named("Option", "psk:O", named(
            "ScoredProperty", "psk:S", named("ParameterRef", f"psk:P{n}"))))
        + named("ParameterInit", f"psk:P{n}", "<psf:Value>1</psf:Value>") for n in range(count))
    features = "".join(named("Feature", f"psk:F{n}", named("Option", "psk:O")) for n in range(count))
    foreign = "".join(f'<psf:Feature xmlns:p{n}="urn:n{n}" name="p{n}:F"/>' for n in range(count))
    contents = {"parameters": landscape + parameters, "features": landscape + features,
                "features of one name": landscape * count, "features of as many namespaces": landscape + foreign}
    return {name: LANDSCAPE[:LANDSCAPE.index("><") + 1] + content + "</psf:PrintTicket>"
            for name, content in contents.items()}


def measure_tickets():
    """The times of a turned page by what its ticket has, for each number of that."""
    times = {}
    page = keep("small.fpage", SMALL_PAGE.encode())
    for _ in range(3):
        for count in TICKET_SIZES:
            for name, ticket in large_tickets(count).items():
                file = keep("large.xml", ticket.encode())
                _, processor, wall, _ = bench("job", "turned", 1, windows_path(page), windows_path(file)).split()
                times.setdefault((name, count), []).append((float(processor), float(wall)))
    return times


def print_growth(what, times):
    """Median times by the number of something, and their ratio."""
    few, many = sorted({count for _, count in times})
    rows = []
    for name in dict.fromkeys(name for name, _ in times):
        costs = {count: [median(times[name, count], clock) for clock in (0, 1)] for count in (few, many)}
        ratios = [costs[many][clock] / max(costs[few][clock], 0.01) for clock in (0, 1)]
        rows.append((name, *(f"{costs[count][0]:.2f} ({costs[count][1]:.2f}) s" for count in (few, many)),
                     f"{ratios[0]:.1f} ({ratios[1]:.1f})"))
    table((what, f"{few:,}", f"{many:,}", "ratio"), rows)


def write_package(name, markups, parts=(), targets=(), overrides=()):
    """A document of pages that share a ticket, by which all of them are turned. It has empty further parts, targets
    of relationships of the first page, and parts with a content type of their own."""
    relationships = '<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">{}</Relationships>'
    relationship = '<Relationship Id="r" Type="{}" Target="{}"/>'
    types = "".join(f'<Default Extension="{extension}" ContentType="application/vnd.ms-package.xps-{kind}+xml"/>'
                    for extension, kind in (("fdseq", "fixeddocumentsequence"), ("fdoc", "fixeddocument"),
                                            ("fpage", "fixedpage")))
    types += ('<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
              '<Default Extension="xml" ContentType="application/vnd.ms-printing.printticket+xml"/>')
    types += "".join(f'<Override PartName="{part}" ContentType="text/plain"/>' for part in overrides)
    required = "".join(f'<Relationship Id="t{number}" Type="{XPS}/required-resource" Target="{target}"/>'
                       for number, target in enumerate(targets))
    path = WORK / name
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr("[Content_Types].xml",
                         f'<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">{types}</Types>')
        archive.writestr("_rels/.rels", relationships.format(relationship.format(XPS + "/fixedrepresentation", "/s.fdseq")))
        archive.writestr("s.fdseq", f'<FixedDocumentSequence xmlns="{XPS}"><DocumentReference Source="/d.fdoc"/></FixedDocumentSequence>')
        archive.writestr("d.fdoc", f'<FixedDocument xmlns="{XPS}">'
                         + "".join(f'<PageContent Source="/{number}.fpage"/>' for number in range(len(markups)))
                         + "</FixedDocument>")
        archive.writestr("ticket.xml", LANDSCAPE)
        for number, markup in enumerate(markups):
            archive.writestr(f"{number}.fpage", markup)
            archive.writestr(f"_rels/{number}.fpage.rels",
                             relationships.format(relationship.format(XPS + "/printticket", "/ticket.xml")
                                                  + (required if number == 0 else "")))
        for part in (*parts, *overrides):
            archive.writestr(part[1:], "")
    return path


def host_command(package):
    return [WINE_RUN, BIN / "xpsfilterhost.exe", "run", windows_path(package), "-o", windows_path(WORK / "out.xps")]


def run_host(package):
    return run(host_command(package))[1]


def take_away(time, other):
    return tuple(time[clock] - other[clock] for clock in (0, 1))


def measure_document(pages):
    """The times of a whole document of turned pages, without the program's start, and of the usual tools for it."""
    small = write_package("start.xps", [SMALL_PAGE])
    whole = write_package("document.xps", [page.read_text() for page in pages]).resolve()
    folder = WORK / "unpacked"
    tools = (f"set -e; unzip -qo {whole} -d {folder}; cd {folder}; rm -f ../packed.xps;"
             f" for page in *.fpage; do xsltproc -o $page {BENCH / 'turn.xsl'} $page; done; zip -q6r ../packed.xps .")
    ours, theirs = [], []
    for _ in range(ROUNDS):
        ours.append(take_away(run_host(whole), run_host(small)))
        shutil.rmtree(folder, ignore_errors=True)
        theirs.append(run(["sh", "-c", tools])[1])
    return ours, theirs


def crowded_package(what, count):
    others = [f"/other/{number}.xml" for number in range(count)]
    return write_package("crowded.xps", **{
        "pages": {"markups": [SMALL_PAGE] * count},
        "parts that nothing names": {"markups": [SMALL_PAGE], "parts": others},
        "relationships of a page": {"markups": [SMALL_PAGE], "targets": ["/ticket.xml"] * count},
        "content types of single parts": {"markups": [SMALL_PAGE], "overrides": others},
        "characters in a part's name": {"markups": [SMALL_PAGE], "parts": [f"/{'n' * count}.xml"]},
    }[what])


def measure_crowds():
    """The times of a document by what it has many of, without the program's start."""
    times = {}
    start = write_package("start.xps", [SMALL_PAGE])
    for _ in range(3):
        for what in CROWDS:
            for count in CROWD_SIZES:
                cost = take_away(run_host(crowded_package(what, count)), run_host(start))
                times.setdefault((what, count), []).append(cost)
    return times


def measure_host(name, markup_file, count):
    """Processor and wall time a page of the host's program, what its start takes left out, and of the module."""
    markup = markup_file.read_text()
    whole, one = write_package(f"{name}.xps", [markup] * count), write_package(f"{name}1.xps", [markup])
    hosts, modules = [], []
    for _ in range(HOST_ROUNDS):
        pages = take_away(run_host(whole), run_host(one))
        hosts.append(tuple(time / (count - 1) for time in pages))
        _, processor, wall, _ = bench("job", "turned", count, windows_path(markup_file)).split()
        modules.append((float(processor) / count, float(wall) / count))
    return hosts, modules


def measure_memory():
    """The peaks, in bytes, of the program and of the module alone in the longest job of turned pages."""
    package = write_package("long.xps", [SMALL_PAGE] * max(JOBS))
    return run(host_command(package))[2], run([WINE_RUN, BIN / "bench.exe", "job", "turned", str(max(JOBS))])[2]


def median(times, clock):
    return statistics.median(time[clock] for time in times)


def mean(times, clock):
    """For jobs so short that Wine's steps of 10 ms show in each."""
    return statistics.fmean(time[clock] for time in times)


def ratio(times, others):
    """Medians of the ratios of what was measured together."""
    cells = []
    for clock in (0, 1):
        ratios = [time[clock] / other[clock] for time, other in zip(times, others) if other[clock] > 0]
        cells.append(f"{statistics.median(ratios):.2f}, {min(ratios):.2f} to {max(ratios):.2f}")
    return f"{cells[0]} ({cells[1]})"


def table(head, rows):
    print("\n| " + " | ".join(head) + " |\n|" + "---|" * len(head))
    for row in rows:
        print("| " + " | ".join(row) + " |")


def print_ratios(markup, jobs, hosts, document, memory):
    rows = [("a document of eight turned pages of 1 MB, to unzip, xsltproc and zip -6", ratio(*document))]
    for name, (host, module) in hosts.items():
        costs = [median(host, clock) / median(module, clock) for clock in (0, 1)]
        rows.append((f"host and module to module, a page, {name}", f"{costs[0]:.2f} ({costs[1]:.2f})"))
    for what, first, second in (("rewrite to parse that reads all attributes", "rewrite", "attributes"),
                                ("rewrite to bare parse", "rewrite", "parse"),
                                ("floor to parse that reads all attributes", "floor", "attributes"),
                                ("rewrite to floor", "rewrite", "floor")):
        for name, times in markup.items():
            rows.append((f"{what}, {name}", ratio(times[first], times[second])))
    real = markup["real pages"]
    rows.append(("xsltproc to rewrite, real pages", ratio(real["xsltproc"], real["rewrite"])))
    most = max(JOBS)
    for kind in KINDS:
        costs = [mean(jobs[kind, most], clock) / mean(jobs[kind, 100], clock) for clock in (0, 1)]
        rows.append((f"cost of a page, {kind}, {most:,} pages to 100", f"{costs[0]:.2f} ({costs[1]:.2f})"))
        growth = median(jobs[kind, most], 2) - median(jobs[kind, 10], 2)
        rows.append((f"peak memory, {kind}, {most:,} pages less 10", f"{growth / 1e6:.1f} MB"))
    program, module = memory
    rows.append((f"peak memory, program less module, {most:,} turned pages", f"{(program - module) / 1e6:.1f} MB"))
    table(("ratio", "processor time (on the clock)"), rows)


def print_calls():
    counts, kinds = {}, []
    for line in bench("calls").decode().splitlines():
        kind, name, count = line.split("\t")
        counts.setdefault(name, {})[kind] = count
        kinds += [] if kind in kinds else [kind]
    table(("calls for a small page", *kinds),
          [(name, *(by_kind.get(kind, "") for kind in kinds)) for name, by_kind in sorted(counts.items())])


def print_figures(markup, sizes, jobs, hosts):
    rows = []
    for name, times in markup.items():
        for what, taken in times.items():
            speeds = [sizes[name] * COPIES / 1e6 / median(taken, clock) for clock in (0, 1)]
            rows.append((f"{what}, {name}", f"{speeds[0]:.1f} ({speeds[1]:.1f}) MB/s"))
    for (kind, count), costs in sorted(jobs.items()):
        speeds = [1 / max(mean(costs, clock), 1e-9) for clock in (0, 1)]
        rows.append((f"{kind}, {count:,} small pages", f"{speeds[0]:,.0f} ({speeds[1]:,.0f}) pages/s, "
                     f"{median(costs, 2) / 1e6:.1f} MB at most"))
    for name, (host, module) in hosts.items():
        for who, costs in (("host and module", host), ("module", module)):
            rows.append((f"{who}, a page, {name}",
                         f"{median(costs, 0) * 1e3:.2f} ({median(costs, 1) * 1e3:.2f}) ms"))
    table(("figure", "processor time (on the clock)"), rows)


def main():
    pages = {"real pages": make_real_pages(), "small Glyphs": make_glyphs_pages()}
    require_same_turn(pages["real pages"][0])
    small_page = keep("small.fpage", SMALL_PAGE.encode())
    markup = {name: measure_markup(files, name == "real pages") for name, files in pages.items()}
    jobs = measure_jobs()
    hosts = {"small pages": measure_host("small", small_page, SMALL_PAGES),
             "real pages": measure_host("real", pages["real pages"][0], REAL_PAGES)}
    sizes = {name: sum(os.path.getsize(file) for file in files) for name, files in pages.items()}
    print_ratios(markup, jobs, hosts, measure_document(pages["real pages"]), measure_memory())
    print_calls()
    print_figures(markup, sizes, jobs, hosts)
    print_growth("a turned page whose ticket has many", measure_tickets())
    print_growth("a document with many", measure_crowds())


main()
