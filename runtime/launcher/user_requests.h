// What a page asks of its user: dialogs, permissions, files, passwords, windows. Nobody sits in front of a TV
// under test, so each is answered at once, and a console line says how.
#ifndef CORVIS_RUNTIME_LAUNCHER_USER_REQUESTS_H_
#define CORVIS_RUNTIME_LAUNCHER_USER_REQUESTS_H_

#include <webkit2/webkit2.h>

#include <functional>
#include <string>
#include <vector>

namespace corvis::tv {

// Takes a line of the page's console.
using ConsoleWriter = std::function<void(const std::string& level, const std::string& text)>;

// The names of what a page may be granted.
std::vector<std::string> GrantNames();

// Answers the requests of one view until it goes.
class UserRequests {
 public:
  // `view` outlives it. What is not among `grants` is refused; `origin` is the application's.
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
