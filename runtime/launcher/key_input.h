// Keys of a remote control, and text, as if they were pressed in the window.
#ifndef CORVIS_RUNTIME_LAUNCHER_KEY_INPUT_H_
#define CORVIS_RUNTIME_LAUNCHER_KEY_INPUT_H_

#include <webkit2/webkit2.h>

#include <map>
#include <string>
#include <vector>

#include "launcher/page_calls.h"

namespace corvis::tv {

// The codes that a run gives to keys in place of their own, by the keys' names.
using KeyCodes = std::map<std::string, unsigned>;

// Lives on the main loop. Every call is answered when the page has handled all the events, or with an error
// sentence when it does not.
class KeyInput {
 public:
  // `view` and `calls` outlive it. Calls that are under way end with `calls`.
  KeyInput(WebKitWebView* view, PageCalls& calls, KeyCodes codes);

  // Presses and releases a key of remote_keys.h.
  void Press(const std::string& name, ResultCallback done);
  // Presses and releases a key for each character of a text in UTF-8.
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
