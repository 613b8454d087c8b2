// Presses keys of a remote control and types text in the window.
#ifndef CORVIS_RUNTIME_LAUNCHER_KEY_INPUT_H_
#define CORVIS_RUNTIME_LAUNCHER_KEY_INPUT_H_

#include <webkit2/webkit2.h>

#include <string>
#include <vector>

#include "launcher/options.h"
#include "launcher/page_calls.h"

namespace corvis::tv {

// Runs on the main loop. Every call is answered when the page has handled all events, or with an error if it
// does not.
class KeyInput {
 public:
  // `view` and `calls` must outlive this object. Pending calls end with `calls`.
  KeyInput(WebKitWebView* view, PageCalls& calls, KeyCodes codes);

  // Presses and releases a key of remote_keys.h.
  void Press(const std::string& name, ResultCallback done);
  // Presses and releases a key for each character of a UTF-8 text.
  void Type(const std::string& text, ResultCallback done);

 private:
  struct Stroke;
  struct Strokes;
  void Begin(std::vector<Stroke> strokes, ResultCallback done);
  void Next(Strokes strokes);
  void Dispatch(GdkEventType type, unsigned symbol);

  WebKitWebView* view_;
  PageCalls& calls_;
  KeyCodes codes_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_KEY_INPUT_H_
