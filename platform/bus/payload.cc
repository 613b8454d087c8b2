// Encodes bundles into bus messages and decodes them, within the size limit.
#include "bus/payload.h"

#include <cerrno>

namespace nurvo {

int Payload::Encode(bundle* b) {
  bundle_raw* text = nullptr;
  int length = 0;
  if (bundle_encode(b, &text, &length) != 0) return -ENOMEM;
  bytes_.reset(text);
  size_ = static_cast<size_t>(length);
  return size_ > kMaxPayloadBytes ? -EMSGSIZE : 0;
}

int Payload::AppendTo(sd_bus_message* message) const {
  return sd_bus_message_append_array(message, 'y', bytes_.get(), size_);
}

BundlePtr ReadPayload(sd_bus_message* message, const char*& fault) {
  const void* bytes = nullptr;
  size_t size = 0;
  if (sd_bus_message_read_array(message, 'y', &bytes, &size) < 0) {
    fault = "it can't be read";
  } else if (size > kMaxPayloadBytes) {
    fault = "it is larger than the limit";
  } else {
    BundlePtr data(bundle_decode(static_cast<const bundle_raw*>(bytes), static_cast<int>(size)));
    if (!data) fault = "it holds no intact bundle";
    return data;
  }
  return nullptr;
}

}  // namespace nurvo
