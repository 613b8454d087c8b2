// The source text of the script API. The build generates it from the files in script/.
#ifndef CORVIS_VOICE_INTERACTION_SCRIPT_API_SOURCE_H_
#define CORVIS_VOICE_INTERACTION_SCRIPT_API_SOURCE_H_

// One line, NUL-terminated; valid as long as the process.
extern const char kScriptApiSource[];

#endif  // CORVIS_VOICE_INTERACTION_SCRIPT_API_SOURCE_H_
