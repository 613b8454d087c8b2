// Evaluates the runtime's scripts in a page, and passes calls and messages between page and extensions.
#include "web-process/page_bridge.h"

#include <memory>
#include <utility>

#include "console_script.h"
#include "runtime_script.h"
#include "web-process/extension_host.h"

namespace corvis::tv {

namespace {

using JscValue = nurvo::GObjectPtr<JSCValue>;

// Replaces invalid UTF-8, which the script engine does not accept.
JscValue NewString(JSCContext* context, const std::string& text) {
  const nurvo::GText valid(g_utf8_make_valid(text.c_str(), static_cast<gssize>(text.size())));
  return JscValue(jsc_value_new_string(context, valid.get()));
}

// The state of the native functions in the script. The script's function object owns it, so that it outlives
// the page and calls from a closed page have no effect.
struct SyncChannel {
  InstanceHandle instance;
};

char* SendSync(const char* message, gpointer data) {
  const std::string reply = CallInstance(static_cast<SyncChannel*>(data)->instance, message);
  if (reply.empty())
    return g_strdup(
        R"({"status":"error","error":{"name":"InvalidStateError","message":"There was no answer"}})");
  return g_utf8_make_valid(reply.c_str(), static_cast<gssize>(reply.size()));
}

void Print(const char* level, const char* text, const char* source, gpointer data) {
  (*static_cast<ConsoleSink*>(data))(level, text, source);
}

JscValue NewPrintFunction(JSCContext* context, const ConsoleSink& console) {
  return JscValue(jsc_value_new_function(
      context, "print", G_CALLBACK(Print), new ConsoleSink(console),
      [](gpointer data) { delete static_cast<ConsoleSink*>(data); }, G_TYPE_NONE, 3, G_TYPE_STRING,
      G_TYPE_STRING, G_TYPE_STRING));
}

JscValue NewCloseFunction(JSCContext* context, CloseSink close) {
  return JscValue(jsc_value_new_function(
      context, "close", G_CALLBACK(+[](gpointer sink) { (*static_cast<CloseSink*>(sink))(); }),
      new CloseSink(std::move(close)), [](gpointer sink) { delete static_cast<CloseSink*>(sink); },
      G_TYPE_NONE, 0));
}

char* ReadPlace(const char* place, gpointer reader) {
  return g_strdup((*static_cast<PlaceReader*>(reader))(place).c_str());
}

JscValue NewPlaceFunction(JSCContext* context, PlaceReader reader) {
  return JscValue(jsc_value_new_function(
      context, "place", G_CALLBACK(ReadPlace), new PlaceReader(std::move(reader)),
      [](gpointer data) { delete static_cast<PlaceReader*>(data); }, G_TYPE_STRING, 1, G_TYPE_STRING));
}

JscValue NewSyncFunction(JSCContext* context, InstanceHandle instance) {
  return JscValue(jsc_value_new_function(
      context, "sendSync", G_CALLBACK(SendSync), new SyncChannel{instance},
      [](gpointer data) { delete static_cast<SyncChannel*>(data); }, G_TYPE_STRING, 1, G_TYPE_STRING));
}

JscValue Evaluate(JSCContext* context, const std::string& text, const char* source_name) {
  return JscValue(jsc_context_evaluate_with_source_uri(context, text.data(), static_cast<gssize>(text.size()),
                                                       source_name, 1));
}

}  // namespace

PageBridge::PageBridge(JSCContext* context, ConsoleSink console, PlaceReader read_place, CloseSink close)
    : context_(nurvo::NewReference(context)), console_(std::move(console)) {
  const JscValue native(jsc_value_new_object(context, nullptr, nullptr));
  jsc_value_object_set_property(native.get(), "print", NewPrintFunction(context, console_).get());
  jsc_value_object_set_property(native.get(), "place",
                                NewPlaceFunction(context, std::move(read_place)).get());
  if (close) {
    jsc_value_object_set_property(native.get(), "close", NewCloseFunction(context, std::move(close)).get());
  }
  const JscValue reports = Start(kConsoleScript, "console.js", native.get(), nullptr);
  if (!reports) return;
  const JscValue watched(jsc_value_object_invoke_method(reports.get(), "watch", G_TYPE_NONE));
  if (TakeException("watching the console")) return;
  page_side_ = Start(kPageScript, "runtime.js", reports.get(), native.get());
}

nurvo::GObjectPtr<JSCValue> PageBridge::Start(const char* script, const char* name, JSCValue* first,
                                              JSCValue* second) {
  const JscValue start = Evaluate(context_.get(), script, name);
  if (TakeException(std::string("reading ") + name)) return {};
  JSCValue* arguments[] = {first, second};
  JscValue result(jsc_value_function_callv(start.get(), second == nullptr ? 1 : 2, arguments));
  if (TakeException(std::string("starting ") + name)) return {};
  return result;
}

PageBridge::~PageBridge() {
  for (auto instance = instances_.rbegin(); instance != instances_.rend(); ++instance)
    DestroyInstance(*instance);
}

void PageBridge::AttachExtensions() {
  if (!page_side_) return;
  for (const LoadedExtension& extension : LoadedExtensions()) {
    AttachExtension(extension.handle, extension.name, extension.script);
  }
}

void PageBridge::AttachExtension(ExtensionHandle extension, const std::string& name,
                                 const std::string& script) {
  // Set later, because the function that receives messages exists only after the script has run, and the
  // script may already make calls.
  const auto deliver = std::make_shared<JscValue>();
  const InstanceHandle instance = CreateInstance(extension, [this, deliver](const std::string& message) {
    if (!*deliver) return;
    const JscValue text = NewString(context_.get(), message);
    const JscValue result(jsc_value_function_call(deliver->get(), JSC_TYPE_VALUE, text.get(), G_TYPE_NONE));
    TakeException("delivering a message");
  });
  instances_.push_back(instance);

  const std::string wrapped =
      "(function(xwalk,extension,console,String){var exports={};" + script + "\n;return exports;})";
  const JscValue build = Evaluate(context_.get(), wrapped, name.c_str());
  if (TakeException("reading the script API " + name)) return;
  const JscValue path = NewString(context_.get(), name);
  const JscValue send_sync = NewSyncFunction(context_.get(), instance);
  deliver->reset(jsc_value_object_invoke_method(page_side_.get(), "attach", JSC_TYPE_VALUE, path.get(),
                                                JSC_TYPE_VALUE, build.get(), JSC_TYPE_VALUE, send_sync.get(),
                                                G_TYPE_NONE));
  if (TakeException("starting the script API " + name)) deliver->reset();
}

bool PageBridge::TakeException(const std::string& doing) {
  JSCException* exception = jsc_context_get_exception(context_.get());
  if (exception == nullptr) return false;
  const nurvo::GText report(jsc_exception_report(exception));
  console_("uncaught", "Error while " + doing + ": " + report.get(), "page");
  jsc_context_clear_exception(context_.get());
  return true;
}

bool IsOfOrigin(JSCContext* context, const std::string& origin) {
  // Checks both, because address and origin may differ: an empty page has the origin of its opener, and a
  // sandboxed page has none.
  const JscValue value =
      Evaluate(context, "location.protocol + '//' + location.host + ' ' + self.origin", "runtime.js");
  const nurvo::GText text(jsc_value_to_string(value.get()));
  return text && origin + " " + origin == text.get();
}

}  // namespace corvis::tv
