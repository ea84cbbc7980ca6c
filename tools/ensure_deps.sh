#!/bin/sh
# Installs what the build needs when a fresh machine lacks it (Debian packages).
# `sh tools/ensure_deps.sh` checks the build and test tools; add `bench` for the
# benchmark libraries.
set -e
missing=""
need() { # need PACKAGE TEST...
  pkg=$1; shift
  if ! "$@" >/dev/null 2>&1; then missing="$missing $pkg"; fi
}
need cmake        command -v cmake
need ninja-build  command -v ninja
need g++          command -v g++
need python3      command -v python3
need libgtest-dev test -f /usr/include/gtest/gtest.h
need pkg-config   command -v pkg-config
need sqlite3      command -v sqlite3
need libsqlite3-dev test -f /usr/include/sqlite3ext.h
if [ "${1:-}" = bench ]; then
  need libbenchmark-dev test -f /usr/include/benchmark/benchmark.h
  need libicu-dev       test -f /usr/include/unicode/ucnv.h
fi
[ -z "$missing" ] && exit 0
echo "installing:$missing"
SUDO=""
[ "$(id -u)" = 0 ] || SUDO=sudo
$SUDO apt-get update -q
# shellcheck disable=SC2086
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -q $missing
