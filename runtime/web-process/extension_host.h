// The extension libraries of this web process: loads them, provides the runtime's interface tables, and
// creates and destroys their instances. Independent of pages; used on the main thread.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_EXTENSION_HOST_H_
#define CORVIS_RUNTIME_WEB_PROCESS_EXTENSION_HOST_H_

#include <functional>
#include <string>
#include <vector>

#include "nurvo/runtime.h"

namespace corvis::tv {

// The description that an extension library provided during its initialization.
struct LoadedExtension {
  ExtensionHandle handle = 0;
  std::string name;
  std::string script;
};

// Receives the messages posted by an instance.
using PostedMessageSink = std::function<void(const std::string& message)>;

// Loads and initializes a library. Returns an error message, empty on success. A library that fails has no
// effect.
std::string LoadExtension(const std::string& path);

// The loaded extensions that have a name and a script.
std::vector<LoadedExtension> LoadedExtensions();

// Creates an instance of an extension. Its posted messages are passed to `sink` in order, in a later turn of
// the main loop, until the instance is destroyed.
InstanceHandle CreateInstance(ExtensionHandle extension, PostedMessageSink sink);

// Destroys an instance and drops its queued messages.
void DestroyInstance(InstanceHandle handle);

// Calls the shutdown callback of every extension. All instances must be destroyed, and none may be created
// afterwards.
void ShutDownExtensions();

// Makes a synchronous call. Returns the reply; empty if the instance is destroyed or did not reply.
std::string CallInstance(InstanceHandle handle, const std::string& message);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_EXTENSION_HOST_H_
