// Builds and sends deliveries.
#include "message_port/remote_port.h"

#include <cerrno>
#include <utility>

#include "app/own_app_id.h"
#include "bus/bus_connection.h"
#include "bus/payload.h"
#include "message_port/port_address.h"
#include "nurvo/message_port.h"

namespace nurvo {

namespace {

// A delivery that expects no reply and activates no service; null if it can't be built.
MessagePtr NewDelivery(sd_bus* bus, const char* app_id, const char* port, const Payload& payload) {
  const auto path = PathOfPort(port);
  if (!path) return nullptr;
  sd_bus_message* made = nullptr;
  if (sd_bus_message_new_method_call(bus, &made, app_id, path->c_str(), kPortInterface, kDeliverMember) < 0) {
    return nullptr;
  }
  MessagePtr message(made);
  // The sender names no port, because nobody replies to these messages.
  constexpr const char* kNoPort = "";
  const bool is_built =
      sd_bus_message_set_expect_reply(made, 0) >= 0 && sd_bus_message_set_auto_start(made, 0) >= 0 &&
      sd_bus_message_append(made, "ss", OwnAppId().c_str(), kNoPort) >= 0 && payload.AppendTo(made) >= 0;
  return is_built ? std::move(message) : nullptr;
}

}  // namespace

RemotePorts& RemotePorts::Get() {
  static auto* const ports = new RemotePorts;
  return *ports;
}

int RemotePorts::Send(const char* app_id, const char* port, bundle* message) {
  Payload payload;
  const int encoded = payload.Encode(message);
  if (encoded == -EMSGSIZE) return MESSAGE_PORT_ERROR_MAX_EXCEEDED;
  if (encoded < 0) return MESSAGE_PORT_ERROR_OUT_OF_MEMORY;
  BusConnection& connection = BusConnection::Shared();
  sd_bus* const bus = connection.Get();
  if (bus == nullptr) return MESSAGE_PORT_ERROR_IO_ERROR;
  if (!isRunning(bus, app_id)) return MESSAGE_PORT_ERROR_PORT_NOT_FOUND;
  const MessagePtr delivery = NewDelivery(bus, app_id, port, payload);
  if (!delivery) return MESSAGE_PORT_ERROR_OUT_OF_MEMORY;
  return connection.Send(delivery.get()) < 0 ? MESSAGE_PORT_ERROR_IO_ERROR : MESSAGE_PORT_ERROR_NONE;
}

bool RemotePorts::isRunning(sd_bus* bus, const std::string& app_id) {
  const auto known = known_apps_.find(app_id);
  if (known != known_apps_.end()) return known->second->hasOwner(bus);
  int error = 0;
  auto watch = NameWatch::Open(bus, app_id, nullptr, error);
  if (!watch) return HasOwner(bus, app_id.c_str()) > 0;
  const bool is_running = watch->hasOwner(bus);
  if (!is_running) return false;
  if (known_apps_.size() >= kMaxKnownApps) known_apps_.clear();
  known_apps_.emplace(app_id, std::move(watch));
  return true;
}

}  // namespace nurvo
