// The window with the application's page: loading it, loading it again after a crash, and looking into it.
#ifndef CORVIS_RUNTIME_LAUNCHER_BROWSER_H_
#define CORVIS_RUNTIME_LAUNCHER_BROWSER_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <string>
#include <vector>

#include "launcher/application.h"
#include "launcher/options.h"
#include "support/glib_ptr.h"

namespace corvis::tv {

// Takes the outcome of something asked of the page: the result, and an error sentence that is empty on
// success.
using ResultCallback = std::function<void(const std::string& result, const std::string& error)>;

// What the browser tells. Unset ones are not called.
struct BrowserEvents {
  std::function<void(const std::string& level, const std::string& text, const std::string& source)>
      on_console;
  std::function<void(const std::string& uri)> on_loaded;
  std::function<void(unsigned times)> on_crashed;
  // Nothing more can be done; the sentence says why.
  std::function<void(ExitStatus status, const std::string& sentence)> on_end;
};

// Lives on the main loop, in the process that owns the window.
class Browser {
 public:
  Browser(const Options& options, const Application& application, BrowserEvents events);
  ~Browser();
  Browser(const Browser&) = delete;
  Browser& operator=(const Browser&) = delete;

  // Loads a page. `done` is called with the page's URI when it has finished loading, or with why it failed. A
  // load that begins while another goes on ends that one.
  void Load(const std::string& uri, ResultCallback done);
  void Reload(ResultCallback done);
  // Evaluates an expression in the page; gives its value as JSON text.
  void Evaluate(const std::string& expression, ResultCallback done);
  // Gives what the window shows as the bytes of a PNG picture.
  void Screenshot(ResultCallback done);

  std::string uri() const;
  bool is_loading() const { return static_cast<bool>(load_done_); }
  // Crashes of the web process in this run.
  unsigned crashes() const { return crashes_; }

 private:
  static void OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event, Browser* browser);
  static gboolean OnLoadFailed(WebKitWebView* view, WebKitLoadEvent event, const char* uri, GError* error,
                               Browser* browser);
  static void OnTerminated(WebKitWebView* view, WebKitWebProcessTerminationReason reason, Browser* browser);
  static gboolean OnUserMessage(WebKitWebView* view, WebKitUserMessage* message, Browser* browser);

  void SetUpContext(const Options& options, const Application& application);
  void SetUpView(const Options& options);
  void FinishLoad(const std::string& error);
  void ReloadAfterCrash();

  BrowserEvents events_;
  GObjectPtr<WebKitWebContext> context_;
  GtkWidget* window_ = nullptr;
  WebKitWebView* view_ = nullptr;
  GVariantPtr extension_data_;
  ResultCallback load_done_;
  std::string load_error_;
  std::string last_uri_;
  unsigned crashes_ = 0;
  // Crashes since a page last stayed alive.
  unsigned crashes_in_a_row_ = 0;
  guint alive_timer_ = 0;
  guint reload_ = 0;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_BROWSER_H_
