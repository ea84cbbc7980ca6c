#!/bin/sh
# Shows the SQLite extension at work on a small table: sh hosts/sqlite/demo.sh BUILD_DIR
set -e
ext="$1/hosts/sqlite/varnice.so"
if ! command -v sqlite3 >/dev/null || [ ! -f "$ext" ]; then
  echo "(SQLite demo skipped: needs the sqlite3 shell and libsqlite3-dev; run 'make deps')"
  exit 0
fi
echo "$ sqlite3 -cmd \".load ${ext%.so}\" :memory: < hosts/sqlite/demo.sql"
sqlite3 -cmd ".load ${ext%.so}" :memory: < "$(dirname "$0")/demo.sql"
echo
echo "-- Errors are SQL errors: an unknown encoding, a character cut off under 'strict'"
for sql in "SELECT varnice_decode(x'93fa', 'Shift-JISX')" \
           "SELECT varnice_decode(x'93fa967b8c', 'Shift_JIS', 'strict')"; do
  echo "sqlite> $sql;"
  sqlite3 -cmd ".load ${ext%.so}" :memory: "$sql" 2>&1 || true
done
