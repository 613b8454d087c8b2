// Bundles inside bus messages: as bytes, not as text, because a piece of a cut text may end within a
// character.
#ifndef NURVO_PLATFORM_BUS_PAYLOAD_H_
#define NURVO_PLATFORM_BUS_PAYLOAD_H_

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "bus/sd_bus_ptr.h"
#include "nurvo/bundle.h"

namespace nurvo {

// The largest encoded bundle that a message carries, at both ends.
constexpr size_t kMaxPayloadBytes = 65536;

struct BundleDeleter {
  void operator()(bundle* b) const { bundle_free(b); }
};
using BundlePtr = std::unique_ptr<bundle, BundleDeleter>;

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};

// An encoded bundle.
class Payload {
 public:
  // Returns 0 or a negative errno: -EMSGSIZE beyond the limit.
  int Encode(bundle* b);
  // Appends the bytes to `message`. Returns 0 or more, or a negative errno.
  int AppendTo(sd_bus_message* message) const;

 private:
  std::unique_ptr<bundle_raw, FreeDeleter> bytes_;
  size_t size_ = 0;
};

// Reads the bytes that come next in `message` as a bundle. Null, and the reason in `fault`, when they are
// none.
BundlePtr ReadPayload(sd_bus_message* message, const char*& fault);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_PAYLOAD_H_
