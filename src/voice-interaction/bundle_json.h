// Converts a command's encoded bundle to a flat JSON object, which the page's script parses.
#ifndef CORVIS_VOICE_INTERACTION_BUNDLE_JSON_H_
#define CORVIS_VOICE_INTERACTION_BUNDLE_JSON_H_

#include <string>

#include "nurvo/bundle.h"

namespace extension::voice_interaction {

// Decodes `bundle_text` (NUL-terminated, not null) and returns its string entries as a JSON object without
// white space, in the bundle's order. Keys and values are copied byte for byte, so the result is not valid
// JSON if a value contains a quotation mark. Returns "{}" if the text can't be decoded. Throws only
// std::bad_alloc.
std::string BuildJsonObjectFromBundle(const char* bundle_text);

// Like BuildJsonObjectFromBundle, for search terms: omits the entry "raw" and renames "content_type" to
// "contentType".
std::string BuildJsonSearchTermFromBundle(const char* bundle_text);

// Callbacks of bundle_foreach that append one entry, followed by a comma, to the std::string `user_data`.
// They skip entries without a basic value. They don't throw, because the platform calls them: if there is not
// enough memory, they empty the text.
void AddJsonParamCallback(const char* key, int type, const bundle_keyval_t* key_value, void* user_data);
void AddSearchJsonParamCallback(const char* key, int type, const bundle_keyval_t* key_value, void* user_data);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_BUNDLE_JSON_H_
