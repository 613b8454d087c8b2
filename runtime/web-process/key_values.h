// What the pages of this process get of a remote control's key.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_KEY_VALUES_H_
#define CORVIS_RUNTIME_WEB_PROCESS_KEY_VALUES_H_

#include <webkit2/webkit-web-extension.h>

#include <string>

namespace corvis::tv {

// Lets the keyboard events of a frame, no script of which has run yet, have the values of `key`: as JSON
// text, empty for what the engine gives. It is looked at with each event, and outlives the process's pages.
void WatchKeys(JSCContext* context, const std::string* key);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_KEY_VALUES_H_
