// The text form of a bundle:
//
//   "NB2"  checksum of the rest, 16 hexadecimal digits  entries
//
// An entry is a letter and its fields; a field is its length in bytes, a colon, and the bytes themselves:
//
//   s  key  string                      a string
//   b  key  hexadecimal digits          bytes: the only values that could contain a NUL
//   a  key  count ":"  string...        an array of strings
//
// For example, one entry "a" = "xyz" is the text  NB2 0123456789abcdef s1:a3:xyz  without the spaces.
// Because of the length prefixes there is no quoting: any text, even an encoded bundle, is written unchanged.
#ifndef NURVO_PLATFORM_BUNDLE_BUNDLE_FORMAT_H_
#define NURVO_PLATFORM_BUNDLE_BUNDLE_FORMAT_H_

#include <array>
#include <cstddef>
#include <string_view>

namespace nurvo {

constexpr std::string_view kBundleMagic = "NB2";
constexpr size_t kChecksumDigits = 16;
constexpr size_t kBundleHeaderSize = kBundleMagic.size() + kChecksumDigits;

constexpr char kStringLetter = 's';
constexpr char kBytesLetter = 'b';
constexpr char kArrayLetter = 'a';
constexpr char kFieldMark = ':';

constexpr std::string_view kHexDigits = "0123456789abcdef";

// The checksum of the text after the header, to detect damage.
using ChecksumText = std::array<char, kChecksumDigits>;
ChecksumText ChecksumOf(std::string_view text);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUNDLE_BUNDLE_FORMAT_H_
