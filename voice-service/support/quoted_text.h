// Reading texts in double quotes, as commands and scripts write them.
#ifndef CORVIS_VOICE_SERVICE_SUPPORT_QUOTED_TEXT_H_
#define CORVIS_VOICE_SERVICE_SUPPORT_QUOTED_TEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace corvis::voice {

// A mistake in a text, and the byte at which it is.
struct TextError {
  size_t offset = 0;
  std::string message;
};

// Reads the quoted text that begins at `text[position]`, a double quote, with the escapes \" \\ \/ \n \t \r
// and \uXXXX (a pair of surrogates counts as one character; NUL can't be sent and is refused). Appends its
// value to `value` and moves `position` behind the closing quote; fills `error` and returns false when there
// is no whole quoted text.
bool ReadQuoted(std::string_view text, size_t& position, std::string& value, TextError& error);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_SUPPORT_QUOTED_TEXT_H_
