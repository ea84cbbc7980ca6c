#!/bin/sh
# make demo: runs the varnice command on the bundled sample texts.
set -e
varnice=${1:-build/tools/cli/varnice}
samples=examples/samples
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
run() { echo "\$ varnice $*"; "$varnice" "$@"; echo; }
run version
run char U+3042 "Aé漢ｱ" U+3000
# Japanese in three legacy encodings and a European text in ISO-8859-1, each
# converted to UTF-8 naming its encoding, then again letting varnice detect it.
for pair in japanese.sjis.txt:Shift_JIS japanese.eucjp.txt:EUC-JP japanese.iso2022jp.txt:ISO-2022-JP \
            european.latin1.txt:ISO-8859-1; do
  file=$samples/${pair%%:*}
  run convert -f "${pair#*:}" -t UTF-8 "$file"
  "$varnice" convert -f "${pair#*:}" -t UTF-8 -o "$tmp/named" "$file"
  "$varnice" convert -f auto -t UTF-8 -o "$tmp/detected" "$file"
  cmp -s "$tmp/named" "$tmp/detected" && echo "(varnice convert -f auto gives the same text)" && echo
done
run detect $samples/*.txt
run detect -v $samples/japanese.eucjp.txt
echo "\$ varnice convert -f UTF-8 -t ISO-8859-1 --on-error=fail $samples/japanese.utf8.txt"
"$varnice" convert -f UTF-8 -t ISO-8859-1 --on-error=fail $samples/japanese.utf8.txt || echo "(exit status $?)"
