// Implements each form as a function that converts one character.
#include "output/text_forms.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "output/characters.h"

namespace corvis::kit {

namespace {

// Converts each character with `form`; keeps the characters for which it returns an empty string.
template <typename Form>
std::string Written(std::string_view text, Form form) {
  std::string written;
  written.reserve(text.size());
  while (!text.empty()) {
    const Character character = TakeCharacter(text);
    const std::string escape = form(character);
    written.append(escape.empty() ? character.bytes : escape);
  }
  return written;
}

std::string ByteEscape(gunichar byte) {
  return fmt::format("\\x{:02x}", byte);
}
std::string CodeEscape(gunichar code) {
  return fmt::format("\\u{:04x}", code);
}

// Whether the character reorders its surroundings: marks, embeddings, overrides and isolates.
bool IsBidirectionalControl(gunichar code) {
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

// Whether a terminal would interpret the character instead of showing it.
bool IsActive(gunichar code) {
  const GUnicodeType type = g_unichar_type(code);
  return type == G_UNICODE_CONTROL || type == G_UNICODE_LINE_SEPARATOR ||
         type == G_UNICODE_PARAGRAPH_SEPARATOR || IsBidirectionalControl(code);
}

std::string VisibleEscape(const Character& character) {
  constexpr gunichar kAsciiEnd = 0x80;
  if (!character.is_valid) return ByteEscape(character.code);
  if (!IsActive(character.code)) return "";
  switch (character.code) {
    case '\n':
      return "\\n";
    case '\t':
      return "\\t";
    case '\r':
      return "\\r";
    default:
      return character.code < kAsciiEnd ? ByteEscape(character.code) : CodeEscape(character.code);
  }
}

// XML 1.0, production 2. Surrogates need no check, because valid UTF-8 has none.
bool IsXmlCharacter(gunichar code) {
  return code == '\t' || code == '\n' || (code >= ' ' && code < 0xFFFE) || code > 0xFFFF;
}

}  // namespace

std::string ForTerminal(std::string_view text) {
  return Written(text, VisibleEscape);
}

std::string LinesForTerminal(std::string_view text) {
  const size_t end = text.find('\n');
  if (end == std::string_view::npos) return ForTerminal(text);
  return ForTerminal(text.substr(0, end)) + "\n    " + LinesForTerminal(text.substr(end + 1));
}

std::string TextForTerminal(std::string_view text) {
  return Written(text, [](const Character& character) {
    return character.code == '\n' ? std::string() : VisibleEscape(character);
  });
}

std::string ForTap(std::string_view text) {
  return Written(ForTerminal(text), [](const Character& character) -> std::string {
    if (character.code == '#') return "\\#";
    return character.code == '\\' ? "\\\\" : "";
  });
}

std::string ForXml(std::string_view text) {
  return Written(text, [](const Character& character) -> std::string {
    if (character.is_valid && IsXmlCharacter(character.code)) return "";
    return character.is_valid && character.code > ' ' ? CodeEscape(character.code) : VisibleEscape(character);
  });
}

std::string JsonText(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', /*ensure_ascii=*/true, nlohmann::json::error_handler_t::replace);
}

std::string JsonLine(const nlohmann::ordered_json& value) {
  const std::string line =
      value.dump(-1, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace);
  return Written(line, [](const Character& character) -> std::string {
    return IsActive(character.code) ? CodeEscape(character.code) : "";
  });
}

std::string Quoted(std::string_view text) {
  return '"' +
         Written(text,
                 [](const Character& character) -> std::string {
                   if (character.code == '"' || character.code == '\\')
                     return {'\\', static_cast<char>(character.code)};
                   return character.code < ' ' ? VisibleEscape(character) : "";
                 }) +
         '"';
}

}  // namespace corvis::kit
