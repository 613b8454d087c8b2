# Builds and runs the tests and counts the results. Sourced by ../corvis.

test_usage() {
  cat <<'EOT'
Usage: corvis test [--sanitize] [--native|--script|--npm|--kit]

Builds and runs all tests, or one part of them: native (C++), script (the script API in a browser), npm (the npm
package), kit (from end to end, with real processes). With --sanitize: the native tests under ASan and UBSan. A test that
fails is run a second time; if it passes then, it is reported as flaky. The last line shows the totals.
EOT
}

passed=0 failed=0

# Runs one test runner, shows its output, and adds up its totals. A runner without any test counts as a failure.
count_results() {
  local name=$1 log=$build/tests.log status=0
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
    echo "$name: the test runner exited with status $status." >&2
    failed=$((failed + 1))
  fi
}

# A test that fails is run a second time, here and in node_tests: most tests are several real processes, and a machine
# that stalls for seconds is no fault of theirs. What passes the second time is reported as flaky.
native_tests() {
  count_results "native tests" ctest --test-dir "$1" --output-on-failure --no-tests=error --repeat until-pass:2 \
    -j "$(nproc)"
}

# Runs the tests in JavaScript below the given folders.
node_tests() {
  local name=$1 files first=$passed,$failed good bad
  shift
  prepare_node
  mapfile -t files < <(find "$@" -name '*.test.mjs' | sort)
  count_files "$name" "${files[@]}"
  mapfile -t files < <(sed -nE 's/^test at (.+\.test\.mjs):[0-9]+:[0-9]+$/\1/p' "$build/tests.log" | sort -u)
  # More than a few failures have one cause, which a second run doesn't remove.
  [ ${#files[@]} -gt 0 ] && [ ${#files[@]} -le 3 ] || return 0
  good=$((passed - ${first%,*})) bad=$((failed - ${first#*,}))
  passed=${first%,*} failed=${first#*,}
  count_files "the failed of the $name, a second time" "${files[@]}"
  passed=$((${first%,*} + good + bad - (failed - ${first#*,})))
  [ "$failed" != "${first#*,}" ] || echo "Flaky (failed once, passed the second time): ${files[*]}" >&2
}

count_files() {
  CORVIS_BUILD=$build CORVIS_SCRIPT_API=$build/voiceinteraction_api.js \
    count_results "$1" node --test --test-reporter=spec "${@:2}"
}

# Runs the native tests in a separate build with sanitizers, in which no file is joined with others, so that each includes
# what it uses.
sanitized_tests() {
  configure "$build-sanitize" -DCORVIS_BUILD_TESTS=ON -DCORVIS_SANITIZE=address,undefined -DCMAKE_BUILD_TYPE=Debug
  compile "$build-sanitize" native_tests
  native_tests "$build-sanitize"
}

test_parts() {
  local part
  configure "$build" "${test_options[@]}"
  compile "$build"
  for part in "$@"; do
    case $part in
      native) native_tests "$build" ;;
      script) node_tests "script tests" tests/src ;;
      npm) prepare_npm_package; node_tests "npm tests" tests/npm ;;
      kit) node_tests "kit tests" tests/{runtime,examples,kit,docs,robustness,bench} ;;
    esac
  done
}

corvis_test() {
  local parts=() sanitize= option
  for option in "$@"; do
    case $option in
      -h | --help) test_usage; return ;;
      --sanitize) sanitize=1 ;;
      --native | --script | --npm | --kit) parts+=("${option#--}") ;;
      *) fail "Unknown option $option; see corvis test --help." 2 ;;
    esac
  done
  [ ${#parts[@]} -gt 0 ] || parts=(native script npm kit)
  install_missing "${kit_packages[@]}" "${test_packages[@]}"
  cd "$home"
  if [ -n "$sanitize" ]; then sanitized_tests; else test_parts "${parts[@]}"; fi
  echo "$passed passed, $failed failed"
  [ "$failed" = 0 ]
}
