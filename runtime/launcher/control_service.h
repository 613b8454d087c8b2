// The control interface on the bus, through which tools query and control the page.
#ifndef CORVIS_RUNTIME_LAUNCHER_CONTROL_SERVICE_H_
#define CORVIS_RUNTIME_LAUNCHER_CONTROL_SERVICE_H_

#include <gio/gio.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "corvis_tv/control.h"
#include "launcher/browser.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

// Implements the interface that corvis_tv/control.h declares.
class ControlService {
 public:
  // Replaces the privileges of the application. Returns false on failure.
  using PrivilegeSetter = std::function<bool(const std::vector<std::string>& uris)>;

  // Owns the bus name from now on, so that clients can call and wait. On failure returns null, a status and
  // an error message.
  static std::unique_ptr<ControlService> Start(const std::string& app_id, ExitStatus& status,
                                               std::string& error);
  ~ControlService();
  ControlService(const ControlService&) = delete;
  ControlService& operator=(const ControlService&) = delete;

  // Sets the objects that serve calls. Call this before the main loop runs; `browser` must outlive the main
  // loop. `quit` is called when a client calls Quit.
  void Serve(Browser* browser, PrivilegeSetter set_privileges, std::function<void()> quit);

  void EmitConsole(const std::string& level, const std::string& text, const std::string& source);
  void EmitLoaded(const std::string& uri);
  void EmitCrashed(unsigned times);
  void EmitClosed();
  void EmitInspected(bool is_attached);

 private:
  explicit ControlService(nurvo::GObjectPtr<GDBusConnection> bus);
  static void OnCall(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* arguments, GDBusMethodInvocation* call, gpointer service);
  void Emit(const ControlSignal& signal, GVariant* arguments);

  void Load(GVariant* arguments, GDBusMethodInvocation* call);
  void Reload(GVariant* arguments, GDBusMethodInvocation* call);
  void Evaluate(GVariant* arguments, GDBusMethodInvocation* call);
  void Screenshot(GVariant* arguments, GDBusMethodInvocation* call);
  void PressKey(GVariant* arguments, GDBusMethodInvocation* call);
  void TypeText(GVariant* arguments, GDBusMethodInvocation* call);
  void Sync(GVariant* arguments, GDBusMethodInvocation* call);
  void SetPrivileges(GVariant* arguments, GDBusMethodInvocation* call);
  void ClearStorage(GVariant* arguments, GDBusMethodInvocation* call);
  void GetStatus(GVariant* arguments, GDBusMethodInvocation* call);
  void Quit(GVariant* arguments, GDBusMethodInvocation* call);

  nurvo::GObjectPtr<GDBusConnection> bus_;
  guint registration_ = 0;
  Browser* browser_ = nullptr;
  PrivilegeSetter set_privileges_;
  std::function<void()> quit_;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_CONTROL_SERVICE_H_
