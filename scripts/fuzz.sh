#!/usr/bin/env bash
# Builds the fuzz targets with clang's libFuzzer (address and undefined-behaviour sanitizers on)
# and runs each for a bounded time: the string tables, the settings file, the Dock's exported
# preferences, the typed percentage, the text formatter, the update feed and EDID blocks.
#
#   bash scripts/fuzz.sh                       every target for 20 seconds
#   FUZZ_SECONDS=600 bash scripts/fuzz.sh      every target for ten minutes
#   bash scripts/fuzz.sh fuzz_format ...       only the targets named
#
# FUZZ_BUILD names the build folder (default build/fuzz). The seed inputs live in
# tests/fuzz/corpus/<target>; inputs the fuzzer finds go to <build>/corpus/<target> and are used
# again by the next run. Exits with status 1 when a target crashes, hangs or runs out of memory,
# naming the target and the file that holds the input that did it.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${FUZZ_SECONDS:-20}
build=${FUZZ_BUILD:-build/fuzz}
all_targets=(fuzz_strings_file fuzz_settings_file fuzz_dock_plist fuzz_percentage fuzz_format fuzz_update_feed
  fuzz_edid)
if [ $# -gt 0 ]; then targets=("$@"); else targets=("${all_targets[@]}"); fi

for target in "${targets[@]}"; do
  [[ " ${all_targets[*]} " == *" $target "* ]] || { echo "fuzz.sh: unknown target $target" >&2; exit 2; }
done

echo "== Building the fuzz targets in $build"
configure=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTLE_FUZZ=ON -DVANTLE_TESTS=OFF)
# Ninja keeps the list of headers each object was made from, which the test command checks
# against the installer; a tree made earlier with another generator is configured afresh.
if command -v ninja >/dev/null; then
  configure+=(-G Ninja)
  if [ -f "$build/CMakeCache.txt" ] && ! grep -q '^CMAKE_GENERATOR:INTERNAL=Ninja$' "$build/CMakeCache.txt"; then
    rm -rf "$build/CMakeCache.txt" "$build/CMakeFiles"
  fi
fi
if command -v ccache >/dev/null; then
  configure+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
fi
CC=clang CXX=clang++ cmake -S . -B "$build" "${configure[@]}" >/dev/null
cmake --build "$build" --target "${targets[@]}" -j"$(nproc)" >"$build/build.log" 2>&1 ||
  { tail -n 40 "$build/build.log" >&2; echo "fuzz.sh: the build failed (log: $build/build.log)" >&2; exit 1; }

# Nothing a target does may reach the user's own settings.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_CONFIG_HOME=$scratch/config
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

# Runs one target for the given time and says how it went; the exit status is the fuzzer's.
fuzz_one() {
  local target=$1
  local corpus=$build/corpus/$target crashes=$build/crashes/$target log=$build/logs/$target.log
  mkdir -p "$corpus" "$crashes" "$(dirname "$log")"
  local status=0
  "$build/bin/$target" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="$crashes/" "$corpus" "tests/fuzz/corpus/$target" >"$log" 2>&1 || status=$?
  if [ "$status" -ne 0 ]; then
    grep -E "^(==[0-9]+==ERROR|SUMMARY|fuzz check failed|.*runtime error|.*Assertion)" "$log" | head -n 5 >&2 || true
    local input
    input=$(sed -n 's/.*Test unit written to \(.*\)$/\1/p' "$log" | tail -n 1)
    echo "FAIL $target (status $status): input ${input:-not saved}; log $log" >&2
    return 1
  fi
  local runs coverage
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  coverage=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 || true)
  echo "ok   $target: ${runs:-?} runs, ${coverage:-cov: ?}"
}

# One target a core at a time: each still gets its whole time, and the run takes a fraction of it.
echo "== ${#targets[@]} target(s), ${seconds}s each, $(nproc) at a time"
failed=()
pids=()
names=()
collect() {
  if ! wait "${pids[0]}"; then
    failed+=("${names[0]}")
  fi
  pids=("${pids[@]:1}")
  names=("${names[@]:1}")
}
for target in "${targets[@]}"; do
  [ ${#pids[@]} -lt "$(nproc)" ] || collect
  fuzz_one "$target" &
  pids+=($!)
  names+=("$target")
done
while [ ${#pids[@]} -gt 0 ]; do collect; done

if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzz.sh: ${#failed[@]} target(s) failed: ${failed[*]}" >&2
  exit 1
fi
echo "fuzz.sh: all ${#targets[@]} target(s) ran ${seconds}s without a failure"
