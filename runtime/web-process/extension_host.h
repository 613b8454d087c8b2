// The extension libraries of this web process: loads them, serves them the runtime's interface tables, and
// makes and destroys their instances. Knows nothing of pages; used on the main thread.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_EXTENSION_HOST_H_
#define CORVIS_RUNTIME_WEB_PROCESS_EXTENSION_HOST_H_

#include <functional>
#include <string>
#include <vector>

#include "nurvo/runtime.h"

namespace corvis::tv {

// What an extension library said of itself while it was initialised.
struct LoadedExtension {
  ExtensionHandle handle = 0;
  std::string name;
  std::string script;
};

// Takes a message posted to an instance.
using PostedMessageSink = std::function<void(const std::string& message)>;

// Loads a library and initialises it. Returns an error sentence, empty on success. A library that fails stays
// without effect.
std::string LoadExtension(const std::string& path);

// The extensions that were loaded and have a name and a script.
std::vector<LoadedExtension> LoadedExtensions();

// Makes an instance of an extension. What is posted to it goes to `sink`, in a later turn of the main loop
// and in order, until the instance is destroyed.
InstanceHandle CreateInstance(ExtensionHandle extension, PostedMessageSink sink);

// Destroys an instance; messages that still wait are dropped.
void DestroyInstance(InstanceHandle handle);

// Tells every extension that it is used no more; there are no instances any more, and will be none.
void ShutDownExtensions();

// A synchronous call. Returns the reply, empty when the instance is gone or gave none.
std::string CallInstance(InstanceHandle handle, const std::string& message);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_EXTENSION_HOST_H_
