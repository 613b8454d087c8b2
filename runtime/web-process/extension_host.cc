// Implements the interface tables and keeps track of extensions and instances.
#include "web-process/extension_host.h"

#include <dlfcn.h>
#include <glib.h>

#include <cstring>
#include <deque>
#include <map>
#include <utility>

namespace corvis::tv {

namespace {

struct ExtensionEntry {
  LoadedExtension description;
  NurvoExtensionCallbacks callbacks = {};
  void* user_data = nullptr;
};

struct InstanceEntry {
  ExtensionHandle extension = 0;
  PostedMessageSink sink;
  std::deque<std::string> waiting;
  guint delivery = 0;
  std::string reply;
};

struct Host {
  std::map<ExtensionHandle, ExtensionEntry> extensions;
  std::map<InstanceHandle, InstanceEntry> instances;
  InstanceHandle last_instance = 0;
};

// Never destroyed, because libraries may call until the process ends.
Host& TheHost() {
  static auto* const host = new Host;
  return *host;
}

template <typename Map>
auto Find(Map& map, int32_t handle) -> decltype(&map.begin()->second) {
  const auto entry = map.find(handle);
  return entry == map.end() ? nullptr : &entry->second;
}

ExtensionEntry* FindExtension(ExtensionHandle handle) {
  return Find(TheHost().extensions, handle);
}
InstanceEntry* FindInstance(InstanceHandle handle) {
  return Find(TheHost().instances, handle);
}

void SetName(ExtensionHandle handle, const char* name) {
  if (ExtensionEntry* extension = FindExtension(handle)) extension->description.name = name;
}

void SetScriptApi(ExtensionHandle handle, const char* source) {
  if (ExtensionEntry* extension = FindExtension(handle)) extension->description.script = source;
}

void SetCallbacks(ExtensionHandle handle, const NurvoExtensionCallbacks* callbacks, void* user_data) {
  if (ExtensionEntry* extension = FindExtension(handle)) {
    extension->callbacks = *callbacks;
    extension->user_data = user_data;
  }
}

// Delivers all queued messages. The sink may navigate away and thereby destroy the instance.
gboolean Deliver(gpointer data) {
  const InstanceHandle handle = GPOINTER_TO_INT(data);
  if (InstanceEntry* instance = FindInstance(handle)) instance->delivery = 0;
  for (;;) {
    InstanceEntry* instance = FindInstance(handle);
    if (instance == nullptr || instance->waiting.empty()) return G_SOURCE_REMOVE;
    const std::string message = std::move(instance->waiting.front());
    instance->waiting.pop_front();
    const PostedMessageSink sink = instance->sink;
    sink(message);
  }
}

void PostMessage(InstanceHandle handle, const char* message) {
  InstanceEntry* instance = FindInstance(handle);
  if (instance == nullptr) return;
  instance->waiting.emplace_back(message);
  if (instance->delivery == 0) {
    instance->delivery = g_idle_add_full(G_PRIORITY_HIGH, Deliver, GINT_TO_POINTER(handle), nullptr);
  }
}

void SetSyncReply(InstanceHandle handle, const char* reply) {
  if (InstanceEntry* instance = FindInstance(handle)) instance->reply = reply;
}

constexpr NurvoExtensionInterface kExtensionInterface = {SetName, SetScriptApi, SetCallbacks};
constexpr NurvoMessagingInterface kMessagingInterface = {PostMessage, SetSyncReply};

const void* GetInterface(const char* name) {
  if (std::strcmp(name, kNurvoExtensionInterface) == 0) return &kExtensionInterface;
  if (std::strcmp(name, kNurvoMessagingInterface) == 0) return &kMessagingInterface;
  return nullptr;
}

}  // namespace

std::string LoadExtension(const std::string& path) {
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return "The extension can't be loaded: " + std::string(dlerror()) + ".";
  const auto initialize = reinterpret_cast<ExtensionEntryPoint>(dlsym(library, kExtensionEntryPointName));
  if (initialize == nullptr) {
    dlclose(library);
    return "The extension " + path + " has no " + kExtensionEntryPointName + ".";
  }
  Host& host = TheHost();
  const auto handle = static_cast<ExtensionHandle>(host.extensions.size() + 1);
  host.extensions[handle].description.handle = handle;
  if (initialize(handle, GetInterface) == 0) return "";
  host.extensions.erase(handle);
  return "The extension " + path + " could not be initialized.";
}

std::vector<LoadedExtension> LoadedExtensions() {
  std::vector<LoadedExtension> extensions;
  for (const auto& [handle, extension] : TheHost().extensions) {
    if (!extension.description.name.empty()) extensions.push_back(extension.description);
  }
  return extensions;
}

InstanceHandle CreateInstance(ExtensionHandle extension, PostedMessageSink sink) {
  Host& host = TheHost();
  const InstanceHandle handle = ++host.last_instance;
  InstanceEntry& instance = host.instances[handle];
  instance.extension = extension;
  instance.sink = std::move(sink);
  const ExtensionEntry* entry = FindExtension(extension);
  if (entry != nullptr && entry->callbacks.created != nullptr) {
    entry->callbacks.created(handle, entry->user_data);
  }
  return handle;
}

void DestroyInstance(InstanceHandle handle) {
  InstanceEntry* instance = FindInstance(handle);
  if (instance == nullptr) return;
  const ExtensionEntry* extension = FindExtension(instance->extension);
  if (instance->delivery != 0) g_source_remove(instance->delivery);
  // Removed before the library is notified, so that messages posted by the callback are dropped.
  TheHost().instances.erase(handle);
  if (extension != nullptr && extension->callbacks.destroyed != nullptr) {
    extension->callbacks.destroyed(handle, extension->user_data);
  }
}

void ShutDownExtensions() {
  for (const auto& [handle, extension] : TheHost().extensions) {
    if (extension.callbacks.shutdown != nullptr) extension.callbacks.shutdown(extension.user_data);
  }
  TheHost().extensions.clear();
}

std::string CallInstance(InstanceHandle handle, const std::string& message) {
  InstanceEntry* instance = FindInstance(handle);
  const ExtensionEntry* extension = instance == nullptr ? nullptr : FindExtension(instance->extension);
  if (extension == nullptr || extension->callbacks.sync_message == nullptr) return "";
  instance->reply.clear();
  extension->callbacks.sync_message(handle, message.c_str(), extension->user_data);
  instance = FindInstance(handle);
  return instance == nullptr ? "" : std::exchange(instance->reply, {});
}

}  // namespace corvis::tv
