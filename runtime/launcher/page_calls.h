// What is asked of the page that a view shows.
#ifndef CORVIS_RUNTIME_LAUNCHER_PAGE_CALLS_H_
#define CORVIS_RUNTIME_LAUNCHER_PAGE_CALLS_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "corvis_tv/control.h"

namespace corvis::tv {

// Why something asked of the page failed: a sentence, empty on success, and its name on the bus.
struct CallError {
  std::string sentence;
  const char* name = kErrorFailed;
};

// Takes the outcome of something asked of the page. Called once, on the main loop.
using ResultCallback = std::function<void(const std::string& result, const CallError& error)>;

// Asks the page. Every call is answered once, and after the arrival of everything that the page wrote to the
// console before; a page that does not respond is answered for with an error. Lives on the main loop; calls
// that are under way when it goes are not answered.
class PageCalls {
 public:
  // `view` outlives it.
  explicit PageCalls(WebKitWebView* view) : view_(view) {}
  ~PageCalls();
  PageCalls(const PageCalls&) = delete;
  PageCalls& operator=(const PageCalls&) = delete;

  // Evaluates an expression in the page's main frame; gives its value as JSON text, "null" where there is
  // none. A script's exception is an error.
  void Evaluate(const std::string& expression, ResultCallback done);
  // Gives what the view shows as the bytes of a PNG picture.
  void Screenshot(ResultCallback done);
  // Waits for what the page wrote to the console so far.
  void Sync(ResultCallback done);
  // Ends the page's instances and their extensions, for the end of the run.
  void ShutDown(ResultCallback done);

  // Has the page's keyboard events from now on have these values (JSON text; empty for the engine's own).
  void AnnounceKey(const std::string& json);

  // Answers every call that is under way with an error sentence.
  void FailAll(const std::string& sentence);

 private:
  struct Call;
  using CallPtr = std::shared_ptr<Call>;

  CallPtr Begin(ResultCallback done);
  // Sends the page's process a message, whose reply answers the call.
  void Send(const CallPtr& call, const char* name, GVariant* content);
  void Finish(const CallPtr& call);

  WebKitWebView* view_;
  std::set<CallPtr> calls_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_PAGE_CALLS_H_
