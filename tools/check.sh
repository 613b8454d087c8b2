# Runs all checks over the whole tree. Sourced by ../corvis.

check_usage() {
  cat <<'EOT'
Usage: corvis check

Runs formatters, linters, the check of the layers, and three builds with warnings as errors: GCC, Clang with clang-tidy,
and Release without assertions. Prints one line per check, and the output of each failed check, which is also kept in a
file.
EOT
}

# Lists the tracked files with one of these extensions.
tracked() {
  local ending patterns=()
  for ending in "$@"; do patterns+=("*.$ending"); done
  git -C "$home" ls-files -- "${patterns[@]}"
}

# Runs one check and prints its result. Arguments: the name, then the command.
check_step() {
  local name=$1 log=$build/check/${1// /-}.log begin=$SECONDS
  shift
  if "$@" >"$log" 2>&1 </dev/null; then
    passed=$((passed + 1))
    echo "✔ $name ($((SECONDS - begin)) s)"
  else
    failed=$((failed + 1))
    # Show the findings without the build's command lines and counts.
    grep -vE '^(\[[0-9]+/|ninja: |[0-9]+ warnings? |Suppressed |Use -header-filter)|^/usr/bin/(c\+\+|cmake|clang)' "$log" |
      tail -n 100
    echo "✖ $name ($((SECONDS - begin)) s); its output is in $log"
  fi
}

# Starts the Clang build from scratch after a change of clang-tidy's configuration, which ninja does not track.
build_with_clang() {
  [ -z "$(find $(git ls-files '*.clang-tidy') -newer "$build-clang/corvis-options" 2>&1)" ] || rm -rf "$build-clang"
  build_all "$build-clang" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_CXX_CLANG_TIDY="clang-tidy;--quiet" \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=
}

# Builds everything, including tests, benchmarks and fuzzers, in a separate folder, and continues after errors. Joined
# files read each header once, which makes clang-tidy about eight times faster.
build_all() {
  local folder=$1
  shift
  configure "$folder" -DCORVIS_BUILD_TESTS=ON -DCORVIS_BUILD_BENCH=ON "${joined[@]}" "$@" && ninja -k 0 -C "$folder"
}

corvis_check() {
  [ $# = 0 ] || { check_usage; [ "$1" = --help ] || [ "$1" = -h ]; return; }
  install_missing "${kit_packages[@]}" "${test_packages[@]}" "${bench_packages[@]}" "${check_packages[@]}"
  prepare_node
  cd "$home"
  make_build_folder "$build"
  mkdir -p "$build/check"
  check_step clang-format eval "tracked cc h | xargs clang-format --dry-run --Werror"
  check_step prettier npx prettier --check --log-level warn .
  check_step eslint npx eslint .
  check_step layers node tools/layers.mjs
  configure "$build" "${test_options[@]}"
  check_step "build with GCC" ninja -k 0 -C "$build"
  check_step "build with Clang and clang-tidy" build_with_clang
  # At this level GCC takes strings of moved variants for uninitialized.
  check_step "build for release" build_all "$build-release" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS=-Wno-maybe-uninitialized
  check_step "tests of the release" ctest --test-dir "$build-release" --output-on-failure -j "$(nproc)"
  echo "$passed checks passed, $failed failed"
  [ "$failed" = 0 ]
}
