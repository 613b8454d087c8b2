// Installs a script that requests it in an event that counts as a gesture. Only the launcher's process can
// make one.
#include "web-process/full_screen.h"

#include "fullscreen_script.h"
#include "nurvo_desktop/glib_ptr.h"
#include "support/messages.h"

namespace corvis::tv {

namespace {

using JscValue = nurvo::GObjectPtr<JSCValue>;

void Activate(const char* event, gpointer page) {
  webkit_web_page_send_message_to_view(static_cast<WebKitWebPage*>(page),
                                       webkit_user_message_new(kActivateMessage, g_variant_new_string(event)),
                                       nullptr, nullptr, nullptr);
}

}  // namespace

void GrantFullScreen(JSCContext* context, WebKitWebPage* page) {
  const JscValue grant(
      jsc_context_evaluate_with_source_uri(context, kFullscreenScript, -1, "fullscreen.js", 1));
  const JscValue native(jsc_value_new_object(context, nullptr, nullptr));
  const JscValue activate(jsc_value_new_function(context, "activate", G_CALLBACK(Activate), page, nullptr,
                                                 G_TYPE_NONE, 1, G_TYPE_STRING));
  jsc_value_object_set_property(native.get(), "activate", activate.get());
  const JscValue granted(jsc_value_function_call(grant.get(), JSC_TYPE_VALUE, native.get(), G_TYPE_NONE));
  jsc_context_clear_exception(context);
}

}  // namespace corvis::tv
