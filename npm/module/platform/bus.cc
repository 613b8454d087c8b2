// Queues encoded bundles, so that receivers get copies as they do between processes.
#include "platform/bus.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace corvis::simulator {

namespace {

// The limit of the desktop's message ports.
constexpr int kMaxMessageBytes = 65536;

using BundlePtr = std::unique_ptr<bundle, decltype(&bundle_free)>;

// The encoded bundle; empty if out of memory.
std::string Encoded(bundle* b) {
  bundle_raw* text = nullptr;
  int length = 0;
  if (bundle_encode(b, &text, &length) != 0) return "";
  const std::unique_ptr<bundle_raw, decltype(&std::free)> owner(text, std::free);
  return {reinterpret_cast<const char*>(text), static_cast<size_t>(length)};
}

BundlePtr Decoded(const std::string& text) {
  const auto* const bytes = reinterpret_cast<const bundle_raw*>(text.data());
  return {bundle_decode(bytes, static_cast<int>(text.size())), bundle_free};
}

}  // namespace

Bus& Bus::Get() {
  static auto* const bus = new Bus;
  return *bus;
}

int Bus::Open(const std::string& name, message_port_message_cb callback, void* user_data) {
  const bool was_running = IsRunning(acting_);
  const auto same = std::find_if(ports_.begin(), ports_.end(), [&](const auto& entry) {
    return entry.second.app_id == acting_ && entry.second.name == name;
  });
  const int id = same == ports_.end() ? ++last_port_id_ : same->first;
  ports_[id] = {acting_, name, callback, user_data};
  if (!was_running) AnnounceChange(acting_, true);
  return id;
}

int Bus::Close(int port_id) {
  const auto port = ports_.extract(port_id);
  if (!port) return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
  if (!IsRunning(port.mapped().app_id)) AnnounceChange(port.mapped().app_id, false);
  return MESSAGE_PORT_ERROR_NONE;
}

bool Bus::IsRunning(const std::string& app_id) const {
  return std::any_of(ports_.begin(), ports_.end(),
                     [&](const auto& port) { return port.second.app_id == app_id; });
}

int Bus::Send(const std::string& app_id, const std::string& port, bundle* message) {
  std::string text = Encoded(message);
  if (text.empty()) return MESSAGE_PORT_ERROR_OUT_OF_MEMORY;
  if (text.size() > kMaxMessageBytes) return MESSAGE_PORT_ERROR_MAX_EXCEEDED;
  if (!IsRunning(app_id)) return MESSAGE_PORT_ERROR_PORT_NOT_FOUND;
  Queue([this, from = acting_, app_id, port, text = std::move(text)] { Deliver(from, app_id, port, text); });
  return MESSAGE_PORT_ERROR_NONE;
}

void Bus::Deliver(const std::string& from, const std::string& to, const std::string& port,
                  const std::string& text) {
  const auto open = std::find_if(ports_.begin(), ports_.end(), [&](const auto& entry) {
    return entry.second.app_id == to && entry.second.name == port;
  });
  if (open == ports_.end()) return;
  const BundlePtr message = Decoded(text);
  if (!message) return;
  const Acting receiver(to);
  // A copy, because the receiver may close its port.
  const Port target = open->second;
  target.callback(open->first, from.c_str(), nullptr, false, message.get(), target.user_data);
}

void Bus::Publish(const std::string& event, bundle* data) {
  for (event_handler* handler : handlers_) {
    if (handler->event != event) continue;
    Queue([this, handler, text = data == nullptr ? "" : Encoded(data)] {
      if (handlers_.count(handler) == 0) return;
      const Acting receiver(handler->app_id);
      const BundlePtr sent(text.empty() ? bundle_create() : Decoded(text).release(), bundle_free);
      handler->callback(handler->event.c_str(), sent.get(), handler->user_data);
    });
  }
}

void Bus::AnnounceChange(const std::string& app_id, bool is_running) {
  for (app_watch* watch : watches_) {
    if (watch->app_id != app_id) continue;
    Queue([this, watch, is_running] {
      if (watches_.count(watch) == 1) watch->callback(watch->app_id.c_str(), is_running, watch->user_data);
    });
  }
}

bool Bus::DeliverNext() {
  if (waiting_.empty()) return false;
  const std::function<void()> delivery = std::move(waiting_.front());
  waiting_.pop_front();
  delivery();
  return true;
}

Acting::Acting(std::string app_id) : before_(std::exchange(Bus::Get().acting_, std::move(app_id))) {}

Acting::~Acting() {
  Bus::Get().acting_ = before_;
}

}  // namespace corvis::simulator
