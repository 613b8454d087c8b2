// Adds the header and checksum of an encoded bundle.
#include "testing/signed_bundle.h"

#include "bundle/bundle_format.h"

std::string SignedBundle(const std::string& body) {
  const nurvo::ChecksumText checksum = nurvo::ChecksumOf(body);
  return std::string(nurvo::kBundleMagic).append(checksum.data(), checksum.size()).append(body);
}
