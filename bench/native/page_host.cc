// A minimal implementation of the interface tables that a library requests.
#include "native/page_host.h"

#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench {

namespace {

struct Registration {
  NurvoExtensionCallbacks callbacks = {};
  void* user_data = nullptr;
};

// The registrations, indexed by extension handle.
std::array<Registration, 16>& Registrations() {
  static std::array<Registration, 16> registrations;
  return registrations;
}

size_t& BytesOut() {
  static size_t bytes = 0;
  return bytes;
}

const void* GetInterface(const char* name) {
  static const NurvoExtensionInterface kExtension = {
      [](ExtensionHandle, const char*) {}, [](ExtensionHandle, const char*) {},
      [](ExtensionHandle extension, const NurvoExtensionCallbacks* callbacks, void* user_data) {
        Registrations().at(static_cast<size_t>(extension)) = {*callbacks, user_data};
      }};
  static const NurvoMessagingInterface kMessaging = {
      [](InstanceHandle, const char* message) { BytesOut() += std::strlen(message); },
      [](InstanceHandle, const char* reply) { BytesOut() += std::strlen(reply); }};
  if (std::strcmp(name, kNurvoExtensionInterface) == 0) return &kExtension;
  return std::strcmp(name, kNurvoMessagingInterface) == 0 ? &kMessaging : nullptr;
}

[[noreturn]] void Fail(const std::string& path, const char* reason) {
  std::fprintf(stderr, "The library %s can't be used: %s.\n", path.c_str(), reason);
  std::exit(1);
}

}  // namespace

PageHost::PageHost(const std::string& path) {
  static ExtensionHandle last = 0;
  extension_ = ++last;
  void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) Fail(path, dlerror());
  const auto entry = reinterpret_cast<ExtensionEntryPoint>(dlsym(library, kExtensionEntryPointName));
  if (entry == nullptr || entry(extension_, GetInterface) != 0) Fail(path, "it refuses to start");
}

InstanceHandle PageHost::NewPage() const {
  static InstanceHandle last = 0;
  const Registration& library = Registrations().at(static_cast<size_t>(extension_));
  library.callbacks.created(++last, library.user_data);
  return last;
}

InstanceHandle PageHost::NewListeningPage() {
  const InstanceHandle page = NewPage();
  Call(page,
       R"({"cmd":"VoiceInteractionHandler_setCallback","args":{"actions":["ACTION_PLAY","ACTION_SEARCH",)"
       R"("ACTION_CUSTOM","ACTION_NAVIGATION","ACTION_REQUEST_CONTENT_CONTEXT"]}})");
  Call(page, R"({"cmd":"VoiceInteractionHandler_listen","args":{}})");
  port_ = LastPort();
  return page;
}

void PageHost::Call(InstanceHandle page, const char* message) const {
  const Registration& library = Registrations()[static_cast<size_t>(extension_)];
  library.callbacks.sync_message(page, message, library.user_data);
}

void PageHost::Deliver(bundle* command) const {
  port_.callback(1, "com.kelvaro.tv.vif", "com.port.vif.voiceinteraction", false, command, port_.user_data);
}

size_t PageHost::bytes_out() {
  return BytesOut();
}

}  // namespace bench
