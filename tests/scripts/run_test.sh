#!/usr/bin/env bash
# Holds scripts/run to how it hands its arguments on: run_test.sh RUN WORK-FOLDER
# It runs as a copy, with stand-ins for what it calls.
set -euo pipefail
script=$1 work=$2
rm -rf "$work"
mkdir -p "$work"/{scripts,cmake,build,tools}
cp "$script" "$work/scripts/run"
printf '#!/bin/sh\necho "setup: a step"\n' >"$work/scripts/setup"
printf '#!/bin/sh\n[ "$1" != --build ] || echo "[1/2] a step"\n' >"$work/tools/cmake"
printf '#!/bin/sh\nshift\necho "$@"\n' >"$work/cmake/wine-run"
chmod +x "$work"/{scripts/setup,tools/cmake,cmake/wine-run}
cd "$work"
PATH=$work/tools:$PATH
status=0

# expect OUTPUT ARG ...: what the program would be started with
expect() {
    local wanted=$1 printed
    shift
    printed=$(scripts/run "$@" 2>errors || true)
    [ -n "$printed" ] || printed=$(<errors)
    if [ "$printed" != "$wanted" ]; then
        printf 'run %s\n  starts:   %s\n  expected: %s\n' "$*" "$printed" "$wanted"
        status=1
    fi
}

touch in.xps
expect "run build/mingw-release/tests/packages/sample.xps -o build/sample-out.xps"
expect "run in.xps -o a/out.xps --json --media ISOA4" in.xps a/out.xps --json --media ISOA4
expect "run $work/in.xps --json --dry-run" "$work/in.xps" --json --dry-run
expect "run: name the document to write, as scripts/run in.xps OUT.xps, or say --dry-run" in.xps --json
expect "run: none.xps: there is no such file" none.xps
expect "tickets in.xps" tickets in.xps
expect "--help" --help
if [ "$(<errors)" != $'setup: a step\nrun: building in 2 steps' ]; then
    echo "the error output is: $(<errors)"
    status=1
fi

# A program that fails without a word.
printf '#!/bin/sh\nexit 1\n' >"$work/tools/wine"
chmod +x "$work/tools/wine"
shown=$("$(dirname "$script")/../cmake/wine-run" bin/program.exe 2>&1) && status=1
[ "$shown" = "program: ended with status 1 and no message" ] || { echo "wine-run: $shown"; status=1; }

# A program that an interrupt does not end, in a shorter time than that of people.
printf '#!/bin/sh\ntrap "" INT\nexec %s 100\n' "$(command -v sleep)" >"$work/tools/wine"
printf '#!/bin/sh\n' >"$work/tools/sleep"
chmod +x "$work/tools/sleep"
ended=0
shown=$(timeout --preserve-status -s INT -k 20 1 "$(dirname "$script")/../cmake/wine-run" bin/program.exe 2>&1) || ended=$?
[ "$ended $shown" = "130 program: interrupted" ] || { echo "wine-run, interrupted: $ended $shown"; status=1; }
exit $status
