#!/usr/bin/env bash
# Sets up a fresh machine, builds the program and runs it.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-dependencies.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTLE_TESTS=OFF >/dev/null
cmake --build build/release -j"$(nproc)" --target vantle-control

program=build/release/bin/vantle-control
if [ $# -gt 0 ]; then
  exec "$program" "$@"
fi
# The menu-bar interface is not built yet, so show what the program can already do.
"$program" --verify-localization
"$program" --diagnose
exec "$program"
