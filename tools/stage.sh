# The stage of a run: a private bus, the web runtime on it, and the voice service. Sourced by ../corvis.

privilege_base=http://developer.nurvo.example/privilege

stage=

# Where the kit's programs and the library are; an installation notes the places below its prefix.
kit_bin=$build/bin kit_library=$build/lib/libcorvis_voiceinteraction.so
if [ -z "$build" ]; then
  . "$share/places"
  kit_bin=$home/../$kit_bin kit_library=$home/../$kit_library
fi
[ -n "$build" ] || prepare_kit() { :; }

# Ends everything that was started, in reverse order, and removes the run's folder. Set on EXIT.
stage_end() {
  local i started
  trap - INT TERM
  # What the shell knows, not what was noted: a signal may come right after a start.
  mapfile -t started < <(jobs -p)
  for ((i = ${#started[@]} - 1; i >= 0; i--)); do
    kill "${started[i]}" 2>/dev/null || true
    wait "${started[i]}" 2>/dev/null || true
  done
  [ -z "$stage" ] || rm -rf "$stage"
}

# A bus of our own, reachable by this user alone, in a folder that nobody else may enter. It starts no services.
stage_begin() {
  trap stage_end EXIT
  stage=$(mktemp -d "${TMPDIR:-/tmp}/corvis.XXXXXX") || fail "no folder for the run can be made; is TMPDIR right?"
  trap 'exit 130' INT
  trap 'exit 143' TERM
  # Every byte in hexadecimal, as a path may hold any.
  local path
  path=$(printf %s "$stage/bus" | od -An -v -tx1 | tr -d '\n' | tr ' ' %)
  cat >"$stage/bus.conf" <<EOF
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=$path</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
  <limit name="max_incoming_bytes">1000000000</limit>
  <limit name="max_outgoing_bytes">1000000000</limit>
  <limit name="max_message_size">134217728</limit>
</busconfig>
EOF
  command -v dbus-daemon >/dev/null || fail "dbus-daemon is missing; install the package dbus."
  dbus-daemon --config-file="$stage/bus.conf" --nofork --nopidfile --nosyslog 2>"$stage/bus.log" &
  export DBUS_SESSION_BUS_ADDRESS=unix:path=$path NO_AT_BRIDGE=1 GTK_A11Y=none
  local i
  for ((i = 0; i < 100; i++)); do
    [ -S "$stage/bus" ] && return
    sleep 0.02
  done
  cat "$stage/bus.log" >&2
  fail "the private bus did not start; its words are above."
}

# Runs an application and the voice service with it, until either ends.
#   stage_run [options of corvis run] --app PAGE -- OPTIONS OF corvis-voice
stage_run() {
  local runtime=() privileges=(microphone voicecontrol) granted=() page= app_id=com.example.app display_option=
  while [ "$1" != -- ]; do
    case $1 in
      --app) page=$2; shift ;;
      --app-id) app_id=$2; shift ;;
      --privilege) granted+=("$2"); shift ;;
      --no-privileges) privileges=() ;;
      --headless | --window) display_option=$1 ;;
      *) runtime+=("$1" "$2"); shift ;;
    esac
    shift
  done
  shift
  [ ${#granted[@]} = 0 ] || privileges=("${granted[@]}")
  local privilege
  for privilege in "${privileges[@]}"; do
    case $privilege in *://*) ;; *) privilege=$privilege_base/$privilege ;; esac
    runtime+=(--privilege "$privilege")
  done
  if [ "$display_option" = --headless ] ||
    { [ -z "$display_option" ] && [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; }; then
    runtime+=(--headless)
  fi

  stage_begin
  "$kit_bin/corvis-tv" --app-id "$app_id" --extension "$kit_library" "${runtime[@]}" "$page" </dev/null &
  local runtime_pid=$!
  "$kit_bin/corvis-voice" --app "$app_id" "$@" <&0 &
  local voice_pid=$!

  # Whichever ends first ends the run. The runtime says itself why it ended.
  local ended= status=0
  wait -n -p ended "$runtime_pid" "$voice_pid" || status=$?
  exit "$status"
}
