// Requests of a page to its user: dialogs, permissions, files, passwords, windows. There is no user during a
// test, so each request is answered at once, and a console line reports the answer.
#ifndef CORVIS_RUNTIME_LAUNCHER_USER_REQUESTS_H_
#define CORVIS_RUNTIME_LAUNCHER_USER_REQUESTS_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <string>
#include <vector>

namespace corvis::tv {

// Writes a line to the page's console.
using ConsoleWriter = std::function<void(const std::string& level, const std::string& text)>;

// Answers the requests of one view until this object is destroyed.
class UserRequests {
 public:
  // `view` must outlive this object. Permissions that are not in `grants` are denied. `origin` is the
  // application's.
  UserRequests(WebKitWebView* view, std::string origin, std::vector<std::string> grants, ConsoleWriter write);
  ~UserRequests();
  UserRequests(const UserRequests&) = delete;
  UserRequests& operator=(const UserRequests&) = delete;

 private:
  static gboolean OnDialog(WebKitWebView* view, WebKitScriptDialog* dialog, UserRequests* self);
  static gboolean OnPermission(WebKitWebView* view, WebKitPermissionRequest* request, UserRequests* self);
  static gboolean OnPermissionQuery(WebKitWebView* view, WebKitPermissionStateQuery* query,
                                    UserRequests* self);
  static gboolean OnFileChooser(WebKitWebView* view, WebKitFileChooserRequest* request, UserRequests* self);
  static gboolean OnColorChooser(WebKitWebView* view, WebKitColorChooserRequest* request, UserRequests* self);
  static gboolean OnPrint(WebKitWebView* view, WebKitPrintOperation* operation, UserRequests* self);
  static gboolean OnNotification(WebKitWebView* view, WebKitNotification* notification, UserRequests* self);
  static void OnNotificationPermissions(WebKitWebContext* context, UserRequests* self);
  static gboolean OnPassword(WebKitWebView* view, WebKitAuthenticationRequest* request, UserRequests* self);
  static gboolean OnPolicy(WebKitWebView* view, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                           UserRequests* self);
  static GtkWidget* OnNewWindow(WebKitWebView* view, WebKitNavigationAction* action, UserRequests* self);
  static void OnDownload(WebKitWebContext* context, WebKitDownload* download, UserRequests* self);

  bool IsGranted(const std::string& name) const;
  void Refuse(const std::string& what) const { write_("warn", what); }

  WebKitWebView* view_;
  std::string origin_;
  std::vector<std::string> grants_;
  ConsoleWriter write_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_USER_REQUESTS_H_
