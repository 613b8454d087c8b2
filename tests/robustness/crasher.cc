// An extension library that brings down the process of every page that loads it.
#include <cstdlib>

#include "nurvo/runtime.h"

extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle extension,
                                                                        InterfaceGetter get_interface) {
  const auto* const table =
      static_cast<const NurvoExtensionInterface*>(get_interface(kNurvoExtensionInterface));
  table->set_name(extension, "crasher");
  table->set_script_api(extension, "");
  NurvoExtensionCallbacks callbacks = {};
  callbacks.created = [](InstanceHandle, void*) { std::abort(); };
  table->set_callbacks(extension, &callbacks, nullptr);
  return 0;
}
