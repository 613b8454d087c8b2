// Bundle entries other than strings, as other platform programs send them; for tools and tests that act as
// one.
#ifndef NURVO_DESKTOP_BUNDLE_EXTRAS_H_
#define NURVO_DESKTOP_BUNDLE_EXTRAS_H_

#include <stddef.h>

#include "nurvo/bundle.h"

#ifdef __cplusplus
extern "C" {
#endif

// The `type` that bundle_foreach reports.
enum {
  BUNDLE_ENTRY_STRING = 1,
  BUNDLE_ENTRY_STRING_ARRAY = 2,
  BUNDLE_ENTRY_BYTES = 3,
};

// The maximum number of entries in a bundle.
enum { BUNDLE_MAX_ENTRIES = 65536 };

// Add an array of `count` strings, or `size` bytes; all are copied. Return values as for bundle_add.
int bundle_add_str_array(bundle* b, const char* key, const char* const* values, size_t count);
int bundle_add_byte(bundle* b, const char* key, const void* bytes, size_t size);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_BUNDLE_EXTRAS_H_
