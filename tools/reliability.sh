# Provokes failures and prints figures: fuzzing, and the programs of tests/robustness. Sourced by ../corvis.

fuzz_packages=(clang libclang-rt-14-dev)

fuzz_usage() {
  cat <<'EOT'
Usage: corvis fuzz SECONDS [TARGET...]

Builds the fuzzers with clang, AddressSanitizer and UndefinedBehaviorSanitizer, runs each for SECONDS (or the ones
named) and prints a table: target, executions, executions per second, edges covered, findings. Exits with status 1 if
it finds something; the inputs are saved in fuzz/corpus/TARGET, which `corvis test` replays from then on.
EOT
}

corvis_fuzz() {
  case ${1:-} in
    -h | --help) fuzz_usage; return ;;
    '' | *[!0-9]*) fail "fuzz needs the seconds for each target; see corvis fuzz --help." 2 ;;
  esac
  local seconds=$1 target targets=()
  shift
  for target in "$home"/fuzz/*_fuzz.cc; do targets+=("$(basename "$target" _fuzz.cc)"); done
  for target in "$@"; do
    [[ " ${targets[*]} " == *" $target "* ]] || fail "there is no fuzz target $target; there are ${targets[*]}." 2
  done
  [ $# = 0 ] || targets=("$@")
  install_missing "${kit_packages[@]}" "${test_packages[@]}" "${fuzz_packages[@]}"
  configure "$build-fuzz" -DCMAKE_CXX_COMPILER=clang++ -DCORVIS_BUILD_TESTS=ON -DCORVIS_BUILD_FUZZERS=ON \
    -DCORVIS_SANITIZE=fuzzer-no-link,address,undefined
  compile "$build-fuzz" fuzzers
  local status=0
  printf '%-18s %12s %13s %8s %9s\n' target executions executions/s edges findings
  for target in "${targets[@]}"; do fuzz_one "$target" "$seconds" || status=1; done
  return "$status"
}

# Fuzzes one target and prints its row. The working corpus stays in the build folder; findings go to fuzz/corpus.
fuzz_one() {
  local target=$1 seconds=$2 corpus=$home/fuzz/corpus/$1 learned=$build-fuzz/learned/$1 log=$build-fuzz/fuzz_$1.log
  mkdir -p "$learned"
  local before after status=0
  before=$(ls "$corpus" | wc -l)
  "$build-fuzz/bin/fuzz_$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 \
    -artifact_prefix="$corpus/" "$learned" "$corpus" >"$log" 2>&1 || status=$?
  after=$(ls "$corpus" | wc -l)
  awk -v target="$target" -v findings="$((after - before))" '
    /stat::number_of_executed_units/ { executed = $2 }
    /stat::average_exec_per_sec/ { rate = $2 }
    /cov: [0-9]/ { for (i = 1; i < NF; i++) if ($i == "cov:") edges = $(i + 1) }
    END { printf "%-18s %12d %13d %8d %9d\n", target, executed, rate, edges, findings }' "$log"
  [ "$status" = 0 ] && return
  tail -40 "$log" >&2
  return 1
}

reliability_programs=(service-restarts departures web-process-crashes load hostile-peers permissions signals)

reliability_usage() {
  cat <<EOT
Usage: corvis reliability [--short] [NAME...]

Runs an application, provokes failures many times, and prints a line of figures for each program. With --short for
seconds instead of minutes. Without a name all programs are run:

  service-restarts       the voice service is killed and restarted
  departures             the application is closed, crashes or is killed: how soon the service notices
  web-process-crashes    the page's process is killed during commands
  load                   very many commands, and answers of critical sizes
  hostile-peers          messages that are malformed in every way
  signals                runs are interrupted at random moments: they end in time and leave nothing
  permissions            access without privileges, by other users, and to other folders is refused
  processors             the native tests on 32-bit and 64-bit ARM, emulated; not part of --short unless named

Exit status: 0 all programs passed; 1 one failed; 2 wrong usage.
EOT
}

corvis_reliability() {
  local short=() names=() name status=0
  for name in "$@"; do
    case $name in
      -h | --help) reliability_usage; return ;;
      --short) short=(--short) ;;
      *)
        [[ " ${reliability_programs[*]} processors " == *" $name "* ]] ||
          fail "reliability has no program $name; see corvis reliability --help." 2
        names+=("$name") ;;
    esac
  done
  if [ ${#names[@]} = 0 ]; then
    names=("${reliability_programs[@]}")
    # Its compilers are a large download, and it has no short form.
    [ ${#short[@]} -gt 0 ] || names+=(processors)
  fi
  if [ "${names[*]}" = processors ]; then
    test_processors
    return
  fi
  install_missing "${kit_packages[@]}" "${test_packages[@]}"
  prepare_node
  configure "$build" "${test_options[@]}"
  compile "$build" "${kit_targets[@]}" robustness_programs
  export CORVIS_BUILD=$build
  for name in "${names[@]}"; do
    if [ "$name" = processors ]; then
      test_processors || status=1
      continue
    fi
    local program=("$build/bin/robustness_programs" "$name")
    [ ! -f "$home/tests/robustness/$name.mjs" ] || program=(node "$home/tests/robustness/$name.mjs")
    with_private_bus "${program[@]}" "${short[@]}" || status=1
  done
  return "$status"
}
