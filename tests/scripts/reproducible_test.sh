#!/usr/bin/env bash
# Builds the module a second time, from a copy of the tree in another folder, and compares the bytes:
# reproducible_test.sh PRESET MODULE WORK-FOLDER
set -euo pipefail
preset=$1 module=$2 work=$3
cd "$(dirname "$0")/../.."

rm -rf "$work"
mkdir -p "$work/build"
git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$work"
ln -s "$PWD/build/libzip" "$PWD/build/expat" "$work/build"
cd "$work"
{
    cmake --preset "$preset"
    cmake --build --preset "$preset" --target pagevalidatefilter
} >build.log 2>&1 || {
    tail -n 20 build.log
    exit 1
}
cmp "$module" "build/$preset/bin/pagevalidatefilter.dll"
