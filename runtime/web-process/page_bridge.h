// One frame's bridge between its script and the runtime: watches the console of every frame, and gives the
// main frame of the application's own pages the extensions' script APIs. Lives as long as the frame's
// document.
#ifndef CORVIS_RUNTIME_WEB_PROCESS_PAGE_BRIDGE_H_
#define CORVIS_RUNTIME_WEB_PROCESS_PAGE_BRIDGE_H_

#include <jsc/jsc.h>

#include <functional>
#include <string>
#include <vector>

#include "nurvo/runtime.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// Takes a console line or an uncaught error: level, text, and "page" or "api".
using ConsoleSink =
    std::function<void(const std::string& level, const std::string& text, const std::string& source)>;
using CloseSink = std::function<void()>;

// Gives a place in a script, URL:LINE:COLUMN, as the script's author knows it.
using PlaceReader = std::function<std::string(const std::string& place)>;

// The page-side half in a frame's script context, before any script of the page runs.
class PageBridge {
 public:
  // When the engine refuses the runtime's script, the reason goes to `console` and the page gets no API.
  // A page that closes itself calls `close`; empty for frames, which can't.
  PageBridge(JSCContext* context, ConsoleSink console, PlaceReader read_place, CloseSink close);
  // Destroys the instances of this page.
  ~PageBridge();
  PageBridge(const PageBridge&) = delete;
  PageBridge& operator=(const PageBridge&) = delete;

  // Makes an instance of every loaded extension and publishes its script API.
  void AttachExtensions();

 private:
  // Evaluates one of the runtime's scripts, a function, and calls it with these, of which the second may be
  // null. Null when that fails, which is reported.
  nurvo::GObjectPtr<JSCValue> Start(const char* script, const char* name, JSCValue* first, JSCValue* second);
  void AttachExtension(ExtensionHandle extension, const std::string& name, const std::string& script);
  // Reports a script error that is pending, and clears it. True when there was one.
  bool TakeException(const std::string& doing);

  nurvo::GObjectPtr<JSCContext> context_;
  ConsoleSink console_;
  nurvo::GObjectPtr<JSCValue> page_side_;
  std::vector<InstanceHandle> instances_;
};

// Whether the document of this context is of `origin`, asked of the engine before any script of the page ran.
bool IsOfOrigin(JSCContext* context, const std::string& origin);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_PAGE_BRIDGE_H_
