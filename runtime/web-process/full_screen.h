// Grants the full screen to pages that request it without a user's gesture.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_FULL_SCREEN_H_
#define CORVIS_RUNTIME_WEB_PROCESS_FULL_SCREEN_H_

#include <webkit2/webkit-web-extension.h>

namespace corvis::tv {

// Makes requests of a frame of `page` succeed. Call this before any script of the frame runs.
void GrantFullScreen(JSCContext* context, WebKitWebPage* page);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_FULL_SCREEN_H_
