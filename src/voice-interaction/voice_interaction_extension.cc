// Sets the API's name and script, and creates the pages' instances.
#include "voice-interaction/voice_interaction_extension.h"

#include "common/XW_Extension.h"
#include "voice-interaction/script_api_source.h"
#include "voice-interaction/voice_interaction_instance.h"

VoiceInteractionExtension::VoiceInteractionExtension() {
  SetExtensionName("corvis.voiceinteraction");
  SetJavaScriptAPI(kScriptApiSource);
}

common::Instance* VoiceInteractionExtension::CreateInstance() {
  return new extension::voice_interaction::VoiceInteractionInstance;
}

common::Extension* CreateExtension() {
  return new VoiceInteractionExtension;
}
