// Conversion of a command's encoded bundle into the text of a flat JSON object, which the page's script
// parses.
#ifndef CORVIS_VOICE_INTERACTION_BUNDLE_JSON_H_
#define CORVIS_VOICE_INTERACTION_BUNDLE_JSON_H_

#include <string>

#include "nurvo/bundle.h"

namespace extension::voice_interaction {

// The string entries of the bundle that `bundle_text` encodes (a NUL-terminated text, not null), as a JSON
// object text without white space, in the bundle's order. Keys and values are copied byte for byte, so a
// value that holds a quotation mark gives a text that is not JSON. A text that does not decode gives "{}".
std::string BuildJsonObjectFromBundle(const char* bundle_text);

// The same for search terms: without the entry "raw", and with "content_type" named "contentType".
std::string BuildJsonSearchTermFromBundle(const char* bundle_text);

// Callbacks of bundle_foreach that append one entry, followed by a comma, to the std::string `user_data`.
// An entry without a basic value is left out.
void AddJsonParamCallback(const char* key, int type, const bundle_keyval_t* key_value, void* user_data);
void AddSearchJsonParamCallback(const char* key, int type, const bundle_keyval_t* key_value, void* user_data);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_BUNDLE_JSON_H_
