// Bundles: ordered key-value containers that travel between applications as text.
//
// Keys are unique and not empty. Values are NUL-terminated strings; a received bundle may also contain string
// arrays and byte values. Entries keep the order in which they were added.
#ifndef NURVO_BUNDLE_H_
#define NURVO_BUNDLE_H_

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct bundle bundle;
typedef struct bundle_keyval_t bundle_keyval_t;
typedef unsigned char bundle_raw;

// Creates an empty bundle; returns null on failure. The caller releases it with bundle_free.
bundle* bundle_create(void);  // NOLINT(modernize-redundant-void-arg): in C the empty list is no prototype

// Adds a string. Both texts are copied. Returns 0, or a negative code for a null or empty key, a null value,
// or an existing key.
int bundle_add(bundle* b, const char* key, const char* value);

// Gets the string under `key`. Returns 0, or a negative code if there is no such entry or it is not a string.
// The value is owned by the bundle and valid as long as the bundle.
int bundle_get_str(bundle* b, const char* key, char** value);

// Encodes the bundle as text of `length` bytes, which contains no NUL and is followed by one. The text may
// itself be a value in another bundle. Returns 0 and a text that the caller releases with `free`, or a
// negative code and leaves both outputs unchanged.
int bundle_encode(bundle* b, bundle_raw** text, int* length);

// Decodes `length` bytes of a text from bundle_encode. Returns null if it is not a complete, intact bundle.
// The caller releases the bundle with bundle_free.
bundle* bundle_decode(const bundle_raw* text, int length);

// Calls `visit` for each entry, in order. The entry stays owned by the bundle. `visit` must not change the
// bundle.
void bundle_foreach(bundle* b,
                    void (*visit)(const char* key, int type, const bundle_keyval_t* keyval, void* user_data),
                    void* user_data);

// Releases the bundle. Returns 0, or a negative code for null.
int bundle_free(bundle* b);

// Copies an entry; returns null on failure. The caller releases the copy with bundle_keyval_free.
bundle_keyval_t* bundle_keyval_dup(const bundle_keyval_t* keyval);

// Gets the value of an entry with a single value: `size` bytes, owned by the entry. A NUL follows every
// value, so that it can be read as a text; `size` counts it for a string only. Returns 0, or a negative code
// for an array entry and leaves the outputs unchanged.
int bundle_keyval_get_basic_val(bundle_keyval_t* keyval, void** value, size_t* size);

void bundle_keyval_free(bundle_keyval_t* keyval);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_BUNDLE_H_
