// Owners for what GLib hands out.
#ifndef NURVO_DESKTOP_GLIB_PTR_H_
#define NURVO_DESKTOP_GLIB_PTR_H_

#include <glib-object.h>

#include "nurvo_desktop/owned.h"

namespace nurvo {

// A reference to an object, released with the owner.
template <typename T>
using GObjectPtr = Owned<T, g_object_unref>;

// A reference of our own to an object that somebody else owns.
template <typename T>
GObjectPtr<T> NewReference(T* object) {
  return GObjectPtr<T>(static_cast<T*>(g_object_ref(object)));
}

using GErrorPtr = Owned<GError, g_error_free>;
using GText = Owned<char, g_free>;
using GVariantPtr = Owned<GVariant, g_variant_unref>;
using GMainLoopPtr = Owned<GMainLoop, g_main_loop_unref>;
using GRegexPtr = Owned<GRegex, g_regex_unref>;
using GUriPtr = Owned<GUri, g_uri_unref>;

}  // namespace nurvo

#endif  // NURVO_DESKTOP_GLIB_PTR_H_
