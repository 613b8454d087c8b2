// An empty script API: the package contains it as a script, so the module does not need its text.
#include "voice-interaction/script_api_source.h"

const char kScriptApiSource[] = "";
