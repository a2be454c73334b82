#!/bin/sh
# Parses one macOS source for a Mac target against our stand-in framework declarations, so that a
# wrong argument count, a wrong type or a misspelt selector in a file we cannot build here still
# fails a test. It checks syntax and types only: nothing is compiled, linked or run.
#
#   check_mac_source.sh SOURCE [extra clang options...]
# CLANGXX names the compiler (clang++ when unset). Run from anywhere: relative paths are taken
# from the project root. Prints the command and clang's diagnostics and exits with clang's status.
set -eu

root=$(cd "$(dirname "$0")/../.." && pwd)
compiler=${CLANGXX:-clang++}
if [ $# -lt 1 ]; then
    echo "usage: $0 SOURCE [clang options...]" >&2
    exit 2
fi
source=$1
shift

cd "$root"
# clang predefines __nonnull for Apple targets, which clashes with glibc's own use of the name;
# the C++ library is the host's, as the declarations stand in only for Apple's frameworks. The
# warnings are the project's own (cmake/warnings.cmake), as errors, so that a macOS file is held
# to what every other file is; the declarations are system headers and stay out of them.
set -x
exec "$compiler" -target x86_64-apple-macos13 -U__nonnull -D_GNU_SOURCE \
    -nostdinc++ -isystem /usr/include/c++/12 -isystem /usr/include/x86_64-linux-gnu/c++/12 \
    -isystem /usr/include/x86_64-linux-gnu -isystem macos/declarations -I src \
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align \
    -Woverloaded-virtual -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough -Werror \
    -x objective-c++ -std=c++20 -fobjc-arc -fblocks -fsyntax-only "$@" "$source"
