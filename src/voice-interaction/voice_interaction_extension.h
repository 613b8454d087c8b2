// The extension: the API's name, its script, and one instance for each page.
#ifndef CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_EXTENSION_H_
#define CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_EXTENSION_H_

#include "common/picojson.h"

#include "nurvo/extension.h"

class VoiceInteractionExtension : public common::Extension {
 public:
  VoiceInteractionExtension();

  common::Instance* CreateInstance() override;
};

#endif  // CORVIS_VOICE_INTERACTION_VOICE_INTERACTION_EXTENSION_H_
