#!/usr/bin/env bash
# Start time, idle CPU and resident memory of the program beside Debian's tray volume applet
# (pasystray), on the same private X server, tray host and sound server, in one run.
#   bash scripts/footprint.sh [idle-seconds]     (build/release must hold the program)
set -euo pipefail
cd "$(dirname "$0")/.."
idle=${1:-60}
program=$PWD/build/release/bin/vantle-control
source scripts/private-servers.sh
start_private_servers x tray sound >/dev/null
export XDG_CONFIG_HOME=$(mktemp -d)
ticks=$(getconf CLK_TCK)

cpu_ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
rss_kb() { awk '/^VmRSS:/ {print $2}' "/proc/$1/status"; }
tray_icon_of() { xwininfo -root -tree 2>/dev/null | grep -q "(\"$1\" "; }

# Start to tray icon shown, five starts.
starts=()
for run in 1 2 3 4 5; do
  begin=$(date +%s%N)
  "$program" --suppress-keyboard-invitation >/dev/null 2>&1 &
  pid=$!
  until tray_icon_of vantle-control; do sleep 0.005; done
  starts+=($(( ($(date +%s%N) - begin) / 1000000 )))
  kill "$pid"; wait "$pid" 2>/dev/null || true
  while tray_icon_of vantle-control; do sleep 0.02; done
done
median_start=$(printf '%s\n' "${starts[@]}" | sort -n | sed -n 3p)

measure() {  # name command...: prints "rss_kb cpu_percent"
  local name=$1; shift
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
read -r our_rss our_cpu < <(measure ours "$program" --suppress-keyboard-invitation)
read -r peer_rss peer_cpu < <(measure pasystray /usr/bin/pasystray)

printf 'start to tray icon, median of 5: %d ms (%s)\n' "$median_start" "${starts[*]}"
printf '%-16s %12s %14s\n' "" "resident" "idle CPU"
printf '%-16s %9d kB %13.3f%%\n' "vantle-control" "$our_rss" "$our_cpu"
printf '%-16s %9d kB %13.3f%%\n' "pasystray" "$peer_rss" "$peer_cpu"
awk -v a="$our_rss" -v b="$peer_rss" 'BEGIN {printf "memory ratio (ours / pasystray): %.2f\n", a / b}'
