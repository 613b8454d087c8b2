// Owning pointers to GLib objects.
#ifndef NURVO_DESKTOP_GLIB_PTR_H_
#define NURVO_DESKTOP_GLIB_PTR_H_

#include <glib-object.h>

#include "nurvo_desktop/owned.h"

namespace nurvo {

// A reference to an object, released by the destructor.
template <typename T>
using GObjectPtr = Owned<T, g_object_unref>;

// Adds a reference to an object that the caller does not own.
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
