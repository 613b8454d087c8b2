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
// which every command writes several, are collected for a short time, at most until the page's next line or
// Flush().
class ConsolePost {
 public:
  // `page` must outlive this object.
  explicit ConsolePost(WebKitWebPage* page) : page_(page) {}

  void Take(const std::string& level, const std::string& text, const std::string& source);
  // Sends the collected lines.
  void Flush();

 private:
  WebKitWebPage* page_;
  std::vector<nurvo::GVariantPtr> lines_;
  Timer timer_{[this] { Flush(); }};
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_
