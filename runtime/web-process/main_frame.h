// The main frame of a page.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_MAIN_FRAME_H_
#define CORVIS_RUNTIME_WEB_PROCESS_MAIN_FRAME_H_

#include <webkit2/webkit-web-extension.h>

namespace corvis::tv {

inline WebKitFrame* MainFrame(WebKitWebPage* page) {
  // Deprecated without a replacement, because an engine with site isolation may have the main frame in
  // another process. This engine has no site isolation.
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  return webkit_web_page_get_main_frame(page);
  G_GNUC_END_IGNORE_DEPRECATIONS
}

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_MAIN_FRAME_H_
