#!/usr/bin/env bash
# The whole test suite: installs what it needs, then builds and tests twice, once optimised and
# once with the address and undefined-behaviour sanitizers. The tests run against a private X
# server and a private sound server that this command starts and stops; tests that need a set-up
# of their own start further private servers. None of them reaches the user's own servers.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-dependencies.sh
source scripts/private-servers.sh
start_private_servers x sound

jobs=$(nproc)
build_and_test() {
  local dir=$1; shift
  cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j"$jobs"
  (cd "$dir" && ctest -j"$jobs" --output-on-failure --timeout 300)
}

echo "== Optimised build"
build_and_test build/release
echo "== Sanitizer build (address, undefined behaviour)"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  LSAN_OPTIONS=suppressions=$PWD/scripts/sanitizer-suppressions.txt:print_suppressions=0 \
  build_and_test build/sanitize -DVANTLE_SANITIZE=ON
echo "== Fuzzing the parsers (${FUZZ_SECONDS:-20} s a target; FUZZ_SECONDS=600 for a long run)"
bash scripts/fuzz.sh
