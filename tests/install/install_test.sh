#!/bin/sh
# Installs the build into a fresh prefix and uses it as a stranger would: the
# command from its bin folder, a C program through pkg-config and a C++ program
# through find_package. Nothing may reach back into the source or build tree.
# usage: install_test.sh BUILD_DIR SOURCE_DIR C_COMPILER CMAKE
set -eu
build=$1 src=$2 cc=$3 cmake=$4
work=$(mktemp -d "${TMPDIR:-/tmp}/varnice-install.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
fail() { echo "FAIL: $*" >&2; exit 1; }

"$cmake" --install "$build" --prefix "$prefix" >"$work/install.log" || { cat "$work/install.log"; fail "install"; }

# The library with its SONAME links, the manual, the headers.
lib=$(ls -d "$prefix"/lib*/libvarnice.so)
libdir=$(dirname "$lib")
[ -L "$lib" ] || fail "libvarnice.so is not a link"
soname=$(readelf -d "$lib" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = libvarnice.so.2 ] || fail "SONAME is '$soname'"
[ -L "$libdir/$soname" ] || fail "no $soname link"
[ -f "$prefix/share/man/man1/varnice.1" ] || fail "no manual page"
[ -f "$prefix/include/varnice/varnice.h" ] || fail "no varnice.h"
[ -f "$prefix/include/varnice/version.h" ] || fail "no version.h"
# Implementation headers stay in the source tree.
for h in capi/call_arena.h codepages/mbcs_engine.h charprops/property_tables.h; do
  [ ! -e "$prefix/include/varnice/$h" ] || fail "internal header $h installed"
done

# The command runs from anywhere, finding the library relative to itself.
readelf -d "$prefix/bin/varnice" | grep -q 'R.*PATH.*\$ORIGIN/\.\./lib' || fail "command run path"
moved=$work/moved
mv "$prefix" "$moved"
env -u LD_LIBRARY_PATH "$moved/bin/varnice" version | grep -q '^Version 2\.1\.0' || fail "installed command"
ldd "$moved/bin/varnice" | grep libvarnice | grep -q "$moved" || fail "command found another library"
prefix=$moved

# Plain C through pkg-config; the headers compile as C99 with warnings as errors.
export PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
cflags=$(pkg-config --cflags varnice)
libs=$(pkg-config --libs varnice)
[ "$(pkg-config --modversion varnice)" = 2.1.0 ] || fail "pkg-config version"
# shellcheck disable=SC2086
"$cc" -std=c99 -Wall -Wextra -pedantic-errors -Werror $cflags "$src/tests/install/consumer.c" \
  $libs -Wl,-rpath,"$(pkg-config --variable=libdir varnice)" -o "$work/consumer_c" || fail "C consumer build"
"$work/consumer_c" || fail "C consumer run"

# C++ through the CMake package.
"$cmake" -S "$src/tests/install/consumer_cpp" -B "$work/cpp" -G Ninja \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >"$work/cpp.log" 2>&1 ||
  { cat "$work/cpp.log"; fail "C++ consumer configure"; }
"$cmake" --build "$work/cpp" >>"$work/cpp.log" 2>&1 || { cat "$work/cpp.log"; fail "C++ consumer build"; }
"$work/cpp/consumer" || fail "C++ consumer run"
# The SQLite extension, when built, loads from the prefix with its library.
if [ -f "$prefix/lib/varnice/varnice.so" ] && command -v sqlite3 >/dev/null; then
  out=$(sqlite3 :memory: ".load $prefix/lib/varnice/varnice" "SELECT varnice_decode(x'93fa967b8cea', 'Shift_JIS')")
  [ "$out" = "日本語" ] || fail "installed SQLite extension: '$out'"
fi
echo "install test passed"
