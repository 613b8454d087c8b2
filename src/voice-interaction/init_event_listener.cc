// Subscribes an instance to the voice service's start-up event and unsubscribes it.
#include "voice-interaction/init_event_listener.h"

#include "nurvo/app_event.h"
#include "voice-interaction/module_log.h"
#include "voice-interaction/voice_interaction_instance.h"

namespace extension::voice_interaction {

namespace {
constexpr const char* kInitEventName = "event.com.kelvaro.tv.vif.InitEvent";
}  // namespace

void ListenInitEvent(VoiceInteractionInstance* instance) {
  instance->init_event_result_ = event_add_event_handler(
      kInitEventName, VoiceInteractionInstance::OnReceivedInitEvent, instance, &instance->init_event_handle_);
  MODULE_INFO_F("ListenInitEvent Result [%d]", instance->init_event_result_);
}

void StopListeningInitEvent(VoiceInteractionInstance* instance) {
  [[maybe_unused]] const int result = event_remove_event_handler(instance->init_event_handle_);
  MODULE_INFO_F("ListenInitEvent Result [%d]", result);
  instance->init_event_result_ = VoiceInteractionInstance::kNotSubscribed;
}

}  // namespace extension::voice_interaction
