// The contact surface between the library and the web runtime: the exported entry point and the one
// extension object of the process.
#ifndef CORVIS_COMMON_XW_EXTENSION_H_
#define CORVIS_COMMON_XW_EXTENSION_H_

#include "common/picojson.h"

#include "nurvo/extension.h"

// Makes the library's extension object, owned by the caller; null when there is none to make. The
// library's extension defines it.
common::Extension* CreateExtension();

namespace common {

// The process's extension object, owned by the glue. Must not be called before the runtime initialized
// the library or after it shut it down: that ends the process.
Extension* GetCurrentExtension();

}  // namespace common

// The one symbol that the library exports: called once by the runtime after loading. Returns 0, or -1 when
// the extension can't be used.
extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle extension,
                                                                        InterfaceGetter get_interface);

#endif  // CORVIS_COMMON_XW_EXTENSION_H_
