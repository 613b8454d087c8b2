// Calls the page with WebKit's asynchronous functions and messages to the web process.
#include "launcher/page_calls.h"

#include <cairo.h>

#include <utility>

#include "nurvo_desktop/glib_ptr.h"
#include "support/messages.h"

namespace corvis::tv {

namespace {

// Shorter than the default timeout of D-Bus clients, so that they receive this error instead.
constexpr int kLimitSeconds = 15;

cairo_status_t AppendPng(void* png, const unsigned char* data, unsigned size) {
  static_cast<std::string*>(png)->append(reinterpret_cast<const char*>(data), size);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

// A pending call, kept alive by the asynchronous functions that it waits for.
struct PageCalls::Call {
  // Null after the call is answered or abandoned.
  PageCalls* owner = nullptr;
  ResultCallback done;
  std::string result;
  CallError error;
  guint deadline = 0;

  // Answers the call unless it is already answered.
  static void Finish(const CallPtr& call) {
    if (call->owner != nullptr) call->owner->Finish(call);
  }

  // Keeps a call alive during an asynchronous function.
  static gpointer Hold(const CallPtr& call) { return new CallPtr(call); }
  static CallPtr Take(gpointer data) { return *std::unique_ptr<CallPtr>(static_cast<CallPtr*>(data)); }

  void TakeValue(GVariant* value);

  static gboolean OnDeadline(gpointer data);
  static void OnSnapshot(GObject* view, GAsyncResult* result, gpointer data);
  static void OnReply(GObject* view, GAsyncResult* result, gpointer data);
};

gboolean PageCalls::Call::OnDeadline(gpointer data) {
  const CallPtr call = *static_cast<CallPtr*>(data);
  if (call->owner->is_unlimited_) return G_SOURCE_CONTINUE;
  call->deadline = 0;
  call->error.sentence = "The page has not responded for " + std::to_string(kLimitSeconds) +
                         " s; one of its scripts may be stuck.";
  Finish(call);
  return G_SOURCE_REMOVE;
}

void PageCalls::Call::OnSnapshot(GObject* view, GAsyncResult* result, gpointer data) {
  const CallPtr call = Take(data);
  GError* failure = nullptr;
  cairo_surface_t* surface = webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, &failure);
  const nurvo::GErrorPtr error(failure);
  if (surface == nullptr) {
    call->error.sentence = error->message;
  } else {
    cairo_surface_write_to_png_stream(surface, AppendPng, &call->result);
    cairo_surface_destroy(surface);
  }
  if (call->owner != nullptr) call->owner->Send(call, kSyncMessage, nullptr);
}

// Handles the reply of the page's process to a message.
void PageCalls::Call::OnReply(GObject* view, GAsyncResult* result, gpointer data) {
  const CallPtr call = Take(data);
  const nurvo::GObjectPtr<WebKitUserMessage> reply(
      webkit_web_view_send_message_to_page_finish(WEBKIT_WEB_VIEW(view), result, nullptr));
  if (reply) {
    call->TakeValue(webkit_user_message_get_parameters(reply.get()));
    return Finish(call);
  }
  // The process has ended. The signal that reports it comes first and answers the call.
  call->error.sentence = "The page went away before it answered.";
  g_idle_add(
      [](gpointer kept) {
        Finish(Take(kept));
        return G_SOURCE_REMOVE;
      },
      Hold(call));
}

void PageCalls::Call::TakeValue(GVariant* value) {
  if (value == nullptr || !g_variant_is_of_type(value, G_VARIANT_TYPE(kValueType))) return;
  const char* json = nullptr;
  const char* exception = nullptr;
  g_variant_get(value, "(&s&s)", &json, &exception);
  result = json;
  error = {exception, kErrorScript};
}

PageCalls::~PageCalls() {
  for (const CallPtr& call : std::exchange(calls_, {})) {
    call->owner = nullptr;
    g_source_remove(call->deadline);
  }
}

PageCalls::CallPtr PageCalls::Begin(ResultCallback done) {
  auto call = std::make_shared<Call>();
  call->owner = this;
  call->done = std::move(done);
  call->deadline = g_timeout_add_seconds_full(G_PRIORITY_DEFAULT, kLimitSeconds, Call::OnDeadline,
                                              Call::Hold(call), [](gpointer data) { Call::Take(data); });
  calls_.insert(call);
  return call;
}

void PageCalls::Send(const CallPtr& call, const char* name, GVariant* content) {
  webkit_web_view_send_message_to_page(view_, webkit_user_message_new(name, content), nullptr, Call::OnReply,
                                       Call::Hold(call));
}

void PageCalls::Finish(const CallPtr& call) {
  calls_.erase(call);
  call->owner = nullptr;
  if (call->deadline != 0) g_source_remove(call->deadline);
  call->done(call->result, call->error);
}

void PageCalls::FailAll(const std::string& sentence) {
  for (const CallPtr& call : std::exchange(calls_, {})) {
    call->error.sentence = sentence;
    Finish(call);
  }
}

void PageCalls::Evaluate(const std::string& expression, ResultCallback done) {
  Send(Begin(std::move(done)), kEvaluateMessage, g_variant_new_string(expression.c_str()));
}

void PageCalls::Screenshot(ResultCallback done) {
  webkit_web_view_get_snapshot(view_, WEBKIT_SNAPSHOT_REGION_VISIBLE, WEBKIT_SNAPSHOT_OPTIONS_NONE, nullptr,
                               Call::OnSnapshot, Call::Hold(Begin(std::move(done))));
}

void PageCalls::AnnounceKey(const std::string& json) {
  webkit_web_view_send_message_to_page(
      view_, webkit_user_message_new(kKeyMessage, g_variant_new_string(json.c_str())), nullptr, nullptr,
      nullptr);
}

void PageCalls::Sync(ResultCallback done) {
  Send(Begin(std::move(done)), kSyncMessage, nullptr);
}

void PageCalls::ShutDown(ResultCallback done) {
  Send(Begin(std::move(done)), kEndMessage, nullptr);
}

}  // namespace corvis::tv
