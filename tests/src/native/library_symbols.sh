#!/usr/bin/env bash
# Checks the library's dynamic symbols: it exports its entry point alone, and takes from outside only what the
# platform's headers declare and the C and C++ runtimes offer.
#   library_symbols.sh LIBRARY LIBRARY-OF-HEADERS-ONLY FOLDER-OF-PLATFORM-HEADERS
set -euo pipefail
for library in "$1" "$2"; do
  exported=$(nm -D --defined-only "$library" | awk '{ print $3 }')
  [ "$exported" = XW_Initialize ] || { echo "exported: $exported"; exit 1; }
done
# Symbols with a version belong to the system's libraries; vestra_finish is optional and so declared nowhere.
taken=$(nm -D --undefined-only "$2" | awk '{ print $2 }' | grep -v -e '@' -e '^__gmon_start__$' -e '^_ITM_' \
  -e '^vestra_finish$')
[ -n "$taken" ] || { echo "the library needs nothing of the platform: was it linked with one?"; exit 1; }
for symbol in $taken; do
  name=$(c++filt "$symbol")
  case $name in *common::*) continue ;; esac
  grep -qrw "$name" "$3" || { echo "not in the platform's headers: $name"; exit 1; }
done
