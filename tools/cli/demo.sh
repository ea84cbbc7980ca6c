#!/bin/sh
# make demo: runs the varnice command on the bundled sample text.
set -e
varnice=${1:-build/tools/cli/varnice}
run() { echo "\$ varnice $*"; "$varnice" "$@"; echo; }
run version
run list
