// The runtime's part of the web process: loads the extension libraries and follows pages and frames. WebKit
// loads this module and calls its one entry point.
#include <webkit2/webkit-web-extension.h>

#include <map>
#include <memory>
#include <string>

#include "support/glib_ptr.h"
#include "web-process/extension_host.h"
#include "web-process/page_bridge.h"

namespace corvis::tv {

namespace {

// What a page holds: its main frame's bridge, and those of its other frames by their ids.
struct PageEntry {
  std::unique_ptr<PageBridge> main;
  std::map<guint64, std::unique_ptr<PageBridge>> frames;
};

struct WebProcess {
  std::string origin;
  std::map<WebKitWebPage*, PageEntry> pages;
};

WebProcess& TheWebProcess() {
  static auto* const process = new WebProcess;
  return *process;
}

// Tells the launcher's process, which owns the terminal.
ConsoleSink ConsoleOf(WebKitWebPage* page) {
  return [page](const std::string& level, const std::string& text, const std::string& source) {
    WebKitUserMessage* message = webkit_user_message_new(
        "console", g_variant_new("(sss)", level.c_str(), text.c_str(), source.c_str()));
    webkit_web_page_send_message_to_view(page, message, nullptr, nullptr, nullptr);
  };
}

void OnPageGone(gpointer /*data*/, GObject* page) {
  TheWebProcess().pages.erase(reinterpret_cast<WebKitWebPage*>(page));
}

PageEntry& EntryOf(WebKitWebPage* page) {
  WebProcess& process = TheWebProcess();
  const auto [entry, is_new] = process.pages.try_emplace(page);
  if (is_new) g_object_weak_ref(G_OBJECT(page), OnPageGone, nullptr);
  return entry->second;
}

// A new document begins in a frame; no script of it has run.
void OnDocumentStart(WebKitScriptWorld* world, WebKitWebPage* page, WebKitFrame* frame, gpointer /*data*/) {
  const GObjectPtr<JSCContext> context(webkit_frame_get_js_context_for_script_world(frame, world));
  PageEntry& entry = EntryOf(page);
  if (!webkit_frame_is_main_frame(frame)) {
    entry.frames[webkit_frame_get_id(frame)] = std::make_unique<PageBridge>(context.get(), ConsoleOf(page));
    return;
  }
  // The old page's instances go before the new page's are made.
  entry.frames.clear();
  entry.main.reset();
  const bool is_own = IsOfOrigin(context.get(), TheWebProcess().origin);
  entry.main = std::make_unique<PageBridge>(context.get(), ConsoleOf(page));
  if (is_own) entry.main->AttachExtensions();
}

void LoadExtensions(GVariantIter* libraries) {
  const char* path = nullptr;
  while (g_variant_iter_next(libraries, "&s", &path)) {
    const std::string error = LoadExtension(path);
    if (!error.empty()) g_printerr("corvis-tv: %s\n", error.c_str());
  }
}

}  // namespace

}  // namespace corvis::tv

extern "C" __attribute__((visibility("default"))) void webkit_web_extension_initialize_with_user_data(
    WebKitWebExtension* /*extension*/, const GVariant* user_data) {
  const char* origin = nullptr;
  GVariantIter* libraries = nullptr;
  g_variant_get(const_cast<GVariant*>(user_data), "(&sas)", &origin, &libraries);
  corvis::tv::TheWebProcess().origin = origin;
  corvis::tv::LoadExtensions(libraries);
  g_variant_iter_free(libraries);
  g_signal_connect(webkit_script_world_get_default(), "window-object-cleared",
                   G_CALLBACK(corvis::tv::OnDocumentStart), nullptr);
}
