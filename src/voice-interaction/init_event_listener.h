// The subscription to the voice service's start-up event. A service that has just started does not know this
// application, so the event makes the channel register again.
#ifndef CORVIS_VOICE_INTERACTION_INIT_EVENT_LISTENER_H_
#define CORVIS_VOICE_INTERACTION_INIT_EVENT_LISTENER_H_

namespace extension::voice_interaction {

class VoiceInteractionInstance;

// Subscribes `instance` (not null, not subscribed) and stores the platform's result in it; 0 means
// subscribed. A failure is logged, and the caller may try again later.
void ListenInitEvent(VoiceInteractionInstance* instance);

// Ends the subscription of `instance` (not null, subscribed). Afterwards it counts as not subscribed, even if
// the platform reports a failure.
void StopListeningInitEvent(VoiceInteractionInstance* instance);

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_INIT_EVENT_LISTENER_H_
