// What a web runtime and an extension library agree on: handles, and the tables of operations that the
// runtime serves by name. The runtime loads a library, looks up its `XW_Initialize` and passes it a handle
// and an InterfaceGetter; everything else is reached through the tables.
//
// Every call, in either direction, is made on the one thread that runs the page's main loop.
#ifndef NURVO_RUNTIME_H_
#define NURVO_RUNTIME_H_

#include <cstdint>

// Names one loaded extension library. Positive; chosen by the runtime.
using ExtensionHandle = int32_t;
// Names one page's use of one extension. Positive; never used again within a process.
using InstanceHandle = int32_t;

// Returns the table that belongs to `name`, or null when the runtime does not serve it. The table is
// constant and lives as long as the process.
using InterfaceGetter = const void* (*)(const char* name);

// The symbol that every extension library exports. Returns 0, or -1 when the extension can't be used.
using ExtensionEntryPoint = int32_t (*)(ExtensionHandle extension, InterfaceGetter get_interface);
constexpr const char* kExtensionEntryPointName = "XW_Initialize";

// What an extension library wants to hear from the runtime. Each operation gets the `user_data` that was
// registered with it; null for what is not wanted.
struct NurvoExtensionCallbacks {
  // Called once for every page that gets the API, before its script runs.
  void (*created)(InstanceHandle instance, void* user_data);
  // Called once when the page goes, and before the next page's `created`.
  void (*destroyed)(InstanceHandle instance, void* user_data);
  // What a page's script posts without waiting for an answer. Messages are NUL-terminated UTF-8 texts.
  void (*message)(InstanceHandle instance, const char* message, void* user_data);
  // A synchronous call of a page's script; answered with set_sync_reply before it returns.
  void (*sync_message)(InstanceHandle instance, const char* message, void* user_data);
  // Called once, after the last instance was destroyed; no call follows it.
  void (*shutdown)(void* user_data);
};

constexpr const char* kNurvoExtensionInterface = "nurvo.Extension/2";

// Describes an extension to the runtime. All three operations are meant for the time of XW_Initialize; what
// they are given is copied.
struct NurvoExtensionInterface {
  // The dotted path under which pages find the API, for example "corvis.voiceinteraction".
  void (*set_name)(ExtensionHandle extension, const char* name);
  // The script that builds the API in a page. It finds `extension` (its channel) and assigns `exports`.
  void (*set_script_api)(ExtensionHandle extension, const char* source);
  void (*set_callbacks)(ExtensionHandle extension, const NurvoExtensionCallbacks* callbacks, void* user_data);
};

constexpr const char* kNurvoMessagingInterface = "nurvo.Messaging/2";

// Carries messages from the extension to a page's script.
struct NurvoMessagingInterface {
  // Queues `message` (copied) for the page's script and returns; the page gets it in a later turn of
  // the main loop, in the order of posting. Dropped when the instance has gone by then.
  void (*post_message)(InstanceHandle instance, const char* message);
  // The answer (copied) to the synchronous call that is being handled. The last one set counts.
  void (*set_sync_reply)(InstanceHandle instance, const char* reply);
};

#endif  // NURVO_RUNTIME_H_
