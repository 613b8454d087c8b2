// Walks through all code points.
#include "fold_table.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

using Letters = std::u32string;

constexpr UChar32 kEnd = 0x110000;
constexpr UChar32 kFirstHangul = 0xAC00;
constexpr UChar32 kLastHangul = 0xD7A3;

// Hangul is composed, which is simple arithmetic.
bool IsLeftOut(UChar32 c) {
  return (c >= kFirstHangul && c <= kLastHangul) || u_charType(c) == U_UNASSIGNED ||
         u_charType(c) == U_SURROGATE;
}

bool IsTyped(UChar32 c) {
  constexpr std::pair<UChar32, UChar32> kUntyped[] = {{0x2460, 0x24FF},   {0x2E80, 0x2FDF},  {0x3200, 0x33FF},
                                                      {0xF900, 0xFAFF},   {0xFB50, 0xFDFF},  {0xFE70, 0xFEFE},
                                                      {0x1D400, 0x1D7FF}, {0x1EE00, 0x2FA1F}};
  return std::none_of(std::begin(kUntyped), std::end(kUntyped),
                      [c](const auto& block) { return c >= block.first && c <= block.second; });
}

bool IsOneOf(UChar32 c, std::u32string_view letters) {
  return letters.find(static_cast<char32_t>(c)) != std::u32string_view::npos;
}

// What a mark is in ASCII; nothing for what is no mark.
Letters PlainMark(UChar32 c) {
  if (u_isUWhiteSpace(c) || u_charType(c) == U_CONTROL_CHAR) return U" ";
  if (IsOneOf(c, U"'`\u00B4\u02B9\u02BB\u02BC\u2018\u2019\u201A\u201B\u2032\uFF07")) return U"'";
  if (u_hasBinaryProperty(c, UCHAR_QUOTATION_MARK)) return U"\"";
  if (u_hasBinaryProperty(c, UCHAR_DASH)) return U"-";
  if (IsOneOf(c, U"\u00BF\u061F")) return U"?";
  if (c == 0xA1) return U"!";
  if (IsOneOf(c, U"\u3002\uFF0E\uFF61")) return U".";
  if (IsOneOf(c, U"\u3001\uFF0C\uFF64\u060C")) return U",";
  return {};
}

Letters Normalized(UChar32 c) {
  UErrorCode error = U_ZERO_ERROR;
  const auto* fold = icu::Normalizer2::getNFKCCasefoldInstance(error);
  const auto* decompose = icu::Normalizer2::getNFKDInstance(error);
  const icu::UnicodeString text = decompose->normalize(fold->normalize(icu::UnicodeString(c), error), error);
  Letters letters;
  for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 letter = text.char32At(i);
    const Letters mark = PlainMark(letter);
    letters += mark.empty() ? Letters(1, letter) : mark;
  }
  return letters;
}

Letters Folded(UChar32 c) {
  Letters mark = PlainMark(c);
  if (!mark.empty()) return mark;
  if (u_charDigitValue(c) >= 0) return {static_cast<char32_t>(U'0' + u_charDigitValue(c))};
  return Normalized(c);
}

void Append(std::string& bytes, unsigned number) {
  constexpr unsigned kMore = 0x80;
  for (; number >= kMore; number /= kMore) bytes += static_cast<char>(number % kMore + kMore);
  bytes += static_cast<char>(number);
}

unsigned Zigzag(int number) {
  return number < 0 ? static_cast<unsigned>(-number) * 2 - 1 : static_cast<unsigned>(number) * 2;
}

}  // namespace

std::string FoldedLetters(FoldedRange range) {
  std::string bytes;
  UChar32 last = 0;
  int distance = 0;
  for (UChar32 c = 0; c < kEnd; ++c) {
    if (IsLeftOut(c) || (range == FoldedRange::kTyped && !IsTyped(c))) continue;
    const Letters folded = Folded(c);
    if (folded == Letters(1, c)) continue;
    Append(bytes, static_cast<unsigned>(c - last) * 2 + (folded.size() == 1 ? 0 : 1));
    last = c;
    if (folded.size() == 1) {
      const int now = static_cast<int>(folded[0]) - c;
      Append(bytes, Zigzag(now - distance));
      distance = now;
      continue;
    }
    Append(bytes, folded.size());
    for (const char32_t letter : folded) Append(bytes, letter);
  }
  return bytes;
}

std::string MarkClasses() {
  std::string bytes;
  UChar32 last = 0;
  for (UChar32 c = 0; c < kEnd; ++c) {
    const int mark_class = u_getCombiningClass(c);
    if (mark_class == 0) continue;
    const UChar32 first = c;
    while (u_getCombiningClass(c + 1) == mark_class) ++c;
    Append(bytes, first - last);
    Append(bytes, c + 1 - first);
    Append(bytes, mark_class);
    last = c + 1;
  }
  return bytes;
}
