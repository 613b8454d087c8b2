// Bundles in bus messages. They are sent as bytes, not as a D-Bus string, because a piece of a split text may
// end inside a UTF-8 character.
#ifndef NURVO_PLATFORM_BUS_PAYLOAD_H_
#define NURVO_PLATFORM_BUS_PAYLOAD_H_

#include <cstddef>
#include <string_view>

#include "nurvo_desktop/bundle_ptr.h"
#include "nurvo_desktop/sd_bus_ptr.h"

namespace nurvo {

// The maximum size of an encoded bundle, for sending and receiving.
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

// Decodes the next bytes of `message` as a bundle. Returns null and the reason in `fault` if they contain
// none.
BundlePtr ReadPayload(sd_bus_message* message, const char*& fault);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_PAYLOAD_H_
