// Fuzzes decoding bundles: a decoded bundle is complete, and encoding it returns the same text.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "nurvo/bundle.h"
#include "testing/signed_bundle.h"

namespace {

void ReadEntry(const char* key, int /*type*/, const bundle_keyval_t* keyval, void* count) {
  if (*key == '\0') std::abort();
  bundle_keyval_t* copy = bundle_keyval_dup(keyval);
  void* value = nullptr;
  size_t size = 0;
  if (bundle_keyval_get_basic_val(copy, &value, &size) == 0) {
    // Reads all `size` bytes.
    if (size > 0 && memchr(value, 0x7f, size) == value) ++*static_cast<int*>(count);
  }
  bundle_keyval_free(copy);
}

void Decode(const std::string& text) {
  const auto* raw = reinterpret_cast<const bundle_raw*>(text.data());
  bundle* decoded = bundle_decode(raw, static_cast<int>(text.size()));
  if (decoded == nullptr) return;
  int count = 0;
  bundle_foreach(decoded, ReadEntry, &count);
  char* command = nullptr;
  bundle_get_str(decoded, "command", &command);
  bundle_raw* encoded = nullptr;
  int length = 0;
  if (bundle_encode(decoded, &encoded, &length) != 0) std::abort();
  if (static_cast<size_t>(length) != text.size() || memcmp(encoded, text.data(), text.size()) != 0)
    std::abort();
  free(encoded);
  bundle_free(decoded);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Decode({reinterpret_cast<const char*>(data), size});
  Decode(SignedBundle(data, size));
  return 0;
}
