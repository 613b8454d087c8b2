// Sends messages to ports of other applications.
#ifndef NURVO_PLATFORM_MESSAGE_PORT_REMOTE_PORT_H_
#define NURVO_PLATFORM_MESSAGE_PORT_REMOTE_PORT_H_

#include <map>
#include <memory>
#include <string>

#include "bus/name_watch.h"
#include "nurvo/bundle.h"

namespace nurvo {

// Used on the thread of the main loop.
class RemotePorts {
 public:
  // The maximum number of applications that are cached as running. Beyond that all are looked up again.
  static constexpr size_t kMaxKnownApps = 64;

  static RemotePorts& Get();

  // See message_port_send_message. For an application that was running at the last send, the only cost is one
  // message to the bus.
  int Send(const char* app_id, const char* port, bundle* message);

 private:
  RemotePorts() = default;

  bool isRunning(sd_bus* bus, const std::string& app_id);

  std::map<std::string, std::unique_ptr<NameWatch>> known_apps_;
};

}  // namespace nurvo

#endif  // NURVO_PLATFORM_MESSAGE_PORT_REMOTE_PORT_H_
