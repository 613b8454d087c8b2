// Small operations on UTF-8 texts.
#ifndef CORVIS_VOICE_SERVICE_SUPPORT_TEXT_H_
#define CORVIS_VOICE_SERVICE_SUPPORT_TEXT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvis::voice {

// ASCII letters in lower case; other bytes stay.
std::string Lower(std::string_view text);
// Without blanks (space, tab, line ends) at both ends.
std::string_view Trim(std::string_view text);
// Trimmed, and each run of blanks made one space.
std::string Squeeze(std::string_view text);
std::vector<std::string_view> Lines(std::string_view text);
// "a, b and c", with `last` in place of "and".
std::string Enumerate(const std::vector<std::string>& parts, const char* last = "and");
bool StartsWith(std::string_view text, std::string_view prefix);
// Characters, not bytes; close enough to the columns that a terminal uses.
size_t Width(std::string_view text);
// Filled up with spaces to `width` columns.
std::string Padded(std::string_view text, size_t width);
// At most `width` columns, the last one "…" when something was cut off. Line ends and other control
// characters, which would upset a terminal, become spaces.
std::string Shortened(std::string_view text, size_t width);
// In double quotes, with \" \\ \n \t \r and \uXXXX for other control characters.
std::string Quoted(std::string_view text);
// The UTF-8 bytes of a code point.
std::string Utf8(uint32_t code_point);
// "1.2 ms", "0.04 ms", "1234 ms".
std::string Milliseconds(int64_t microseconds);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_SUPPORT_TEXT_H_
