// The interface between a web runtime and an extension library: handles, and the function tables that the
// runtime provides by name. The runtime loads a library, looks up its `XW_Initialize` and passes it a handle
// and an InterfaceGetter; everything else is reached through the tables.
//
// All calls, in both directions, are made on the thread that runs the page's main loop.
#ifndef NURVO_RUNTIME_H_
#define NURVO_RUNTIME_H_

#include <cstdint>

// Identifies a loaded extension library. Positive; assigned by the runtime.
using ExtensionHandle = int32_t;
// Identifies one page's instance of an extension. Positive; unique within a process.
using InstanceHandle = int32_t;

// Returns the table with the name `name`, or null if the runtime does not provide it. The table is constant
// and valid as long as the process.
using InterfaceGetter = const void* (*)(const char* name);

// The symbol that every extension library exports. Returns 0, or -1 if the extension can't be used.
using ExtensionEntryPoint = int32_t (*)(ExtensionHandle extension, InterfaceGetter get_interface);
constexpr const char* kExtensionEntryPointName = "XW_Initialize";

// An extension library's callbacks. Each receives the `user_data` that was registered with it, and may be
// null.
struct NurvoExtensionCallbacks {
  // Called once for every page that gets the API, before its script runs.
  void (*created)(InstanceHandle instance, void* user_data);
  // Called once when the page is closed, before the next page's `created`.
  void (*destroyed)(InstanceHandle instance, void* user_data);
  // Handles a message that a page's script posts without waiting for an answer. Messages are NUL-terminated
  // UTF-8.
  void (*message)(InstanceHandle instance, const char* message, void* user_data);
  // Handles a synchronous call of a page's script. Must call set_sync_reply before it returns.
  void (*sync_message)(InstanceHandle instance, const char* message, void* user_data);
  // Called once, after the last instance is destroyed, as the last call.
  void (*shutdown)(void* user_data);
};

constexpr const char* kNurvoExtensionInterface = "nurvo.Extension/2";

// Describes an extension to the runtime. Call all three functions during XW_Initialize; their arguments are
// copied.
struct NurvoExtensionInterface {
  // Sets the dotted path under which pages find the API, for example "corvis.voiceinteraction".
  void (*set_name)(ExtensionHandle extension, const char* name);
  // Sets the script that builds the API in a page. Its scope contains `extension` (its channel); it assigns
  // `exports`.
  void (*set_script_api)(ExtensionHandle extension, const char* source);
  void (*set_callbacks)(ExtensionHandle extension, const NurvoExtensionCallbacks* callbacks, void* user_data);
};

constexpr const char* kNurvoMessagingInterface = "nurvo.Messaging/2";

// Sends messages and replies from the extension to a page's script.
struct NurvoMessagingInterface {
  // Queues a copy of `message` for the page's script and returns. The page receives it in a later turn of the
  // main loop, in the order of posting. The message is dropped if the instance is destroyed first.
  void (*post_message)(InstanceHandle instance, const char* message);
  // Sets the answer to the synchronous call that is being handled. The text is copied; the last one counts.
  void (*set_sync_reply)(InstanceHandle instance, const char* reply);
};

#endif  // NURVO_RUNTIME_H_
