#!/usr/bin/env bash
# Builds the project the way users and packagers do, with the default target and without any of
# the test command's settings, once for each build type, with the tests off and on:
#
#   bash scripts/packager-builds.sh                   all eight builds
#   bash scripts/packager-builds.sh Release:OFF ...   only the ones named (type:tests)
#
# Each build goes to build/packager/<type>-tests-<on|off>; the last lines of a failed build's log
# are shown. It takes long (each build is a whole one), so the test command does not run it.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -gt 0 ]; then
  builds=("$@")
else
  builds=(Release:OFF RelWithDebInfo:OFF MinSizeRel:OFF Debug:OFF Release:ON RelWithDebInfo:ON MinSizeRel:ON Debug:ON)
fi

failed=()
for build in "${builds[@]}"; do
  type=${build%%:*}
  tests=${build##*:}
  dir=build/packager/$type-tests-${tests,,}
  mkdir -p "$dir"
  started=$SECONDS
  if cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE="$type" -DVANTLE_TESTS="$tests" >"$dir/configure.log" 2>&1 &&
     cmake --build "$dir" -j"$(nproc)" >"$dir/build.log" 2>&1; then
    warnings=$(grep -c 'warning:' "$dir/build.log" || true)
    echo "ok   $type, tests $tests: $((SECONDS - started)) s, $warnings warning(s)"
  else
    tail -n 30 "$dir/configure.log" "$dir/build.log" >&2 || true
    echo "FAIL $type, tests $tests (logs in $dir)" >&2
    failed+=("$build")
  fi
done

if [ ${#failed[@]} -gt 0 ]; then
  echo "packager-builds.sh: ${#failed[@]} build(s) failed: ${failed[*]}" >&2
  exit 1
fi
echo "packager-builds.sh: all ${#builds[@]} build(s) succeeded"
