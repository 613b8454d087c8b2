// Sets up WebKit's view and context for one application, and handles their signals.
#include "launcher/browser.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <utility>

#include "launcher/storage.h"
#include "support/messages.h"

namespace corvis::tv {

namespace {

// A crash after the page was loaded and alive for this long does not count as a crash at start.
constexpr guint kAliveMs = 200;
constexpr unsigned kMaxCrashesInARow = 3;
constexpr guint kFirstErrorStatus = 400;
constexpr guint kUnauthorized = 401;
// The time limit for the page's shutdown at the end of the run, in case a script never returns.
constexpr guint kLeaveMs = 1000;
constexpr const char* kClosedSentence = "The application ended: its page called window.close().";
// The page that the engine shows for an address that it refuses.
constexpr const char* kEmptyPage = "about:blank";

// The folder of the web process's module, in the build folder or the installation.
std::string WebProcessFolder() {
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  const std::filesystem::path built = program.parent_path().parent_path() / "lib" / "web-process";
  if (std::filesystem::exists(built)) return built;
  return program.parent_path() / CORVIS_WEB_PROCESS_DIR;
}

nurvo::GVariantPtr ExtensionData(const Options& options, const Application& application) {
  GVariantBuilder libraries;
  g_variant_builder_init(&libraries, G_VARIANT_TYPE("as"));
  for (const std::string& path : options.extensions) g_variant_builder_add(&libraries, "s", path.c_str());
  return nurvo::GVariantPtr(g_variant_ref_sink(
      g_variant_new(kStartType, application.origin.c_str(), &libraries, options.is_api_followed)));
}

void AddPageScript(WebKitWebView* view, const std::string& text) {
  WebKitUserScript* script =
      webkit_user_script_new(text.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                             WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
  webkit_user_content_manager_add_script(webkit_web_view_get_user_content_manager(view), script);
  webkit_user_script_unref(script);
}

// The engine runs a script of the launcher as a gesture of the user.
void Activate(WebKitWebView* view, const std::string& event) {
  const bool is_name =
      std::all_of(event.begin(), event.end(), [](char letter) { return g_ascii_isalnum(letter) != FALSE; });
  const std::string script = "window.dispatchEvent(new Event('" + event + "'))";
  if (is_name)
    webkit_web_view_evaluate_javascript(view, script.c_str(), -1, "corvis-tv", nullptr, nullptr, nullptr,
                                        nullptr);
}

}  // namespace

Browser::Browser(const Options& options, const Application& application, BrowserEvents events)
    : events_(std::move(events)) {
  SetUpContext(options, application);
  SetUpView(options, application);
}

Browser::~Browser() {
  if (reload_ != 0) g_source_remove(reload_);
  g_signal_handlers_disconnect_by_data(context_.get(), this);
  g_signal_handlers_disconnect_by_data(view_, this);
  g_signal_handlers_disconnect_by_data(window_, this);
  requests_.reset();
  calls_.reset();
  gtk_widget_destroy(window_);
}

void Browser::SetUpContext(const Options& options, const Application& application) {
  context_ = NewWebContext(options.profile);
  if (options.are_tls_errors_ignored) {
    webkit_website_data_manager_set_tls_errors_policy(
        webkit_web_context_get_website_data_manager(context_.get()), WEBKIT_TLS_ERRORS_POLICY_IGNORE);
  }
  // With a smaller cache the engine drops the scripts that it has loaded ahead, and loads them again.
  webkit_web_context_set_cache_model(context_.get(), WEBKIT_CACHE_MODEL_DOCUMENT_BROWSER);
  const char* languages[] = {options.language.c_str(), nullptr};
  webkit_web_context_set_preferred_languages(context_.get(), languages);
  extension_data_ = ExtensionData(options, application);
  g_signal_connect(
      context_.get(), "initialize-web-extensions", G_CALLBACK(+[](WebKitWebContext* context, GVariant* data) {
        webkit_web_context_set_web_extensions_directory(context, WebProcessFolder().c_str());
        webkit_web_context_set_web_extensions_initialization_user_data(context, g_variant_ref(data));
      }),
      extension_data_.get());
  g_signal_connect(context_.get(), "user-message-received", G_CALLBACK(OnProcessMessage), this);
}

void Browser::SetUpView(const Options& options, const Application& application) {
  const nurvo::GObjectPtr<WebKitSettings> settings(webkit_settings_new_with_settings(
      "enable-page-cache", FALSE, "hardware-acceleration-policy", WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER,
      "media-playback-requires-user-gesture", FALSE, "javascript-can-open-windows-automatically", TRUE,
      "enable-developer-extras", !options.is_headless || options.inspector_port.has_value(), nullptr));
  if (!options.user_agent.empty()) webkit_settings_set_user_agent(settings.get(), options.user_agent.c_str());
  // Commands that reach the page without a gesture of a user may start playback with sound all the same.
  const nurvo::GObjectPtr<WebKitWebsitePolicies> policies(
      webkit_website_policies_new_with_policies("autoplay", WEBKIT_AUTOPLAY_ALLOW, nullptr));
  view_ = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context_.get(), "settings",
                                       settings.get(), "website-policies", policies.get(), nullptr));
  if (!options.page_script.empty()) AddPageScript(view_, options.page_script);
  calls_ = std::make_unique<PageCalls>(view_);
  keys_ = std::make_unique<KeyInput>(view_, *calls_, options.key_codes);
  requests_ = std::make_unique<UserRequests>(view_, application.origin, options.grants,
                                             [this](const auto& level, const auto& text) {
                                               if (events_.on_console)
                                                 events_.on_console(level, text, "page");
                                             });
  window_ = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_window_set_default_size(GTK_WINDOW(window_), options.width, options.height);
  gtk_container_add(GTK_CONTAINER(window_), GTK_WIDGET(view_));
  g_object_bind_property(view_, "title", window_, "title", G_BINDING_DEFAULT);
  g_signal_connect(view_, "load-changed", G_CALLBACK(OnLoadChanged), this);
  g_signal_connect(view_, "load-failed", G_CALLBACK(OnLoadFailed), this);
  g_signal_connect(view_, "notify::is-loading", G_CALLBACK(OnLoadingChanged), this);
  g_signal_connect(view_, "web-process-terminated", G_CALLBACK(OnTerminated), this);
  g_signal_connect(view_, "user-message-received", G_CALLBACK(OnUserMessage), this);
  g_signal_connect(view_, "close", G_CALLBACK(OnClose), this);
  // The window stays open until the page has shut down.
  g_signal_connect(window_, "delete-event", G_CALLBACK(+[](GtkWidget*, GdkEvent*, Browser* browser) {
                     browser->events_.on_end(kExitOk, "");
                     return TRUE;
                   }),
                   this);
  gtk_widget_show_all(window_);
  // Nobody sees the display, and screenshots come from the engine.
  if (options.is_headless) gdk_window_freeze_updates(gtk_widget_get_window(window_));
}

void Browser::ClearStorage(ResultCallback done) {
  tv::ClearStorage(context_.get(), [done = std::move(done)](const std::string& error) { done("", {error}); });
}

std::string Browser::uri() const {
  const char* uri = webkit_web_view_get_uri(view_);
  return uri == nullptr ? "" : uri;
}

void Browser::BeginLoad(ResultCallback done) {
  FinishLoad(kAnotherLoad);
  load_done_ = std::move(done);
  has_load_started_ = false;
}

void Browser::Load(const std::string& uri, ResultCallback done) {
  BeginLoad(std::move(done));
  last_uri_ = uri;
  // Files may have changed, also those that their server doesn't date.
  webkit_web_context_clear_cache(context_.get());
  webkit_web_view_load_uri(view_, uri.c_str());
}

void Browser::Reload(ResultCallback done) {
  BeginLoad(std::move(done));
  webkit_web_view_reload(view_);
}

void Browser::FinishLoad(const std::string& error) {
  const ResultCallback done = std::exchange(load_done_, nullptr);
  if (done) done(uri(), {error, kErrorLoadFailed});
}

void Browser::OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event, Browser* browser) {
  if (event == WEBKIT_LOAD_STARTED) {
    browser->has_load_started_ = true;
    browser->load_error_.clear();
  }
  if (event == WEBKIT_LOAD_COMMITTED) browser->CheckCommitted();
  // A load that was replaced by another one finishes while the other one is still loading.
  if (event == WEBKIT_LOAD_FINISHED && !webkit_web_view_is_loading(view)) browser->OnLoadFinished();
}

void Browser::CheckCommitted() {
  WebKitWebResource* resource = webkit_web_view_get_main_resource(view_);
  WebKitURIResponse* response = resource == nullptr ? nullptr : webkit_web_resource_get_response(resource);
  const guint status = response == nullptr ? 0 : webkit_uri_response_get_status_code(response);
  if (status >= kFirstErrorStatus) {
    load_error_ = uri() + " can't be loaded: the server answered " + std::to_string(status) + ".";
    if (status == kUnauthorized) load_error_ += " It wants a password, which the URL can contain.";
  } else if (load_done_ && uri() == kEmptyPage && last_uri_ != kEmptyPage) {
    load_error_ =
        last_uri_ + " can't be loaded: the engine refuses the address; is its port one for web pages?";
  }
}

void Browser::OnLoadFinished() {
  // The page to reload after a crash.
  last_uri_ = uri();
  if (load_error_.empty()) {
    alive_timer_.Start(kAliveMs);
    if (events_.on_loaded) events_.on_loaded(uri());
  } else if (!load_done_ && events_.on_console) {
    // No caller waits for this load: the page navigated by itself or was reloaded after a crash.
    events_.on_console("error", load_error_, "page");
  }
  FinishLoad(load_error_);
}

// Navigation within the same document causes no load events.
void Browser::OnLoadingChanged(WebKitWebView* view, GParamSpec* /*property*/, Browser* browser) {
  if (webkit_web_view_is_loading(view) || browser->has_load_started_) return;
  const bool is_there = browser->uri() == browser->last_uri_;
  browser->FinishLoad(is_there ? "" : browser->last_uri_ + " can't be loaded: the engine refuses it.");
}

gboolean Browser::OnLoadFailed(WebKitWebView* /*view*/, WebKitLoadEvent /*event*/, const char* uri,
                               GError* error, Browser* browser) {
  // A load that was replaced by another one, or that the page stopped, has not failed.
  if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED)) return TRUE;
  const bool is_download = error->domain == WEBKIT_POLICY_ERROR;
  browser->load_error_ = std::string(uri) +
                         " can't be loaded: " + (is_download ? "it would be a download" : error->message) +
                         ".";
  if (error->domain == G_TLS_ERROR)
    browser->load_error_ += " Use --ignore-tls-errors to accept the certificate.";
  return TRUE;
}

void Browser::OnTerminated(WebKitWebView* /*view*/, WebKitWebProcessTerminationReason /*reason*/,
                           Browser* browser) {
  browser->web_process_ = 0;
  if (browser->is_leaving_) return;
  ++browser->crashes_;
  ++browser->crashes_in_a_row_;
  browser->alive_timer_.Stop();
  if (browser->events_.on_crashed) browser->events_.on_crashed(browser->crashes_);
  browser->calls_->FailAll("The page's process crashed before it answered.");
  if (browser->crashes_in_a_row_ > kMaxCrashesInARow) {
    const std::string sentence = "The page's process crashed " + std::to_string(browser->crashes_in_a_row_) +
                                 " times in a row during the start; it is not reloaded.";
    // Report the end first, because a failed load would be reported as the reason.
    browser->events_.on_end(kExitCrashing, sentence);
    browser->FinishLoad(sentence);
    return;
  }
  // Deferred, because during the signal the view still cleans up after the old process.
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

gboolean Browser::OnUserMessage(WebKitWebView* view, WebKitUserMessage* message, Browser* browser) {
  const std::string name = webkit_user_message_get_name(message);
  GVariant* content = webkit_user_message_get_parameters(message);
  const auto is = [&](const char* wanted, const char* type) {
    return name == wanted && content != nullptr &&
           g_variant_is_of_type(content, G_VARIANT_TYPE(type)) != FALSE;
  };
  if (is(kProcessMessage, kProcessType)) {
    browser->web_process_ = g_variant_get_uint32(content);
  } else if (is(kConsoleMessage, kConsoleType)) {
    browser->TakeConsole(content);
  } else if (is(kActivateMessage, kActivateType)) {
    Activate(view, g_variant_get_string(content, nullptr));
  } else if (name == kCloseMessage) {
    OnClose(view, browser);
  } else {
    return FALSE;
  }
  return TRUE;
}

void Browser::TakeConsole(GVariant* content) const {
  if (!events_.on_console) return;
  GVariantIter lines;
  g_variant_iter_init(&lines, content);
  const char* level = nullptr;
  const char* text = nullptr;
  const char* source = nullptr;
  while (g_variant_iter_next(&lines, "(&s&s&s)", &level, &text, &source) != FALSE)
    events_.on_console(level, text, source);
}

gboolean Browser::OnProcessMessage(WebKitWebContext* /*context*/, WebKitUserMessage* message,
                                   Browser* browser) {
  GVariant* content = webkit_user_message_get_parameters(message);
  if (std::string(webkit_user_message_get_name(message)) != kBrokenExtensionMessage || content == nullptr ||
      !g_variant_is_of_type(content, G_VARIANT_TYPE(kBrokenExtensionType)))
    return FALSE;
  browser->events_.on_end(kExitUsage, g_variant_get_string(content, nullptr));
  return TRUE;
}

// The page closed itself.
void Browser::OnClose(WebKitWebView* /*view*/, Browser* browser) {
  if (std::exchange(browser->is_closed_, true)) return;
  if (browser->events_.on_closed) browser->events_.on_closed();
  browser->events_.on_end(kExitOk, "");
  browser->FinishLoad(kClosedSentence);
}

void Browser::TakeLeave() {
  is_leaving_ = true;
  bool has_answered = web_process_ == 0;
  bool is_over = false;
  if (!has_answered)
    calls_->ShutDown([&](const auto& /*result*/, const auto& /*error*/) { has_answered = true; });
  const guint deadline = g_timeout_add(
      kLeaveMs,
      [](gpointer over) {
        *static_cast<bool*>(over) = true;
        return G_SOURCE_REMOVE;
      },
      &is_over);
  while (!has_answered && !is_over) g_main_context_iteration(nullptr, TRUE);
  if (!is_over) g_source_remove(deadline);
  // Kills a page that is stopped or stuck in a script.
  if (!has_answered && web_process_ != 0) kill(static_cast<pid_t>(web_process_), SIGKILL);
  calls_->FailAll(is_closed_ ? kClosedSentence : "The runtime ended before the page answered.");
}

}  // namespace corvis::tv
