// The privileges that an application must hold to use the API.
#ifndef CORVIS_VOICE_INTERACTION_PRIVILEGES_H_
#define CORVIS_VOICE_INTERACTION_PRIVILEGES_H_

#include <string>

namespace extension::voice_interaction {

extern const std::string kVoiceControlPrivilege;
extern const std::string kMicrophonePrivilege;

}  // namespace extension::voice_interaction

#endif  // CORVIS_VOICE_INTERACTION_PRIVILEGES_H_
