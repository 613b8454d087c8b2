// The minimal library for a command on the same platform: decodes the data once, writes one JSON text,
// creates one bundle and sends it. No registered actions, limits or logs. With BENCH_LIBRARY_JSON it writes
// JSON like the real library, otherwise with picojson.
#include <cstring>
#include <string>
#include <utility>

#include "nurvo/extension.h"
#include "nurvo/message_port.h"
#include "nurvo_desktop/bundle_ptr.h"
#include "voice-interaction/posted_message.h"

namespace {

#ifdef BENCH_BINDING_ONLY
constexpr bool kIsBindingOnly = true;
#else
constexpr bool kIsBindingOnly = false;
#endif

struct Members {
  bundle* entries;
  std::string json;
  bool is_search;
};

void AppendMember(const char* key, int /*type*/, const bundle_keyval_t* /*entry*/, void* user_data) {
  auto& members = *static_cast<Members*>(user_data);
  char* value = nullptr;
  if (members.is_search && std::strcmp(key, "raw") == 0) return;
  if (bundle_get_str(members.entries, key, &value) != 0) return;
  if (members.is_search && std::strcmp(key, "content_type") == 0) key = "contentType";
  if (!members.json.empty()) members.json += ',';
  members.json.append("\"").append(key).append("\":\"").append(value).append("\"");
}

std::string ParameterText(const char* action, const char* data) {
  const bool is_search = std::strcmp(action, "ACTION_SEARCH") == 0;
  if (!is_search && std::strcmp(action, "ACTION_CUSTOM") != 0) return data;
  const nurvo::BundlePtr entries(
      bundle_decode(reinterpret_cast<const bundle_raw*>(data), static_cast<int>(std::strlen(data))));
  Members members = {entries.get(), "", is_search};
  bundle_foreach(entries.get(), AppendMember, &members);
  return "{" + members.json + "}";
}

std::string PostedText(const char* action, const std::string& param) {
#ifdef BENCH_LIBRARY_JSON
  return extension::voice_interaction::BuildPostedMessage(action, param.c_str());
#else
  picojson::object posted;
  posted["listenerId"] = picojson::value(action);
  posted["action"] = picojson::value(action);
  posted["param"] = picojson::value(param);
  return picojson::value(std::move(posted)).serialize();
#endif
}

class LeastInstance : public common::ParsedInstance {
 public:
  LeastInstance() {
    RegisterSyncHandler("VoiceInteractionHandler_setCallback",
                        [this](const picojson::value&, picojson::object& out) { ReportSuccess(out); });
    RegisterSyncHandler("VoiceInteractionHandler_listen",
                        [this](const picojson::value&, picojson::object& out) {
                          message_port_register_local_port("com.port.vif.voiceinteraction", OnMessage, this);
                          ReportSuccess(out);
                        });
    RegisterSyncHandler("Response", [this](const picojson::value& args, picojson::object& out) {
      const nurvo::BundlePtr answer(bundle_create());
      bundle_add(answer.get(), "command", "result");
      bundle_add(answer.get(), "strData", args.get("response").get<std::string>().c_str());
      bundle_add(answer.get(), "sdkVersion", "1.0.8");
      message_port_send_message("com.kelvaro.tv.vif", "com.port.vif.voiceinteraction", answer.get());
      ReportSuccess(out);
    });
  }

 private:
  static void OnMessage(int /*port*/, const char* /*app_id*/, const char* /*remote_port*/,
                        bool /*is_trusted*/, bundle* message, void* self) {
    if (kIsBindingOnly) return static_cast<LeastInstance*>(self)->PostMessage("");
    char* action = nullptr;
    char* data = nullptr;
    if (bundle_get_str(message, "command", &action) != 0 || bundle_get_str(message, "strData", &data) != 0)
      return;
    static_cast<LeastInstance*>(self)->PostMessage(PostedText(action, ParameterText(action, data)).c_str());
  }
};

class LeastExtension : public common::Extension {
 public:
  common::Instance* CreateInstance() override { return new LeastInstance; }
};

LeastExtension& TheExtension() {
  static LeastExtension extension;
  return extension;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int32_t XW_Initialize(ExtensionHandle extension,
                                                                        InterfaceGetter get_interface) {
  return common::Extension::XW_Initialize(
      extension, get_interface, [](ExtensionHandle, InterfaceGetter) { return 0; },
      [](InstanceHandle handle) {
        common::Extension::OnInstanceCreated(handle, TheExtension().CreateInstance());
      },
      [](ExtensionHandle) {});
}
