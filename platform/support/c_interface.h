// Helpers for the boundary of C interfaces: exporting functions, stopping exceptions, returning texts.
#ifndef NURVO_PLATFORM_SUPPORT_C_INTERFACE_H_
#define NURVO_PLATFORM_SUPPORT_C_INTERFACE_H_

#include <cstdlib>
#include <cstring>
#include <string_view>

// Marks the definitions that the library exports.
#define NURVO_EXPORT __attribute__((visibility("default")))

namespace nurvo {

// Runs `body` and returns its result, or `failure` if it throws.
template <typename Result, typename Body>
Result Guarded(Result failure, Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

// A copy of `text` that the caller of a C interface releases with `free`; null if out of memory.
inline char* CopyText(std::string_view text) noexcept {
  char* const copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy == nullptr) return nullptr;
  if (!text.empty()) std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return copy;
}

}  // namespace nurvo

#endif  // NURVO_PLATFORM_SUPPORT_C_INTERFACE_H_
