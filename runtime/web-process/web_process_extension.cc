// The runtime's module in the web process: loads the extension libraries and tracks pages and frames. WebKit
// loads this module and calls its only entry point.
#include <unistd.h>
#include <webkit2/webkit-web-extension.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "nurvo_desktop/glib_ptr.h"
#include "support/messages.h"
#include "web-process/console_post.h"
#include "web-process/extension_host.h"
#include "web-process/full_screen.h"
#include "web-process/key_values.h"
#include "web-process/load_failures.h"
#include "web-process/main_frame.h"
#include "web-process/page_bridge.h"
#include "web-process/places.h"

namespace corvis::tv {

namespace {

struct WebProcess {
  std::string origin;
  bool is_api_followed = false;
  // The bridges of the pages' main frames.
  std::map<WebKitWebPage*, std::unique_ptr<PageBridge>> pages;
  std::map<WebKitWebPage*, ConsolePost> posts;
  std::map<WebKitWebPage*, Places> places;
  std::map<WebKitWebPage*, LoadFailures> failures;
  // The values of keyboard events while a key of a remote control is pressed, as JSON.
  std::string key;
  bool is_ending = false;
};

WebProcess& TheWebProcess() {
  static auto* const process = new WebProcess;
  return *process;
}

ConsolePost& PostOf(WebKitWebPage* page) {
  return TheWebProcess().posts.try_emplace(page, page, TheWebProcess().is_api_followed).first->second;
}

ConsoleSink ConsoleOf(WebKitWebPage* page) {
  return [page](const std::string& level, const std::string& text, const std::string& source) {
    PostOf(page).Take(level, text, source);
  };
}

void SendClose(WebKitWebPage* page) {
  PostOf(page).Flush();
  webkit_web_page_send_message_to_view(page, webkit_user_message_new(kCloseMessage, nullptr), nullptr,
                                       nullptr, nullptr);
}

Places& PlacesOf(WebKitWebPage* page) {
  return TheWebProcess().places.try_emplace(page, page, TheWebProcess().origin).first->second;
}

LoadFailures& FailuresOf(WebKitWebPage* page) {
  return TheWebProcess().failures.try_emplace(page, ConsoleOf(page), PlacesOf(page)).first->second;
}

std::unique_ptr<PageBridge> NewBridge(JSCContext* context, WebKitWebPage* page, CloseSink close) {
  return std::make_unique<PageBridge>(
      context, ConsoleOf(page), [page](const auto& place) { return PlacesOf(page).Read(place); },
      std::move(close));
}

void OnPageGone(gpointer /*data*/, GObject* page) {
  // Destroying the bridge may still produce console lines.
  TheWebProcess().pages.erase(reinterpret_cast<WebKitWebPage*>(page));
  TheWebProcess().failures.erase(reinterpret_cast<WebKitWebPage*>(page));
  TheWebProcess().posts.erase(reinterpret_cast<WebKitWebPage*>(page));
  TheWebProcess().places.erase(reinterpret_cast<WebKitWebPage*>(page));
}

// Destroys all instances and then shuts down the extensions, at the end of the run.
void End() {
  WebProcess& process = TheWebProcess();
  process.is_ending = true;
  for (auto& page : process.pages) page.second.reset();
  ShutDownExtensions();
}

// The script context of the page's main frame; created if the page has no script.
nurvo::GObjectPtr<JSCContext> MainContext(WebKitWebPage* page) {
  return nurvo::GObjectPtr<JSCContext>(webkit_frame_get_js_context(MainFrame(page)));
}

// Evaluates an expression in the page's main frame. Returns its value as JSON, and the text of an exception.
GVariant* Evaluate(WebKitWebPage* page, const char* expression) {
  const nurvo::GObjectPtr<JSCContext> context = MainContext(page);
  const nurvo::GObjectPtr<JSCValue> value(jsc_context_evaluate(context.get(), expression, -1));
  JSCException* exception = jsc_context_get_exception(context.get());
  const nurvo::GText error(exception == nullptr ? nullptr : jsc_exception_to_string(exception));
  const bool has_value = !error && jsc_value_is_undefined(value.get()) == FALSE;
  const nurvo::GText json(has_value ? jsc_value_to_json(value.get(), 0) : nullptr);
  jsc_context_clear_exception(context.get());
  return g_variant_new(kValueType, json ? json.get() : "null", error ? error.get() : "");
}

// Replies to a message when it is handled, after the console lines that the page has written by then.
gboolean OnMessage(WebKitWebPage* page, WebKitUserMessage* message, gpointer /*data*/) {
  const std::string name = webkit_user_message_get_name(message);
  GVariant* content = webkit_user_message_get_parameters(message);
  GVariant* reply = nullptr;
  if (name == kEndMessage) {
    End();
  } else if (name == kEvaluateMessage && g_variant_is_of_type(content, G_VARIANT_TYPE(kEvaluateType))) {
    reply = Evaluate(page, g_variant_get_string(content, nullptr));
  } else if (name == kKeyMessage && g_variant_is_of_type(content, G_VARIANT_TYPE(kKeyType))) {
    TheWebProcess().key = g_variant_get_string(content, nullptr);
  } else if (name != kSyncMessage) {
    return FALSE;
  }
  FailuresOf(page).Flush();
  PostOf(page).Flush();
  webkit_user_message_send_reply(message, webkit_user_message_new(name.c_str(), reply));
  return TRUE;
}

// Reports the engine's own console lines. The engine does not pass on those of pages.
void OnEngineLine(WebKitWebPage* page, WebKitConsoleMessage* message, gpointer /*data*/) {
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  if (webkit_console_message_get_source(message) != WEBKIT_CONSOLE_MESSAGE_SOURCE_NETWORK) return;
  FailuresOf(page).TakeEngineLine(webkit_console_message_get_source_id(message),
                                  webkit_console_message_get_text(message));
  G_GNUC_END_IGNORE_DEPRECATIONS
}

void OnPageCreated(WebKitWebExtension* /*process*/, WebKitWebPage* page, gpointer /*data*/) {
  g_object_weak_ref(G_OBJECT(page), OnPageGone, nullptr);
  g_signal_connect(page, "console-message-sent", G_CALLBACK(OnEngineLine), nullptr);
  g_signal_connect(page, "user-message-received", G_CALLBACK(OnMessage), nullptr);
}

// A new document starts in a frame, and none of its scripts has run.
void OnDocumentStart(WebKitScriptWorld* world, WebKitWebPage* page, WebKitFrame* frame, gpointer /*data*/) {
  if (TheWebProcess().is_ending) return;
  const nurvo::GObjectPtr<JSCContext> context(webkit_frame_get_js_context_for_script_world(frame, world));
  WatchKeys(context.get(), &TheWebProcess().key);
  GrantFullScreen(context.get(), page);
  const bool is_main_frame = webkit_frame_is_main_frame(frame) != FALSE;
  if (is_main_frame) {
    FailuresOf(page).Forget();
    PlacesOf(page).Forget();
  }
  FailuresOf(page).Watch(context.get(), is_main_frame);
  if (!is_main_frame) {
    // Not stored, because the frame's script owns the functions that watch its console.
    const auto watching = NewBridge(context.get(), page, nullptr);
    return;
  }
  std::unique_ptr<PageBridge>& bridge = TheWebProcess().pages[page];
  // Destroys the old page's instances before the new page's are created.
  bridge.reset();
  WebKitUserMessage* started = webkit_user_message_new(kProcessMessage, g_variant_new_uint32(getpid()));
  webkit_web_page_send_message_to_view(page, started, nullptr, nullptr, nullptr);
  const bool is_own = IsOfOrigin(context.get(), TheWebProcess().origin);
  bridge = NewBridge(context.get(), page, [page] { SendClose(page); });
  if (is_own) bridge->AttachExtensions();
}

void LoadExtensions(WebKitWebExtension* process, GVariantIter* libraries) {
  const char* path = nullptr;
  while (g_variant_iter_next(libraries, "&s", &path)) {
    const std::string error = LoadExtension(path);
    if (error.empty()) continue;
    WebKitUserMessage* broken =
        webkit_user_message_new(kBrokenExtensionMessage, g_variant_new_string(error.c_str()));
    webkit_web_extension_send_message_to_context(process, broken, nullptr, nullptr, nullptr);
  }
}

}  // namespace

}  // namespace corvis::tv

extern "C" __attribute__((visibility("default"))) void webkit_web_extension_initialize_with_user_data(
    WebKitWebExtension* process, const GVariant* user_data) {
  const char* origin = nullptr;
  GVariantIter* libraries = nullptr;
  gboolean is_api_followed = FALSE;
  g_variant_get(const_cast<GVariant*>(user_data), "(&sasb)", &origin, &libraries, &is_api_followed);
  corvis::tv::TheWebProcess().origin = origin;
  corvis::tv::TheWebProcess().is_api_followed = is_api_followed != FALSE;
  corvis::tv::LoadExtensions(process, libraries);
  g_variant_iter_free(libraries);
  g_signal_connect(process, "page-created", G_CALLBACK(corvis::tv::OnPageCreated), nullptr);
  g_signal_connect(webkit_script_world_get_default(), "window-object-cleared",
                   G_CALLBACK(corvis::tv::OnDocumentStart), nullptr);
}
