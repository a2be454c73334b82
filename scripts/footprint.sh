#!/usr/bin/env bash
# The program beside the tools a Linux user would otherwise run for the same job, side by side in
# one run on the same private X server, tray host and sound server: Debian's tray volume applet
# (pasystray) for start time, idle CPU and memory, and xbindkeys running pactl for the time from
# a volume key to the new volume; beside them a bare Qt 6 tray icon, the toolkit's floor for start
# and memory. Then what one volume key and one refresh tick ask of the sound and X servers, from
# the benchmarks (which start private servers of their own). Prints a Markdown table and writes
# it into README.md between its footprint markers.
#   bash scripts/footprint.sh [idle-seconds] [key-presses]     (defaults 60 and 200)
#   BUILD=build/h2 bash scripts/footprint.sh 5 30              (another build tree)
# It configures and builds the tree (default build/release) when a program it runs is missing
# there; an existing program is used as it is.
set -euo pipefail
cd "$(dirname "$0")/.."
idle=${1:-60}
presses=${2:-200}
build=${BUILD:-build/release}
starts=20
build=$(mkdir -p "$build" && cd "$build" && pwd)
program=$build/bin/vantle-control
latency_benchmark=$build/bin/key_latency_benchmark
tick_benchmark=$build/bin/refresh_tick_benchmark
key_benchmark=$build/bin/volume_key_benchmark
floor=$build/bin/toolkit-tray-floor

for tool in pasystray xbindkeys pactl xwininfo python3; do
  command -v "$tool" >/dev/null || { echo "footprint: $tool is missing; run scripts/install-dependencies.sh" >&2; exit 1; }
done
if [[ ! -x $program || ! -x $latency_benchmark || ! -x $tick_benchmark || ! -x $key_benchmark || ! -x $floor ]]; then
  echo "building the program and the benchmarks in $build..." >&2
  if [[ ! -f $build/CMakeCache.txt ]]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  fi
  cmake --build "$build" -j"$(nproc)" \
    --target vantle-control key_latency_benchmark refresh_tick_benchmark volume_key_benchmark toolkit-tray-floor >/dev/null
fi

# shellcheck disable=SC1091
source scripts/private-servers.sh
start_private_servers x tray sound >/dev/null
XDG_CONFIG_HOME=$(mktemp -d)
export XDG_CONFIG_HOME
trap 'rm -rf "$XDG_CONFIG_HOME"; stop_private_servers' EXIT
ticks=$(getconf CLK_TCK)

cpu_ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
# Resident and proportional memory in kB: shared library pages count whole in the first and
# divided among the processes that map them in the second.
memory_kb() { awk '/^Rss:/ {rss = $2} /^Pss:/ {pss = $2} END {print rss, pss}' "/proc/$1/smaps_rollup"; }
tray_icon_of() { xwininfo -root -tree 2>/dev/null | grep -q "(\"$1\" "; }

# The median and the 95th percentile of numbers, one a line, taken as the key benchmark takes
# them: the sample at position floor(q × count) in ascending order.
median_p95() {
  sort -n | awk '{v[NR - 1] = $1} END {
    m = int(0.5 * NR); p = int(0.95 * NR); if (p > NR - 1) p = NR - 1
    print v[m], v[p]}'
}

# Start to tray icon shown, in milliseconds: median and p95 of $starts starts.
start_times() {  # class command...
  local class=$1; shift
  local run begin pid
  for ((run = 0; run < starts; run++)); do
    begin=$(date +%s%N)
    "$@" >/dev/null 2>&1 &
    pid=$!
    until tray_icon_of "$class"; do sleep 0.005; done
    echo $(( ($(date +%s%N) - begin) / 1000000 ))
    kill "$pid"; wait "$pid" 2>/dev/null || true
    while tray_icon_of "$class"; do sleep 0.02; done
  done | median_p95
}

# Idle CPU (%) over $idle seconds after a settling time of five seconds, then RSS and PSS (kB).
idle_figures() {  # command...
  "$@" >/dev/null 2>&1 &
  local pid=$!
  sleep 5
  local before; before=$(cpu_ticks "$pid")
  sleep "$idle"
  local after; after=$(cpu_ticks "$pid")
  local memory; memory=$(memory_kb "$pid")
  kill "$pid"; wait "$pid" 2>/dev/null || true
  awk -v b="$before" -v a="$after" -v t="$ticks" -v s="$idle" -v m="$memory" \
    'BEGIN {printf "%.3f %s\n", (a - b) / t / s * 100, m}'
}

# The medians of a Google Benchmark program's repetitions, one line per benchmark: its name,
# its time in the program's unit, then its counters as name=value.
benchmark_medians() {  # program filter
  local json
  if ! json=$("$1" --benchmark_filter="$2" --benchmark_min_time=0.2 --benchmark_format=json 2>/dev/null); then
    echo "footprint: $(basename "$1") failed; its figures show as ?" >&2
    return 0
  fi
  python3 -c '
import json, re, sys
for run in json.load(sys.stdin)["benchmarks"]:
    if run.get("aggregate_name") != "median":
        continue
    standard = {"name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions",
                "threads", "aggregate_name", "aggregate_unit", "iterations", "real_time", "cpu_time", "time_unit"}
    counters = " ".join("%s=%g" % (key, value) for key, value in run.items()
                        if key not in standard and isinstance(value, (int, float)) and not isinstance(value, bool))
    print(re.sub(r"/repeats:\d+$", "", run["run_name"]), "%g" % run["real_time"], counters)
' <<<"$json"
}
# One figure of benchmark_medians: the time (field "time") or a counter, by benchmark name.
figure() {  # medians benchmark field
  awk -v name="$2" -v field="$3" '$1 == name {
    if (field == "time") { print $2; exit }
    for (i = 3; i <= NF; i++) { split($i, kv, "="); if (kv[1] == field) { print kv[2]; exit } } }' <<<"$1"
}

echo "measuring ${starts} starts of each..." >&2
read -r our_start our_start95 < <(start_times vantle-control "$program" --suppress-keyboard-invitation)
read -r peer_start peer_start95 < <(start_times pasystray /usr/bin/pasystray)
read -r floor_start floor_start95 < <(start_times toolkit-tray-floor "$floor")
echo "measuring ${idle} s of idle, for each of the three..." >&2
read -r our_cpu our_rss our_pss < <(idle_figures "$program" --suppress-keyboard-invitation)
read -r peer_cpu peer_rss peer_pss < <(idle_figures /usr/bin/pasystray)
read -r _ floor_rss floor_pss < <(idle_figures "$floor")
echo "measuring ${presses} key presses for each..." >&2
latency=$("$latency_benchmark" "$presses" --on-current-servers)
# Lines of the form "<what>  median <m> ms   p95 <p> ms   (<n> samples)".
latency_of() { awk -v what="$1" 'index($0, what) == 1 {print $(NF-6), $(NF-3)}' <<<"$latency"; }
read -r our_key our_key95 < <(latency_of "vantle-control: key to volume")
read -r peer_key peer_key95 < <(latency_of "xbindkeys + pactl: key to volume")
read -r our_osd our_osd95 < <(latency_of "vantle-control: key to OSD mapped")
echo "running the refresh tick and volume key benchmarks..." >&2
tick=$(benchmark_medians "$tick_benchmark" refreshTick)
keys=$(benchmark_medians "$key_benchmark" volumeKey)
tick_us=$(figure "$tick" refreshTick time | awk '{printf "%.0f", $1}')
tick_sound=$(figure "$tick" refreshTick soundRoundTripsPerTick)
tick_x=$(figure "$tick" refreshTick xRequestsPerTick)
key_plain=$(figure "$keys" volumeKey/plainOutput roundTripsPerKey)
key_combined=$(figure "$keys" volumeKey/fiveMemberCombinedOutput roundTripsPerKey)
key_plain_refresh=$(figure "$keys" volumeKey/plainOutputWithRefresh roundTripsPerKey)
key_combined_refresh=$(figure "$keys" volumeKey/fiveMemberCombinedOutputWithRefresh roundTripsPerKey)

ratio() { awk -v a="$1" -v b="$2" 'BEGIN {if (a != "" && b > 0) printf "%.2f", a / b; else printf "n/a"}'; }
# A row of the table: its cells separated by tabs; an empty figure shows as "?".
row() {
  local cells=() cell
  for cell in "$@"; do cells+=("${cell:-?}"); done
  (IFS=$'\t'; echo "${cells[*]}")
}
# Rows as Markdown with the columns padded to their widths in characters, the figures to the right.
markdown() {
  python3 -c '
import sys
rows = [line.rstrip("\n").split("\t") for line in sys.stdin if line.strip()]
widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
def line(cells):
    return "| " + " | ".join(cell.ljust(width) if column in (0, 2) else cell.rjust(width)
                             for column, (cell, width) in enumerate(zip(cells, widths))) + " |"
print(line(rows[0]))
print("| " + " | ".join("-" * width if column in (0, 2) else "-" * (width - 1) + ":"
                        for column, width in enumerate(widths)) + " |")
for row in rows[1:]:
    print(line(row))
'
}
table=$(
  echo "Measured $(date +%Y-%m-%d) on $(nproc) cores: ${starts} starts, ${idle} s of idle and ${presses} key presses" \
       "for each program (\`bash scripts/footprint.sh ${idle} ${presses}\`)."
  echo
  {
    row " " "vantle-control" "peer" "peer's figure" "ours / peer"
    row "start to tray icon, median · p95" "${our_start} · ${our_start95} ms" "pasystray" \
        "${peer_start} · ${peer_start95} ms" "$(ratio "$our_start" "$peer_start")"
    row "idle CPU" "${our_cpu} %" "pasystray" "${peer_cpu} %" "$(ratio "$our_cpu" "$peer_cpu")"
    row "resident memory (RSS)" "${our_rss} kB" "pasystray" "${peer_rss} kB" "$(ratio "$our_rss" "$peer_rss")"
    row "proportional memory (PSS)" "${our_pss} kB" "pasystray" "${peer_pss} kB" "$(ratio "$our_pss" "$peer_pss")"
    row "the toolkit's floor: a bare Qt 6 tray icon, start · RSS · PSS" \
        "-" "toolkit-tray-floor" "${floor_start} ms · ${floor_rss} kB · ${floor_pss} kB" \
        "$(ratio "$floor_start" "$peer_start") · $(ratio "$floor_rss" "$peer_rss") · $(ratio "$floor_pss" "$peer_pss")"
    row "key to volume, median · p95" "${our_key} · ${our_key95} ms" "xbindkeys + pactl" \
        "${peer_key} · ${peer_key95} ms" "$(ratio "$our_key" "$peer_key")"
    row "key to on-screen display mapped, median · p95" "${our_osd} · ${our_osd95} ms" "-" "-" "-"
    row "sound-server round trips per volume key, plain · combined of 5" "${key_plain} · ${key_combined}" "-" "-" "-"
    row "the same with the refresh that follows the key" "${key_plain_refresh} · ${key_combined_refresh}" "-" "-" "-"
    row "refresh tick: sound-server round trips · X requests" "${tick_sound} · ${tick_x}" "-" "-" "-"
    row "refresh tick: time (6 outputs, 2 screens)" "${tick_us} µs" "-" "-" "-"
  } | markdown
)

echo
echo "$table"
echo
echo "$latency"

# Between the markers, the README keeps the table of the last run.
readme=README.md
if grep -q '^<!-- footprint:begin -->$' "$readme" && grep -q '^<!-- footprint:end -->$' "$readme"; then
  updated=$(mktemp)
  TABLE=$table awk '
    /^<!-- footprint:begin -->$/ {print; print ENVIRON["TABLE"]; skipping = 1; next}
    /^<!-- footprint:end -->$/ {skipping = 0}
    !skipping {print}' "$readme" >"$updated"
  cat "$updated" >"$readme"
  rm -f "$updated"
  echo "footprint: the table is written into $readme" >&2
else
  echo "footprint: $readme has no footprint markers; the table is only printed" >&2
fi
