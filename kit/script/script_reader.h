// From a script's text to its tests and steps. docs/voice-scripts.md is the reference of the language.
#ifndef CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
#define CORVIS_KIT_SCRIPT_SCRIPT_READER_H_

#include <string>
#include <string_view>

#include "script/script.h"

namespace corvis::kit {

// Lines that are wrong end up in the script's errors, all others in its tests. Takes any bytes; never throws.
VoiceScript ParseVoiceScript(std::string_view text, const std::string& file);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCRIPT_READER_H_
