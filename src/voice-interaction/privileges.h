// The privileges that an application must hold to use the API. Like the action table they are constants,
// which exist before any code runs, so that no order of initialization matters.
#ifndef CORVIS_VOICE_INTERACTION_PRIVILEGES_H_
#define CORVIS_VOICE_INTERACTION_PRIVILEGES_H_

namespace extension::voice_interaction {

extern const char kVoiceControlPrivilege[];
extern const char kMicrophonePrivilege[];

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_PRIVILEGES_H_
