// The window with the application's page: loads it, reloads it after a crash, and queries it.
#ifndef CORVIS_RUNTIME_LAUNCHER_BROWSER_H_
#define CORVIS_RUNTIME_LAUNCHER_BROWSER_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "launcher/application.h"
#include "launcher/key_input.h"
#include "launcher/options.h"
#include "launcher/page_calls.h"
#include "launcher/user_requests.h"
#include "nurvo_desktop/glib_ptr.h"
#include "support/timer.h"

namespace corvis::tv {

// The browser's callbacks. All but on_end may be empty.
struct BrowserEvents {
  std::function<void(const std::string& level, const std::string& text, const std::string& source)>
      on_console;
  std::function<void(const std::string& uri)> on_loaded;
  std::function<void(unsigned times)> on_crashed;
  // The page closed itself. on_end follows.
  std::function<void()> on_closed;
  // The run ends: `sentence` says why, or is empty if the page or its window was closed. Required.
  std::function<void(ExitStatus status, const std::string& sentence)> on_end;
};

// Lives on the main loop, in the process that owns the window.
class Browser {
 public:
  static constexpr const char* kAnotherLoad = "Another load began.";

  Browser(const Options& options, const Application& application, BrowserEvents events);
  ~Browser();
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  // Loads a page. Calls `done` with the page's URI when it is loaded, or with an error. A load that starts
  // during another one cancels it, and the other's `done` receives kAnotherLoad.
  void Load(const std::string& uri, ResultCallback done);
  void Reload(ResultCallback done);
  // Removes all data that pages have stored.
  void ClearStorage(ResultCallback done);
  // For the end of the run: waits, up to a limit, until the page's extensions have shut down, and answers
  // pending calls.
  void TakeLeave();

  PageCalls& calls() { return *calls_; }
  KeyInput& keys() { return *keys_; }
  std::string uri() const;
  bool is_loading() const { return load_done_ || webkit_web_view_is_loading(view_); }
  // The process id of the page's web process; 0 if there is none.
  guint web_process() const { return web_process_; }
  // The number of crashes of the web process in this run.
  unsigned crashes() const { return crashes_; }

 private:
  static void OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event, Browser* browser);
  static gboolean OnLoadFailed(WebKitWebView* view, WebKitLoadEvent event, const char* uri, GError* error,
                               Browser* browser);
  static void OnLoadingChanged(WebKitWebView* view, GParamSpec* property, Browser* browser);
  static void OnTerminated(WebKitWebView* view, WebKitWebProcessTerminationReason reason, Browser* browser);
  static gboolean OnUserMessage(WebKitWebView* view, WebKitUserMessage* message, Browser* browser);
  static gboolean OnProcessMessage(WebKitWebContext* context, WebKitUserMessage* message, Browser* browser);
  static void OnClose(WebKitWebView* view, Browser* browser);

  void SetUpContext(const Options& options, const Application& application);
  void SetUpView(const Options& options, const Application& application);
  void BeginLoad(ResultCallback done);
  void CheckCommitted();
  void TakeConsole(GVariant* content) const;
  void OnLoadFinished();
  void FinishLoad(const std::string& error);
  void ReloadAfterCrash();

  BrowserEvents events_;
  nurvo::GObjectPtr<WebKitWebContext> context_;
  GtkWidget* window_ = nullptr;
  WebKitWebView* view_ = nullptr;
  std::unique_ptr<PageCalls> calls_;
  std::unique_ptr<KeyInput> keys_;
  std::unique_ptr<UserRequests> requests_;
  nurvo::GVariantPtr extension_data_;
  ResultCallback load_done_;
  // Whether a load has started since the last call of Load.
  bool has_load_started_ = false;
  std::string load_error_;
  std::string last_uri_;
  guint web_process_ = 0;
  bool is_leaving_ = false;
  bool is_closed_ = false;
  unsigned crashes_ = 0;
  // The number of crashes since a page last stayed alive.
  unsigned crashes_in_a_row_ = 0;
  Timer alive_timer_{[this] { crashes_in_a_row_ = 0; }};
  guint reload_ = 0;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_BROWSER_H_
