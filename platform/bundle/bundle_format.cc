// The checksum of encoded bundles. xxHash detects damage at the speed of copying, but does not protect
// against forgery.
#include "bundle/bundle_format.h"

#include <cstdint>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace nurvo {

ChecksumText ChecksumOf(std::string_view text) {
  uint64_t sum = XXH3_64bits(text.data(), text.size());
  ChecksumText digits;
  for (char& digit : digits) {
    constexpr int kDigitBits = 4;
    digit = kHexDigits[sum % kHexDigits.size()];
    sum >>= kDigitBits;
  }
  return digits;
}

}  // namespace nurvo
