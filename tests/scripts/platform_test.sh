#!/usr/bin/env bash
# Runs tests of the module's code over the platform's own print ticket provider and spooler, for the printer
# lp0 of a print server that lives as long as they do: platform_test.sh FOLDER PROGRAM...
# FOLDER, which is made anew and removed again, takes all that the run writes. Exits with 77 where there is no
# print server to run.
set -euo pipefail
folder=$1
shift
PATH=$PATH:/usr/sbin
for program in cupsd lpadmin; do
    if ! command -v $program >/dev/null; then
        echo "skipped: $program is not installed (Debian: cups-daemon, cups-client)"
        exit 77
    fi
done

rm -rf "$folder"
mkdir -p "$folder/spool" "$folder/prefix"
server=
clean_up() {
    if [ -n "$server" ]; then
        kill "$server"
        wait "$server" || true
    fi
    WINEPREFIX=$folder/prefix wineserver -k || true
    rm -rf "$folder"
}
trap clean_up EXIT

# The server listens on a socket in the folder and touches nothing outside of it.
cat >"$folder/files.conf" <<END
ServerRoot $folder
StateDir $folder
CacheDir $folder
RequestRoot $folder/spool
TempDir $folder/spool
Printcap $folder/printcap
AccessLog $folder/log
ErrorLog $folder/log
PageLog $folder/log
FileDevice Yes
END
cat >"$folder/server.conf" <<END
Listen $folder/socket
Browsing No
WebInterface No
DefaultAuthType None
<Location />
Allow all
</Location>
<Policy default>
<Limit All>
Allow all
</Limit>
</Policy>
END

# Wine writes the printers that it finds into its registry and onto its drive. The project's prefix is to stay
# without: here its files are links, its registry a copy.
prefix=$(readlink -f "${WINEPREFIX:-$(dirname "$0")/../../build/wineprefix}")
export WINEPREFIX=$folder/prefix CUPS_SERVER=$folder/socket
cp -as "$prefix/drive_c" "$WINEPREFIX"
cp -a "$prefix/dosdevices" "$prefix"/*.reg "$prefix/.update-timestamp" "$WINEPREFIX"

cupsd -f -c "$folder/server.conf" -s "$folder/files.conf" >"$folder/output" 2>&1 &
server=$!
for _ in {1..100}; do
    [ ! -S "$CUPS_SERVER" ] || break
    sleep 0.1
done
# It says that queues without a driver are on their way out, which is no news.
if ! lpadmin -p lp0 -E -v file:///dev/null -m raw 2>>"$folder/output"; then
    cat "$folder/output" "$folder/log" >&2
    exit 1
fi
"$@"
