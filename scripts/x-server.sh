#!/usr/bin/env bash
# A private X server for the tests and for headless runs: Xvfb with two monitors side by side,
# kept apart from the user's own X server.
#
#   x-server.sh start DIR   starts Xvfb on a free display number, lays out the monitors, writes
#                           DIR/pid and DIR/env (export lines to source)
#   x-server.sh stop DIR    stops the server started there and waits until it is gone
#
# Nothing is printed except errors.
set -euo pipefail

[ $# -eq 2 ] || { echo "usage: $0 start|stop DIR" >&2; exit 2; }
command=$1
dir=$(mkdir -p "$2" && cd "$2" && pwd)

alive() {
  kill -0 "$1" 2>/dev/null && [ "$(awk '{print $3}' "/proc/$1/stat" 2>/dev/null)" != "Z" ]
}

start() {
  if [ -s "$dir/pid" ] && alive "$(cat "$dir/pid")" && [ -s "$dir/env" ]; then
    return 0
  fi
  rm -f "$dir/pid" "$dir/env"
  # -displayfd lets Xvfb pick a free display number and tell us which.
  exec 3> "$dir/display"
  Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 3200x1080x24 </dev/null >"$dir/server.log" 2>&1 &
  echo $! >"$dir/pid"
  exec 3>&-
  local tries=0
  until [ -s "$dir/display" ]; do
    tries=$((tries + 1))
    if ! alive "$(cat "$dir/pid")" || [ $tries -ge 200 ]; then
      echo "x-server.sh: Xvfb did not start; see $dir/server.log" >&2
      exit 1
    fi
    sleep 0.05
  done
  export DISPLAY=":$(tr -d '\n' < "$dir/display")"
  # The first monitor takes Xvfb's only output, so that Qt does not keep the automatic
  # full-width monitor as a third screen; the second has no output of its own.
  xrandr --setmonitor '*LEFT' 1920/508x1080/286+0+0 screen >/dev/null
  xrandr --setmonitor RIGHT 1280/339x1024/271+1920+0 none >/dev/null
  # Xvfb starts with an all-zero gamma ramp (it never applies one); a real output starts with
  # the identity ramp, which is what dimming scales.
  xrandr --output screen --gamma 1:1:1
  printf 'export DISPLAY=%q\n' "$DISPLAY" >"$dir/env"
}

stop() {
  [ -s "$dir/pid" ] || return 0
  local pid tries=0
  pid=$(cat "$dir/pid")
  kill -TERM "$pid" 2>/dev/null || true
  while alive "$pid"; do
    tries=$((tries + 1))
    [ $tries -eq 100 ] && kill -KILL "$pid" 2>/dev/null
    [ $tries -ge 200 ] && { echo "x-server.sh: Xvfb $pid does not stop" >&2; return 1; }
    sleep 0.05
  done
  rm -f "$dir/pid" "$dir/env"
}

case $command in
  start) start ;;
  stop) stop ;;
  *) echo "usage: $0 start|stop DIR" >&2; exit 2 ;;
esac
