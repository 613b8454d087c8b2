# Sets up a source tree: installs missing packages, configures and builds. Sourced by ../corvis.

kit_packages=(g++ cmake ninja-build pkg-config picojson-dev nlohmann-json3-dev libexpected-dev libcli11-dev libfmt-dev
  libpugixml-dev libxxhash-dev libsystemd-dev libglib2.0-dev libwebkit2gtk-4.1-dev libsoup-3.0-dev libxau-dev
  libedit-dev libcairo2-dev libwebp-dev libicu-dev esbuild libjs-source-map dbus xvfb fonts-dejavu-core
  fonts-wqy-microhei gstreamer1.0-plugins-bad gstreamer1.0-libav)
test_packages=(libgtest-dev libgmock-dev chromium openssl)
check_packages=(clang clang-format clang-tidy)
kit_targets=(corvis_voiceinteraction corvis-tv corvis_tv_web_process corvis)

# Installs those of the given packages that are missing, and prints their names.
install_missing() {
  local package missing=() installed
  installed=$(dpkg-query -W -f='<${Package} ${db:Status-Status}>' "$@" 2>/dev/null || true)
  for package in "$@"; do
    [[ $installed == *"<$package installed>"* ]] || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  command -v apt-get >/dev/null || fail "This needs the packages ${missing[*]}; install them, then run it again."
  local as_root=()
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || fail "These packages are missing and there is no sudo: ${missing[*]}"
    as_root=(sudo)
  fi
  echo "Installing: ${missing[*]}${as_root:+ (through sudo)}" >&2
  make_build_folder "$build"
  local log=$build/install.log
  if ! { "${as_root[@]}" apt-get update -qq && DEBIAN_FRONTEND=noninteractive "${as_root[@]}" \
    apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1 </dev/null; then
    tail -20 "$log" >&2
    fail "apt-get could not install ${missing[*]}; see the output above."
  fi
}

# Whether a build folder is configured for this tree at its current path, not for one that was copied or moved.
is_own() {
  local source
  source=$(grep -s ^CMAKE_HOME_DIRECTORY: "$1/CMakeCache.txt") && [ "${source#*=}" -ef "$home" ]
}

# Whether the given targets are up to date in this build folder.
is_up_to_date() {
  is_own "$1" && [[ $(ninja -C "$1" -n "${@:2}" 2>/dev/null) == *"no work to do"* ]]
}

# Creates a build folder; removes its contents if they belong to another tree.
make_build_folder() {
  if [ -f "$1/CMakeCache.txt" ] && ! is_own "$1"; then
    echo "The build folder $1 belongs to another source folder; rebuilding it." >&2
    rm -rf "$1" || fail "The build folder $1 belongs to another source folder and can't be removed; remove it."
  fi
  { mkdir -p "$1" && [ -w "$1" ]; } 2>/dev/null || fail "Can't write to the build folder $1; check its permissions."
}

# Joining the files of a target takes a third of the time to compile them all. Without it, a change compiles one file, and
# an editor finds the options of each.
joined=(-DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0)
kit_options=(-DCORVIS_BUILD_TESTS=OFF "${joined[@]}")
# With the tests the build is a developer's, except in continuous integration.
test_options=(-DCORVIS_BUILD_TESTS=ON)
if [ -n "${CI:-}" ]; then test_options+=("${joined[@]}"); else test_options+=(-DCMAKE_UNITY_BUILD=OFF); fi

# Configures a build folder unless it has been configured with these options before.
configure() {
  local folder=$1 options="${*:2}" log=$1/configure.log
  if is_own "$folder" && [ "$(cat "$folder/corvis-options" 2>/dev/null)" = "$options" ] &&
    [ -f "$folder/build.ninja" ]; then return; fi
  make_build_folder "$folder"
  cmake -S "$home" -B "$folder" -G Ninja "${@:2}" >"$log" 2>&1 ||
    { cat "$log" >&2; fail "cmake could not configure the build; see the output above."; }
  echo "$options" >"$folder/corvis-options"
}

# Builds the given targets. Shows the progress on a terminal; otherwise prints only failures.
compile() {
  local folder=$1 log=$1/compile.log
  is_up_to_date "$@" && return
  make_build_folder "$folder"
  if [ -t 2 ]; then
    ninja -C "$folder" "${@:2}" >&2 || fail "The build failed; see the output above."
  elif ! ninja -C "$folder" "${@:2}" >"$log" 2>&1; then
    cat "$log" >&2
    fail "The build failed; see the output above."
  fi
}

prepare_kit() {
  is_up_to_date "$build" "${kit_targets[@]}" && return
  install_missing "${kit_packages[@]}"
  if ! is_own "$build" || [ ! -f "$build/build.ninja" ]; then
    echo "Building; the first time takes a minute or two." >&2
    configure "$build" "${kit_options[@]}"
  fi
  compile "$build" "${kit_targets[@]}"
}

# Uses the installed Node.js, or installs Debian's.
prepare_node() {
  command -v node >/dev/null && command -v npm >/dev/null || install_missing nodejs npm
  if [ ! -f "$home/node_modules/.package-lock.json" ] ||
    [ "$home/package-lock.json" -nt "$home/node_modules/.package-lock.json" ]; then
    (cd "$home" && npm ci --silent --no-audit --no-fund) >&2 || fail "npm could not install the test tools."
    touch "$home/node_modules/.package-lock.json"
  fi
}
