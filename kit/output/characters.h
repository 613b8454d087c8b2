// Iterates over the characters of a text that may contain invalid UTF-8.
#ifndef CORVIS_KIT_OUTPUT_CHARACTERS_H_
#define CORVIS_KIT_OUTPUT_CHARACTERS_H_

#include <glib.h>

#include <string_view>

namespace corvis::kit {

struct Character {
  // The code point, or the byte value of an invalid byte.
  gunichar code = 0;
  bool is_valid = true;
  // The bytes as in the text.
  std::string_view bytes;
};

// Removes and returns the first character of a non-empty text.
inline Character TakeCharacter(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text[0]);
  gunichar code = first;
  // GLib treats NUL as the end of the text.
  if (first != 0) code = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
  // Only the two error values of GLib have this bit.
  constexpr gunichar kErrorBit = 0x80000000;
  const bool is_valid = (code & kErrorBit) == 0;
  char ignored[6];
  const size_t length = is_valid ? static_cast<size_t>(g_unichar_to_utf8(code, ignored)) : 1;
  const Character character{is_valid ? code : first, is_valid, text.substr(0, length)};
  text.remove_prefix(length);
  return character;
}

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_CHARACTERS_H_
