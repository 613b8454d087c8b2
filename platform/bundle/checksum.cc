// The checksum: in words, and in four rows at once, because one row alone took longer than copying the text.
#include "bundle/checksum.h"

#include <algorithm>
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

using Rows = std::array<uint64_t, 4>;

void MixBlock(Rows& rows, const char* block) {
  Rows words;
  std::memcpy(words.data(), block, sizeof(words));
  for (size_t i = 0; i < rows.size(); ++i) rows[i] = Mix(rows[i], words[i]);
}

// A changed word changes its row's sum, and so the sum of the rows.
uint64_t SumOf(std::string_view text) {
  uint64_t sum = Mix(kSeed, text.size());
  Rows rows{};
  for (; text.size() >= sizeof(rows); text.remove_prefix(sizeof(rows))) MixBlock(rows, text.data());
  char last_block[sizeof(rows)] = {};
  std::copy(text.begin(), text.end(), last_block);
  MixBlock(rows, last_block);
  for (const uint64_t row : rows) sum = Mix(sum, row);
  return Mix(sum, 0);
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
