// Owners for what GLib and WebKit hand out.
#ifndef CORVIS_RUNTIME_SUPPORT_GLIB_PTR_H_
#define CORVIS_RUNTIME_SUPPORT_GLIB_PTR_H_

#include <gio/gio.h>

#include <memory>

namespace corvis::tv {

struct GObjectDeleter {
  void operator()(gpointer object) const { g_object_unref(object); }
};
// A reference to an object, released with the owner.
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

// A reference of our own to an object that somebody else owns.
template <typename T>
GObjectPtr<T> NewReference(T* object) {
  return GObjectPtr<T>(static_cast<T*>(g_object_ref(object)));
}

struct GErrorDeleter {
  void operator()(GError* error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorDeleter>;

struct GFreeDeleter {
  void operator()(gpointer memory) const { g_free(memory); }
};
using GText = std::unique_ptr<char, GFreeDeleter>;

struct GVariantDeleter {
  void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using GVariantPtr = std::unique_ptr<GVariant, GVariantDeleter>;

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_SUPPORT_GLIB_PTR_H_
