// The checksum: eight bytes at a time, because a table-driven CRC took longer than the encoding itself.
#include "bundle/checksum.h"

#include <cstring>

namespace nurvo {

namespace {

constexpr uint64_t kSeed = 0x9E3779B97F4A7C15;
constexpr uint64_t kMultiplier = 0xD6E8FEB86659FD93;  // odd, so that the multiplication loses nothing

// Reversible, which is what makes two different words lead to two different sums.
uint64_t Mix(uint64_t sum, uint64_t word) {
  constexpr int kTurn = 29;
  constexpr int kBits = 64;
  sum = (sum ^ word) * kMultiplier;
  return sum << kTurn | sum >> (kBits - kTurn);
}

uint64_t SumOf(std::string_view text) {
  uint64_t sum = Mix(kSeed, text.size());
  uint64_t word = 0;
  for (; text.size() >= sizeof(word); text.remove_prefix(sizeof(word))) {
    std::memcpy(&word, text.data(), sizeof(word));
    sum = Mix(sum, word);
  }
  word = 0;
  if (!text.empty()) std::memcpy(&word, text.data(), text.size());
  return Mix(Mix(sum, word), 0);
}

}  // namespace

ChecksumText ChecksumOf(std::string_view text) {
  uint64_t sum = SumOf(text);
  ChecksumText digits;
  for (char& digit : digits) {
    constexpr int kDigitBits = 4;
    constexpr uint64_t kDigitMask = 0xF;
    digit = kHexDigits[sum & kDigitMask];
    sum >>= kDigitBits;
  }
  return digits;
}

}  // namespace nurvo
