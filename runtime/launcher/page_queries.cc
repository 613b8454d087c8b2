// Expressions and pictures, by WebKit's asynchronous calls.
#include "launcher/page_queries.h"

#include <cairo.h>

#include <memory>
#include <utility>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

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
  const nurvo::GObjectPtr<JSCValue> value(
      webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &failure));
  const nurvo::GErrorPtr error(failure);
  if (!value) {
    const bool is_exception =
        g_error_matches(error.get(), WEBKIT_JAVASCRIPT_ERROR, WEBKIT_JAVASCRIPT_ERROR_SCRIPT_FAILED) != FALSE;
    (*done)("", is_exception ? error->message : "The expression has no value; the page may have gone.");
    return;
  }
  const nurvo::GText json(jsc_value_is_undefined(value.get()) ? nullptr : jsc_value_to_json(value.get(), 0));
  (*done)(json ? json.get() : "null", "");
}

void OnSnapshot(GObject* view, GAsyncResult* result, gpointer data) {
  const auto done = Kept(data);
  GError* failure = nullptr;
  cairo_surface_t* surface = webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, &failure);
  const nurvo::GErrorPtr error(failure);
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

void EvaluateInPage(WebKitWebView* view, const std::string& expression, ResultCallback done) {
  webkit_web_view_evaluate_javascript(view, expression.c_str(), static_cast<gssize>(expression.size()),
                                      nullptr, nullptr, nullptr, OnEvaluated, Keep(std::move(done)));
}

void DrawPage(WebKitWebView* view, ResultCallback done) {
  webkit_web_view_get_snapshot(view, WEBKIT_SNAPSHOT_REGION_VISIBLE, WEBKIT_SNAPSHOT_OPTIONS_NONE, nullptr,
                               OnSnapshot, Keep(std::move(done)));
}

}  // namespace corvis::tv
