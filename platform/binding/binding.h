// The process's record of loaded extensions and of the page objects that belong to them: the one place where
// the runtime's handles turn into objects.
#ifndef NURVO_PLATFORM_BINDING_BINDING_H_
#define NURVO_PLATFORM_BINDING_BINDING_H_

#include <map>
#include <memory>

#include "nurvo/extension.h"

namespace nurvo {

// What the library gave to XW_Initialize, and what it uses of the runtime.
struct LoadedExtension {
  ExtensionHandle handle = 0;
  const NurvoExtensionInterface* description = nullptr;
  const NurvoMessagingInterface* messaging = nullptr;
  common::Extension::InstanceCreatedCallback instance_created = nullptr;
  common::Extension::ShutdownCallback shutdown = nullptr;
};

// Used on the runtime's one thread. Nothing that an extension throws leaves an On... operation.
class Binding {
 public:
  // The process's binding; lives until the process ends, because the runtime may call until then.
  static Binding& Get();

  // Takes the extension in, runs `initialize` and, when that returned 0, gives the runtime the extension's
  // callbacks. Returns what `initialize` returned, or -1 when the extension can't be taken.
  int32_t Load(const LoadedExtension& extension, InterfaceGetter get_interface,
               common::Extension::InitializeCallback initialize);
  // The extension whose XW_Initialize is running; null at any other time.
  const LoadedExtension* Initializing() const { return initializing_; }

  // Takes `instance` over for the page `handle` of the extension whose instance_created is running. Returns
  // whether it did; otherwise the instance is destroyed.
  bool Adopt(InstanceHandle handle, std::unique_ptr<common::Instance> instance);
  // The messages of the extension that the page belongs to; null when the page is not (or no longer) bound.
  const NurvoMessagingInterface* MessagingOf(InstanceHandle handle) const;

  // The runtime's callbacks.
  void OnCreated(const LoadedExtension& extension, InstanceHandle handle) noexcept;
  void OnDestroyed(InstanceHandle handle) noexcept;
  void OnMessage(InstanceHandle handle, const char* message) noexcept;
  void OnSyncMessage(const LoadedExtension& extension, InstanceHandle handle, const char* message) noexcept;
  void OnShutdown(const LoadedExtension& extension) noexcept;

 private:
  struct BoundInstance {
    // Shared with the calls that are running on it, so that a page that goes during its own call is
    // destroyed when the call has returned.
    std::shared_ptr<common::Instance> object;
    const LoadedExtension* extension;
  };

  std::shared_ptr<common::Instance> FindInstance(InstanceHandle handle) const;
  void DestroyInstancesOf(const LoadedExtension* extension);

  std::map<ExtensionHandle, LoadedExtension> extensions_;
  std::map<InstanceHandle, BoundInstance> instances_;
  const LoadedExtension* initializing_ = nullptr;
  const LoadedExtension* creating_ = nullptr;
};

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BINDING_BINDING_H_
