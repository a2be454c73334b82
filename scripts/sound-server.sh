#!/usr/bin/env bash
# A private sound server for the tests, kept entirely inside one folder so that it never touches
# the user's own sound server. VANTLE_SOUND_SERVER chooses which: "pulseaudio" (the default) or
# "pipewire", which is PipeWire with WirePlumber and pipewire-pulse on a private session bus, the
# stack most Linux desktops run. Either way the program and pactl reach it through the PulseAudio
# protocol on the socket DIR/native.
#
#   sound-server.sh start DIR   starts the server (if it does not already run there), loads the
#                               test devices, writes DIR/pid (the process serving the PulseAudio
#                               protocol, which the tests kill or freeze), DIR/pids (every process
#                               of the server) and DIR/env (export lines to source)
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
kind=${VANTLE_SOUND_SERVER:-pulseaudio}
case $kind in
  pulseaudio | pipewire) ;;
  *)
    echo "sound-server.sh: VANTLE_SOUND_SERVER is \"$kind\"; it must be pulseaudio or pipewire" >&2
    exit 2
    ;;
esac

# Every path the server or pactl might write to points into the folder.
export HOME="$dir/home"
export XDG_RUNTIME_DIR="$dir/runtime"
export XDG_CONFIG_HOME="$dir/home/.config"
export PULSE_RUNTIME_PATH="$dir/runtime/pulse"
export PULSE_STATE_PATH="$dir/state"
export PULSE_SERVER="unix:$socket"
export XDG_STATE_HOME="$dir/home/.local/state"
export PIPEWIRE_RUNTIME_DIR="$XDG_RUNTIME_DIR"
unset DISPLAY DBUS_SESSION_BUS_ADDRESS PIPEWIRE_REMOTE

# A process that has exited but was not reaped yet (its parent is gone and the container's first
# process may not reap) counts as stopped.
alive() {
  kill -0 "$1" 2>/dev/null && [ "$(awk '{print $3}' "/proc/$1/stat" 2>/dev/null)" != "Z" ]
}

# Every process of the server must be there; a server missing one is started afresh.
running() {
  local pid
  [ -s "$dir/pids" ] || return 1
  for pid in $(cat "$dir/pids"); do
    alive "$pid" || return 1
  done
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

sink_inputs_are() {
  [ "$(pactl list short sink-inputs 2>/dev/null | wc -l)" -eq "$1" ]
}

# A description with quotes in it. PipeWire's pulse server keeps the backslashes of escaped quotes
# in a module's properties, so there the sink is made through PipeWire itself, whose own syntax
# unescapes them.
add_cafe_sink() {
  local text='Café "Büro" Speakers'
  if [ "$kind" = pulseaudio ]; then
    load module-null-sink sink_name=cafe "$(described sink "$text")"
  else
    text=${text//\\/\\\\}
    text=${text//\"/\\\"}
    pw-cli create-node adapter "{ factory.name=support.null-audio-sink node.name=cafe media.class=Audio/Sink
      node.description=\"$text\" audio.position=[ FL FR ] object.linger=true }" >/dev/null
    wait_for "the sink cafe" sink_exists cafe
  fi
}

sink_exists() {
  pactl list short sinks 2>/dev/null | cut -f2 | grep -qx "$1"
}

# PipeWire's pulse server has no module-null-source; its null sink becomes a source when told so.
add_microphone() {
  if [ "$kind" = pulseaudio ]; then
    load module-null-source source_name=microphone "description='Null Microphone'"
  else
    load module-null-sink sink_name=microphone \
      "sink_properties='media.class=Audio/Source/Virtual device.description=\"Null Microphone\"'"
  fi
}

# The devices the integration tests expect. Combined sinks keep their members busy, so their
# members are sinks of their own that the volume tests leave alone.
load_devices() {
  load module-null-sink sink_name=studio "$(described sink 'Studio Display Speakers')"
  load module-null-sink sink_name=desk "$(described sink 'Desk Speakers')"
  load module-null-sink sink_name=mono channels=1 "$(described sink 'Mono Speaker')"
  load module-null-sink sink_name=surround channels=6 "$(described sink 'Surround Speakers')"
  add_cafe_sink
  load module-null-sink sink_name=left_room "$(described sink 'Left Room')"
  load module-null-sink sink_name=right_room "$(described sink 'Right Room')"
  load module-combine-sink sink_name=combo slaves=left_room,right_room "$(described sink 'Both Rooms')"
  load module-combine-sink sink_name=nested slaves=combo,desk "$(described sink 'Everywhere')"
  add_microphone
  # A combined sink plays into its members through streams of its own, which PipeWire makes once
  # it has seen each member: two for "combo", two for "nested".
  wait_for "the combined outputs' four member streams" sink_inputs_are 4
  pactl set-default-sink studio
  # PipeWire's pulse server hands the choice to the session manager and answers before it is
  # made; the tests start once it shows.
  wait_for "the default output to become studio" default_sink_is studio
}

default_sink_is() {
  [ "$(pactl get-default-sink 2>/dev/null)" = "$1" ]
}

# Waits up to 10 s for a condition, giving up early when a process of the server has died.
wait_for() {
  local what=$1 tries=0
  shift
  until "$@"; do
    if ! running; then
      echo "sound-server.sh: the $kind server exited while waiting for $what; see $dir/*.log" >&2
      stop
      exit 1
    fi
    tries=$((tries + 1))
    if [ $tries -ge 200 ]; then
      echo "sound-server.sh: the $kind server did not reach $what within 10 s; see $dir/*.log" >&2
      stop
      exit 1
    fi
    sleep 0.05
  done
}

# Starts one process of the server in the background and notes its id.
launch() {
  local log=$1
  shift
  "$@" </dev/null >"$dir/$log.log" 2>&1 &
  echo $! >>"$dir/pids"
}

start_pulseaudio() {
  # As root the server warns but runs as a per-user server, which is what we want; without -n it
  # would load the system's default.pa and real hardware.
  launch server pulseaudio -n --daemonize=no --exit-idle-time=-1 --disallow-exit=yes --use-pid-file=no \
    --realtime=no --high-priority=no --log-target=stderr \
    -L "module-native-protocol-unix auth-anonymous=1 socket=$socket"
  tail -n 1 "$dir/pids" >"$dir/pid"
}

pipewire_socket_exists() {
  [ -S "$XDG_RUNTIME_DIR/pipewire-0" ]
}

start_pipewire() {
  # A session bus of its own, which WirePlumber expects; the user's bus is never reached.
  launch bus dbus-daemon --session --nofork --nopidfile --address="unix:path=$dir/bus"
  export DBUS_SESSION_BUS_ADDRESS="unix:path=$dir/bus"
  launch pipewire pipewire
  wait_for "its graph socket" pipewire_socket_exists
  launch wireplumber wireplumber
  # The pulse server puts its socket and a pid file of its own in PULSE_RUNTIME_PATH; the
  # socket is then offered at the same place as PulseAudio's.
  mkdir -p "$dir/pulse-socket"
  PULSE_RUNTIME_PATH="$dir/pulse-socket" launch server pipewire-pulse
  tail -n 1 "$dir/pids" >"$dir/pid"
  ln -sfn "$dir/pulse-socket/native" "$socket"
}

start() {
  # DIR/env is written last, so its presence means the devices are loaded as well.
  if running && answers && [ -s "$dir/env" ]; then
    return 0
  fi
  if [ -s "$dir/pids" ]; then
    stop
  fi
  rm -f "$dir/pid" "$dir/pids" "$dir/env" "$socket"
  mkdir -p "$HOME" "$XDG_RUNTIME_DIR" "$PULSE_RUNTIME_PATH" "$PULSE_STATE_PATH" "$XDG_STATE_HOME"
  chmod 700 "$XDG_RUNTIME_DIR"

  "start_$kind"
  wait_for "an answer from pactl" answers
  load_devices
  printf 'export PULSE_SERVER=%q\n' "$PULSE_SERVER" >"$dir/env"
}

# Stops the server's processes, the last started first, and waits until each is gone.
stop() {
  local pids pid tries
  [ -s "$dir/pids" ] || return 0
  pids=$(tac "$dir/pids")
  for pid in $pids; do
    kill -TERM "$pid" 2>/dev/null || continue
    tries=0
    while alive "$pid"; do
      tries=$((tries + 1))
      if [ $tries -eq 100 ]; then
        kill -KILL "$pid" 2>/dev/null || true
      elif [ $tries -ge 200 ]; then
        echo "sound-server.sh: $kind process $pid does not stop" >&2
        return 1
      fi
      sleep 0.05
    done
  done
  rm -f "$dir/pid" "$dir/pids" "$socket"
}

case $command in
  start) start ;;
  stop) stop ;;
  *) usage ;;
esac
