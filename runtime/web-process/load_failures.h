// Reports each failed request of a page in one console line.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_LOAD_FAILURES_H_
#define CORVIS_RUNTIME_WEB_PROCESS_LOAD_FAILURES_H_

#include <webkit2/webkit-web-extension.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "nurvo_desktop/glib_ptr.h"
#include "support/timer.h"
#include "web-process/page_bridge.h"
#include "web-process/places.h"

namespace corvis::tv {

// One object per page, for its successive documents and their frames. The engine reports that and why a
// request failed, and the page's script reports its position, in any order. Reports of the same failure are
// combined into one line, which is written shortly afterwards.
class LoadFailures {
 public:
  // `places` must outlive this object.
  LoadFailures(ConsoleSink console, Places& places) : console_(std::move(console)), places_(places) {}

  // Call this when a new document starts in the main frame.
  void Forget();
  // Watches the requests of a frame, before any of its scripts runs. For the main frame it can also find
  // their positions.
  void Watch(JSCContext* context, bool is_main_frame);
  // Receives a line that the engine writes to the console.
  void TakeEngineLine(const std::string& url, const std::string& text);
  // Writes the failures whose reason is known.
  void Flush();

 private:
  struct Failure {
    std::string url;
    // Empty until the engine reports a reason.
    std::string reason;
    // Empty until the page's script reports a position.
    std::string where;
    // An approximate position; may be empty.
    std::string document;
  };
  struct Native;

  void TakeRequest(const std::string& url, const std::string& where);
  void TakeFailure(const std::string& url, const std::string& reason, const std::string& where);
  void TakeReason(const std::string& url, const std::string& reason, const std::string& document);
  void Add(Failure failure);
  void WriteAll();
  void Write(const Failure& failure);
  std::string WhereAsked(const std::string& url) const;

  ConsoleSink console_;
  Places& places_;
  // The positions of the last requests of scripts, by URL.
  std::map<std::string, std::string> requests_;
  std::vector<Failure> waiting_;
  // Lines that were written without a position, by URL; later reports of the page's script for these are
  // ignored.
  std::map<std::string, int> written_;
  std::set<std::string> lines_of_elements_;
  nurvo::GObjectPtr<JSCValue> find_in_document_;
  Timer timer_{[this] { WriteAll(); }};
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_LOAD_FAILURES_H_
