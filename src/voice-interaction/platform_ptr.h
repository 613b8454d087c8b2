// Owning pointers to objects of the platform's C interfaces, which release them with the platform's
// functions.
#ifndef CORVIS_VOICE_INTERACTION_PLATFORM_PTR_H_
#define CORVIS_VOICE_INTERACTION_PLATFORM_PTR_H_

#include <cstdlib>
#include <memory>

#include "nurvo/bundle.h"

namespace extension::voice_interaction {

struct BundleDeleter {
  void operator()(bundle* b) const { bundle_free(b); }
};
using BundlePtr = std::unique_ptr<bundle, BundleDeleter>;

struct KeyvalDeleter {
  void operator()(bundle_keyval_t* keyval) const { bundle_keyval_free(keyval); }
};
using KeyvalPtr = std::unique_ptr<bundle_keyval_t, KeyvalDeleter>;

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};
// A text or encoded bundle that the platform allocated.
template <typename T>
using PlatformMemory = std::unique_ptr<T, FreeDeleter>;

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_PLATFORM_PTR_H_
