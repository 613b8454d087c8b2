# Runs programs that need a message bus. Sourced by ../corvis.

# Runs a command on a bus that only this user can reach and that activates no services. The bus's folder is also the
# command's TMPDIR, and is removed afterwards.
with_private_bus() (
  folder=$(mktemp -d "${TMPDIR:-/tmp}/corvis.XXXXXX") || fail "Can't create a folder for the bus; set TMPDIR to a folder that you may write to." 6
  trap 'rm -rf "$folder"' EXIT
  # Escape every byte in hexadecimal, because a path may contain any.
  path=$(printf %s "$folder/bus" | od -An -v -tx1 | tr -d '\n' | tr ' ' %)
  sed "s|<listen>.*</listen>|<listen>unix:path=$path</listen>|" "$home/kit/app/bus.conf" >"$folder/bus.conf"
  # Print the output of the bus only if it does not start.
  status=0
  TMPDIR=$folder NO_AT_BRIDGE=1 GTK_A11Y=none dbus-run-session --config-file="$folder/bus.conf" -- \
    sh -c 'exec "$@" 2>&3 3>&-' sh "$@" 3>&2 2>"$folder/bus.log" || status=$?
  [ "$status" != 127 ] || cat "$folder/bus.log" >&2
  exit "$status"
)
