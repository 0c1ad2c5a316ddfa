#!/bin/sh
# Whether the offline prntvpt.dll exports the platform's ordinals, the host's two functions and nothing more:
# exports_test.sh DLL OBJDUMP
# First addresses, "[0] +base[2] 1a2b Export RVA"; then names, "[0] Name" or "[0] +base[2] 0000 Name" (newer binutils).
exported=$("$2" -p "$1" | awk '
    !/^\t\[ *[0-9]+\]/ { next }
    { gsub(/[][]|\+base/, " ") }
    NF == 5 { ordinal[$1] = $2 }
    NF == 2 || NF == 4 { print ordinal[$1], $NF }' | sort -n)
expected="2 PTOpenProvider
4 PTCloseProvider
6 PTGetPrintCapabilities
7 PTMergeAndValidatePrintTicket
100 SetDeviceDescription
101 GetOpenProviderCount"
[ "$exported" = "$expected" ] || { echo "$exported" >&2; exit 1; }
