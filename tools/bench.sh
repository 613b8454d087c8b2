# Builds the benchmarks in ../bench and runs them on a private bus. Sourced by ../corvis.

bench_packages=(libbenchmark-dev valgrind)

bench_usage() {
  cat <<'EOT'
Usage: corvis bench [--short] [--json FILE] [--plots FILE.svg] [NAME...]

Compares measurements with lower bounds and prints one Markdown table: what is measured, against what, the ratio of the
medians, the target, and whether it is met. Both sides of each ratio are measured alternately in the same run.
docs/performance.md explains the figures. Without a name all are measured:

  round-trip     a command from the voice service to the page and its answer back
  test-app       the start of a test run, and each of its scripts
  command        the native work of a command, in instructions
  answer         answers that don't fit into one message
  bundle-json    a command's bundle to JSON
  element-map    finding the items that can be selected on a page
  script         the script API's start, and a command in it
  library        loading the library, and its memory per page
  size           the library, its script and its memory; without --short also for 32-bit and 64-bit ARM
  phrases        understanding a phrase, and loading a language
  logging        the cost of log calls while logging is off
  simulator      the npm package in a browser: size, start, a phrase

Options
  --short            take few samples, to check in seconds that it runs; the figures mean nothing
  --json FILE        write all samples; times are in microseconds
  --plots FILE.svg   write a page of plots: distributions, and times over sizes
EOT
}

# Whether the arguments request the long form of the row "size", which needs builds for other processors.
wants_cross() {
  local is_named=
  while [ $# -gt 0 ]; do
    case $1 in
      --short) return 1 ;;
      size) return 0 ;;
      --json | --plots) shift ;;
      -*) ;;
      *) is_named=1 ;;
    esac
    shift
  done
  [ -z "$is_named" ]
}

corvis_bench() {
  local argument
  for argument in "$@"; do
    case $argument in -h | --help) bench_usage; return ;; esac
  done
  install_missing "${kit_packages[@]}" "${test_packages[@]}" "${bench_packages[@]}"
  prepare_node
  # The build of the tests, so that nothing is built twice, and what is measured is compiled file by file.
  configure "$build" "${test_options[@]}" -DCORVIS_BUILD_BENCH=ON
  compile "$build" "${kit_targets[@]}" bench_programs
  prepare_npm_package
  ! wants_cross "$@" || prepare_cross
  unset NURVO_LOG
  export CORVIS_BUILD=$build CORVIS_SCRIPT_API=$build/voiceinteraction_api.js
  with_private_bus node "$home/bench/run.mjs" "$@"
}
