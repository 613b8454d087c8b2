// The C interface of bundles: creating, filling, reading and visiting them.
#include <memory>
#include <utility>

#include "bundle/bundle_data.h"
#include "nurvo_desktop/bundle_extras.h"
#include "support/c_interface.h"

namespace {

constexpr int kDone = 0;
constexpr int kRefused = -1;

int AddEntry(bundle* b, bundle_keyval_t entry) {
  return b->Add(std::move(entry)) ? kDone : kRefused;
}

}  // namespace

NURVO_EXPORT bundle* bundle_create() {
  return nurvo::Guarded<bundle*>(nullptr, [] { return std::make_unique<bundle>().release(); });
}

NURVO_EXPORT int bundle_add(bundle* b, const char* key, const char* value) {
  if (b == nullptr || key == nullptr || value == nullptr) return kRefused;
  return nurvo::Guarded(kRefused, [&] { return AddEntry(b, {key, BUNDLE_ENTRY_STRING, value, {}}); });
}

NURVO_EXPORT int bundle_add_str_array(bundle* b, const char* key, const char* const* values, size_t count) {
  if (b == nullptr || key == nullptr || (values == nullptr && count > 0)) return kRefused;
  for (size_t i = 0; i < count; ++i) {
    if (values[i] == nullptr) return kRefused;
  }
  return nurvo::Guarded(kRefused, [&] {
    return AddEntry(b, {key, BUNDLE_ENTRY_STRING_ARRAY, {}, {values, values + count}});
  });
}

NURVO_EXPORT int bundle_add_byte(bundle* b, const char* key, const void* bytes, size_t size) {
  if (b == nullptr || key == nullptr || (bytes == nullptr && size > 0)) return kRefused;
  return nurvo::Guarded(kRefused, [&] {
    const std::string_view value(static_cast<const char*>(bytes), size);
    return AddEntry(b, {key, BUNDLE_ENTRY_BYTES, std::string(value), {}});
  });
}

NURVO_EXPORT int bundle_get_str(bundle* b, const char* key, char** value) {
  if (b == nullptr || key == nullptr || value == nullptr) return kRefused;
  bundle_keyval_t* const entry = b->Find(key);
  if (entry == nullptr || entry->type != BUNDLE_ENTRY_STRING) return kRefused;
  *value = entry->value.data();
  return kDone;
}

NURVO_EXPORT void bundle_foreach(bundle* b,
                                 void (*visit)(const char* key, int type, const bundle_keyval_t* keyval,
                                               void* user_data),
                                 void* user_data) {
  if (b == nullptr || visit == nullptr) return;
  for (const bundle_keyval_t& entry : b->entries()) visit(entry.key.c_str(), entry.type, &entry, user_data);
}

NURVO_EXPORT int bundle_free(bundle* b) {
  const std::unique_ptr<bundle> owner(b);
  return owner ? kDone : kRefused;
}
