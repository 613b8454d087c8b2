// Parses the JSON text of a call. The text is untrusted: nesting, length and out-of-range numbers must do no
// harm.
#ifndef NURVO_PLATFORM_BINDING_CALL_PARSER_H_
#define NURVO_PLATFORM_BINDING_CALL_PARSER_H_

#include <picojson.h>

#include <cstddef>

namespace nurvo {

// The maximum nesting depth of arrays and objects.
constexpr size_t kMaxJsonDepth = 256;

// Parses `text` as one JSON value, followed only by white space. Returns whether it is one; `value` is
// meaningful only then. An escaped unpaired surrogate, which scripts can send, becomes U+FFFD. Throws
// std::exception if out of memory or for out-of-range numbers.
bool ParseJson(const char* text, picojson::value& value);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BINDING_CALL_PARSER_H_
