#!/usr/bin/env bash
# The whole test suite: installs what it needs, then builds and tests twice, once optimised and
# once with the address and undefined-behaviour sanitizers, and fuzzes the parsers. The tests run
# against a private X server and a private sound server that this command starts and stops; tests
# that need a set-up of their own start further private servers. None of them reaches the user's
# own servers. Warnings are errors here, and only here.
set -euo pipefail
cd "$(dirname "$0")/.."

phases=()
phase_started=$SECONDS
# Ends the phase under way, noting its length for the summary at the end.
phase_done() {
  phases+=("$(printf '%-44s %5d s' "$1" $((SECONDS - phase_started)))")
  phase_started=$SECONDS
}

bash scripts/install-dependencies.sh
phase_done "installing packages"

# A wrong include is reported at once, before minutes of building, with each file and line.
if ! dependency_report=$(python3 scripts/check-dependencies.py 2>&1); then
  echo "$dependency_report" >&2
  echo "test.sh: src/ breaks the include rules of scripts/dependency-rules.txt" >&2
  exit 1
fi
phase_done "include rules"

source scripts/private-servers.sh
start_private_servers x sound

jobs=$(nproc)
# Compiled objects are kept between runs when ccache is there; a first run builds everything.
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
fi

# Configures a Ninja tree and builds it; the build's output is kept in a log and shown on failure.
build_tree() {
  local dir=$1; shift
  # A tree configured earlier with another generator is configured afresh.
  if [ -f "$dir/CMakeCache.txt" ] && ! grep -q '^CMAKE_GENERATOR:INTERNAL=Ninja$' "$dir/CMakeCache.txt"; then
    rm -rf "$dir/CMakeCache.txt" "$dir/CMakeFiles"
  fi
  cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTLE_WARNINGS_AS_ERRORS=ON \
    "${launcher[@]}" "$@" >/dev/null
  mkdir -p "$dir"
  if ! cmake --build "$dir" -j"$jobs" >"$dir/build.log" 2>&1; then
    grep -B2 -A12 -m5 -E 'error|FAILED' "$dir/build.log" >&2 || tail -n 60 "$dir/build.log" >&2
    echo "test.sh: the build in $dir failed (whole log: $dir/build.log)" >&2
    exit 1
  fi
}

run_tests() {
  (cd "$1" && ctest -j"$jobs" --output-on-failure --timeout 300)
}

echo "== Optimised build (build/release)"
# Line tables are enough for the backtraces of a failing test, and much quicker to make than full
# debugging information.
build_tree build/release -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O2 -g1 -DNDEBUG"
phase_done "optimised build"
bash scripts/check-install-list.sh build/release
phase_done "installer covers every included header"
echo "== Optimised tests"
run_tests build/release
phase_done "optimised tests"

# The sanitizers check our own code's memory and arithmetic, so this tree runs the tests that
# drive that code: the logic, the backends against real servers, the keys, and the whole program
# under faults and random use. Screenshots, window layouts and the package, which the optimised
# tree has checked, would only be checked again more slowly.
# The instrumented code is made with the optimisations that keep debugging exact, which take half
# the time of the usual ones; the sanitizers check the same at any level.
echo "== Sanitizer build (address, undefined behaviour; build/sanitize)"
build_tree build/sanitize -DVANTLE_SANITIZE=ON -DVANTLE_BENCHMARKS=OFF \
  -DVANTLE_TEST_LABELS="unit;integration;keys;fault;soak" -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-Og -g1 -DNDEBUG"
phase_done "sanitizer build"
echo "== Sanitizer tests"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  LSAN_OPTIONS=suppressions=$PWD/scripts/sanitizer-suppressions.txt:print_suppressions=0 \
  run_tests build/sanitize
phase_done "sanitizer tests"

echo "== Fuzzing the parsers (${FUZZ_SECONDS:-20} s a target; FUZZ_SECONDS=600 for a long run)"
bash scripts/fuzz.sh
phase_done "fuzz targets built and run"
bash scripts/check-install-list.sh build/fuzz >/dev/null
phase_done "installer covers the fuzz targets' headers"

echo "== Time by phase"
printf '%s\n' "${phases[@]}"
printf '%-44s %5d s\n' "whole test command" "$SECONDS"
