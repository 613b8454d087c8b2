// Reads the JSON text of a call. Texts come from pages, so none may do harm by its nesting, its length or
// numbers that fit no double.
#ifndef NURVO_PLATFORM_BINDING_CALL_PARSER_H_
#define NURVO_PLATFORM_BINDING_CALL_PARSER_H_

#include <picojson.h>

#include <cstddef>

namespace nurvo {

// How deeply arrays and objects may be nested.
constexpr size_t kMaxJsonDepth = 256;

// Reads `text` as one JSON value with nothing but white space after it. Returns whether it is one; `value` is
// meaningful only then. An escaped half of a surrogate pair becomes U+FFFD: scripts can send one, and
// the rest of such a text is still worth having. Throws std::exception (memory, numbers that don't fit).
bool ParseJson(const char* text, picojson::value& value);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BINDING_CALL_PARSER_H_
