// An extension library that brings down the process of every page that loads it.
#include <cstdlib>

#include "nurvo/runtime.h"

extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle extension,
                                                                        InterfaceGetter get_interface) {
  const auto* const table =
      static_cast<const NurvoExtensionInterface*>(get_interface(kNurvoExtensionInterface));
  table->set_name(extension, "crasher");
  table->set_script_api(extension, "");
  table->register_instance_callbacks(
      extension, [](InstanceHandle) { std::abort(); }, [](InstanceHandle) {});
  return 0;
}
