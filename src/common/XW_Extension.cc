// Passes the three callbacks of an extension to the runtime's binding and owns the extension object.
#include "common/XW_Extension.h"

#include "common/logger.h"

namespace {

// Created by the initialization callback, deleted by the shutdown callback. A plain pointer, because a
// library that is never shut down must not run the extension's destructor while the process exits.
common::Extension* g_extension = nullptr;

constexpr const char* kInitializeName = "XW_Initialize";

int32_t Initialize(ExtensionHandle /*extension*/, InterfaceGetter /*get_interface*/) {
  CORVIS_LOG_SCOPE_OF(kInitializeName);
  g_extension = CreateExtension();
  if (g_extension == nullptr) {
    CORVIS_LOG_ERROR_OF(kInitializeName, "Can't initialize extension: CreateExtension() returned NULL.");
    return -1;
  }
  return 0;
}

void OnInstanceCreated(InstanceHandle handle) {
  CORVIS_LOG_SCOPE();
  if (g_extension == nullptr) return;
  if (common::Instance* instance = g_extension->CreateInstance()) {
    common::Extension::OnInstanceCreated(handle, instance);
  }
}

void OnShutdown(ExtensionHandle /*extension*/) {
  CORVIS_LOG_SCOPE();
  delete g_extension;
  g_extension = nullptr;
}

}  // namespace

namespace common {

Extension* GetCurrentExtension() {
  CORVIS_ASSERT(g_extension, "");
  return g_extension;
}

}  // namespace common

int32_t XW_Initialize(ExtensionHandle extension, InterfaceGetter get_interface) {
  return common::Extension::XW_Initialize(extension, get_interface, Initialize, OnInstanceCreated,
                                          OnShutdown);
}
