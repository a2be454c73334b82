#!/usr/bin/env bash
# Sets up a fresh machine, builds the program and runs it. On a machine without an X server or
# a sound server it starts private ones (with a tray host), opens the program's popover once and
# writes a screenshot to build/run/screenshot.png, so that the program is seen working.
set -euo pipefail
cd "$(dirname "$0")/.."

step() { printf '\n== %s\n' "$*"; }

step "Installing the Debian packages the build needs (only the missing ones)"
bash scripts/install-dependencies.sh
step "Building the program in build/run (a few minutes on 2 cores the first time)"
cmake -S . -B build/run -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVANTLE_TESTS=OFF >/dev/null
cmake --build build/run -j"$(nproc)" --target vantle-control screenshot_tool vantle_resources

source scripts/private-servers.sh
wanted=()
private_display=false
if [ -z "${DISPLAY:-}" ] || ! xrandr --query >/dev/null 2>&1; then
  wanted+=(x tray)
  private_display=true
fi
if ! pactl info >/dev/null 2>&1; then
  wanted+=(sound)
fi
if [ ${#wanted[@]} -gt 0 ]; then
  step "Starting a private ${wanted[*]} server for this run"
  start_private_servers "${wanted[@]}"
fi

program=build/run/bin/vantle-control
if [ $# -gt 0 ]; then
  "$program" "$@"
  exit
fi
step "Checking the texts of the language in use"
"$program" --verify-localization
step "Sound outputs and displays the program finds"
"$program" --diagnose
step "Starting Vantle Control"
if ! $private_display; then
  exec "$program"
fi
# Headless: show that it works, then keep it running until Ctrl+C.
"$program" --show-settings &
program_pid=$!
trap 'kill $program_pid 2>/dev/null; wait $program_pid 2>/dev/null; stop_private_servers' EXIT
# The tray icon sits at the right end of the tray host's panel; it is clicked once it is shown.
for _ in $(seq 150); do
  xwininfo -root -tree 2>/dev/null | grep -q '("vantle-control" "vantle-control") *2[24]x2[24]' && break
  sleep 0.1
done
sleep 0.5
xdotool mousemove 1908 12 click 1
sleep 1
build/run/bin/screenshot_tool build/run/screenshot.png 0 0 1920 1080
echo "Vantle Control is running on the private display $DISPLAY (sound server $PULSE_SERVER)."
echo "A screenshot of its settings window and tray popover: build/run/screenshot.png"
echo "Try: DISPLAY=$DISPLAY xdotool key XF86AudioLowerVolume   — press Ctrl+C to stop."
wait $program_pid
