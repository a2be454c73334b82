#!/usr/bin/env bash
# Sets up a fresh machine, builds the program and runs it. On a machine without an X server or
# a sound server it starts private ones, so that the program has displays and outputs to show.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-dependencies.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTLE_TESTS=OFF >/dev/null
cmake --build build/release -j"$(nproc)" --target vantle-control

source scripts/private-servers.sh
wanted=()
if [ -z "${DISPLAY:-}" ] || ! xrandr --query >/dev/null 2>&1; then
  wanted+=(x)
fi
if ! pactl info >/dev/null 2>&1; then
  wanted+=(sound)
fi
if [ ${#wanted[@]} -gt 0 ]; then
  echo "Starting a private ${wanted[*]} server for this run."
  start_private_servers "${wanted[@]}"
fi

program=build/release/bin/vantle-control
if [ $# -gt 0 ]; then
  "$program" "$@"
  exit
fi
# The menu-bar interface is not built yet, so show what the program can already do.
"$program" --verify-localization
"$program" --diagnose
"$program" || true
