// Bundles with an owner.
#ifndef CORVIS_KIT_SERVICE_BUNDLES_H_
#define CORVIS_KIT_SERVICE_BUNDLES_H_

#include <string>

#include "language/actions.h"
#include "nurvo_desktop/bundle_ptr.h"

namespace corvis::kit {

using nurvo::BundlePtr;

// A bundle of strings; null when it can't be made (an empty or repeated key).
BundlePtr MakeBundle(const Entries& entries);

// Its text form; empty when it can't be made.
std::string EncodeEntries(const Entries& entries);

// The string under `key`; empty when there is none.
std::string TextOf(bundle* b, const char* key);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_BUNDLES_H_
