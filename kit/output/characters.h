// The characters of a text that need not be UTF-8.
#ifndef CORVIS_KIT_OUTPUT_CHARACTERS_H_
#define CORVIS_KIT_OUTPUT_CHARACTERS_H_

#include <glib.h>

#include <string_view>

namespace corvis::kit {

struct Character {
  // The code point; of what is not UTF-8, the byte.
  gunichar code = 0;
  bool is_valid = true;
  // As it is in the text.
  std::string_view bytes;
};

// Takes the first character off a text that is not empty.
inline Character TakeCharacter(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text[0]);
  gunichar code = first;
  // GLib takes a NUL for the end of the text.
  if (first != 0) code = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
  // Only its two errors have this bit.
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
