// One frame's bridge between its script and the runtime: watches the console of every frame, and publishes
// the extensions' script APIs in the main frame of the application's own pages. Exists as long as the frame's
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

// Receives a console line or an uncaught error: level, text, and source ("page" or "api").
using ConsoleSink =
    std::function<void(const std::string& level, const std::string& text, const std::string& source)>;
using CloseSink = std::function<void()>;

// Maps a position in a script, URL:LINE:COLUMN, to the author's source.
using PlaceReader = std::function<std::string(const std::string& place)>;

// Create it in a frame's script context before any script of the page runs.
class PageBridge {
 public:
  // If the engine refuses the runtime's script, reports the reason to `console`, and the page gets no API.
  // `close` is called when the page closes itself; empty for frames, which can't.
  PageBridge(JSCContext* context, ConsoleSink console, PlaceReader read_place, CloseSink close);
  // Destroys the instances of this page.
  ~PageBridge();
  PageBridge(const PageBridge&) = delete;
  PageBridge& operator=(const PageBridge&) = delete;

  // Creates an instance of every loaded extension and publishes its script API.
  void AttachExtensions();

 private:
  // Evaluates one of the runtime's scripts, which is a function, and calls it with these arguments, the
  // second of which may be null. Reports a failure and returns null.
  nurvo::GObjectPtr<JSCValue> Start(const char* script, const char* name, JSCValue* first, JSCValue* second);
  void AttachExtension(ExtensionHandle extension, const std::string& name, const std::string& script);
  // Reports and clears a pending script exception. Returns whether there was one.
  bool TakeException(const std::string& doing);

  nurvo::GObjectPtr<JSCContext> context_;
  ConsoleSink console_;
  nurvo::GObjectPtr<JSCValue> page_side_;
  std::vector<InstanceHandle> instances_;
};

// Whether the document of this context has the origin `origin`. Call it before any script of the page runs,
// which could change the answer.
bool IsOfOrigin(JSCContext* context, const std::string& origin);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_WEB_PROCESS_PAGE_BRIDGE_H_
