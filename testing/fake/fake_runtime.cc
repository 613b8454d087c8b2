// Implements the interface tables of a runtime without real pages.
#include "testing/fake/fake_runtime.h"

#include <utility>

#include "testing/fake/code_scope.h"

extern "C" int32_t XW_Initialize(ExtensionHandle extension, InterfaceGetter get_interface);

namespace fake {

namespace {

// The callbacks that the library has registered with the current runtime.
struct Registration {
  Runtime* runtime = nullptr;
  ExtensionHandle extension = 0;
  NurvoExtensionCallbacks callbacks = {};
  void* user_data = nullptr;
  std::string reply;
};

Registration& Registered() {
  static Registration registration;
  return registration;
}

const void* GetInterface(const char* name) {
  static const NurvoExtensionInterface kExtension = {
      [](ExtensionHandle, const char* text) {
        const FakeCode scope;
        Registered().runtime->name = text;
      },
      [](ExtensionHandle, const char* text) {
        const FakeCode scope;
        Registered().runtime->script = text;
      },
      [](ExtensionHandle, const NurvoExtensionCallbacks* callbacks, void* user_data) {
        Registered().callbacks = *callbacks;
        Registered().user_data = user_data;
      },
  };
  static const NurvoMessagingInterface kMessaging = {
      [](InstanceHandle page, const char* text) {
        const FakeCode scope;
        Runtime& runtime = *Registered().runtime;
        runtime.posted[page].emplace_back(text);
        if (runtime.on_post) runtime.on_post(page);
      },
      [](InstanceHandle, const char* reply) {
        const FakeCode scope;
        Registered().reply = reply;
      },
  };
  const FakeCode scope;
  const std::string wanted = name;
  if (wanted == Registered().runtime->missing_interface) return nullptr;
  if (wanted == kNurvoExtensionInterface) return &kExtension;
  return wanted == kNurvoMessagingInterface ? &kMessaging : nullptr;
}

// Handles are unique within a process.
InstanceHandle NextHandle() {
  static InstanceHandle last = 0;
  return ++last;
}

}  // namespace

Runtime::Runtime(std::string missing) : missing_interface(std::move(missing)) {
  Registered() = {};
  Registered().runtime = this;
  Registered().extension = NextHandle();
  const LibraryCode scope;
  status = XW_Initialize(Registered().extension, GetInterface);
}

Runtime::~Runtime() {
  while (!pages_.empty()) DestroyPage(*pages_.begin());
  Shutdown();
}

void Runtime::Shutdown() {
  const auto shutdown = std::exchange(Registered().callbacks.shutdown, nullptr);
  const LibraryCode scope;
  if (shutdown != nullptr) shutdown(Registered().user_data);
}

InstanceHandle Runtime::NewPage() {
  const InstanceHandle page = NextHandle();
  pages_.insert(page);
  const LibraryCode scope;
  Registered().callbacks.created(page, Registered().user_data);
  return page;
}

void Runtime::DestroyPage(InstanceHandle page) {
  if (pages_.erase(page) == 0) return;
  const LibraryCode scope;
  Registered().callbacks.destroyed(page, Registered().user_data);
}

void Runtime::Message(InstanceHandle page, const std::string& message) {
  const LibraryCode scope;
  Registered().callbacks.message(page, message.c_str(), Registered().user_data);
}

std::string Runtime::CallRaw(InstanceHandle page, const std::string& message) {
  Registered().reply.clear();
  {
    const LibraryCode scope;
    Registered().callbacks.sync_message(page, message.c_str(), Registered().user_data);
  }
  return Registered().reply;
}

InstanceHandle Runtime::NewListeningPage(const std::string& actions) {
  const InstanceHandle page = NewPage();
  Call(page, "VoiceInteractionHandler_setCallback", R"({"actions":[)" + actions + "]}");
  Call(page, "VoiceInteractionHandler_listen");
  return page;
}

}  // namespace fake
