// The privilege URIs. Their host is configured when the library is built.
#include "voice-interaction/privileges.h"

// The default for builds without CMake.
#ifndef CORVIS_PRIVILEGE_HOST
#define CORVIS_PRIVILEGE_HOST "developer.nurvo.example"
#endif

namespace extension::voice_interaction {

const std::string kVoiceControlPrivilege = "http://" CORVIS_PRIVILEGE_HOST "/privilege/voicecontrol";
const std::string kMicrophonePrivilege = "http://" CORVIS_PRIVILEGE_HOST "/privilege/microphone";

}  // namespace extension::voice_interaction
