// Bundles with an owner.
#ifndef CORVIS_VOICE_SERVICE_BUNDLE_PTR_H_
#define CORVIS_VOICE_SERVICE_BUNDLE_PTR_H_

#include <memory>
#include <string>

#include "core/actions.h"
#include "nurvo/bundle.h"

namespace corvis::voice {

struct BundleDeleter {
  void operator()(bundle* b) const { bundle_free(b); }
};
using BundlePtr = std::unique_ptr<bundle, BundleDeleter>;

// A bundle of strings; null when it can't be made (an empty or repeated key).
BundlePtr MakeBundle(const Entries& entries);

// Its text form; empty when it can't be made.
std::string EncodeEntries(const Entries& entries);

// The string under `key`; empty when there is none.
std::string TextOf(bundle* b, const char* key);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_BUNDLE_PTR_H_
