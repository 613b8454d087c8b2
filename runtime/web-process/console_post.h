// Sends console lines to the launcher's process, which owns the terminal.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_
#define CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_

#include <webkit2/webkit-web-extension.h>

#include <string>
#include <vector>

#include "nurvo_desktop/glib_ptr.h"
#include "support/timer.h"

namespace corvis::tv {

// One object per page, used on the main thread. Sends a page's own lines at once. Lines of script APIs, of
// which every command writes several, are collected until the page's next line or Flush(); if somebody
// follows them, for a short time only.
class ConsolePost {
 public:
  // `page` must outlive this object.
  ConsolePost(WebKitWebPage* page, bool is_api_followed) : page_(page), is_api_followed_(is_api_followed) {}

  void Take(const std::string& level, const std::string& text, const std::string& source);
  // Sends the collected lines.
  void Flush();

 private:
  WebKitWebPage* page_;
  bool is_api_followed_;
  std::vector<nurvo::GVariantPtr> lines_;
  Timer timer_{[this] { Flush(); }};
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_
