// The process's registry of loaded extensions and their page objects. Maps the runtime's handles to objects.
#ifndef NURVO_PLATFORM_BINDING_BINDING_H_
#define NURVO_PLATFORM_BINDING_BINDING_H_

#include <map>
#include <memory>

#include "nurvo/extension.h"

namespace nurvo {

// The arguments that the library passed to XW_Initialize, and the runtime's interfaces that it uses.
struct LoadedExtension {
  ExtensionHandle handle = 0;
  const NurvoExtensionInterface* description = nullptr;
  const NurvoMessagingInterface* messaging = nullptr;
  common::Extension::InstanceCreatedCallback instance_created = nullptr;
  common::Extension::ShutdownCallback shutdown = nullptr;
};

// Used on the runtime's only thread. No exception of an extension leaves an On... function.
class Binding {
 public:
  // The process's binding. Never destroyed, because the runtime may call until the process ends.
  static Binding& Get();

  // Adds the extension, runs `initialize` and, if that returns 0, registers the extension's callbacks with
  // the runtime. Returns the result of `initialize`, or -1 if the extension can't be added.
  int32_t Load(const LoadedExtension& extension, InterfaceGetter get_interface,
               common::Extension::InitializeCallback initialize);
  // The extension whose XW_Initialize is running; otherwise null.
  const LoadedExtension* Initializing() const { return initializing_; }

  // Takes ownership of `instance` for the page `handle` of the extension whose instance_created is running.
  // On failure destroys the instance and returns false.
  bool Adopt(InstanceHandle handle, std::unique_ptr<common::Instance> instance);
  // The messaging interface of the extension that the page belongs to; null if the page is not bound.
  const NurvoMessagingInterface* MessagingOf(InstanceHandle handle) const;

  // The runtime's callbacks.
  void OnCreated(const LoadedExtension& extension, InstanceHandle handle) noexcept;
  void OnDestroyed(InstanceHandle handle) noexcept;
  void OnMessage(InstanceHandle handle, const char* message) noexcept;
  void OnSyncMessage(const LoadedExtension& extension, InstanceHandle handle, const char* message) noexcept;
  void OnShutdown(const LoadedExtension& extension) noexcept;

 private:
  struct BoundInstance {
    // Shared with the calls that are running on it, so that a page that is closed during its own call is
    // destroyed after the call returns.
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
