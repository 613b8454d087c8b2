// The extension's side of the binding: loading, name and script, and passing on instances.
#include <memory>

#include "binding/binding.h"
#include "nurvo/extension.h"
#include "support/c_interface.h"

namespace common {

Extension::Extension() = default;

Extension::~Extension() = default;

int32_t Extension::XW_Initialize(ExtensionHandle extension, InterfaceGetter get_interface,
                                 InitializeCallback initialize, InstanceCreatedCallback instance_created,
                                 ShutdownCallback shutdown) {
  if (get_interface == nullptr || initialize == nullptr || instance_created == nullptr ||
      shutdown == nullptr) {
    return -1;
  }
  nurvo::LoadedExtension loaded;
  loaded.handle = extension;
  loaded.description = static_cast<const NurvoExtensionInterface*>(get_interface(kNurvoExtensionInterface));
  loaded.messaging = static_cast<const NurvoMessagingInterface*>(get_interface(kNurvoMessagingInterface));
  loaded.instance_created = instance_created;
  loaded.shutdown = shutdown;
  if (loaded.description == nullptr || loaded.messaging == nullptr) return -1;
  return nurvo::Guarded(int32_t{-1},
                        [&] { return nurvo::Binding::Get().Load(loaded, get_interface, initialize); });
}

void Extension::OnInstanceCreated(InstanceHandle handle, Instance* instance) {
  std::unique_ptr<Instance> owner(instance);
  if (instance == nullptr) return;
  instance->handle_ = handle;
  if (nurvo::Binding::Get().Adopt(handle, std::move(owner))) instance->OnAttached();
}

void Extension::SetExtensionName(const char* name) {
  const nurvo::LoadedExtension* const extension = nurvo::Binding::Get().Initializing();
  if (extension != nullptr && name != nullptr) extension->description->set_name(extension->handle, name);
}

void Extension::SetJavaScriptAPI(const char* source) {
  const nurvo::LoadedExtension* const extension = nurvo::Binding::Get().Initializing();
  if (extension != nullptr && source != nullptr) {
    extension->description->set_script_api(extension->handle, source);
  }
}

}  // namespace common
