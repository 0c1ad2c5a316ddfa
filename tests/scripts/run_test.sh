#!/usr/bin/env bash
# Holds scripts/run to how it hands its arguments on: run_test.sh RUN WORK-FOLDER
# It runs as a copy, with stand-ins for what it calls.
set -euo pipefail
script=$1 work=$2
rm -rf "$work"
mkdir -p "$work"/{scripts,cmake,build,tools}
cp "$script" "$work/scripts/run"
printf '#!/bin/sh\n' | tee "$work/scripts/setup" >"$work/tools/cmake"
printf '#!/bin/sh\nshift\necho "$@"\n' >"$work/cmake/wine-run"
chmod +x "$work"/{scripts/setup,tools/cmake,cmake/wine-run}
cd "$work"
PATH=$work/tools:$PATH
status=0

# expect OUTPUT ARG ...: what the program would be started with
expect() {
    local wanted=$1 printed
    shift
    printed=$(scripts/run "$@" 2>&1 || true)
    if [ "$printed" != "$wanted" ]; then
        printf 'run %s\n  starts:   %s\n  expected: %s\n' "$*" "$printed" "$wanted"
        status=1
    fi
}

expect "run Z:$work/build/mingw-release/tests/packages/sample.xps -o Z:$work/build/sample-out.xps"
expect "run Z:$work/in.xps -o Z:$work/a/out.xps --json --media ISOA4" in.xps a/out.xps --json --media ISOA4
expect "run Z:$work/in.xps --dry-run --json" in.xps --dry-run --json
expect "run Z:$work/in.xps" in.xps
expect "run --help" --help
exit $status
