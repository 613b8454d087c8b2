// The runtime's extension binding (libnurvo_common): the classes from which an extension library derives its
// own, to describe itself, to create one object for each page, and to answer the page's calls.
//
// Used only on the thread that runs the page's main loop. Functions don't throw unless their comment says so.
#ifndef NURVO_EXTENSION_H_
#define NURVO_EXTENSION_H_

#include <picojson.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "nurvo/runtime.h"

namespace common {

// An error for the page: the name ("SecurityError", "TypeMismatchError", ...) and a message in English.
class PlatformException {
 public:
  PlatformException(const std::string& name, const std::string& message);
  virtual ~PlatformException();

  const std::string& name() const;
  const std::string& message() const;

 private:
  std::string name_;
  std::string message_;
};

// One page's end of an extension. The binding owns it from Extension::OnInstanceCreated on and destroys it
// when the page is closed.
class Instance {
 public:
  Instance();
  virtual ~Instance();
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  // Called once, after the binding has taken ownership. Does nothing by default.
  virtual void OnAttached();
  // Handles a text that the page posted without waiting for an answer.
  virtual void HandleMessage(const char* message);
  // Handles a synchronous call of the page. The override calls SendSyncReply before it returns.
  virtual void HandleSyncMessage(const char* message);
  // Like the two functions above, with `size` bytes instead of a text. Ignored by default.
  virtual void HandleBinaryMessage(const char* message, size_t size);
  virtual void HandleSyncBinaryMessage(const char* message, size_t size);
  // Stores whether the page is suspended; has no other effect.
  virtual void SetSuspended(bool suspended);

  // Queues a copy of a text for the page's script and does not wait. The text is dropped before the instance
  // is attached and after its page is closed.
  void PostMessage(const char* message);

 protected:
  // Answers the synchronous call that is being handled. The text is copied.
  void SendSyncReply(const char* reply);

 private:
  friend class Extension;

  bool suspended_ = false;
  InstanceHandle handle_ = 0;
};

// An instance with JSON calls. A call is {"cmd": name, "args": value}, where a missing "args" means null. The
// reply is
// {"status": "success"}, {"status": "success", "result": value} or
// {"status": "error", "error": {"name": text, "message": text}}.
//
// The reply is an error if the call is not such an object, is nested too deeply, contains an out-of-range
// number, or names no handler, and if the handler throws.
class ParsedInstance : public Instance {
 public:
  ParsedInstance();
  ~ParsedInstance() override;

  // Runs the handler and drops its reply.
  void HandleMessage(const char* message) override;
  void HandleSyncMessage(const char* message) override;
  // Ignored: the protocol has no binary calls.
  void HandleBinaryMessage(const char* message, size_t size) override;
  void HandleSyncBinaryMessage(const char* message, size_t size) override;

 protected:
  // Registers `handler` for calls of `name`. It receives the call's arguments and an empty reply object,
  // which it fills with exactly one of the reports below. A second registration of a name replaces the first.
  void RegisterSyncHandler(const std::string& name,
                           const std::function<void(const picojson::value&, picojson::object&)>& handler);

  void ReportSuccess(picojson::object& out);
  void ReportSuccess(const picojson::value& result, picojson::object& out);
  void ReportError(const PlatformException& error, picojson::object& out);

 private:
  picojson::object Dispatch(const char* message);

  std::map<std::string, std::function<void(const picojson::value&, picojson::object&)>> handlers_;
};

// An extension: its API's name and script, and the factory of its instances. A library derives one class from
// it.
class Extension {
 public:
  // The library's three callbacks, called by the binding.
  using InitializeCallback = int32_t (*)(ExtensionHandle extension, InterfaceGetter get_interface);
  using InstanceCreatedCallback = void (*)(InstanceHandle instance);
  using ShutdownCallback = void (*)(ExtensionHandle extension);

  Extension();
  virtual ~Extension();
  Extension(const Extension&) = delete;
  Extension& operator=(const Extension&) = delete;

  // Creates a page's object; returns null on failure. The caller owns it until it is passed to
  // OnInstanceCreated.
  virtual Instance* CreateInstance() = 0;

  // Registers the library with the runtime and runs `initialize`, which creates the library's extension
  // object. Calls `instance_created` once for each new page and `shutdown` once at the end. Returns the
  // result of `initialize`, or -1 if the runtime lacks an interface.
  static int32_t XW_Initialize(ExtensionHandle extension, InterfaceGetter get_interface,
                               InitializeCallback initialize, InstanceCreatedCallback instance_created,
                               ShutdownCallback shutdown);

  // Binds the runtime's handle to the page's object and takes ownership of it.
  static void OnInstanceCreated(InstanceHandle handle, Instance* instance);

  // Set the dotted path of the API and the script that builds it. Call both in the constructor of the derived
  // class, while XW_Initialize runs. The texts must stay valid as long as the process uses the extension.
  void SetExtensionName(const char* name);
  void SetJavaScriptAPI(const char* source);
};

}  // namespace common

#endif  // NURVO_EXTENSION_H_
