// The privilege URIs. Their host is configured when the library is built.
#include "voice-interaction/privileges.h"

// The default for builds without CMake.
#ifndef CORVIS_PRIVILEGE_HOST
#define CORVIS_PRIVILEGE_HOST "developer.nurvo.example"
#endif

namespace extension::voice_interaction {

constexpr char kVoiceControlPrivilege[] = "http://" CORVIS_PRIVILEGE_HOST "/privilege/voicecontrol";
constexpr char kMicrophonePrivilege[] = "http://" CORVIS_PRIVILEGE_HOST "/privilege/microphone";

}  // namespace extension::voice_interaction
