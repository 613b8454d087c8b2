// Implements the interface tables for one extension with one instance at a time.
#include "host.h"

#include <cstring>
#include <utility>

#include "common/XW_Extension.h"
#include "page.h"
#include "platform/bus.h"

namespace corvis::simulator {

namespace {

constexpr ExtensionHandle kExtension = 1;

struct Host {
  std::string name;
  NurvoExtensionCallbacks library{};
  void* user_data = nullptr;
  InstanceHandle last_page = 0;
  bool is_page_open = false;
  std::string reply;
};

// Never destroyed, because the library may call it as long as the module is loaded.
Host& TheHost() {
  static auto* const host = new Host;
  return *host;
}

bool IsOpen(InstanceHandle page) {
  return TheHost().is_page_open && TheHost().last_page == page;
}

void Post(InstanceHandle page, const char* message) {
  Bus::Get().Queue([page, text = std::string(message)] {
    if (IsOpen(page)) page_deliver(text.c_str());
  });
}

void TakeCallbacks(ExtensionHandle /*extension*/, const NurvoExtensionCallbacks* callbacks, void* user_data) {
  TheHost().library = *callbacks;
  TheHost().user_data = user_data;
}

// The script that the library sets is ignored: the page uses the one in the package.
constexpr NurvoExtensionInterface kExtensionInterface = {
    [](ExtensionHandle, const char* name) { TheHost().name = name; }, [](ExtensionHandle, const char*) {},
    TakeCallbacks};

constexpr NurvoMessagingInterface kMessagingInterface = {
    Post, [](InstanceHandle, const char* reply) { TheHost().reply = reply; }};

const void* GetInterface(const char* name) {
  if (std::strcmp(name, kNurvoExtensionInterface) == 0) return &kExtensionInterface;
  if (std::strcmp(name, kNurvoMessagingInterface) == 0) return &kMessagingInterface;
  return nullptr;
}

}  // namespace

std::string StartLibrary() {
  return XW_Initialize(kExtension, GetInterface) == 0 ? TheHost().name : "";
}

void OpenPage() {
  Host& host = TheHost();
  host.is_page_open = true;
  host.library.created(++host.last_page, host.user_data);
}

void ClosePage() {
  Host& host = TheHost();
  if (!std::exchange(host.is_page_open, false)) return;
  host.library.destroyed(host.last_page, host.user_data);
}

std::string CallLibrary(const char* message) {
  Host& host = TheHost();
  if (!host.is_page_open) return "";
  host.reply.clear();
  host.library.sync_message(host.last_page, message, host.user_data);
  return std::exchange(host.reply, {});
}

}  // namespace corvis::simulator
