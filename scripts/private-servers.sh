# Sourced by the run and test commands: starts a private X server and a private sound server in
# a fresh folder, points DISPLAY and PULSE_SERVER at them, and stops both when the shell exits.
#   start_private_servers [x] [tray] [sound]   (tray needs x first)
PRIVATE_SERVERS_SCRIPTS=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

start_private_servers() {
  local scripts_dir=$PRIVATE_SERVERS_SCRIPTS
  PRIVATE_SERVERS_DIR=$(mktemp -d "${TMPDIR:-/tmp}/vantle-servers-XXXXXX")
  trap stop_private_servers EXIT
  # Qt wants a private runtime folder; a headless machine often has none.
  if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    mkdir -m 700 "$PRIVATE_SERVERS_DIR/runtime"
    export XDG_RUNTIME_DIR=$PRIVATE_SERVERS_DIR/runtime
  fi
  for server in "$@"; do
    case $server in
      x)
        bash "$scripts_dir/x-server.sh" start "$PRIVATE_SERVERS_DIR/x"
        # shellcheck disable=SC1091
        source "$PRIVATE_SERVERS_DIR/x/env"
        ;;
      tray)
        # A tray host, so that the program's tray icon has somewhere to show.
        trayer --edge top --align right --widthtype request --height 24 --SetDockType true >/dev/null 2>&1 &
        PRIVATE_TRAY_PID=$!
        sleep 0.5
        ;;
      sound)
        bash "$scripts_dir/sound-server.sh" start "$PRIVATE_SERVERS_DIR/sound"
        # shellcheck disable=SC1091
        source "$PRIVATE_SERVERS_DIR/sound/env"
        ;;
    esac
  done
  export DISPLAY PULSE_SERVER
}

stop_private_servers() {
  local scripts_dir=$PRIVATE_SERVERS_SCRIPTS
  [ -n "${PRIVATE_SERVERS_DIR:-}" ] || return 0
  [ -n "${PRIVATE_TRAY_PID:-}" ] && kill "$PRIVATE_TRAY_PID" 2>/dev/null || true
  [ -d "$PRIVATE_SERVERS_DIR/x" ] && bash "$scripts_dir/x-server.sh" stop "$PRIVATE_SERVERS_DIR/x" || true
  [ -d "$PRIVATE_SERVERS_DIR/sound" ] && bash "$scripts_dir/sound-server.sh" stop "$PRIVATE_SERVERS_DIR/sound" || true
  rm -rf "$PRIVATE_SERVERS_DIR"
  PRIVATE_SERVERS_DIR=""
}
