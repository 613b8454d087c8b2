// Bundle texts for the fuzz targets: a fuzzer would not guess a checksum, so it writes what stands behind it.
#ifndef CORVIS_TESTING_SIGNED_BUNDLE_H_
#define CORVIS_TESTING_SIGNED_BUNDLE_H_

#include <cstddef>
#include <cstdint>
#include <string>

// `body` as the text of a bundle, with the right header in front.
std::string SignedBundle(const std::string& body);

inline std::string SignedBundle(const uint8_t* data, size_t size) {
  return SignedBundle(std::string(reinterpret_cast<const char*>(data), size));
}

#endif  // CORVIS_TESTING_SIGNED_BUNDLE_H_
