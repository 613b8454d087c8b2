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

using InstanceCallback = void (*)(InstanceHandle instance);
using ShutdownCallback = void (*)(ExtensionHandle extension);
using MessageCallback = void (*)(InstanceHandle instance, const char* message);

constexpr const char* kNurvoExtensionInterface = "nurvo.Extension/1";

// Describes an extension to the runtime. All four operations are meant for the time of XW_Initialize.
struct NurvoExtensionInterface {
  // The dotted path under which pages find the API, for example "corvis.voiceinteraction". Copied.
  void (*set_name)(ExtensionHandle extension, const char* name);
  // The script that builds the API in a page. It finds `extension` (its channel) and assigns `exports`.
  // Copied.
  void (*set_script_api)(ExtensionHandle extension, const char* source);
  // `created` is called once for every page that gets the API, before its script runs; `destroyed` once
  // when the page goes, and before the next page's `created`.
  void (*register_instance_callbacks)(ExtensionHandle extension, InstanceCallback created,
                                      InstanceCallback destroyed);
  // `shutdown` is called once, after the last instance was destroyed.
  void (*register_shutdown_callback)(ExtensionHandle extension, ShutdownCallback shutdown);
};

constexpr const char* kNurvoMessagingInterface = "nurvo.Messaging/1";

// Carries messages between a page's script and the extension. A message is a NUL-terminated UTF-8 text.
struct NurvoMessagingInterface {
  // `on_message` receives what a page's script posts and waits for no answer.
  void (*register_message_callback)(ExtensionHandle extension, MessageCallback on_message);
  // `on_message` receives a synchronous call; it answers with set_sync_reply before it returns.
  void (*register_sync_message_callback)(ExtensionHandle extension, MessageCallback on_message);
  // Queues `message` (copied) for the page's script and returns; the page gets it in a later turn of
  // the main loop, in the order of posting. Dropped when the instance has gone by then.
  void (*post_message)(InstanceHandle instance, const char* message);
  // The answer (copied) to the synchronous call that is being handled. The last one set counts.
  void (*set_sync_reply)(InstanceHandle instance, const char* reply);
};

#endif  // NURVO_RUNTIME_H_
