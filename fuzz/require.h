// Helpers for all fuzz targets: the input as a text, and reporting a finding.
#ifndef CORVIS_FUZZ_REQUIRE_H_
#define CORVIS_FUZZ_REQUIRE_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// Unless `holds`, prints the message and aborts, which the fuzzer reports as a finding.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

inline std::string FuzzText(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

#endif  // CORVIS_FUZZ_REQUIRE_H_
