// What every fuzz target uses: its input as a text, and ending the process as a finding.
#ifndef CORVIS_FUZZ_REQUIRE_H_
#define CORVIS_FUZZ_REQUIRE_H_

#include <cstddef>
#include <cstdint>
#include <string>

// Ends the process, as a finding, unless `holds`.
void Require(bool holds, const char* what);

inline std::string FuzzText(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

#endif  // CORVIS_FUZZ_REQUIRE_H_
