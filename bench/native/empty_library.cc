// A library that does nothing but links the same libraries as the real one, as the baseline for loading.
#include "nurvo/runtime.h"

extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle /*extension*/,
                                                                        InterfaceGetter /*get_interface*/) {
  return 0;
}
