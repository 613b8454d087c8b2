// Owning pointers to bundles, and conversion between bundles and C++ values.
#ifndef CORVIS_KIT_SERVICE_BUNDLES_H_
#define CORVIS_KIT_SERVICE_BUNDLES_H_

#include <string>

#include "language/actions.h"
#include "nurvo_desktop/bundle_ptr.h"

namespace corvis::kit {

using nurvo::BundlePtr;

// A bundle of strings; null if a key is empty or repeated.
BundlePtr MakeBundle(const Entries& entries);

// The encoded bundle; empty if a key is empty or repeated.
std::string EncodeEntries(const Entries& entries);

// The string under `key`; empty if there is none.
std::string TextOf(bundle* b, const char* key);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_BUNDLES_H_
