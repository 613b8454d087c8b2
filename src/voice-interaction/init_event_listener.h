// The subscription to the voice service's start-up event. A service that has just started does not know
// this application, so the event makes the channel register again.
#ifndef CORVIS_VOICE_INTERACTION_INIT_EVENT_LISTENER_H_
#define CORVIS_VOICE_INTERACTION_INIT_EVENT_LISTENER_H_

namespace extension::voice_interaction {

class VoiceInteractionInstance;

// Subscribes `instance` (not null) and keeps the platform's answer in it; 0 means subscribed. To be called
// only while it is not subscribed. A refusal is logged, and the caller may try again later.
void ListenInitEvent(VoiceInteractionInstance* instance);

// Ends the subscription of `instance` (not null), which must be subscribed. It counts as not subscribed
// afterwards, whatever the platform answers.
void StopListeningInitEvent(VoiceInteractionInstance* instance);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_INIT_EVENT_LISTENER_H_
