# Builds the library and its tests for other processors with Debian's cross compilers and runs them with qemu-user.
# Sourced by ../corvis.

cross_packages=(g++-arm-linux-gnueabihf g++-aarch64-linux-gnu qemu-user googletest)
cross_triplets=(arm-linux-gnueabihf aarch64-linux-gnu)

# Builds for each processor in the folder $build-TRIPLET.
prepare_cross() {
  install_missing "${kit_packages[@]}" "${cross_packages[@]}"
  local triplet
  for triplet in "${cross_triplets[@]}"; do
    configure "$build-$triplet" -DCMAKE_TOOLCHAIN_FILE="$home/cmake/DebianCross.cmake" -DCORVIS_TRIPLET="$triplet" \
      -DCORVIS_BUILD_DESKTOP=OFF -DCORVIS_BUILD_TESTS=ON
    compile "$build-$triplet"
  done
}

# Runs the tests of each processor and prints how many passed.
test_processors() {
  prepare_cross
  local triplet log passed=() status=0
  for triplet in "${cross_triplets[@]}"; do
    log=$build-$triplet/tests.log
    ctest --test-dir "$build-$triplet" --output-on-failure --no-tests=error -j "$(nproc)" >"$log" 2>&1 ||
      { status=1; cat "$log" >&2; }
    passed+=("$triplet $(grep -c ' Passed ' "$log") tests")
  done
  printf 'processors: passed under qemu-user: %s, %s\n' "${passed[@]}"
  return "$status"
}
