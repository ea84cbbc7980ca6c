#!/bin/sh
# make demo: runs the varnice command on the bundled sample text.
set -e
varnice=${1:-build/tools/cli/varnice}
run() { echo "\$ varnice $*"; "$varnice" "$@"; echo; }
run version
run list
run char U+3042 "Aé漢ｱ" U+3000
