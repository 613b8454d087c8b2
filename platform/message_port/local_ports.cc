// Opens and closes ports, and dispatches deliveries to them.
#include "message_port/local_ports.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "app/own_app_id.h"
#include "bus/bus_connection.h"
#include "bus/bus_log.h"
#include "bus/payload.h"
#include "message_port/port_address.h"
#include "nurvo_desktop/bus.h"
#include "support/c_interface.h"

namespace nurvo {

LocalPorts& LocalPorts::Get() {
  static auto* const ports = new LocalPorts;
  return *ports;
}

int LocalPorts::Open(const char* name, message_port_message_cb callback, void* user_data) {
  const auto open = ports_.find(name);
  if (open != ports_.end()) {
    open->second.callback = callback;
    open->second.user_data = user_data;
    return open->second.id;
  }
  sd_bus* const bus = BusConnection::Shared().Get();
  if (bus == nullptr) return MESSAGE_PORT_ERROR_IO_ERROR;
  int result = AcceptDeliveries(bus);
  if (result >= 0 && ports_.empty()) result = TakeAppId(bus);
  if (result < 0) return result;
  const Port port = {last_id_ + 1, callback, user_data};
  ports_.emplace(name, port);
  return ++last_id_;
}

int LocalPorts::Close(int id) {
  const auto port =
      std::find_if(ports_.begin(), ports_.end(), [&](const auto& item) { return item.second.id == id; });
  if (port == ports_.end()) return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
  ports_.erase(port);
  if (ports_.empty()) ReleaseAppId();
  return MESSAGE_PORT_ERROR_NONE;
}

// One registration serves all ports, so that a port may be closed during its own callback.
int LocalPorts::AcceptDeliveries(sd_bus* bus) {
  if (deliveries_) return 0;
  sd_bus_slot* slot = nullptr;
  if (sd_bus_add_fallback(bus, &slot, kPortFolder, OnDelivery, this) < 0) return MESSAGE_PORT_ERROR_IO_ERROR;
  deliveries_.reset(slot);
  return 0;
}

int LocalPorts::TakeAppId(sd_bus* bus) {
  app_id_ = OwnAppId();
  if (!isAppId(app_id_.c_str())) {
    log_print(NURVO_LOG_ERROR, kBusTag,
              "'%s' is not an application id. Set %s to a dotted name such as com.example.app.",
              app_id_.c_str(), kAppIdVariable);
    return MESSAGE_PORT_ERROR_IO_ERROR;
  }
  const int result = sd_bus_request_name(bus, app_id_.c_str(), 0);
  // -EALREADY: this process already owns the name.
  if (result >= 0 || result == -EALREADY) return 0;
  const bool is_taken = result == -EEXIST;
  log_print(NURVO_LOG_ERROR, kBusTag, "Can't take the application id %s: %s.", app_id_.c_str(),
            is_taken ? "another process has it; end that one first" : std::strerror(-result));
  return is_taken ? static_cast<int>(NURVO_DESKTOP_ERROR_APP_ID_TAKEN)
                  : static_cast<int>(MESSAGE_PORT_ERROR_IO_ERROR);
}

void LocalPorts::ReleaseAppId() {
  sd_bus* const bus = BusConnection::Shared().Get();
  if (bus != nullptr) sd_bus_release_name(bus, app_id_.c_str());
}

int LocalPorts::OnDelivery(sd_bus_message* message, void* user_data, sd_bus_error* /*error*/) {
  const auto* const self = static_cast<LocalPorts*>(user_data);
  const char* const fault =
      Guarded("memory is short or its receiver failed", [&] { return self->Deliver(message); });
  if (fault == nullptr) {
    if (sd_bus_message_get_expect_reply(message) > 0) sd_bus_reply_method_return(message, "");
    return 1;
  }
  log_print(NURVO_LOG_ERROR, kBusTag, "Dropped a message from %s to %s: %s.",
            sd_bus_message_get_sender(message), sd_bus_message_get_path(message), fault);
  sd_bus_reply_method_errorf(message, SD_BUS_ERROR_INVALID_ARGS, "The message was dropped: %s.", fault);
  return 1;
}

const char* LocalPorts::Deliver(sd_bus_message* message) const {
  if (sd_bus_message_is_method_call(message, kPortInterface, kDeliverMember) <= 0) {
    return "it is not a delivery";
  }
  if (sd_bus_message_has_signature(message, kDeliverSignature) <= 0) return "its signature is not ssay";
  const auto name = PortAtPath(sd_bus_message_get_path(message));
  const auto port = name ? ports_.find(*name) : ports_.end();
  if (port == ports_.end()) return "the port is not open";
  const char* app_id = nullptr;
  const char* remote_port = nullptr;
  if (sd_bus_message_read(message, "ss", &app_id, &remote_port) < 0) return "it can't be read";
  const char* fault = nullptr;
  const BundlePtr data = ReadPayload(message, fault);
  if (!data) return fault;
  const Port target = port->second;
  target.callback(target.id, app_id, *remote_port == '\0' ? nullptr : remote_port, false, data.get(),
                  target.user_data);
  return nullptr;
}

}  // namespace nurvo
