// Keeps track of extensions and instances, and implements the functions that the runtime calls.
#include "binding/binding.h"

#include <algorithm>
#include <utility>

namespace nurvo {

namespace {

constexpr const char* kUnansweredReply =
    R"({"status":"error","error":{"name":"UnknownError","message":"The extension could not answer the call."}})";

// The runtime passes to each callback the extension that it was registered with.
const LoadedExtension& ExtensionOf(void* user_data) {
  return *static_cast<const LoadedExtension*>(user_data);
}

constexpr NurvoExtensionCallbacks kCallbacks = {
    [](InstanceHandle handle, void* extension) { Binding::Get().OnCreated(ExtensionOf(extension), handle); },
    [](InstanceHandle handle, void* /*extension*/) { Binding::Get().OnDestroyed(handle); },
    [](InstanceHandle handle, const char* message, void* /*extension*/) {
      Binding::Get().OnMessage(handle, message);
    },
    [](InstanceHandle handle, const char* message, void* extension) {
      Binding::Get().OnSyncMessage(ExtensionOf(extension), handle, message);
    },
    [](void* extension) { Binding::Get().OnShutdown(ExtensionOf(extension)); }};

// Sets a variable for the duration of a scope.
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

// Runs library code. Returns false if it throws.
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
  if (extension.handle <= 0) return -1;
  const auto [entry, is_new] = extensions_.try_emplace(extension.handle, extension);
  if (!is_new) return -1;
  LoadedExtension& loaded = entry->second;
  int32_t status = -1;
  {
    const ScopedValue<const LoadedExtension*> scope(initializing_, &loaded);
    if (!Returns([&] { status = initialize(loaded.handle, get_interface); })) status = -1;
  }
  if (status == 0) {
    loaded.description->set_callbacks(loaded.handle, &kCallbacks, &loaded);
  } else {
    extensions_.erase(entry);
  }
  return status;
}

bool Binding::Adopt(InstanceHandle handle, std::unique_ptr<common::Instance> instance) {
  if (creating_ == nullptr || handle <= 0 || !instance) return false;
  return instances_.try_emplace(handle, BoundInstance{std::move(instance), creating_}).second;
}

const NurvoMessagingInterface* Binding::MessagingOf(InstanceHandle handle) const {
  const auto found = instances_.find(handle);
  return found == instances_.end() ? nullptr : found->second.extension->messaging;
}

void Binding::OnCreated(const LoadedExtension& extension, InstanceHandle handle) noexcept {
  const ScopedValue<const LoadedExtension*> scope(creating_, &extension);
  Returns([&] { extension.instance_created(handle); });
}

void Binding::OnDestroyed(InstanceHandle handle) noexcept {
  // Removed before it is destroyed, so that messages posted by its destructor are dropped.
  const auto gone = instances_.extract(handle);
}

void Binding::OnMessage(InstanceHandle handle, const char* message) noexcept {
  const auto instance = FindInstance(handle);
  if (instance) Returns([&] { instance->HandleMessage(message); });
}

void Binding::OnSyncMessage(const LoadedExtension& extension, InstanceHandle handle,
                            const char* message) noexcept {
  const NurvoMessagingInterface& messaging = *extension.messaging;
  const auto instance = FindInstance(handle);
  const bool handled = instance && Returns([&] { instance->HandleSyncMessage(message); });
  if (!handled) messaging.set_sync_reply(handle, kUnansweredReply);
}

void Binding::OnShutdown(const LoadedExtension& extension) noexcept {
  DestroyInstancesOf(&extension);
  const auto gone = extensions_.extract(extension.handle);
  Returns([&] { gone.mapped().shutdown(gone.key()); });
}

void Binding::DestroyInstancesOf(const LoadedExtension* extension) {
  const auto belongs = [&](const auto& item) { return item.second.extension == extension; };
  // Search again each time, because a destructor may cause another instance to be destroyed.
  for (auto it = std::find_if(instances_.begin(), instances_.end(), belongs); it != instances_.end();
       it = std::find_if(instances_.begin(), instances_.end(), belongs)) {
    OnDestroyed(it->first);
  }
}

std::shared_ptr<common::Instance> Binding::FindInstance(InstanceHandle handle) const {
  const auto found = instances_.find(handle);
  return found == instances_.end() ? nullptr : found->second.object;
}

}  // namespace nurvo
