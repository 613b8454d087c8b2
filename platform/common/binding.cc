// Bookkeeping of extensions and instances, and the functions that the runtime calls.
#include "common/binding.h"

#include <algorithm>
#include <utility>

namespace nurvo {

namespace {

constexpr const char* kUnansweredReply =
    R"({"status":"error","error":{"name":"UnknownError","message":"The extension could not answer the call."}})";

struct RuntimeCallbacks {
  InstanceCallback created;
  InstanceCallback destroyed;
  MessageCallback message;
  MessageCallback sync_message;
};

template <size_t Slot>
constexpr RuntimeCallbacks CallbacksOf() {
  return {[](InstanceHandle handle) { Binding::Get().OnCreated(Slot, handle); },
          [](InstanceHandle handle) { Binding::Get().OnDestroyed(handle); },
          [](InstanceHandle handle, const char* message) { Binding::Get().OnMessage(handle, message); },
          [](InstanceHandle handle, const char* message) {
            Binding::Get().OnSyncMessage(Slot, handle, message);
          }};
}

template <size_t... Slots>
constexpr std::array<RuntimeCallbacks, sizeof...(Slots)> CallbackTable(std::index_sequence<Slots...>) {
  return {CallbacksOf<Slots>()...};
}

constexpr auto kCallbacks = CallbackTable(std::make_index_sequence<kMaxExtensions>());

// Sets a variable for the length of a scope.
template <typename T>
class ScopedValue {
 public:
  ScopedValue(T& variable, T value) : variable_(variable), before_(std::exchange(variable, value)) {}
  ~ScopedValue() { variable_ = before_; }
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;

 private:
  T& variable_;
  T before_;
};

// Runs library code and tells whether it returned, and did not throw.
template <typename Body>
bool Returns(Body&& body) noexcept {
  try {
    body();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace

Binding& Binding::Get() {
  static auto* const binding = new Binding;
  return *binding;
}

int32_t Binding::Load(const LoadedExtension& extension, InterfaceGetter get_interface,
                      common::Extension::InitializeCallback initialize) {
  LoadedExtension* const place = Find(0);
  if (place == nullptr || extension.handle <= 0 || Find(extension.handle) != nullptr) return -1;
  *place = extension;
  int32_t status = -1;
  {
    const ScopedValue<const LoadedExtension*> scope(initialising_, place);
    if (!Returns([&] { status = initialize(extension.handle, get_interface); })) status = -1;
  }
  if (status == 0) {
    RegisterCallbacks(static_cast<size_t>(place - extensions_.data()));
  } else {
    *place = {};
  }
  return status;
}

void Binding::RegisterCallbacks(size_t slot) {
  const LoadedExtension& extension = extensions_[slot];
  const RuntimeCallbacks& callbacks = kCallbacks[slot];
  extension.description->register_instance_callbacks(extension.handle, callbacks.created,
                                                     callbacks.destroyed);
  extension.description->register_shutdown_callback(extension.handle,
                                                    [](ExtensionHandle handle) { Get().OnShutdown(handle); });
  extension.messaging->register_message_callback(extension.handle, callbacks.message);
  extension.messaging->register_sync_message_callback(extension.handle, callbacks.sync_message);
}

bool Binding::Adopt(InstanceHandle handle, std::unique_ptr<common::Instance> instance) {
  if (creating_ == nullptr || handle <= 0 || !instance) return false;
  return instances_.try_emplace(handle, BoundInstance{std::move(instance), creating_}).second;
}

const NurvoMessagingInterface* Binding::MessagingOf(InstanceHandle handle) const {
  const auto found = instances_.find(handle);
  return found == instances_.end() ? nullptr : found->second.extension->messaging;
}

void Binding::OnCreated(size_t slot, InstanceHandle handle) noexcept {
  const LoadedExtension& extension = extensions_[slot];
  if (extension.handle == 0) return;
  const ScopedValue<const LoadedExtension*> scope(creating_, &extension);
  Returns([&] { extension.instance_created(handle); });
}

void Binding::OnDestroyed(InstanceHandle handle) noexcept {
  // Taken out first: what the destructor posts is dropped, and it may look the page up in vain.
  const auto gone = instances_.extract(handle);
}

void Binding::OnMessage(InstanceHandle handle, const char* message) noexcept {
  const auto instance = FindInstance(handle);
  if (instance) Returns([&] { instance->HandleMessage(message); });
}

void Binding::OnSyncMessage(size_t slot, InstanceHandle handle, const char* message) noexcept {
  const NurvoMessagingInterface* const messaging = extensions_[slot].messaging;
  const auto instance = FindInstance(handle);
  const bool handled = instance && Returns([&] { instance->HandleSyncMessage(message); });
  if (!handled && messaging != nullptr) messaging->set_sync_reply(handle, kUnansweredReply);
}

void Binding::OnShutdown(ExtensionHandle handle) noexcept {
  LoadedExtension* const place = handle > 0 ? Find(handle) : nullptr;
  if (place == nullptr) return;
  DestroyInstancesOf(place);
  const auto shutdown = place->shutdown;
  *place = {};
  Returns([&] { shutdown(handle); });
}

void Binding::DestroyInstancesOf(const LoadedExtension* extension) {
  const auto belongs = [&](const auto& item) { return item.second.extension == extension; };
  // Searched anew each time: a destructor may bring about the end of another instance.
  for (auto it = std::find_if(instances_.begin(), instances_.end(), belongs); it != instances_.end();
       it = std::find_if(instances_.begin(), instances_.end(), belongs)) {
    OnDestroyed(it->first);
  }
}

LoadedExtension* Binding::Find(ExtensionHandle handle) {
  auto* const found =
      std::find_if(extensions_.begin(), extensions_.end(),
                   [&](const LoadedExtension& extension) { return extension.handle == handle; });
  return found == extensions_.end() ? nullptr : &*found;
}

std::shared_ptr<common::Instance> Binding::FindInstance(InstanceHandle handle) const {
  const auto found = instances_.find(handle);
  return found == instances_.end() ? nullptr : found->second.object;
}

}  // namespace nurvo
