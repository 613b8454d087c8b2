// Synthesizes key events of the window system. The page's process handles events and messages in order, so
// the reply to a message that was sent after an event proves that the event was handled.
#include "launcher/key_input.h"

#include <memory>
#include <utility>

#include "corvis_tv/remote_keys.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

unsigned SymbolOf(gunichar character) {
  if (character == '\n' || character == '\r') return GDK_KEY_Return;
  return character == '\t' ? GDK_KEY_Tab : gdk_unicode_to_keyval(character);
}

}  // namespace

// One press and release of a key.
struct KeyInput::Stroke {
  unsigned symbol;
  // The values for the page as JSON; empty for the engine's own.
  std::string key;
};

// The remaining strokes of a call.
struct KeyInput::Strokes {
  std::vector<Stroke> all;
  size_t at;
  ResultCallback done;
};

KeyInput::KeyInput(WebKitWebView* view, PageCalls& calls, KeyCodes codes)
    : view_(view), calls_(calls), codes_(std::move(codes)) {}

void KeyInput::Press(const std::string& name, ResultCallback done) {
  const RemoteKey* key = FindRemoteKey(name);
  if (key == nullptr) return done("", {"Unknown key " + name + "; the remote control does not have it."});
  const auto code = codes_.find(name);
  const unsigned key_code = code == codes_.end() ? key->key_code : code->second;
  const std::string json = std::string(R"({"key":")") + key->key + R"(","code":")" + key->code +
                           R"(","keyCode":)" + std::to_string(key_code) + "}";
  Begin({{key->symbol, json}}, std::move(done));
}

void KeyInput::Type(const std::string& text, ResultCallback done) {
  std::vector<Stroke> strokes;
  for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
    strokes.push_back({SymbolOf(g_utf8_get_char(at)), ""});
  }
  Begin(std::move(strokes), std::move(done));
}

void KeyInput::Begin(std::vector<Stroke> strokes, ResultCallback done) {
  gtk_widget_grab_focus(GTK_WIDGET(view_));
  Next({std::move(strokes), 0, std::move(done)});
}

void KeyInput::Next(Strokes strokes) {
  if (strokes.at == strokes.all.size()) return strokes.done("", {});
  const Stroke& stroke = strokes.all[strokes.at++];
  calls_.AnnounceKey(stroke.key);
  Dispatch(GDK_KEY_PRESS, stroke.symbol);
  // Wait for the first event, because the engine holds the second one back until then, and messages would
  // overtake it.
  calls_.Sync([this, symbol = stroke.symbol, left = std::move(strokes)](const auto&, const auto& error) {
    if (!error.sentence.empty()) return left.done("", error);
    Dispatch(GDK_KEY_RELEASE, symbol);
    calls_.Sync([this, left](const auto&, const auto& later_error) {
      if (!later_error.sentence.empty()) return left.done("", later_error);
      calls_.AnnounceKey("");
      Next(left);
    });
  });
}

void KeyInput::Dispatch(GdkEventType type, unsigned symbol) {
  // Without an input method, which might consume the keys.
  const nurvo::GObjectPtr<WebKitInputMethodContext> method(
      nurvo::NewReference(webkit_web_view_get_input_method_context(view_)));
  webkit_web_view_set_input_method_context(view_, nullptr);
  GtkWidget* widget = GTK_WIDGET(view_);
  const std::unique_ptr<GdkEvent, void (*)(GdkEvent*)> event(gdk_event_new(type), gdk_event_free);
  event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(widget)));
  event->key.time = GDK_CURRENT_TIME;
  event->key.keyval = symbol;
  event->key.string = g_strdup("");
  GdkSeat* seat = gdk_display_get_default_seat(gtk_widget_get_display(widget));
  gdk_event_set_device(event.get(), gdk_seat_get_keyboard(seat));
  gtk_main_do_event(event.get());
  webkit_web_view_set_input_method_context(view_, method.get());
}

}  // namespace corvis::tv
