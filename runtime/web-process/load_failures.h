// What a page asked for and did not get: one console line each.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_LOAD_FAILURES_H_
#define CORVIS_RUNTIME_WEB_PROCESS_LOAD_FAILURES_H_

#include <webkit2/webkit-web-extension.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "nurvo_desktop/glib_ptr.h"
#include "web-process/page_bridge.h"
#include "web-process/places.h"

namespace corvis::tv {

// Of the documents that a page shows, one after the other, and their frames. The engine says that and why
// something failed, the page's side where it was asked for, in any order: what comes together is one line,
// written soon after.
class LoadFailures {
 public:
  // `places` outlives it.
  LoadFailures(ConsoleSink console, Places& places) : console_(std::move(console)), places_(places) {}
  ~LoadFailures();
  LoadFailures(const LoadFailures&) = delete;
  LoadFailures& operator=(const LoadFailures&) = delete;

  // A new document begins in the main frame.
  void Forget();
  // Watches what a frame asks for; no script of it has run. Of the main frame it also asks where.
  void Watch(JSCContext* context, bool is_main_frame);
  // Takes a line that the engine writes to the console.
  void TakeEngineLine(const std::string& url, const std::string& text);
  // Writes what has a reason by now.
  void Flush();

 private:
  struct Failure {
    std::string url;
    // Empty while the engine has said none.
    std::string reason;
    // Empty while the page's side has said nothing.
    std::string where;
    // What it is asked for by at least; may be empty.
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
  // Where scripts asked last, by URL.
  std::map<std::string, std::string> requests_;
  std::vector<Failure> waiting_;
  // Lines without a place that were written, by URL: what the page's side says of these later is known.
  std::map<std::string, int> written_;
  std::set<std::string> lines_of_elements_;
  nurvo::GObjectPtr<JSCValue> find_in_document_;
  guint timer_ = 0;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_LOAD_FAILURES_H_
