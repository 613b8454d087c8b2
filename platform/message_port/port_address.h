// The D-Bus object paths and method of message ports.
#ifndef NURVO_PLATFORM_MESSAGE_PORT_PORT_ADDRESS_H_
#define NURVO_PLATFORM_MESSAGE_PORT_PORT_ADDRESS_H_

#include <systemd/sd-bus.h>

#include <cstddef>
#include <cstring>
#include <optional>
#include <string>

#include "nurvo_desktop/owned.h"

namespace nurvo {

constexpr const char* kPortFolder = "/nurvo/port";
constexpr const char* kPortInterface = "nurvo.MessagePort";
constexpr const char* kDeliverMember = "Deliver";
// The arguments: the sender's application id, the sender's port ("" for none), and the encoded bundle.
constexpr const char* kDeliverSignature = "ssay";
constexpr size_t kMaxPortNameBytes = 255;

inline bool isPortName(const char* name) {
  return name != nullptr && *name != '\0' && std::strlen(name) <= kMaxPortNameBytes;
}

inline bool isAppId(const char* app_id) {
  return app_id != nullptr && *app_id != ':' && sd_bus_service_name_is_valid(app_id) > 0;
}

// The object path of the port `name`; nothing if out of memory.
inline std::optional<std::string> PathOfPort(const char* name) {
  char* path = nullptr;
  if (sd_bus_path_encode(kPortFolder, name, &path) < 0) return {};
  const MallocPtr<char> owner(path);
  return std::string(path);
}

// The name of the port at `path`; nothing if the path is not that of a port.
inline std::optional<std::string> PortAtPath(const char* path) {
  char* name = nullptr;
  if (sd_bus_path_decode(path, kPortFolder, &name) <= 0) return {};
  const MallocPtr<char> owner(name);
  return std::string(name);
}

}  // namespace nurvo

#endif  // NURVO_PLATFORM_MESSAGE_PORT_PORT_ADDRESS_H_
