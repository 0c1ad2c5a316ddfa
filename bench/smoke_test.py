#!/usr/bin/env python3
"""The bench program at work: smoke_test.py WINE_RUN BENCH_EXE

Holds what does not depend on the machine: the calls that a page costs, and that jobs do not gather memory.
"""
import subprocess
import sys

# By what becomes of a page: none of its tickets is loaded twice but the one that is rewritten, which comes from
# the page's part again, and every page costs one merge.
# A page's start is looked at for a document type before it is read.
CALLS = {
    "inherited": {"GetXpsPart": 1, "GetPrintTicket page": 1, "SendFixedPage page": 1,
                  "PTMergeAndValidatePrintTicket": 1, "DOM documents loaded": 1},
}
CALLS["passed"] = CALLS["inherited"] | {"GetStream ticket": 1, "Seek ticket": 1, "ReadBytes ticket": 2,
                                        "DOM documents loaded": 2}
CALLS["refitted"] = CALLS["passed"] | {
    "GetPrintTicket page": 2, "GetStream ticket": 2, "Seek ticket": 2, "ReadBytes ticket": 4, "GetUri ticket": 1,
    "DeleteResource /Metadata/page_PT.xml": 1, "GetNewEmptyPart": 1, "WriteBytes new ticket": 2,
    "Close new ticket": 1, "SetPrintTicket page": 1, "DOM documents loaded": 3}
CALLS["turned"] = CALLS["refitted"] | {
    "WriteBytes new ticket": 1, "GetStream page": 1, "Seek page": 3, "ReadBytes page": 3, "GetWriteStream page": 1,
    "WriteBytes page": 1, "Close page": 1}

# A page's worth of DOM nodes that is never freed comes to some 70 KB. Under Wine 10 the platform keeps 10 KB of a
# refitted page (docs/reliability.md).
MEMORY_PER_PAGE = 20_000


def bench(*arguments):
    run = subprocess.run([*sys.argv[1:3], *arguments], capture_output=True, text=True, check=True)
    return run.stdout.splitlines()


def check_calls():
    found = {}
    for line in bench("calls"):
        kind, name, count = line.split("\t")
        found.setdefault(kind, {})[name] = float(count)
    for kind, expected in CALLS.items():
        assert found[kind] == expected, f"{kind}: {found[kind]} in place of {expected}"


def check_memory():
    pages = {10: 0, 110: 0}
    for kind in ("turned", "refitted"):
        for count in pages:
            pages[count] = int(bench("job", kind, str(count))[0].split()[-1])
        growth = (pages[110] - pages[10]) / 100
        assert growth < MEMORY_PER_PAGE, f"{kind}: {growth:.0f} bytes stay of each page"


check_calls()
check_memory()
