// The C interface of a bundle's entries.
#include <memory>

#include "bundle/bundle_data.h"
#include "nurvo_desktop/bundle_extras.h"
#include "support/c_interface.h"

NURVO_EXPORT bundle_keyval_t* bundle_keyval_dup(const bundle_keyval_t* keyval) {
  if (keyval == nullptr) return nullptr;
  return nurvo::Guarded<bundle_keyval_t*>(
      nullptr, [&] { return std::make_unique<bundle_keyval_t>(*keyval).release(); });
}

NURVO_EXPORT int bundle_keyval_get_basic_val(bundle_keyval_t* keyval, void** value, size_t* size) {
  if (keyval == nullptr || value == nullptr || size == nullptr) return -1;
  if (keyval->type == BUNDLE_ENTRY_STRING_ARRAY) return -1;
  const size_t terminator = keyval->type == BUNDLE_ENTRY_STRING ? 1 : 0;
  *value = keyval->value.data();
  *size = keyval->value.size() + terminator;
  return 0;
}

NURVO_EXPORT void bundle_keyval_free(bundle_keyval_t* keyval) {
  const std::unique_ptr<bundle_keyval_t> owner(keyval);
}
