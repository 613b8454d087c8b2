// The script API's text is in the package, as a script: the module has no use for it.
#include "voice-interaction/script_api_source.h"

const char kScriptApiSource[] = "";
