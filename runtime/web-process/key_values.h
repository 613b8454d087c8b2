// Sets the values of keyboard events that pages receive for the keys of a remote control.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_KEY_VALUES_H_
#define CORVIS_RUNTIME_WEB_PROCESS_KEY_VALUES_H_

#include <webkit2/webkit-web-extension.h>

#include <string>

namespace corvis::tv {

// Makes keyboard events in a frame report the values of `*key`, a JSON text; if empty, the engine's own. It
// is read at each event and must outlive the pages of the process. Call this before any script of the frame
// runs.
void WatchKeys(JSCContext* context, const std::string* key);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_KEY_VALUES_H_
