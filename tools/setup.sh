# Setting up a source tree: installing what is missing, building, testing and checking. Sourced by ../corvis.

kit_packages=(g++ cmake ninja-build pkg-config picojson-dev nlohmann-json3-dev libexpected-dev libcli11-dev libfmt-dev
  libpugixml-dev libxxhash-dev libsystemd-dev libglib2.0-dev libwebkit2gtk-4.1-dev libedit-dev libcairo2-dev esbuild
  dbus xvfb fonts-dejavu-core)
test_packages=(libgtest-dev libgmock-dev chromium)
check_packages=(clang clang-format clang-tidy)
kit_targets=(corvis_voiceinteraction corvis-tv corvis_tv_web_process corvis-voice)

# Installs the packages among the arguments that are not there, saying which.
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

# Whether a build folder was configured for this tree where it is now, not before it was copied or moved.
is_own() {
  local source
  source=$(grep -s ^CMAKE_HOME_DIRECTORY: "$1/CMakeCache.txt") && [ "${source#*=}" -ef "$home" ]
}

# Whether the targets given need no work in this build folder.
is_up_to_date() {
  is_own "$1" && [[ $(ninja -C "$1" -n "${@:2}" 2>/dev/null) == *"no work to do"* ]]
}

# Makes a build folder, empty unless it is this tree's own.
make_build_folder() {
  if [ -f "$1/CMakeCache.txt" ] && ! is_own "$1"; then
    echo "The build folder $1 belongs to another place; it is built anew." >&2
    rm -rf "$1" || fail "The build folder $1 belongs to another place and can't be removed."
  fi
  { mkdir -p "$1" && [ -w "$1" ]; } 2>/dev/null || fail "The build folder $1 can't be written; may this user write there?"
}

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

# Builds the targets given. On a terminal what is built is shown, elsewhere only what fails.
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
    configure "$build" -DCORVIS_BUILD_TESTS=OFF
  fi
  compile "$build" "${kit_targets[@]}"
}

# Node.js from wherever it is; Debian's when there is none.
prepare_node() {
  command -v node >/dev/null && command -v npm >/dev/null || install_missing nodejs npm
  if [ ! -f "$home/node_modules/.package-lock.json" ] ||
    [ "$home/package-lock.json" -nt "$home/node_modules/.package-lock.json" ]; then
    (cd "$home" && npm ci --silent --no-audit --no-fund) >&2 || fail "npm could not install the test tools."
    touch "$home/node_modules/.package-lock.json"
  fi
}

test_usage() {
  cat <<'EOF'
Usage: corvis test [--sanitize] [--native|--script|--npm|--kit]

Builds and passes all tests, or one part of them: native (C++), script (in a browser), npm (the npm package), kit (the
whole road, with real processes). With --sanitize: the native tests under ASan and UBSan. The totals stand on the last line.
EOF
}

passed=0 failed=0

# Runs one runner, shows what it prints, and adds up its totals. A runner that counted nothing has failed.
count_results() {
  local name=$1 log=$build/tests.log status=0
  mkdir -p "$build"
  shift
  echo "== $name" >&2
  "$@" 2>&1 | tee "$log" || status=$?
  local good bad
  good=$(sed -nE 's/^[0-9]+% tests passed, ([0-9]+) tests failed out of ([0-9]+)$/\2 \1/p; s/^(ℹ|#) pass ([0-9]+)$/\2 0/p' \
    "$log" | awk '{ n += $1 - $2 } END { print n + 0 }')
  bad=$(sed -nE 's/^[0-9]+% tests passed, ([0-9]+) tests failed out of .*/\1/p; s/^(ℹ|#) fail ([0-9]+)$/\2/p' "$log" |
    awk '{ n += $1 } END { print n + 0 }')
  passed=$((passed + good)) failed=$((failed + bad))
  if [ "$status" != 0 ] && [ "$bad" = 0 ] || [ $((good + bad)) = 0 ]; then
    echo "$name: the runner ended with status $status." >&2
    failed=$((failed + 1))
  fi
}

native_tests() {
  count_results "native tests" ctest --test-dir "$1" --output-on-failure --no-tests=error -j "$(nproc)"
}

node_tests() {
  local name=$1
  shift
  CORVIS_BUILD=$build CORVIS_SCRIPT_API=$build/voiceinteraction_api.js \
    count_results "$name" node --test --test-reporter=spec "$@"
}

corvis_test() {
  local parts=() sanitize= option
  for option in "$@"; do
    case $option in
      -h | --help) test_usage; return ;;
      --sanitize) sanitize=1 ;;
      --native | --script | --npm | --kit) parts+=("${option#--}") ;;
      *) fail "test does not know $option; see corvis test --help." 2 ;;
    esac
  done
  [ ${#parts[@]} -gt 0 ] || parts=(native script npm kit)
  shopt -s nullglob
  install_missing "${kit_packages[@]}" "${test_packages[@]}"
  cd "$home"
  if [ -n "$sanitize" ]; then
    configure "$build-sanitize" -DCORVIS_BUILD_KIT=OFF -DCORVIS_BUILD_TESTS=ON -DCORVIS_SANITIZE=address,undefined
    compile "$build-sanitize"
    native_tests "$build-sanitize"
  else
    configure "$build" -DCORVIS_BUILD_TESTS=ON
    compile "$build"
    local part
    for part in "${parts[@]}"; do
      case $part in
        native) native_tests "$build" ;;
        script) prepare_node; node_tests "script tests" tests/src/script/*.test.mjs ;;
        npm) prepare_npm_package; node_tests "npm tests" tests/npm/*.test.mjs ;;
        kit) prepare_node; node_tests "kit tests" tests/{runtime,examples,kit,docs,robustness,bench}/*.test.mjs ;;
      esac
    done
  fi
  echo "$passed passed, $failed failed"
  [ "$failed" = 0 ]
}

# The tracked files that end in one of the arguments.
tracked() {
  local ending patterns=()
  for ending in "$@"; do patterns+=("*.$ending"); done
  git -C "$home" ls-files -- "${patterns[@]}"
}

corvis_check() {
  [ $# = 0 ] || { echo "Usage: corvis check
Formatters, clang-tidy, ESLint and warnings as errors, over the whole tree."; return; }
  install_missing "${kit_packages[@]}" "${test_packages[@]}" "${check_packages[@]}"
  prepare_node
  cd "$home"
  local status=0
  echo "== clang-format" >&2
  tracked cc h | xargs clang-format --dry-run --Werror || status=1
  echo "== prettier" >&2
  npx prettier --check --log-level warn . || status=1
  echo "== eslint" >&2
  npx eslint . || status=1
  echo "== warnings" >&2
  configure "$build" -DCORVIS_BUILD_TESTS=ON
  compile "$build"
  echo "== clang-tidy" >&2
  tracked cc | grep -v '^fuzz/' | xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet 2>/dev/null || status=1
  [ "$status" = 0 ] && echo "All checks passed." || fail "some checks did not pass; their words are above."
}
