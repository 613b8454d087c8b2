# Builds the npm package for JavaScript authors. Sourced by ../corvis.

npm_packages=(emscripten node-acorn)

npm_usage() {
  cat <<'EOT'
Usage: corvis npm

Builds the npm package corvis-voiceinteraction: the API's declarations, and a TV's voice control for browsers and
tests. Prints the path of the package file, ready for `npm install`. Installs Emscripten to compile to WebAssembly.
EOT
}

# Compiles the WebAssembly module, a separate CMake project with its own compiler.
compile_module() {
  local module=$build/npm/module log=$build/npm/module.log
  mkdir -p "$module"
  if ! grep -qs "^CMAKE_HOME_DIRECTORY:.*=$home/npm\$" "$module/CMakeCache.txt" || [ ! -f "$module/build.ninja" ] ||
    [ "$home/tools/npm.sh" -nt "$module/CMakeCache.txt" ]; then
    rm -rf "$module"
    emcmake cmake -S "$home/npm" -B "$module" -G Ninja -DCORVIS_PRIVILEGE_HOST="$(cat "$build/privilege-host")" \
      -DCORVIS_LANGUAGE_DATA="$build/npm/language_data.cc" \
      >"$log" 2>&1 || { cat "$log" >&2; fail "cmake could not configure the module; see the output above."; }
  fi
  ninja -C "$module" >"$log" 2>&1 || { cat "$log" >&2; fail "The module's build failed; see the output above."; }
}

# Creates the package's folder, build/npm/package, from the sources and the WebAssembly module.
prepare_npm_package() {
  install_missing "${kit_packages[@]}" "${npm_packages[@]}"
  prepare_node
  [ -f "$build/build.ninja" ] || configure "$build" "${kit_options[@]}"
  compile "$build" voiceinteraction_api.js language_data
  mkdir -p "$build/npm"
  # The module has English alone; the other languages, three quarters of the data, are files beside it.
  "$build/bin/language_data" --typed-letters "$build/npm/language_data.cc" "$home/kit/language/phrases/en.phrases"
  local file
  mkdir -p "$build/npm/languages"
  for file in "$home"/kit/language/phrases/*.phrases; do
    "$build/bin/language_data" "$build/npm/languages/${file##*/}" "$file"
  done
  compile_module
  node "$home/npm/build.mjs" "$build/npm/module/simulator.wasm" "$build/voiceinteraction_api.js" \
    "$build/npm/languages" "$build/npm/package"
}

corvis_npm() {
  [ $# = 0 ] || { npm_usage; return; }
  prepare_npm_package
  local file
  file=$(cd "$build/npm/package" && npm pack --silent --pack-destination "$build")
  echo "$build/$file"
}
