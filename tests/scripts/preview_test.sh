#!/usr/bin/env bash
# Holds scripts/preview to what it promises: preview_test.sh PREVIEW PACKAGES WORK-FOLDER
set -euo pipefail
preview=$1 packages=$2 work=$3
mkdir -p "$work"
cd "$work"
rm -f ./*.png ./*.xps
status=0

# expect OUTPUT ARG ...: the only line that preview prints, on either stream
expect() {
    local wanted=$1 printed
    shift
    printed=$("$preview" "$@" 2>&1 || true)
    if [ "$printed" != "$wanted" ]; then
        printf 'preview %s\n  printed:  %s\n  expected: %s\n' "$*" "$printed" "$wanted"
        status=1
    fi
}

cp "$packages/sample.xps" ./one%d.xps
gs -q -dNOPAUSE -dBATCH -sDEVICE=xpswrite -sOutputFile=long.xps -c '14 {72 72 300 300 rectfill showpage} repeat'

expect 'sheet.png: 5 of 5 pages' ./one%d.xps "$packages/report.xps" sheet.png
expect 'long.png: 12 of 14 pages, the first ones; --pages shows others' long.xps "$packages/plain.xps" long.png
expect 'some.png: 4 of 14 pages' --pages 1-2,13,14 long.xps "$packages/plain.xps" some.png
usage='usage: preview IN.xps OUT.xps PICTURE.png [--pages 1-3,7]'
expect "preview: $usage" long.xps
expect "preview: there is no option --page; $usage" long.xps long.xps x.png --page 3
expect 'preview: --pages 2-: is no list such as 1-3,7' long.xps long.xps x.png --pages 2-
expect 'preview: --pages 13-15: the pages are 1 to 14' long.xps long.xps x.png --pages 1,13-15
expect 'preview: none.xps: there is no such file' long.xps none.xps x.png
expect "preview: $packages/not-a-zip.xps: cannot be read as XPS: cannot recognize zip archive" \
    "$packages/not-a-zip.xps" long.xps x.png
expect "preview: $packages/no-document.xps: cannot be read as XPS: it has no page" "$packages/no-document.xps" long.xps x.png
expect 'preview: none/x.png: there is no such folder' long.xps long.xps none/x.png
expect 'preview: .: is a folder' long.xps long.xps .
[ ! -e x.png ] || { echo 'a picture is there after a failure'; status=1; }

# Three pairs in a row: the mountains of the second page before, the bars of another one after; nothing in the
# place of the fifth one after.
for place in 600,120,2E7D32 828,140,007F7F 760,300,F2F2F2 600,400,E3F2FD; do
    is=$(convert sheet.png -format "%[hex:p{${place%,*}}]" info:)
    [[ $is == ${place##*,}* ]] || { echo "at ${place%,*} the sheet is $is"; status=1; }
done
exit $status
