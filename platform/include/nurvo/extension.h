// The runtime's extension binding (libnurvo_common): the classes that an extension library derives to
// describe itself, to get one object for each page, and to answer the page's calls.
//
// Used on one thread, the one that runs the page's main loop. No operation throws unless it says so.
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

// One page's end of an extension. The binding owns it from Extension::OnInstanceCreated on and destroys
// it when the page goes.
class Instance {
 public:
  Instance();
  virtual ~Instance();
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  // Called once, when the binding has taken the instance over. Does nothing here.
  virtual void OnAttached();
  // A text that the page posted without waiting for an answer.
  virtual void HandleMessage(const char* message);
  // A synchronous call of the page; the override answers it with SendSyncReply before it returns.
  virtual void HandleSyncMessage(const char* message);
  // The same two with bytes (`size` of them) in place of a text. Ignored here.
  virtual void HandleBinaryMessage(const char* message, size_t size);
  virtual void HandleSyncBinaryMessage(const char* message, size_t size);
  // Notes whether the page is suspended, and nothing else.
  virtual void SetSuspended(bool suspended);

  // Queues a text for the page's script (copied). Does not wait; dropped before the instance is
  // attached and after its page has gone.
  void PostMessage(const char* message);

 protected:
  // Answers the synchronous call that is being handled (the text is copied).
  void SendSyncReply(const char* reply);

 private:
  friend class Extension;

  bool suspended_ = false;
  InstanceHandle handle_ = 0;
};

// An instance whose calls are JSON: {"cmd": name, "args": value} in ("args" left out means null), and a reply
// object out. The reply is
// {"status": "success"}, {"status": "success", "result": value} or
// {"status": "error", "error": {"name": text, "message": text}}.
//
// A call that is no such object, is nested too deeply, holds a number that does not fit, or names no
// handler is answered with an error reply; whatever a handler throws becomes one, too.
class ParsedInstance : public Instance {
 public:
  ParsedInstance();
  ~ParsedInstance() override;

  // A call without an answer: runs the handler and drops its reply.
  void HandleMessage(const char* message) override;
  void HandleSyncMessage(const char* message) override;
  // Binary calls are not part of this protocol: ignored.
  void HandleBinaryMessage(const char* message, size_t size) override;
  void HandleSyncBinaryMessage(const char* message, size_t size) override;

 protected:
  // From now on a call that names `name` runs `handler` with the call's arguments and an empty reply
  // object, which the handler fills with exactly one of the reports below. A second registration of a
  // name replaces the first.
  void RegisterSyncHandler(const std::string& name,
                           const std::function<void(const picojson::value&, picojson::object&)>& handler);

  void ReportSuccess(picojson::object& out);
  void ReportSuccess(const picojson::value& result, picojson::object& out);
  void ReportError(const PlatformException& error, picojson::object& out);

 private:
  picojson::object Dispatch(const char* message);

  std::map<std::string, std::function<void(const picojson::value&, picojson::object&)>> handlers_;
};

// The extension as a whole: its API's name and script, and the factory of its instances. A library
// derives it once.
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

  // Makes a page's object; null when none can be made. The caller owns it until it is handed to
  // OnInstanceCreated.
  virtual Instance* CreateInstance() = 0;

  // Registers the library with the runtime and runs `initialize`, in which the library makes its
  // extension object; `instance_created` is called once for each new page and `shutdown` once at the
  // end. Returns what `initialize` returned, or -1 when the runtime lacks an interface.
  static int32_t XW_Initialize(ExtensionHandle extension, InterfaceGetter get_interface,
                               InitializeCallback initialize, InstanceCreatedCallback instance_created,
                               ShutdownCallback shutdown);

  // Binds the runtime's handle to the page's object and takes ownership of it.
  static void OnInstanceCreated(InstanceHandle handle, Instance* instance);

  // The dotted path of the API and the script that builds it. Both are meant for the constructor of the
  // derived class, while XW_Initialize runs; the texts outlive the process's use of the extension.
  void SetExtensionName(const char* name);
  void SetJavaScriptAPI(const char* source);
};

}  // namespace common

#endif  // NURVO_EXTENSION_H_
