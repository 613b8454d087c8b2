// Asynchronous calls of the page in a view.
#ifndef CORVIS_RUNTIME_LAUNCHER_PAGE_CALLS_H_
#define CORVIS_RUNTIME_LAUNCHER_PAGE_CALLS_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "corvis_tv/control.h"

namespace corvis::tv {

// The error of a call: a sentence, empty on success, and its D-Bus error name.
struct CallError {
  std::string sentence;
  const char* name = kErrorFailed;
};

// Receives the result of a call. Called once, on the main loop.
using ResultCallback = std::function<void(const std::string& result, const CallError& error)>;

// Calls the page. Every call is answered once, after all console lines that the page wrote before; if the
// page does not respond, with an error. Runs on the main loop. The destructor abandons pending calls.
class PageCalls {
 public:
  // `view` must outlive this object.
  explicit PageCalls(WebKitWebView* view) : view_(view) {}
  ~PageCalls();
  PageCalls(const PageCalls&) = delete;
  PageCalls& operator=(const PageCalls&) = delete;

  // Evaluates an expression in the page's main frame. The result is its value as JSON, "null" if there is
  // none. An exception is an error.
  void Evaluate(const std::string& expression, ResultCallback done);
  // The result is the visible page as PNG.
  void Screenshot(ResultCallback done);
  // Waits until all console lines written so far have arrived.
  void Sync(ResultCallback done);
  // Destroys the page's instances and shuts down the extensions, for the end of the run.
  void ShutDown(ResultCallback done);

  // Sets the values of the page's keyboard events from now on, as JSON; empty for the engine's own.
  void AnnounceKey(const std::string& json);

  // Sets whether calls may take any time, as they do while the page is debugged.
  void set_is_unlimited(bool is_unlimited) { is_unlimited_ = is_unlimited; }

  // Answers all pending calls with an error.
  void FailAll(const std::string& sentence);

 private:
  struct Call;
  using CallPtr = std::shared_ptr<Call>;

  CallPtr Begin(ResultCallback done);
  // Sends a message to the page's process; the reply answers the call.
  void Send(const CallPtr& call, const char* name, GVariant* content);
  void Finish(const CallPtr& call);

  WebKitWebView* view_;
  bool is_unlimited_ = false;
  std::set<CallPtr> calls_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_PAGE_CALLS_H_
