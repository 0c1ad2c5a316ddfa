#!/bin/sh
# Whether the offline prntvpt.dll exports the platform's ordinals, the host's two functions and nothing more:
# exports_test.sh DLL OBJDUMP
exported=$("$2" -p "$1" | awk '
    /^\t\[ *[0-9]+\] \+base\[ *[0-9]+\]/ { gsub(/[][+]|base/, " "); ordinal[$1] = $2 }
    /^\t\[ *[0-9]+\] [A-Za-z]+$/ { gsub(/[][]/, " "); print ordinal[$1], $2 }' | sort -n)
expected="2 PTOpenProvider
4 PTCloseProvider
6 PTGetPrintCapabilities
7 PTMergeAndValidatePrintTicket
100 SetDeviceDescription
101 GetOpenProviderCount"
[ "$exported" = "$expected" ] || { echo "$exported" >&2; exit 1; }
