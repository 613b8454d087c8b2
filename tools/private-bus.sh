# A message bus for programs that need one. Sourced by ../corvis.

# Runs a command on a bus that this user alone can reach and that starts no services. Its folder is the command's
# TMPDIR, too, and is gone afterwards.
with_private_bus() (
  folder=$(mktemp -d "${TMPDIR:-/tmp}/corvis.XXXXXX") || fail "No folder for the bus can be made; is TMPDIR right?" 6
  trap 'rm -rf "$folder"' EXIT
  # Every byte in hexadecimal, as a path may hold any.
  path=$(printf %s "$folder/bus" | od -An -v -tx1 | tr -d '\n' | tr ' ' %)
  sed "s|<listen>.*</listen>|<listen>unix:path=$path</listen>|" "$home/kit/app/bus.conf" >"$folder/bus.conf"
  # The bus's own words are for when it does not start.
  status=0
  TMPDIR=$folder NO_AT_BRIDGE=1 GTK_A11Y=none dbus-run-session --config-file="$folder/bus.conf" -- \
    sh -c 'exec "$@" 2>&3 3>&-' sh "$@" 3>&2 2>"$folder/bus.log" || status=$?
  [ "$status" != 127 ] || cat "$folder/bus.log" >&2
  exit "$status"
)
