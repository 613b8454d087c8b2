// The lifetime of a page's native object, its handlers, and the dispatch of commands to the page.
#include "voice-interaction/voice_interaction_instance.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "common/logger.h"
#include "common/security_exception.h"
#include "nurvo/app_manager.h"
#include "voice-interaction/action_table.h"
#include "voice-interaction/bundle_json.h"
#include "voice-interaction/exception_text.h"
#include "voice-interaction/init_event_listener.h"
#include "voice-interaction/module_log.h"
#include "voice-interaction/platform_ptr.h"
#include "voice-interaction/posted_message.h"
#include "voice-interaction/privileges.h"
#include "voice-interaction/voice_interaction_channel.h"

namespace extension::voice_interaction {

namespace {

// The member `name` of `args` if it is a T, otherwise null.
template <typename T>
const T* FindMember(const picojson::value& args, const char* name) {
  if (!args.is<picojson::object>()) return nullptr;
  const picojson::object& members = args.get<picojson::object>();
  const auto member = members.find(name);
  return member != members.end() && member->second.is<T>() ? &member->second.get<T>() : nullptr;
}

common::PlatformException TypeMismatch(const char* message) {
  return {"TypeMismatchError", message};
}

using JsonBuilder = std::string (*)(const char* bundle_text);

// The function that converts the service's data to the parameter of the page's callback for `command`; null
// if the callback expects the data itself.
JsonBuilder JsonBuilderOf(const char* command) {
  if (IsSearchAction(command)) return BuildJsonSearchTermFromBundle;
  if (GetActionFromCommand(command) == ACTION_CUSTOM) return BuildJsonObjectFromBundle;
  if (GetActionFromCommand(command) == ACTION_ITEM_SELECTION) return BuildJsonObjectFromBundle;
  return nullptr;
}

}  // namespace

VoiceInteractionInstance::VoiceInteractionInstance() {
  CORVIS_LOG_SCOPE();
  version_ = kModuleVersion;
  MODULE_ERROR_F("VoiceInteractionInstance [%s]", version_.c_str());
  RegisterHandler("VoiceInteractionHandler_listen", &VoiceInteractionInstance::Listen);
  RegisterHandler("VoiceInteractionHandler_setCallback", &VoiceInteractionInstance::SetCallback);
  RegisterHandler("VoiceInteractionHandler_getVersion", &VoiceInteractionInstance::GetVersion);
  RegisterHandler("VoiceInteractionHandler_checkPrivileges", &VoiceInteractionInstance::CheckPrivileges);
  RegisterHandler("Response", &VoiceInteractionInstance::SendResponse);
}

VoiceInteractionInstance::~VoiceInteractionInstance() {
  CORVIS_LOG_SCOPE();
  MODULE_ERROR("~VoiceInteractionInstance");
  VoiceInteractionChannel::Forget(this);
  if (init_event_result_ == 0) StopListeningInitEvent(this);
  ClearMessagePort();
}

void VoiceInteractionInstance::RegisterHandler(const char* name, SyncHandler handler) {
  RegisterSyncHandler(name, [this, handler](const picojson::value& args, picojson::object& out) {
    try {
      (this->*handler)(args, out);
    } catch (...) {
      ReportFailure(CurrentExceptionText(), out);
    }
  });
}

void VoiceInteractionInstance::ReportFailure(const char* message, picojson::object& out) noexcept {
  MODULE_ERROR_F("%s", message);
  CORVIS_LOG_REPORTING_ERROR();
  try {
    ReportError({"UnknownError", message}, out);
  } catch (...) {
    out.clear();  // The binding answers a call whose handler reported nothing.
  }
}

void VoiceInteractionInstance::SetCurrentApplicationId() {
  CORVIS_LOG_SCOPE();
  char* text = nullptr;
  app_manager_get_app_id(getpid(), &text);
  if (const PlatformMemory<char> id(text); id) current_application_id_ = id.get();
  MODULE_ERROR_F("CurrentApplication Id [%s]", current_application_id_.c_str());
}

void VoiceInteractionInstance::InitializeMessagePort() {
  CORVIS_LOG_SCOPE();
  VoiceInteractionChannel::Init(OnCommandReceivedCallback, current_application_id_, version_, this);
}

void VoiceInteractionInstance::ClearMessagePort() {
  CORVIS_LOG_SCOPE();
  VoiceInteractionChannel::Clear();
}

void VoiceInteractionInstance::OnReceivedInitEvent(const char* /*event_name*/, bundle* /*event_data*/,
                                                   void* user_data) {
  CORVIS_LOG_SCOPE();
  if (user_data == nullptr) {
    MODULE_ERROR("Invalid instance data");
    return;
  }
  MODULE_INFO("OnReceivedInitEvent");
  try {
    VoiceInteractionChannel::Reset();
  } catch (...) {
    MODULE_ERROR_F("%s", CurrentExceptionText());
  }
}

void VoiceInteractionInstance::Listen(const picojson::value& /*args*/, picojson::object& out) {
  CORVIS_LOG_SCOPE();
  SetCurrentApplicationId();
  InitializeMessagePort();
  if (init_event_result_ != 0) ListenInitEvent(this);
  MODULE_ERROR_F("Start listen : %p", static_cast<void*>(this));
  ReportSuccess(out);
}

void VoiceInteractionInstance::SetCallback(const picojson::value& args, picojson::object& out) {
  CORVIS_LOG_SCOPE();
  registered_actions_.clear();
  const auto* actions = FindMember<picojson::array>(args, "actions");
  if (actions == nullptr) {
    CORVIS_LOG_REPORTING_ERROR();
    ReportError(TypeMismatch("actions is not array"), out);
    return;
  }
  if (!std::all_of(actions->begin(), actions->end(),
                   [](const auto& name) { return name.template is<std::string>(); })) {
    CORVIS_LOG_REPORTING_ERROR();
    ReportError(TypeMismatch("actions contains an element that is not string"), out);
    return;
  }
  std::map<std::string, bool> registered;
  for (const picojson::value& action : *actions) {
    const std::string& name = action.get<std::string>();
    MODULE_ERROR_F("Set Callback for Action : %s", name.c_str());
    registered[name] = true;
  }
  ReportSuccess(out);
  registered_actions_ = std::move(registered);
}

void VoiceInteractionInstance::GetVersion(const picojson::value& /*args*/, picojson::object& out) {
  CORVIS_LOG_SCOPE();
  ReportSuccess(picojson::value(version_), out);
}

void VoiceInteractionInstance::CheckPrivileges(const picojson::value& /*args*/, picojson::object& out) {
  MODULE_ERROR_F("Checking privileges: %s, %s", kMicrophonePrivilege, kVoiceControlPrivilege);
  if (!privilege_checker_.CheckPrivilege(kMicrophonePrivilege)) {
    CORVIS_LOG_REPORTING_ERROR();
    ReportError(common::SecurityException("Microphone PrivilegeException"), out);
    return;
  }
  if (!privilege_checker_.CheckPrivilege(kVoiceControlPrivilege)) {
    CORVIS_LOG_REPORTING_ERROR();
    ReportError(common::SecurityException("Voice Control PrivilegeException"), out);
    return;
  }
  ReportSuccess(out);
}

void VoiceInteractionInstance::SendResponse(const picojson::value& args, picojson::object& out) {
  CORVIS_LOG_SCOPE();
  const auto* action = FindMember<std::string>(args, "action");
  const auto* response = FindMember<std::string>(args, "response");
  if (action == nullptr || response == nullptr) {
    CORVIS_LOG_REPORTING_ERROR();
    ReportError(TypeMismatch(action == nullptr ? "action is not string" : "response is not string"), out);
    return;
  }
  MODULE_INFO_F("Current Application[%s] response for action[%s] response[%s]",
                current_application_id_.c_str(), action->c_str(), response->c_str());
  const bool is_context = GetActionFromCommand(action->c_str()) == ACTION_REQUEST_APP_CONTEXT;
  VoiceInteractionChannel::Send(is_context ? "appContext" : "result", *response);
  ReportSuccess(out);
}

bool VoiceInteractionInstance::IsRegisteredAction(const char* command) {
  CORVIS_LOG_SCOPE();
  if (command == nullptr) {
    MODULE_ERROR("Invalid command");
    return false;
  }
  MODULE_INFO_F("Find registered action [%s]", command);
  if (registered_actions_.find(command) == registered_actions_.end()) {
    MODULE_INFO_F("There is not registered action [%s]", command);
    return false;
  }
  MODULE_INFO_F("Find the action [%s]", command);
  return true;
}

void VoiceInteractionInstance::OnCommandReceivedCallback(const std::string& command, const std::string& data,
                                                         void* user_data) {
  CORVIS_LOG_SCOPE();
  if (user_data == nullptr) {
    MODULE_ERROR("Invalid instance data");
    return;
  }
  static_cast<VoiceInteractionInstance*>(user_data)->HandleCommand(command.c_str(), data.c_str());
}

void VoiceInteractionInstance::HandleCommand(const char* command, const char* data) {
  if (!IsRegisteredAction(command)) {
    VoiceInteractionChannel::Send("result", "not_support");
    return;
  }
  const JsonBuilder build_json = JsonBuilderOf(command);
  if (build_json == nullptr) return PostCallbackMessage(command, data);
  PostCallbackMessage(command, build_json(data).c_str());
}

void VoiceInteractionInstance::PostCallbackMessage(const char* action, const char* param) {
  MODULE_ERROR("PostCallbackMessage");
  MODULE_ERROR_F("%s %s", action, param == nullptr ? "" : param);
  const std::string message = BuildPostedMessage(action, param);
  MODULE_INFO_F("Post PicoJsonObject : %s", message.c_str());
  PostMessage(message.c_str());
}

}  // namespace extension::voice_interaction
