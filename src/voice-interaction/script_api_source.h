// The script API's text. The build makes it from the files in script/.
#ifndef CORVIS_VOICE_INTERACTION_SCRIPT_API_SOURCE_H_
#define CORVIS_VOICE_INTERACTION_SCRIPT_API_SOURCE_H_

// One line, ended by a NUL; lives as long as the process.
extern const char kScriptApiSource[];

#endif  // CORVIS_VOICE_INTERACTION_SCRIPT_API_SOURCE_H_
