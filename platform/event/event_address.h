// The D-Bus signals of application events.
#ifndef NURVO_PLATFORM_EVENT_EVENT_ADDRESS_H_
#define NURVO_PLATFORM_EVENT_EVENT_ADDRESS_H_

#include <cstddef>
#include <string_view>

namespace nurvo {

constexpr const char* kEventPath = "/nurvo/event";
constexpr const char* kEventInterface = "nurvo.Event";
constexpr const char* kPublishedMember = "Published";
// The arguments: the event's name, and its data as an encoded bundle.
constexpr const char* kPublishedSignature = "say";

// Accepts letters, digits, '.', '_' and '-', which need no quoting in a match rule.
inline bool isEventName(const char* name) {
  constexpr size_t kMaxBytes = 255;
  constexpr std::string_view kAllowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
  if (name == nullptr) return false;
  const std::string_view text(name);
  return !text.empty() && text.size() <= kMaxBytes &&
         text.find_first_not_of(kAllowed) == std::string_view::npos;
}

}  // namespace nurvo

#endif  // NURVO_PLATFORM_EVENT_EVENT_ADDRESS_H_
