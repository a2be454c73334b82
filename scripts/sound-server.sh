#!/usr/bin/env bash
# A private PulseAudio server for the tests, kept entirely inside one folder so that it never
# touches the user's own sound server.
#
#   sound-server.sh start DIR   starts the server (if it does not already run there), loads the
#                               test devices, writes DIR/pid and DIR/env (export lines to source)
#   sound-server.sh stop DIR    stops the server started there and waits until it is gone
#
# Nothing is printed except errors, because the test command runs this around the whole suite.
set -euo pipefail

usage() {
  echo "usage: $0 start|stop DIR" >&2
  exit 2
}

[ $# -eq 2 ] || usage
command=$1
dir=$(mkdir -p "$2" && cd "$2" && pwd)
socket="$dir/native"

# Every path the server or pactl might write to points into the folder.
export HOME="$dir/home"
export XDG_RUNTIME_DIR="$dir/runtime"
export XDG_CONFIG_HOME="$dir/home/.config"
export PULSE_RUNTIME_PATH="$dir/runtime/pulse"
export PULSE_STATE_PATH="$dir/state"
export PULSE_SERVER="unix:$socket"
unset DISPLAY DBUS_SESSION_BUS_ADDRESS

server_pid() {
  [ -s "$dir/pid" ] && cat "$dir/pid"
}

# A process that has exited but was not reaped yet (its parent is gone and the container's first
# process may not reap) counts as stopped.
alive() {
  kill -0 "$1" 2>/dev/null && [ "$(awk '{print $3}' "/proc/$1/stat" 2>/dev/null)" != "Z" ]
}

running() {
  local pid
  pid=$(server_pid) || return 1
  alive "$pid"
}

answers() {
  pactl info >/dev/null 2>&1
}

load() {
  pactl load-module "$@" >/dev/null
}

# The module argument that sets a device's description: the property list is quoted for the
# module argument parser, and the text inside it for the property list parser.
described() {
  local kind=$1 text=$2
  text=${text//\\/\\\\}
  text=${text//\"/\\\"}
  printf "%s_properties='device.description=\"%s\"'" "$kind" "$text"
}

# The devices the integration tests expect. Combined sinks keep their members busy, so their
# members are sinks of their own that the volume tests leave alone.
load_devices() {
  load module-null-sink sink_name=studio "$(described sink 'Studio Display Speakers')"
  load module-null-sink sink_name=desk "$(described sink 'Desk Speakers')"
  load module-null-sink sink_name=mono channels=1 "$(described sink 'Mono Speaker')"
  load module-null-sink sink_name=surround channels=6 "$(described sink 'Surround Speakers')"
  load module-null-sink sink_name=cafe "$(described sink 'Café "Büro" Speakers')"
  load module-null-sink sink_name=left_room "$(described sink 'Left Room')"
  load module-null-sink sink_name=right_room "$(described sink 'Right Room')"
  load module-combine-sink sink_name=combo slaves=left_room,right_room "$(described sink 'Both Rooms')"
  load module-combine-sink sink_name=nested slaves=combo,desk "$(described sink 'Everywhere')"
  load module-null-source source_name=microphone "description='Null Microphone'"
  pactl set-default-sink studio
}

start() {
  # DIR/env is written last, so its presence means the devices are loaded as well.
  if running && answers && [ -s "$dir/env" ]; then
    return 0
  fi
  if running; then
    stop
  fi
  rm -f "$dir/pid" "$dir/env" "$socket"
  mkdir -p "$HOME" "$XDG_RUNTIME_DIR" "$PULSE_RUNTIME_PATH" "$PULSE_STATE_PATH"
  chmod 700 "$XDG_RUNTIME_DIR"

  # As root the server warns but runs as a per-user server, which is what we want; without -n it
  # would load the system's default.pa and real hardware.
  pulseaudio -n --daemonize=no --exit-idle-time=-1 --disallow-exit=yes --use-pid-file=no \
    --realtime=no --high-priority=no --log-target=stderr \
    -L "module-native-protocol-unix auth-anonymous=1 socket=$socket" \
    </dev/null >"$dir/server.log" 2>&1 &
  echo $! >"$dir/pid"

  local tries=0
  until answers; do
    if ! running; then
      echo "sound-server.sh: pulseaudio exited; see $dir/server.log" >&2
      exit 1
    fi
    tries=$((tries + 1))
    if [ $tries -ge 200 ]; then
      echo "sound-server.sh: pulseaudio did not answer within 10 s" >&2
      stop
      exit 1
    fi
    sleep 0.05
  done

  load_devices
  printf 'export PULSE_SERVER=%q\n' "$PULSE_SERVER" >"$dir/env"
}

stop() {
  local pid
  pid=$(server_pid) || return 0
  if kill -TERM "$pid" 2>/dev/null; then
    local tries=0
    while alive "$pid"; do
      tries=$((tries + 1))
      if [ $tries -eq 100 ]; then
        kill -KILL "$pid" 2>/dev/null || true
      elif [ $tries -ge 200 ]; then
        echo "sound-server.sh: pulseaudio $pid does not stop" >&2
        return 1
      fi
      sleep 0.05
    done
  fi
  rm -f "$dir/pid" "$socket"
}

case $command in
  start) start ;;
  stop) stop ;;
  *) usage ;;
esac
