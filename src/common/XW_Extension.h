// The interface between the library and the web runtime: the exported entry point and the only extension
// object of the process.
#ifndef CORVIS_COMMON_XW_EXTENSION_H_
#define CORVIS_COMMON_XW_EXTENSION_H_

#include "common/picojson.h"

#include "nurvo/extension.h"

// Creates the library's extension object, owned by the caller; null on failure. The library's extension
// defines this function.
common::Extension* CreateExtension();

namespace common {

// The process's extension object, owned by XW_Extension.cc. Calling it before the runtime has initialized the
// library, or after it has shut it down, aborts the process.
Extension* GetCurrentExtension();

}  // namespace common

// The only symbol that the library exports; the runtime calls it once after loading. Returns 0, or -1 if the
// extension can't be used.
extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle extension,
                                                                        InterfaceGetter get_interface);

#endif  // CORVIS_COMMON_XW_EXTENSION_H_
