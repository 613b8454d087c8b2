// Owning pointers to bundles and their entries.
#ifndef NURVO_DESKTOP_BUNDLE_PTR_H_
#define NURVO_DESKTOP_BUNDLE_PTR_H_

#include "nurvo/bundle.h"
#include "nurvo_desktop/owned.h"

namespace nurvo {

using BundlePtr = Owned<bundle, bundle_free>;
using KeyvalPtr = Owned<bundle_keyval_t, bundle_keyval_free>;

}  // namespace nurvo

#endif  // NURVO_DESKTOP_BUNDLE_PTR_H_
