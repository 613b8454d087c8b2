// Bundles with an owner.
#ifndef CORVIS_KIT_SERVICE_BUNDLES_H_
#define CORVIS_KIT_SERVICE_BUNDLES_H_

#include <memory>
#include <string>

#include "language/actions.h"
#include "nurvo/bundle.h"

namespace corvis::kit {

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

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_BUNDLES_H_
