// Tells an intact bundle text from a damaged one.
#ifndef NURVO_PLATFORM_BUNDLE_CHECKSUM_H_
#define NURVO_PLATFORM_BUNDLE_CHECKSUM_H_

#include <array>
#include <cstdint>
#include <string_view>

#include "bundle/bundle_format.h"

namespace nurvo {

using ChecksumText = std::array<char, kChecksumDigits>;

// A checksum of 64 bits as hexadecimal digits. Texts that differ in their length, or within eight bytes at a
// multiple of eight only, never have the same one. Protects against damage, not against forgers.
ChecksumText ChecksumOf(std::string_view text);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUNDLE_CHECKSUM_H_
