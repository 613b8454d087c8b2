// Encodes bundles for the fuzz targets. A fuzzer can't guess the checksum, so it generates only the text
// after it.
#ifndef CORVIS_TESTING_SIGNED_BUNDLE_H_
#define CORVIS_TESTING_SIGNED_BUNDLE_H_

#include <cstddef>
#include <cstdint>
#include <string>

// Returns `body` as an encoded bundle, preceded by a valid header.
std::string SignedBundle(const std::string& body);

inline std::string SignedBundle(const uint8_t* data, size_t size) {
  return SignedBundle(std::string(reinterpret_cast<const char*>(data), size));
}

#endif  // CORVIS_TESTING_SIGNED_BUNDLE_H_
