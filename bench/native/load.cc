// Measures loading and initializing a library in a new process: prints the microseconds of processor time,
// and the bytes of resident memory afterwards:
//   bench_load LIBRARY.so
#include <dlfcn.h>

#include <cstdio>
#include <cstring>

#include "native/numbers.h"
#include "nurvo/runtime.h"

namespace {

const void* GetInterface(const char* name) {
  static const NurvoExtensionInterface kExtension = {
      [](ExtensionHandle, const char*) {}, [](ExtensionHandle, const char*) {},
      [](ExtensionHandle, const NurvoExtensionCallbacks*, void*) {}};
  static const NurvoMessagingInterface kMessaging = {[](InstanceHandle, const char*) {},
                                                     [](InstanceHandle, const char*) {}};
  if (std::strcmp(name, kNurvoExtensionInterface) == 0) return &kExtension;
  return std::strcmp(name, kNurvoMessagingInterface) == 0 ? &kMessaging : nullptr;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("Usage: bench_load LIBRARY.so\n", stderr);
    return 2;
  }
  const double start = bench::Microseconds(CLOCK_PROCESS_CPUTIME_ID);
  void* const library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
  const auto entry = library == nullptr
                         ? nullptr
                         : reinterpret_cast<ExtensionEntryPoint>(dlsym(library, kExtensionEntryPointName));
  const int status = entry == nullptr ? -1 : entry(1, GetInterface);
  const double end = bench::Microseconds(CLOCK_PROCESS_CPUTIME_ID);
  if (status != 0) {
    std::fprintf(stderr, "%s can't be loaded: %s.\n", arguments[1],
                 library == nullptr ? dlerror() : "it refused");
    return 1;
  }
  std::printf("%.1f %ld\n", end - start, bench::ResidentBytes());
  return 0;
}
