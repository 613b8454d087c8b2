// A library that does nothing, linked against what the real one is linked against: what loading costs by
// itself.
#include "nurvo/runtime.h"

extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle /*extension*/,
                                                                        InterfaceGetter /*get_interface*/) {
  return 0;
}
