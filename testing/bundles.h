// Helpers to create and read bundles.
#ifndef CORVIS_TESTING_BUNDLES_H_
#define CORVIS_TESTING_BUNDLES_H_

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "nurvo_desktop/bundle_ptr.h"

using nurvo::BundlePtr;
using Entries = std::vector<std::pair<std::string, std::string>>;

inline BundlePtr MakeBundle(const Entries& entries) {
  BundlePtr result(bundle_create());
  for (const auto& [key, value] : entries) {
    if (bundle_add(result.get(), key.c_str(), value.c_str()) != 0) std::abort();
  }
  return result;
}

// The string under `key`; empty if there is none.
inline std::string TextOf(bundle* b, const char* key) {
  char* value = nullptr;
  return bundle_get_str(b, key, &value) == 0 ? value : "";
}

inline std::string Encode(const BundlePtr& b) {
  bundle_raw* raw = nullptr;
  int length = 0;
  if (bundle_encode(b.get(), &raw, &length) != 0 || raw[length] != '\0') std::abort();
  const nurvo::MallocPtr<bundle_raw> owner(raw);
  return {reinterpret_cast<char*>(raw), static_cast<size_t>(length)};
}

#endif  // CORVIS_TESTING_BUNDLES_H_
