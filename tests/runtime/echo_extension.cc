// An extension library that has nothing to do with voice. Its API `example.echo` answers calls with what they
// were given, twice on request as posted messages; it says on stderr when its instances come and go.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "nurvo/runtime.h"

namespace {

const NurvoMessagingInterface* g_messaging = nullptr;

// exports.call answers at once; exports.post has the message posted; exports.heard is what was posted;
// exports.log writes a line of the script API.
constexpr const char* kScript = R"(
exports.heard = [];
extension.onmessage = function (text) { exports.heard.push(text); };
exports.call = function (text) { return extension.sendSync(text); };
exports.log = function (text) { console.log(text); };
exports.early = extension.sendSync('post:early');
)";

void Tell(const char* event, InstanceHandle instance) {
  std::fprintf(stderr, "%s %d in %d\n", event, instance, getpid());
}

void OnCall(InstanceHandle instance, const char* message, void* /*user_data*/) {
  const std::string text = message;
  constexpr const char* kPost = "post:";
  if (text.compare(0, 5, kPost) == 0) g_messaging->post_message(instance, message + 5);
  g_messaging->set_sync_reply(instance, text == "broken" ? "a\xff\xfe\x80z" : message);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle extension,
                                                                        InterfaceGetter get_interface) {
  const auto* const table =
      static_cast<const NurvoExtensionInterface*>(get_interface(kNurvoExtensionInterface));
  g_messaging = static_cast<const NurvoMessagingInterface*>(get_interface(kNurvoMessagingInterface));
  table->set_name(extension, "example.echo");
  table->set_script_api(extension, kScript);
  NurvoExtensionCallbacks callbacks = {};
  callbacks.created = [](InstanceHandle instance, void* /*user_data*/) { Tell("created", instance); };
  callbacks.destroyed = [](InstanceHandle instance, void* /*user_data*/) {
    // Nobody gets this any more.
    g_messaging->post_message(instance, "late");
    Tell("destroyed", instance);
  };
  callbacks.sync_message = OnCall;
  table->set_callbacks(extension, &callbacks, nullptr);
  return 0;
}
