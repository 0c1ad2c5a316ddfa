#!/usr/bin/env python3
"""Takes the packages of the tests apart into seeds: makeseeds.py PACKAGES OUTPUT-FOLDER"""

import hashlib
import re
import sys
import zipfile
from pathlib import Path

LARGEST = 8192


def main():
    packages, output = Path(sys.argv[1]), Path(sys.argv[2])

    def add(fuzzer, content, name=None):
        folder = output / fuzzer
        folder.mkdir(parents=True, exist_ok=True)
        (folder / (name or hashlib.sha1(content).hexdigest()[:12])).write_bytes(content)

    for path in sorted(packages.glob("*.xps")):
        if path.stat().st_size < LARGEST:
            add("package", path.read_bytes(), path.name)
        try:
            archive = zipfile.ZipFile(path)
        except zipfile.BadZipFile:
            continue
        with archive:
            for item in archive.infolist():
                add("partname", item.filename.encode())
                try:
                    content = archive.read(item)
                except (zipfile.BadZipFile, NotImplementedError, RuntimeError):
                    continue
                if item.filename.endswith(".png") or len(content) > LARGEST:
                    continue
                add("markup", content)
                for value in re.findall(rb'="(-?[0-9.]+)"', content):
                    add("number", value)
                for value in re.findall(rb'="([-0-9.]+(?:,[-0-9.]+){3})"', content):
                    add("box", value)
                for target in re.findall(rb'(?:Target|Source)="([^"]*)"', content):
                    add("partname", target)


if __name__ == "__main__":
    main()
