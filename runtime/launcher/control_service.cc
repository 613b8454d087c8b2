// Implements the methods of the control interface, dispatched by a table.
#include "launcher/control_service.h"

#include <cstring>
#include <utility>

namespace corvis::tv {

namespace {

// Appends one element for each complete type of a signature.
void AppendArguments(std::string& xml, const char* signature, const char* direction) {
  for (const char* type = signature; *type != '\0';) {
    const char* rest = nullptr;
    g_variant_type_string_scan(type, nullptr, &rest);
    xml.append("<arg type='").append(type, rest).append("'").append(direction).append("/>");
    type = rest;
  }
}

// The interface's description in D-Bus introspection XML.
std::string Introspection() {
  std::string xml = std::string("<node><interface name='") + kControlInterface + "'>";
  for (const ControlMethod& method : kControlMethods) {
    xml.append("<method name='").append(method.name).append("'>");
    AppendArguments(xml, method.arguments, " direction='in'");
    AppendArguments(xml, method.reply, " direction='out'");
    xml.append("</method>");
  }
  for (const ControlSignal& signal : kControlSignals) {
    xml.append("<signal name='").append(signal.name).append("'>");
    AppendArguments(xml, signal.arguments, "");
    xml.append("</signal>");
  }
  return xml + "</interface></node>";
}

// `reply` may be null. It is ignored if there is an error.
void Answer(GDBusMethodInvocation* call, GVariant* reply, const CallError& error) {
  const nurvo::GVariantPtr owned(reply == nullptr ? nullptr : g_variant_ref_sink(reply));
  if (error.sentence.empty()) {
    g_dbus_method_invocation_return_value(call, reply);
  } else {
    g_dbus_method_invocation_return_dbus_error(call, error.name, error.sentence.c_str());
  }
}

// A callback that answers the call without a value.
ResultCallback Finish(GDBusMethodInvocation* call) {
  return [call](const std::string& /*result*/, const CallError& error) { Answer(call, nullptr, error); };
}

}  // namespace

std::unique_ptr<ControlService> ControlService::Start(const std::string& app_id, ExitStatus& status,
                                                      std::string& error) {
  GError* failure = nullptr;
  nurvo::GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &failure));
  const nurvo::GErrorPtr reason(failure);
  if (!bus) {
    status = kExitNoEnvironment;
    error = "The D-Bus session bus can't be reached (" + std::string(reason->message) +
            "); run it with the command corvis, or in dbus-run-session.";
    return nullptr;
  }
  std::unique_ptr<ControlService> service(new ControlService(std::move(bus)));
  constexpr guint kDoNotQueue = 4;
  constexpr guint kPrimaryOwner = 1;
  const nurvo::GVariantPtr answer(g_dbus_connection_call_sync(
      service->bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", (app_id + kControlNameSuffix).c_str(), kDoNotQueue),
      G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
  guint owner = 0;
  if (answer) g_variant_get(answer.get(), "(u)", &owner);
  if (owner != kPrimaryOwner) {
    status = kExitAppIdTaken;
    error = "The application " + app_id + " is running on this bus already; end it, or use another --app-id.";
    return nullptr;
  }
  return service;
}

// The main loop dispatches calls, so a client that calls before the loop runs waits for it.
ControlService::ControlService(nurvo::GObjectPtr<GDBusConnection> bus) : bus_(std::move(bus)) {
  GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(Introspection().c_str(), nullptr);
  static constexpr GDBusInterfaceVTable kTable = {OnCall, nullptr, nullptr, {}};
  registration_ = g_dbus_connection_register_object(bus_.get(), kControlPath, node->interfaces[0], &kTable,
                                                    this, nullptr, nullptr);
  g_dbus_node_info_unref(node);
}

ControlService::~ControlService() {
  if (registration_ != 0) g_dbus_connection_unregister_object(bus_.get(), registration_);
  // Sends the last replies before the connection closes.
  g_dbus_connection_flush_sync(bus_.get(), nullptr, nullptr);
}

void ControlService::Serve(Browser* browser, PrivilegeSetter set_privileges, std::function<void()> quit) {
  browser_ = browser;
  set_privileges_ = std::move(set_privileges);
  quit_ = std::move(quit);
}

void ControlService::OnCall(GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                            const char* /*interface*/, const char* method, GVariant* arguments,
                            GDBusMethodInvocation* call, gpointer service) {
  static constexpr struct {
    const char* name;
    void (ControlService::*run)(GVariant* arguments, GDBusMethodInvocation* call);
  } kMethods[] = {{kLoadMethod.name, &ControlService::Load},
                  {kReloadMethod.name, &ControlService::Reload},
                  {kEvaluateMethod.name, &ControlService::Evaluate},
                  {kScreenshotMethod.name, &ControlService::Screenshot},
                  {kPressKeyMethod.name, &ControlService::PressKey},
                  {kTypeTextMethod.name, &ControlService::TypeText},
                  {kSyncMethod.name, &ControlService::Sync},
                  {kSetPrivilegesMethod.name, &ControlService::SetPrivileges},
                  {kClearStorageMethod.name, &ControlService::ClearStorage},
                  {kGetStatusMethod.name, &ControlService::GetStatus},
                  {kQuitMethod.name, &ControlService::Quit}};
  // GDBus has checked the method name against the introspection data.
  for (const auto& row : kMethods) {
    if (std::strcmp(row.name, method) == 0)
      (static_cast<ControlService*>(service)->*row.run)(arguments, call);
  }
}

void ControlService::Load(GVariant* arguments, GDBusMethodInvocation* call) {
  const char* uri = nullptr;
  g_variant_get(arguments, "(&s)", &uri);
  browser_->Load(uri, Finish(call));
}

void ControlService::Reload(GVariant* /*arguments*/, GDBusMethodInvocation* call) {
  browser_->Reload(Finish(call));
}

void ControlService::Evaluate(GVariant* arguments, GDBusMethodInvocation* call) {
  const char* expression = nullptr;
  g_variant_get(arguments, "(&s)", &expression);
  browser_->calls().Evaluate(expression, [call](const std::string& json, const CallError& error) {
    Answer(call, g_variant_new("(s)", json.c_str()), error);
  });
}

void ControlService::Screenshot(GVariant* /*arguments*/, GDBusMethodInvocation* call) {
  browser_->calls().Screenshot([call](const std::string& png, const CallError& error) {
    GVariant* bytes = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, png.data(), png.size(), 1);
    Answer(call, g_variant_new_tuple(&bytes, 1), error);
  });
}

void ControlService::PressKey(GVariant* arguments, GDBusMethodInvocation* call) {
  const char* name = nullptr;
  g_variant_get(arguments, "(&s)", &name);
  browser_->keys().Press(name, Finish(call));
}

void ControlService::TypeText(GVariant* arguments, GDBusMethodInvocation* call) {
  const char* text = nullptr;
  g_variant_get(arguments, "(&s)", &text);
  browser_->keys().Type(text, Finish(call));
}

void ControlService::Sync(GVariant* /*arguments*/, GDBusMethodInvocation* call) {
  browser_->calls().Sync(Finish(call));
}

void ControlService::SetPrivileges(GVariant* arguments, GDBusMethodInvocation* call) {
  std::vector<std::string> uris;
  GVariantIter* list = nullptr;
  const char* uri = nullptr;
  g_variant_get(arguments, "(as)", &list);
  while (g_variant_iter_next(list, "&s", &uri)) uris.emplace_back(uri);
  g_variant_iter_free(list);
  const bool is_set = set_privileges_(uris);
  Answer(call, nullptr, {is_set ? "" : "The privileges can't be set; expected URIs without spaces."});
}

void ControlService::ClearStorage(GVariant* /*arguments*/, GDBusMethodInvocation* call) {
  browser_->ClearStorage(Finish(call));
}

void ControlService::GetStatus(GVariant* /*arguments*/, GDBusMethodInvocation* call) {
  g_dbus_method_invocation_return_value(
      call, g_variant_new("(sbuu)", browser_->uri().c_str(), browser_->is_loading(), browser_->web_process(),
                          browser_->crashes()));
}

void ControlService::Quit(GVariant* /*arguments*/, GDBusMethodInvocation* call) {
  g_dbus_method_invocation_return_value(call, nullptr);
  quit_();
}

void ControlService::Emit(const ControlSignal& signal, GVariant* arguments) {
  g_dbus_connection_emit_signal(bus_.get(), nullptr, kControlPath, kControlInterface, signal.name, arguments,
                                nullptr);
}

void ControlService::EmitConsole(const std::string& level, const std::string& text,
                                 const std::string& source) {
  Emit(kConsoleSignal, g_variant_new("(sss)", level.c_str(), text.c_str(), source.c_str()));
}
void ControlService::EmitLoaded(const std::string& uri) {
  Emit(kLoadedSignal, g_variant_new("(s)", uri.c_str()));
}
void ControlService::EmitCrashed(unsigned times) {
  Emit(kCrashedSignal, g_variant_new("(u)", times));
}
void ControlService::EmitInspected(bool is_attached) {
  Emit(kInspectedSignal, g_variant_new("(b)", is_attached));
}
void ControlService::EmitClosed() {
  Emit(kClosedSignal, nullptr);
}

}  // namespace corvis::tv
