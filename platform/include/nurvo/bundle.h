// Bundles: ordered key-value containers that travel between applications as text.
//
// Keys are unique and not empty. Values are NUL-terminated strings; a bundle that comes from elsewhere may
// also hold string arrays and byte values. Entries keep the order in which they were added.
#ifndef NURVO_BUNDLE_H_
#define NURVO_BUNDLE_H_

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct bundle bundle;
typedef struct bundle_keyval_t bundle_keyval_t;
typedef unsigned char bundle_raw;

// Makes an empty bundle, or returns null. The caller releases it with bundle_free.
bundle* bundle_create();

// Adds a string (both texts are copied). Returns 0, or a negative code for a null or empty key, a null
// value, or a key that is there already.
int bundle_add(bundle* b, const char* key, const char* value);

// Gives the string under `key`. Returns 0, or a negative code when there is no such entry or it is no
// string. The value stays the bundle's and lives as long as the bundle.
int bundle_get_str(bundle* b, const char* key, char** value);

// Turns the bundle into text without NUL inside, `length` bytes followed by a NUL. The text may itself
// be a value in another bundle. Returns 0 and a text that the caller releases with `free`, or a negative
// code and leaves both outputs untouched.
int bundle_encode(bundle* b, bundle_raw** text, int* length);

// Makes a bundle from `length` bytes of what bundle_encode made; null for anything that is not a whole,
// intact bundle. The caller releases it with bundle_free.
bundle* bundle_decode(const bundle_raw* text, int length);

// Calls `visit` for each entry, in order. The entry stays the bundle's. `visit` must not change the bundle.
void bundle_foreach(bundle* b,
                    void (*visit)(const char* key, int type, const bundle_keyval_t* keyval, void* user_data),
                    void* user_data);

// Releases the bundle. Returns 0, or a negative code for null.
int bundle_free(bundle* b);

// Copies an entry; the caller releases the copy with bundle_keyval_free. Null when that fails.
bundle_keyval_t* bundle_keyval_dup(const bundle_keyval_t* keyval);

// Gives the value of an entry that holds a single one: `size` bytes (for a string, its NUL included) that
// stay the entry's. Returns 0, or a negative code for an array entry, and leaves the outputs untouched.
int bundle_keyval_get_basic_val(bundle_keyval_t* keyval, void** value, size_t* size);

void bundle_keyval_free(bundle_keyval_t* keyval);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_BUNDLE_H_
