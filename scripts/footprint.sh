#!/usr/bin/env bash
# The program beside the tools a Linux user would otherwise run for the same job, side by side in
# one run on the same private X server, tray host and sound server: Debian's tray volume applet
# (pasystray) for start time, idle CPU and resident memory, and xbindkeys running pactl for the
# time from a volume key to the new volume. Prints a table with the ratios.
#   bash scripts/footprint.sh [idle-seconds] [key-presses]     (defaults 60 and 200)
# It builds build/release first when the program or the benchmark is missing there.
set -euo pipefail
cd "$(dirname "$0")/.."
idle=${1:-60}
presses=${2:-200}
program=$PWD/build/release/bin/vantle-control
benchmark=$PWD/build/release/bin/key_latency_benchmark
if [[ ! -x $program || ! -x $benchmark ]]; then
  cmake -S . -B build/release -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build build/release --target vantle-control key_latency_benchmark -j"$(nproc)" >/dev/null
fi
for tool in pasystray xbindkeys pactl xwininfo; do
  command -v "$tool" >/dev/null || { echo "footprint: $tool is missing; run scripts/install-dependencies.sh" >&2; exit 1; }
done
source scripts/private-servers.sh
start_private_servers x tray sound >/dev/null
export XDG_CONFIG_HOME=$(mktemp -d)
trap 'rm -rf "$XDG_CONFIG_HOME"' EXIT
ticks=$(getconf CLK_TCK)

cpu_ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
rss_kb() { awk '/^VmRSS:/ {print $2}' "/proc/$1/status"; }
tray_icon_of() { xwininfo -root -tree 2>/dev/null | grep -q "(\"$1\" "; }

# Start to tray icon shown: the median of five starts, in milliseconds.
start_time() {  # class command...
  local class=$1; shift
  local starts=() run begin pid
  for run in 1 2 3 4 5; do
    begin=$(date +%s%N)
    "$@" >/dev/null 2>&1 &
    pid=$!
    until tray_icon_of "$class"; do sleep 0.005; done
    starts+=($(( ($(date +%s%N) - begin) / 1000000 )))
    kill "$pid"; wait "$pid" 2>/dev/null || true
    while tray_icon_of "$class"; do sleep 0.02; done
  done
  printf '%s\n' "${starts[@]}" | sort -n | sed -n 3p
}

# Resident memory (kB) and idle CPU (%) after a settling time of five seconds.
idle_figures() {  # command...
  "$@" >/dev/null 2>&1 &
  local pid=$!
  sleep 5
  local before; before=$(cpu_ticks "$pid")
  sleep "$idle"
  local after; after=$(cpu_ticks "$pid")
  local rss; rss=$(rss_kb "$pid")
  kill "$pid"; wait "$pid" 2>/dev/null || true
  awk -v r="$rss" -v b="$before" -v a="$after" -v t="$ticks" -v s="$idle" 'BEGIN {printf "%d %.3f\n", r, (a - b) / t / s * 100}'
}

echo "measuring start times..." >&2
our_start=$(start_time vantle-control "$program" --suppress-keyboard-invitation)
peer_start=$(start_time pasystray /usr/bin/pasystray)
echo "measuring ${idle} s of idle, twice..." >&2
read -r our_rss our_cpu < <(idle_figures "$program" --suppress-keyboard-invitation)
read -r peer_rss peer_cpu < <(idle_figures /usr/bin/pasystray)
echo "measuring ${presses} key presses for each..." >&2
latency=$("$benchmark" "$presses" --on-current-servers)
our_key=$(awk '/^vantle-control: key to volume/ {print $(NF-6)}' <<<"$latency")
peer_key=$(awk '/^xbindkeys \+ pactl: key to volume/ {print $(NF-6)}' <<<"$latency")

ratio() { awk -v a="$1" -v b="$2" 'BEGIN {if (b > 0) printf "%.2f", a / b; else printf "n/a"}'; }
row() { printf '| %-18s | %14s | %14s | %16s | %22s |\n' "$@"; }
echo
row "" "start to icon" "idle CPU" "resident memory" "key to volume, median"
row "------------------" "--------------" "--------------" "----------------" "----------------------"
row "vantle-control" "${our_start} ms" "${our_cpu} %" "${our_rss} kB" "${our_key} ms"
row "pasystray" "${peer_start} ms" "${peer_cpu} %" "${peer_rss} kB" "-"
row "xbindkeys + pactl" "-" "-" "-" "${peer_key} ms"
row "ratio (ours/peer)" "$(ratio "$our_start" "$peer_start")" "$(ratio "$our_cpu" "$peer_cpu")" \
    "$(ratio "$our_rss" "$peer_rss")" "$(ratio "$our_key" "$peer_key")"
echo
echo "$latency"
