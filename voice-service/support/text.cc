// Small operations on UTF-8 texts.
#include "support/text.h"

#include <algorithm>
#include <cstdio>

namespace corvis::voice {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";

bool isContinuationByte(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool isControl(char byte) {
  const auto value = static_cast<unsigned char>(byte);
  return value < 0x20 || value == 0x7F;
}

}  // namespace

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string_view Trim(std::string_view text) {
  const size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string Squeeze(std::string_view text) {
  std::string squeezed;
  for (const char c : Trim(text)) {
    const bool is_blank = kBlanks.find(c) != std::string_view::npos;
    if (!is_blank) {
      squeezed += c;
    } else if (squeezed.back() != ' ') {
      squeezed += ' ';
    }
  }
  return squeezed;
}

std::vector<std::string_view> Lines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

std::string Enumerate(const std::vector<std::string>& parts, const char* last) {
  std::string text;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) text += i + 1 == parts.size() ? std::string(" ") + last + " " : ", ";
    text += parts[i];
  }
  return text;
}

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

size_t Width(std::string_view text) {
  return text.size() - static_cast<size_t>(std::count_if(text.begin(), text.end(), isContinuationByte));
}

std::string Padded(std::string_view text, size_t width) {
  const size_t own = Width(text);
  return std::string(text) + std::string(own < width ? width - own : 0, ' ');
}

std::string Shortened(std::string_view text, size_t width) {
  std::string line;
  size_t columns = 0;
  for (const char c : text) {
    if (!isContinuationByte(c) && ++columns > width) break;
    line += isControl(c) ? ' ' : c;
  }
  if (columns <= width) return line;
  while (!line.empty() && isContinuationByte(line.back())) line.pop_back();
  if (!line.empty()) line.pop_back();
  return line + "…";
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    switch (c) {
      case '"': quoted += "\\\""; break;
      case '\\': quoted += "\\\\"; break;
      case '\n': quoted += "\\n"; break;
      case '\t': quoted += "\\t"; break;
      case '\r': quoted += "\\r"; break;
      default:
        if (!isControl(c)) {
          quoted += c;
        } else {
          char escape[8];
          std::snprintf(escape, sizeof(escape), "\\u%04x", static_cast<unsigned>(c));
          quoted += escape;
        }
    }
  }
  return quoted + '"';
}

std::string Utf8(uint32_t code_point) {
  const auto byte = [](uint32_t value) { return static_cast<char>(value); };
  if (code_point < 0x80) return {byte(code_point)};
  if (code_point < 0x800) return {byte(0xC0U | code_point >> 6U), byte(0x80U | (code_point & 0x3FU))};
  if (code_point < 0x10000) {
    return {byte(0xE0U | code_point >> 12U), byte(0x80U | (code_point >> 6U & 0x3FU)),
            byte(0x80U | (code_point & 0x3FU))};
  }
  return {byte(0xF0U | code_point >> 18U), byte(0x80U | (code_point >> 12U & 0x3FU)),
          byte(0x80U | (code_point >> 6U & 0x3FU)), byte(0x80U | (code_point & 0x3FU))};
}

std::string Milliseconds(int64_t microseconds) {
  const double milliseconds = static_cast<double>(microseconds) / 1000;
  const int decimals = milliseconds < 1 ? 2 : milliseconds < 100 ? 1 : 0;
  char text[40];
  std::snprintf(text, sizeof(text), "%.*f ms", decimals, milliseconds);
  return text;
}

}  // namespace corvis::voice
