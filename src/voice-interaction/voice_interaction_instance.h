// A page's native object: answers the page's calls, passes the voice service's commands to the page, and the
// page's answers to the service.
#ifndef CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_INSTANCE_H_
#define CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_INSTANCE_H_

#include "common/picojson.h"

#include <cstdint>
#include <map>
#include <string>

#include "nurvo/app_event.h"
#include "nurvo/extension.h"
#include "voice-interaction/privilege_checker.h"

namespace extension::voice_interaction {

// Created for every page that loads the API, and destroyed when the page is closed. Opens nothing until the
// page calls listen.
class VoiceInteractionInstance : public common::ParsedInstance {
 public:
  // The value of `init_event_result_` while there is no subscription.
  static constexpr int32_t kNotSubscribed = -22;

  VoiceInteractionInstance();
  // Ends the subscription, if there is one, and closes the port of the process. Does not fail if there is no
  // memory.
  ~VoiceInteractionInstance() override;

  // The platform calls this when the voice service has started. `user_data` is the subscribed instance.
  // Throws nothing.
  static void OnReceivedInitEvent(const char* event_name, bundle* event_data, void* user_data);

  // The channel calls this for every command. `user_data` is the instance that listened last, or null if it
  // is destroyed; then the command is dropped.
  static void OnCommandReceivedCallback(const std::string& command, const std::string& data, void* user_data);

 private:
  friend void ListenInitEvent(VoiceInteractionInstance* instance);
  friend void StopListeningInitEvent(VoiceInteractionInstance* instance);

  // The synchronous calls of the page's script. Each writes exactly one report to `out`. An exception, which
  // only a lack of memory can cause, becomes an error report.
  using SyncHandler = void (VoiceInteractionInstance::*)(const picojson::value& args, picojson::object& out);
  void RegisterHandler(const char* name, SyncHandler handler);
  void ReportFailure(const char* message, picojson::object& out) noexcept;
  void Listen(const picojson::value& args, picojson::object& out);
  void SetCallback(const picojson::value& args, picojson::object& out);
  void GetVersion(const picojson::value& args, picojson::object& out);
  void CheckPrivileges(const picojson::value& args, picojson::object& out);
  void SendResponse(const picojson::value& args, picojson::object& out);

  void SetCurrentApplicationId();
  void InitializeMessagePort();
  void ClearMessagePort();

  bool IsRegisteredAction(const char* command);
  // Delivers a command to the page, or refuses it if the page has not registered the action.
  void HandleCommand(const char* command, const char* data);
  // `param` may be null.
  void PostCallbackMessage(const char* action, const char* param);

  // The last result of subscribing to the service's start-up event; 0 means subscribed.
  int32_t init_event_result_ = kNotSubscribed;
  // Only valid while subscribed.
  event_handler_h init_event_handle_ = nullptr;
  std::string current_application_id_;
  std::string version_;
  // The actions that the page handles, as keys; the values have no meaning.
  std::map<std::string, bool> registered_actions_;
  PrivilegeChecker privilege_checker_;
};

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_INSTANCE_H_
