// Bundles inside bus messages: as bytes, not as text, because a piece of a cut text may end within a
// character.
#ifndef NURVO_PLATFORM_BUS_PAYLOAD_H_
#define NURVO_PLATFORM_BUS_PAYLOAD_H_

#include <cstddef>
#include <string_view>

#include "nurvo_desktop/bundle_ptr.h"
#include "nurvo_desktop/sd_bus_ptr.h"

namespace nurvo {

// The largest encoded bundle that a message carries, at both ends.
constexpr size_t kMaxPayloadBytes = 65536;

// An encoded bundle.
class Payload {
 public:
  // Returns 0 or a negative errno: -EMSGSIZE beyond the limit.
  int Encode(bundle* b);
  // Appends the bytes to `message`. Returns 0 or more, or a negative errno.
  int AppendTo(sd_bus_message* message) const;

 private:
  MallocPtr<bundle_raw> bytes_;
  size_t size_ = 0;
};

// Reads the bytes that come next in `message` as a bundle. Null, and the reason in `fault`, when they hold
// none.
BundlePtr ReadPayload(sd_bus_message* message, const char*& fault);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_PAYLOAD_H_
