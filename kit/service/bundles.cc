// Creates and reads bundles.
#include "service/bundles.h"

namespace corvis::kit {

BundlePtr MakeBundle(const Entries& entries) {
  BundlePtr made(bundle_create());
  for (const auto& [key, value] : entries) {
    if (!made || bundle_add(made.get(), key.c_str(), value.c_str()) != 0) return nullptr;
  }
  return made;
}

std::string EncodeEntries(const Entries& entries) {
  const BundlePtr made = MakeBundle(entries);
  bundle_raw* text = nullptr;
  int length = 0;
  if (!made || bundle_encode(made.get(), &text, &length) != 0) return "";
  const nurvo::MallocPtr<bundle_raw> owner(text);
  return {reinterpret_cast<const char*>(text), static_cast<size_t>(length)};
}

std::string TextOf(bundle* b, const char* key) {
  char* value = nullptr;
  return bundle_get_str(b, key, &value) == 0 ? value : "";
}

}  // namespace corvis::kit
