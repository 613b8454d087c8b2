// Helpers for all fuzz targets: the input as a text, and reporting a finding.
#ifndef CORVIS_FUZZ_REQUIRE_H_
#define CORVIS_FUZZ_REQUIRE_H_

#include <cstddef>
#include <cstdint>
#include <string>

// Unless `holds`, prints the message and aborts, which the fuzzer reports as a finding.
void Require(bool holds, const char* what);

inline std::string FuzzText(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

#endif  // CORVIS_FUZZ_REQUIRE_H_
