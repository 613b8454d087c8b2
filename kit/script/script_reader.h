// Parses the text of a voice script. docs/voice-scripts.md is the language reference.
#ifndef CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
#define CORVIS_KIT_SCRIPT_SCRIPT_READER_H_

#include <string>
#include <string_view>

#include "app/spoken_language.h"
#include "script/script.h"

namespace corvis::kit {

// Parses every line; invalid lines add to the script's errors. `language` is that of the first line;
// statements may change it. Accepts any bytes and never throws.
VoiceScript ParseVoiceScript(std::string_view text, const std::string& file, const SpokenLanguage& language);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
