// The open ports of this process, and the application id that it owns on the bus for them.
#ifndef NURVO_PLATFORM_MESSAGE_PORT_LOCAL_PORTS_H_
#define NURVO_PLATFORM_MESSAGE_PORT_LOCAL_PORTS_H_

#include <map>
#include <string>

#include "nurvo/message_port.h"
#include "nurvo_desktop/sd_bus_ptr.h"

namespace nurvo {

// Used on the thread of the main loop. The callbacks may open and close ports.
class LocalPorts {
 public:
  // The process's ports. Never destroyed, because the bus may deliver until the process ends.
  static LocalPorts& Get();

  // See message_port_register_local_port and message_port_unregister_local_port.
  int Open(const char* name, message_port_message_cb callback, void* user_data);
  int Close(int id);

 private:
  struct Port {
    int id;
    message_port_message_cb callback;
    void* user_data;
  };

  LocalPorts() = default;

  int TakeAppId(sd_bus* bus);
  void ReleaseAppId();
  int AcceptDeliveries(sd_bus* bus);
  static int OnDelivery(sd_bus_message* message, void* user_data, sd_bus_error* error);
  // Returns null, or the reason why the delivery is dropped.
  const char* Deliver(sd_bus_message* message) const;

  std::map<std::string, Port> ports_;
  int last_id_ = 0;
  std::string app_id_;  // owned on the bus while a port is open
  SlotPtr deliveries_;
};

}  // namespace nurvo

#endif  // NURVO_PLATFORM_MESSAGE_PORT_LOCAL_PORTS_H_
