// WebKit's view and context, set up for one application.
#include "launcher/browser.h"

#include <cairo.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "launcher/folder_scheme.h"

namespace corvis::tv {

namespace {

// A page that has loaded and stayed alive this long was no crash at start.
constexpr guint kAliveMs = 200;
constexpr unsigned kMaxCrashesInARow = 3;
constexpr guint kFirstErrorStatus = 400;
// What the engine shows instead of an address that it refuses.
constexpr const char* kEmptyPage = "about:blank";

// The folder with the web process's module: beside the libraries of a build, or of an installation.
std::string WebProcessFolder() {
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  const std::filesystem::path built = program.parent_path().parent_path() / "lib" / "web-process";
  if (std::filesystem::exists(built)) return built;
  return program.parent_path() / CORVIS_WEB_PROCESS_DIR;
}

GVariantPtr ExtensionData(const Options& options, const Application& application) {
  GVariantBuilder libraries;
  g_variant_builder_init(&libraries, G_VARIANT_TYPE("as"));
  for (const std::string& path : options.extensions) g_variant_builder_add(&libraries, "s", path.c_str());
  return GVariantPtr(g_variant_ref_sink(g_variant_new("(sas)", application.origin.c_str(), &libraries)));
}

// Keeps a callback over an asynchronous call of WebKit's.
gpointer Keep(ResultCallback done) {
  return new ResultCallback(std::move(done));
}
std::unique_ptr<ResultCallback> Kept(gpointer data) {
  return std::unique_ptr<ResultCallback>(static_cast<ResultCallback*>(data));
}

cairo_status_t AppendPng(void* png, const unsigned char* data, unsigned size) {
  static_cast<std::string*>(png)->append(reinterpret_cast<const char*>(data), size);
  return CAIRO_STATUS_SUCCESS;
}

void OnEvaluated(GObject* view, GAsyncResult* result, gpointer data) {
  const auto done = Kept(data);
  GError* failure = nullptr;
  const GObjectPtr<JSCValue> value(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &failure));
  const GErrorPtr error(failure);
  if (!value) {
    (*done)("", error ? error->message : "The expression can't be evaluated.");
    return;
  }
  const GText json(jsc_value_is_undefined(value.get()) ? nullptr : jsc_value_to_json(value.get(), 0));
  (*done)(json ? json.get() : "null", "");
}

void OnSnapshot(GObject* view, GAsyncResult* result, gpointer data) {
  const auto done = Kept(data);
  GError* failure = nullptr;
  cairo_surface_t* surface = webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, &failure);
  const GErrorPtr error(failure);
  if (surface == nullptr) {
    (*done)("", error ? error->message : "The page can't be drawn.");
    return;
  }
  std::string png;
  cairo_surface_write_to_png_stream(surface, AppendPng, &png);
  cairo_surface_destroy(surface);
  (*done)(png, "");
}

}  // namespace

Browser::Browser(const Options& options, const Application& application, BrowserEvents events)
    : events_(std::move(events)) {
  SetUpContext(options, application);
  SetUpView(options);
}

Browser::~Browser() {
  for (const guint source : {alive_timer_, reload_}) {
    if (source != 0) g_source_remove(source);
  }
  g_signal_handlers_disconnect_by_data(view_, this);
  g_signal_handlers_disconnect_by_func(window_, reinterpret_cast<gpointer>(gtk_main_quit), nullptr);
  gtk_widget_destroy(window_);
}

void Browser::SetUpContext(const Options& options, const Application& application) {
  context_.reset(webkit_web_context_new_ephemeral());
  webkit_web_context_set_cache_model(context_.get(), WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
  if (!application.folder.empty()) ServeFolder(context_.get(), kFileScheme, application.folder);
  extension_data_ = ExtensionData(options, application);
  g_signal_connect(
      context_.get(), "initialize-web-extensions", G_CALLBACK(+[](WebKitWebContext* context, GVariant* data) {
        webkit_web_context_set_web_extensions_directory(context, WebProcessFolder().c_str());
        webkit_web_context_set_web_extensions_initialization_user_data(context, g_variant_ref(data));
      }),
      extension_data_.get());
}

void Browser::SetUpView(const Options& options) {
  const GObjectPtr<WebKitSettings> settings(webkit_settings_new_with_settings(
      "enable-page-cache", FALSE, "hardware-acceleration-policy", WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER,
      "media-playback-requires-user-gesture", FALSE, "enable-developer-extras", !options.is_headless,
      nullptr));
  view_ = WEBKIT_WEB_VIEW(
      g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context_.get(), "settings", settings.get(), nullptr));
  window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window_), options.width, options.height);
  gtk_container_add(GTK_CONTAINER(window_), GTK_WIDGET(view_));
  g_object_bind_property(view_, "title", window_, "title", G_BINDING_DEFAULT);
  g_signal_connect(view_, "load-changed", G_CALLBACK(OnLoadChanged), this);
  g_signal_connect(view_, "load-failed", G_CALLBACK(OnLoadFailed), this);
  g_signal_connect(view_, "web-process-terminated", G_CALLBACK(OnTerminated), this);
  g_signal_connect(view_, "user-message-received", G_CALLBACK(OnUserMessage), this);
  g_signal_connect_swapped(window_, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
  gtk_widget_show_all(window_);
}

std::string Browser::uri() const {
  const char* uri = webkit_web_view_get_uri(view_);
  return uri == nullptr ? "" : uri;
}

void Browser::Load(const std::string& uri, ResultCallback done) {
  FinishLoad("Another load began.");
  load_done_ = std::move(done);
  last_uri_ = uri;
  webkit_web_view_load_uri(view_, uri.c_str());
}

void Browser::Reload(ResultCallback done) {
  FinishLoad("Another load began.");
  load_done_ = std::move(done);
  webkit_web_view_reload(view_);
}

void Browser::FinishLoad(const std::string& error) {
  const ResultCallback done = std::exchange(load_done_, nullptr);
  if (done) done(uri(), error);
}

void Browser::OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event, Browser* browser) {
  if (event == WEBKIT_LOAD_STARTED) browser->load_error_.clear();
  if (event == WEBKIT_LOAD_COMMITTED) {
    WebKitWebResource* resource = webkit_web_view_get_main_resource(view);
    WebKitURIResponse* response = resource == nullptr ? nullptr : webkit_web_resource_get_response(resource);
    const guint status = response == nullptr ? 0 : webkit_uri_response_get_status_code(response);
    if (status >= kFirstErrorStatus) {
      browser->load_error_ =
          browser->uri() + " can't be loaded: the server answered " + std::to_string(status) + ".";
    } else if (browser->load_done_ && browser->uri() == kEmptyPage && browser->last_uri_ != kEmptyPage) {
      browser->load_error_ =
          browser->last_uri_ +
          " can't be loaded: the engine refuses the address; is its port one for web pages?";
    }
  }
  if (event != WEBKIT_LOAD_FINISHED) return;
  if (browser->load_error_.empty()) {
    browser->last_uri_ = browser->uri();
    if (browser->alive_timer_ != 0) g_source_remove(browser->alive_timer_);
    browser->alive_timer_ = g_timeout_add(
        kAliveMs,
        [](gpointer data) {
          static_cast<Browser*>(data)->crashes_in_a_row_ = 0;
          static_cast<Browser*>(data)->alive_timer_ = 0;
          return G_SOURCE_REMOVE;
        },
        browser);
    if (browser->events_.on_loaded) browser->events_.on_loaded(browser->uri());
  }
  browser->FinishLoad(browser->load_error_);
}

gboolean Browser::OnLoadFailed(WebKitWebView* /*view*/, WebKitLoadEvent /*event*/, const char* uri,
                               GError* error, Browser* browser) {
  // A load that another one replaced, or that became a download, is no failure of the page.
  if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED)) return TRUE;
  browser->load_error_ = std::string(uri) + " can't be loaded: " + error->message + ".";
  return TRUE;
}

void Browser::OnTerminated(WebKitWebView* /*view*/, WebKitWebProcessTerminationReason /*reason*/,
                           Browser* browser) {
  ++browser->crashes_;
  ++browser->crashes_in_a_row_;
  if (browser->alive_timer_ != 0) g_source_remove(std::exchange(browser->alive_timer_, 0));
  if (browser->events_.on_crashed) browser->events_.on_crashed(browser->crashes_);
  if (browser->crashes_in_a_row_ > kMaxCrashesInARow) {
    browser->events_.on_end(kExitCrashing,
                            "The page's process crashed " + std::to_string(browser->crashes_in_a_row_) +
                                " times in a row before the page was up; it is not loaded again.");
    return;
  }
  // Not from within the signal: the view still takes leave of the old process.
  if (browser->reload_ != 0) return;
  browser->reload_ = g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer data) {
        static_cast<Browser*>(data)->ReloadAfterCrash();
        return G_SOURCE_REMOVE;
      },
      browser, nullptr);
}

void Browser::ReloadAfterCrash() {
  reload_ = 0;
  webkit_web_view_load_uri(view_, last_uri_.c_str());
}

gboolean Browser::OnUserMessage(WebKitWebView* /*view*/, WebKitUserMessage* message, Browser* browser) {
  GVariant* line = webkit_user_message_get_parameters(message);
  if (line == nullptr || !g_variant_is_of_type(line, G_VARIANT_TYPE("(sss)"))) return FALSE;
  const char* level = nullptr;
  const char* text = nullptr;
  const char* source = nullptr;
  g_variant_get(line, "(&s&s&s)", &level, &text, &source);
  if (browser->events_.on_console) browser->events_.on_console(level, text, source);
  return TRUE;
}

void Browser::Evaluate(const std::string& expression, ResultCallback done) {
  webkit_web_view_evaluate_javascript(view_, expression.c_str(), static_cast<gssize>(expression.size()),
                                      nullptr, nullptr, nullptr, OnEvaluated, Keep(std::move(done)));
}

void Browser::Screenshot(ResultCallback done) {
  webkit_web_view_get_snapshot(view_, WEBKIT_SNAPSHOT_REGION_VISIBLE, WEBKIT_SNAPSHOT_OPTIONS_NONE, nullptr,
                               OnSnapshot, Keep(std::move(done)));
}

}  // namespace corvis::tv
