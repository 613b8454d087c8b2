// The way of console lines to the launcher's process, which owns the terminal.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_
#define CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_

#include <webkit2/webkit-web-extension.h>

#include <string>
#include <vector>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// One for each page, used on the main thread. A page's own lines are sent at once; script APIs' lines, of
// which every command makes several, wait a little for each other, and never longer than the page's next
// line or Flush().
class ConsolePost {
 public:
  // `page` outlives it.
  explicit ConsolePost(WebKitWebPage* page) : page_(page) {}
  ~ConsolePost();
  ConsolePost(const ConsolePost&) = delete;
  ConsolePost& operator=(const ConsolePost&) = delete;

  void Take(const std::string& level, const std::string& text, const std::string& source);
  // Sends the lines that wait.
  void Flush();

 private:
  WebKitWebPage* page_;
  std::vector<nurvo::GVariantPtr> lines_;
  guint timer_ = 0;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_CONSOLE_POST_H_
