// The runtime's part of the web process: loads the extension libraries and follows pages and frames. WebKit
// loads this module and calls its one entry point.
#include <unistd.h>
#include <webkit2/webkit-web-extension.h>

#include <map>
#include <memory>
#include <string>

#include "nurvo_desktop/glib_ptr.h"
#include "support/messages.h"
#include "web-process/console_post.h"
#include "web-process/extension_host.h"
#include "web-process/page_bridge.h"

namespace corvis::tv {

namespace {

struct WebProcess {
  std::string origin;
  // The bridges of the pages' main frames.
  std::map<WebKitWebPage*, std::unique_ptr<PageBridge>> pages;
  std::map<WebKitWebPage*, ConsolePost> posts;
  bool is_ending = false;
};

WebProcess& TheWebProcess() {
  static auto* const process = new WebProcess;
  return *process;
}

ConsoleSink ConsoleOf(WebKitWebPage* page) {
  return [page](const std::string& level, const std::string& text, const std::string& source) {
    const auto post = TheWebProcess().posts.try_emplace(page, page).first;
    post->second.Take(level, text, source);
  };
}

void OnPageGone(gpointer /*data*/, GObject* page) {
  // A page's last words may come while its bridge goes.
  TheWebProcess().pages.erase(reinterpret_cast<WebKitWebPage*>(page));
  TheWebProcess().posts.erase(reinterpret_cast<WebKitWebPage*>(page));
}

// The run ends: the instances go, then their extensions, and only then is it answered.
gboolean OnMessage(WebKitWebPage* /*page*/, WebKitUserMessage* message, gpointer /*data*/) {
  if (std::string(webkit_user_message_get_name(message)) != kEndMessage) return FALSE;
  WebProcess& process = TheWebProcess();
  process.is_ending = true;
  for (auto& page : process.pages) page.second.reset();
  ShutDownExtensions();
  webkit_user_message_send_reply(message, webkit_user_message_new(kEndMessage, nullptr));
  return TRUE;
}

std::unique_ptr<PageBridge>& MainBridgeOf(WebKitWebPage* page) {
  const auto [entry, is_new] = TheWebProcess().pages.try_emplace(page);
  if (is_new) {
    g_object_weak_ref(G_OBJECT(page), OnPageGone, nullptr);
    g_signal_connect(page, "user-message-received", G_CALLBACK(OnMessage), nullptr);
  }
  return entry->second;
}

// A new document begins in a frame; no script of it has run.
void OnDocumentStart(WebKitScriptWorld* world, WebKitWebPage* page, WebKitFrame* frame, gpointer /*data*/) {
  if (TheWebProcess().is_ending) return;
  const nurvo::GObjectPtr<JSCContext> context(webkit_frame_get_js_context_for_script_world(frame, world));
  if (!webkit_frame_is_main_frame(frame)) {
    // What watches its console belongs to the frame's script: nothing is kept here, so that it can go.
    const PageBridge watching(context.get(), ConsoleOf(page));
    return;
  }
  std::unique_ptr<PageBridge>& bridge = MainBridgeOf(page);
  // The old page's instances go before the new page's are made.
  bridge.reset();
  WebKitUserMessage* started = webkit_user_message_new(kProcessMessage, g_variant_new_uint32(getpid()));
  webkit_web_page_send_message_to_view(page, started, nullptr, nullptr, nullptr);
  const bool is_own = IsOfOrigin(context.get(), TheWebProcess().origin);
  bridge = std::make_unique<PageBridge>(context.get(), ConsoleOf(page));
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
  g_variant_get(const_cast<GVariant*>(user_data), "(&sas)", &origin, &libraries);
  corvis::tv::TheWebProcess().origin = origin;
  corvis::tv::LoadExtensions(process, libraries);
  g_variant_iter_free(libraries);
  g_signal_connect(webkit_script_world_get_default(), "window-object-cleared",
                   G_CALLBACK(corvis::tv::OnDocumentStart), nullptr);
}
