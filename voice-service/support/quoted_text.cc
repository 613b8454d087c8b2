// Reading texts in double quotes.
#include "support/quoted_text.h"

#include <charconv>
#include <cstdint>

#include "support/text.h"

namespace corvis::voice {

namespace {

constexpr size_t kHexDigits = 4;

// The value of the four digits behind \u, whose "u" is at `position`; false when they are not there.
bool ReadHex(std::string_view text, size_t position, uint32_t& value) {
  const std::string_view digits = text.substr(position + 1, kHexDigits);
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  return digits.size() == kHexDigits && fault == std::errc() && end == digits.data() + digits.size();
}

bool isLow(uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

// Reads a \u escape whose "u" is at `position`, which ends on its last digit.
bool ReadCodePoint(std::string_view text, size_t& position, std::string& value) {
  uint32_t unit = 0;
  if (!ReadHex(text, position, unit) || unit == 0 || isLow(unit)) return false;
  position += kHexDigits;
  if (unit >= 0xD800 && unit < 0xDC00) {
    uint32_t low = 0;
    if (text.substr(position + 1, 2) != "\\u" || !ReadHex(text, position + 2, low) || !isLow(low)) return false;
    position += 2 + kHexDigits;
    unit = 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00);
  }
  value += Utf8(unit);
  return true;
}

// Reads the escape whose letter is at `position`.
bool ReadEscape(std::string_view text, size_t& position, std::string& value) {
  constexpr std::string_view kLetters = "\"\\/ntr";
  constexpr std::string_view kMeanings = "\"\\/\n\t\r";
  if (position >= text.size()) return false;
  if (text[position] == 'u') return ReadCodePoint(text, position, value);
  const size_t letter = kLetters.find(text[position]);
  if (letter == std::string_view::npos) return false;
  value += kMeanings[letter];
  return true;
}

}  // namespace

bool ReadQuoted(std::string_view text, size_t& position, std::string& value, TextError& error) {
  const size_t begin = position;
  for (size_t at = begin + 1; at < text.size() && text[at] != '\n'; ++at) {
    if (text[at] == '"') {
      position = at + 1;
      return true;
    }
    if (text[at] != '\\') {
      value += text[at];
      continue;
    }
    const size_t escape = at;
    if (!ReadEscape(text, ++at, value)) {
      error = {escape, "unknown escape; a quoted text knows \\\" \\\\ \\/ \\n \\t \\r and \\uXXXX"};
      return false;
    }
  }
  error = {begin, "the closing quote is missing"};
  return false;
}

}  // namespace corvis::voice
