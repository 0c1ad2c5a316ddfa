#!/usr/bin/env python3
"""Asks an XML library that is not ours about tickets that other tests wrote: ticketqueries_test.py TABLE FOLDER ..."""

import subprocess
import sys
from pathlib import Path

NAMESPACES = ["-N", "f=http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework",
              "-N", "i=http://www.w3.org/2001/XMLSchema-instance"]

table, *folders = map(Path, sys.argv[1:])
failures = 0
for line in table.read_text(encoding="utf-8").splitlines():
    if line and not line.startswith("#"):
        name, expected, query = (cell.strip() for cell in line.split("||"))
        ticket = next(folder / name for folder in folders if (folder / name).exists())
        told = subprocess.run(["xmlstarlet", "sel", "-T", *NAMESPACES, "-t", "-v", query, str(ticket)], stdout=subprocess.PIPE,
                              encoding="utf-8").stdout
        if told != expected:
            print(f"{name}: {query} is {told!r}, not {expected!r}")
            failures += 1
sys.exit(failures != 0)
