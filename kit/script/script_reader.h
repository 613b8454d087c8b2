// Parses the text of a voice script. docs/voice-scripts.md is the language reference.
#ifndef CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
#define CORVIS_KIT_SCRIPT_SCRIPT_READER_H_

#include <string>
#include <string_view>

#include "script/script.h"

namespace corvis::kit {

// Parses every line; invalid lines add to the script's errors. Accepts any bytes and never throws.
VoiceScript ParseVoiceScript(std::string_view text, const std::string& file);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
