// Handles the view's signals that would otherwise open a dialog or window.
#include "launcher/user_requests.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "corvis_tv/permissions.h"

namespace corvis::tv {

namespace {

struct Grant {
  std::string_view name;
  bool (*is_asked_by)(WebKitPermissionRequest* request);
};

template <gboolean (*is_for)(WebKitUserMediaPermissionRequest*)>
bool IsMedia(WebKitPermissionRequest* request) {
  return WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(request) &&
         is_for(WEBKIT_USER_MEDIA_PERMISSION_REQUEST(request)) != FALSE;
}

constexpr Grant kGrants[] = {
    {"geolocation", [](auto* request) -> bool { return WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request); }},
    {"notifications",
     [](auto* request) -> bool { return WEBKIT_IS_NOTIFICATION_PERMISSION_REQUEST(request); }},
    {"microphone", IsMedia<webkit_user_media_permission_is_for_audio_device>},
    {"camera", IsMedia<webkit_user_media_permission_is_for_video_device>},
    {"screen", IsMedia<webkit_user_media_permission_is_for_display_device>},
    {"devices", [](auto* request) -> bool { return WEBKIT_IS_DEVICE_INFO_PERMISSION_REQUEST(request); }},
    {"clipboard", [](auto* request) -> bool { return WEBKIT_IS_CLIPBOARD_PERMISSION_REQUEST(request); }},
    {"pointer-lock",
     [](auto* request) -> bool { return WEBKIT_IS_POINTER_LOCK_PERMISSION_REQUEST(request); }},
    {"protected-media",
     [](auto* request) -> bool { return WEBKIT_IS_MEDIA_KEY_SYSTEM_PERMISSION_REQUEST(request); }},
    {"storage-access",
     [](auto* request) -> bool { return WEBKIT_IS_WEBSITE_DATA_ACCESS_PERMISSION_REQUEST(request); }},
};

constexpr bool AreNamesKnown() {
  for (size_t i = 0; i < std::size(kGrants); ++i) {
    if (kGrants[i].name != kPermissionNames[i]) return false;
  }
  return std::size(kGrants) == std::size(kPermissionNames);
}
static_assert(AreNamesKnown());

std::string TextOr(const char* text, const char* otherwise) {
  return text == nullptr || *text == '\0' ? otherwise : text;
}

}  // namespace

UserRequests::UserRequests(WebKitWebView* view, std::string origin, std::vector<std::string> grants,
                           ConsoleWriter write)
    : view_(view), origin_(std::move(origin)), grants_(std::move(grants)), write_(std::move(write)) {
  const std::pair<const char*, GCallback> handlers[] = {
      {"script-dialog", G_CALLBACK(OnDialog)},
      {"permission-request", G_CALLBACK(OnPermission)},
      {"query-permission-state", G_CALLBACK(OnPermissionQuery)},
      {"run-file-chooser", G_CALLBACK(OnFileChooser)},
      {"run-color-chooser", G_CALLBACK(OnColorChooser)},
      {"print", G_CALLBACK(OnPrint)},
      {"show-notification", G_CALLBACK(OnNotification)},
      {"authenticate", G_CALLBACK(OnPassword)},
      {"decide-policy", G_CALLBACK(OnPolicy)},
      {"create", G_CALLBACK(OnNewWindow)},
      {"context-menu", G_CALLBACK(gtk_true)}};
  for (const auto& [signal, handler] : handlers) g_signal_connect(view, signal, handler, this);
  WebKitWebContext* context = webkit_web_view_get_context(view);
  g_signal_connect(context, "download-started", G_CALLBACK(OnDownload), this);
  g_signal_connect(context, "initialize-notification-permissions", G_CALLBACK(OnNotificationPermissions),
                   this);
}

UserRequests::~UserRequests() {
  g_signal_handlers_disconnect_by_data(view_, this);
  g_signal_handlers_disconnect_by_data(webkit_web_view_get_context(view_), this);
}

bool UserRequests::IsGranted(const std::string& name) const {
  return std::find(grants_.begin(), grants_.end(), name) != grants_.end();
}

// Confirms leaving a page, and dismisses every other dialog.
gboolean UserRequests::OnDialog(WebKitWebView* /*view*/, WebKitScriptDialog* dialog, UserRequests* self) {
  if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM) {
    webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
  } else {
    self->write_("info", std::string("Dialog: ") + webkit_script_dialog_get_message(dialog));
  }
  return TRUE;
}

// A request may ask for several permissions at once.
gboolean UserRequests::OnPermission(WebKitWebView* /*view*/, WebKitPermissionRequest* request,
                                    UserRequests* self) {
  std::string missing;
  for (const Grant& grant : kGrants) {
    if (!grant.is_asked_by(request) || self->IsGranted(std::string(grant.name))) continue;
    missing += std::string(missing.empty() ? "" : ", ").append(grant.name);
  }
  if (missing.empty()) {
    webkit_permission_request_allow(request);
  } else {
    webkit_permission_request_deny(request);
    self->Refuse("The page asked for a permission (" + missing +
                 "), which was denied; use --grant to grant it.");
  }
  return TRUE;
}

gboolean UserRequests::OnPermissionQuery(WebKitWebView* /*view*/, WebKitPermissionStateQuery* query,
                                         UserRequests* self) {
  webkit_permission_state_query_finish(query, self->IsGranted(webkit_permission_state_query_get_name(query))
                                                  ? WEBKIT_PERMISSION_STATE_GRANTED
                                                  : WEBKIT_PERMISSION_STATE_DENIED);
  return TRUE;
}

gboolean UserRequests::OnFileChooser(WebKitWebView* /*view*/, WebKitFileChooserRequest* request,
                                     UserRequests* self) {
  webkit_file_chooser_request_cancel(request);
  self->Refuse("The page asked the user to choose a file; none was chosen.");
  return TRUE;
}

gboolean UserRequests::OnColorChooser(WebKitWebView* /*view*/, WebKitColorChooserRequest* request,
                                      UserRequests* self) {
  webkit_color_chooser_request_cancel(request);
  self->Refuse("The page asked the user to choose a color; none was chosen.");
  return TRUE;
}

gboolean UserRequests::OnPrint(WebKitWebView* /*view*/, WebKitPrintOperation* /*operation*/,
                               UserRequests* self) {
  self->Refuse("The page asked to be printed; it was not printed.");
  return TRUE;
}

gboolean UserRequests::OnNotification(WebKitWebView* /*view*/, WebKitNotification* notification,
                                      UserRequests* self) {
  self->write_("info", std::string("Notification: ") + webkit_notification_get_title(notification));
  return TRUE;
}

// Sets the initial permissions, which a page can read before it asks.
void UserRequests::OnNotificationPermissions(WebKitWebContext* context, UserRequests* self) {
  if (!self->IsGranted("notifications")) return;
  GList* origins = g_list_append(nullptr, webkit_security_origin_new_for_uri(self->origin_.c_str()));
  webkit_web_context_initialize_notification_permissions(context, origins, nullptr);
  g_list_free_full(origins, reinterpret_cast<GDestroyNotify>(webkit_security_origin_unref));
}

gboolean UserRequests::OnPassword(WebKitWebView* /*view*/, WebKitAuthenticationRequest* request,
                                  UserRequests* self) {
  const std::string host = TextOr(webkit_authentication_request_get_host(request), "?");
  const std::string realm = TextOr(webkit_authentication_request_get_realm(request), "no realm");
  // Continue without a password, so that the page receives the server's refusal.
  webkit_authentication_request_authenticate(request, nullptr);
  self->Refuse("The server " + host + " wants a password (" + realm +
               "), and none was given; put it into the URL: http://USER:PASSWORD@" + host + ".");
  return TRUE;
}

gboolean UserRequests::OnPolicy(WebKitWebView* /*view*/, WebKitPolicyDecision* decision,
                                WebKitPolicyDecisionType type, UserRequests* self) {
  if (type != WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return FALSE;
  auto* const answer = WEBKIT_RESPONSE_POLICY_DECISION(decision);
  if (webkit_response_policy_decision_is_mime_type_supported(answer) != FALSE) return FALSE;
  WebKitURIResponse* response = webkit_response_policy_decision_get_response(answer);
  webkit_policy_decision_ignore(decision);
  self->Refuse(std::string(webkit_uri_response_get_uri(response)) + " would be a download (" +
               TextOr(webkit_uri_response_get_mime_type(response), "no type") + "), which was refused.");
  return TRUE;
}

GtkWidget* UserRequests::OnNewWindow(WebKitWebView* /*view*/, WebKitNavigationAction* action,
                                     UserRequests* self) {
  const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  self->Refuse("The page asked for a window of its own for " + TextOr(uri, "an empty page") +
               ", which was refused: an application has one.");
  return nullptr;
}

void UserRequests::OnDownload(WebKitWebContext* /*context*/, WebKitDownload* download, UserRequests* self) {
  self->Refuse(std::string(webkit_uri_request_get_uri(webkit_download_get_request(download))) +
               " would be a download, which was refused.");
  webkit_download_cancel(download);
}

}  // namespace corvis::tv
