#!/usr/bin/env bash
# Holds what our programs and DLLs import against the DLLs of the operating system: a driver package ships
# nothing else. And the module exports its two functions only, from a hardened image with a version.
# imports_test.sh FOLDER OBJDUMP
set -euo pipefail

allowed=(advapi32.dll gdi32.dll gdiplus.dll kernel32.dll msvcrt.dll ntdll.dll ole32.dll oleaut32.dll prntvpt.dll
    shell32.dll user32.dll winspool.drv ws2_32.dll)

mapfile -t binaries < <(find "$1" -name '*.exe' -o -name '*.dll')
if [ ${#binaries[@]} -eq 0 ]; then
    echo "no binary in $1"
    exit 1
fi
failed=0
for binary in "${binaries[@]}"; do
    imports=$("$2" -p "$binary" | sed -n 's/^\s*DLL Name: //p' | tr '[:upper:]' '[:lower:]' | sort -u)
    foreign=$(grep -vxF "$(printf '%s\n' "${allowed[@]}")" <<<"$imports" || true)
    echo "${binary##*/}: $(tr '\n' ' ' <<<"$imports")"
    if [ -n "$foreign" ]; then
        echo "${binary##*/} imports what the operating system does not bring:" "$foreign"
        failed=1
    fi
done

module=$1/pagevalidatefilter.dll
headers=$("$2" -p "$module")
exports=$(sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\s\+\[.* //p' <<<"$headers" | tr '\n' ' ')
resources=$("$2" -s -j .rsrc "$module" | sed 's/.*  //' | tr -d '\n')
expect() {
    if ! grep -qE "$2" <<<"$1"; then
        echo "pagevalidatefilter.dll: no $2"
        failed=1
    fi
}
expect "$exports" '^DllCanUnloadNow DllGetClassObject $'
# Without a name, too: lld's table begins with an entry that exports nothing.
expect "exports: $(grep -c 'Export RVA$' <<<"$headers")" 'exports: 2$'
for hardening in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
    expect "$headers" "$hardening"
done
for text in VS_VERSION_INFO CompanyName ProductName; do
    expect "$resources" "$(sed 's/./&./g; s/\.$//' <<<"$text")"
done
# What a function with an array does when it was written past its end.
grep -qF 'stack smashing detected' "$module" || {
    echo "pagevalidatefilter.dll: no stack protector"
    failed=1
}
exit $failed
