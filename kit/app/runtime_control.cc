// Calls the control interface over the platform's bus connection.
#include "app/runtime_control.h"

#include <csignal>
#include <string_view>
#include <utility>

#include "app/json_text.h"
#include "app/page_script.h"
#include "corvis_tv/control.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/sd_bus_ptr.h"
#include "page_address_script.h"
#include "page_items_script.h"
#include "page_rest_script.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

using nurvo::MessagePtr;
using nurvo::SlotPtr;

// Reads a reply that is a string or a byte array; empty for any other reply.
std::string ReadValue(sd_bus_message* reply) {
  const char* text = nullptr;
  const void* bytes = nullptr;
  size_t size = 0;
  if (sd_bus_message_has_signature(reply, "s") > 0 && sd_bus_message_read(reply, "s", &text) >= 0)
    return text;
  if (sd_bus_message_has_signature(reply, "ay") > 0 &&
      sd_bus_message_read_array(reply, 'y', &bytes, &size) >= 0) {
    return {static_cast<const char*>(bytes), size};
  }
  return "";
}

bool IsAbsence(const sd_bus_error* error) {
  return sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
         sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0;
}

int AppendTexts(sd_bus_message* call, const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    if (const int result = sd_bus_message_append(call, "s", text.c_str()); result < 0) return result;
  }
  return 0;
}

int AppendArguments(sd_bus_message* call, std::string_view signature, const std::vector<std::string>& texts) {
  if (signature != "as") return AppendTexts(call, texts);
  std::vector<char*> list;
  list.reserve(texts.size() + 1);
  for (const std::string& text : texts) list.push_back(const_cast<char*>(text.c_str()));
  list.push_back(nullptr);
  return sd_bus_message_append_strv(call, list.data());
}

Error ErrorOf(const sd_bus_error* error) {
  if (IsAbsence(error))
    return {"The application's runtime is not on the bus; has it exited?", ErrorKind::kNoEnvironment};
  return {error->message};
}

}  // namespace

// A pending call; destroying it cancels the call.
class RuntimeControl::Call {
 public:
  Status Begin(const std::string& name, const tv::ControlMethod& method,
               const std::vector<std::string>& arguments) {
    const auto no_bus = Fail("The run's bus can't be reached.", ErrorKind::kNoEnvironment);
    sd_bus* bus = nurvo_bus();
    sd_bus_message* message = nullptr;
    if (bus == nullptr || sd_bus_message_new_method_call(bus, &message, name.c_str(), tv::kControlPath,
                                                         tv::kControlInterface, method.name) < 0) {
      return no_bus;
    }
    const MessagePtr owner(message);
    if (AppendArguments(message, method.arguments, arguments) < 0)
      return Fail(std::string("The bus rejects the arguments of ") + method.name + "; are they valid UTF-8?");
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_async(bus, &slot, message, OnReply, this, UINT64_MAX) < 0) return no_bus;
    slot_.reset(slot);
    return {};
  }

  // Waits for the reply. Returns false after `time`.
  bool IsAnsweredWithin(std::chrono::milliseconds time) const {
    return WaitUntil([this] { return reply_ != nullptr; }, time);
  }

  // The reply or the error that it carries. Only valid once answered; the message stays owned by the call.
  Result<sd_bus_message*> Reply() const {
    const sd_bus_error* error = sd_bus_message_get_error(reply_.get());
    if (error != nullptr) return Fail(ErrorOf(error));
    return reply_.get();
  }

 private:
  static int OnReply(sd_bus_message* reply, void* call, sd_bus_error* /*error*/) {
    static_cast<Call*>(call)->reply_.reset(sd_bus_message_ref(reply));
    return 1;
  }

  SlotPtr slot_;
  MessagePtr reply_;
};

// A subscription to a signal; destroying it unsubscribes.
class RuntimeControl::Watch {
 public:
  explicit Watch(std::function<void(sd_bus_message* signal)> sink) : sink_(std::move(sink)) {}

  void Begin(const std::string& sender, const char* signal) {
    sd_bus_slot* slot = nullptr;
    if (nurvo_bus() != nullptr &&
        sd_bus_match_signal_async(nurvo_bus(), &slot, sender.c_str(), tv::kControlPath, tv::kControlInterface,
                                  signal, OnSignal, nullptr, this) >= 0) {
      match_.reset(slot);
    }
  }

 private:
  static int OnSignal(sd_bus_message* signal, void* data, sd_bus_error* /*error*/) {
    static_cast<Watch*>(data)->sink_(signal);
    return 0;
  }

  std::function<void(sd_bus_message* signal)> sink_;
  SlotPtr match_;
};

RuntimeControl::RuntimeControl(std::string app_id, std::chrono::milliseconds timeout)
    : app_id_(std::move(app_id)), timeout_(timeout) {}
RuntimeControl::~RuntimeControl() = default;

std::unique_ptr<RuntimeControl::Watch> RuntimeControl::NewWatch(
    const tv::ControlSignal& signal, std::function<void(sd_bus_message* signal)> sink) const {
  auto watch = std::make_unique<Watch>(std::move(sink));
  watch->Begin(app_id_ + tv::kControlNameSuffix, signal.name);
  return watch;
}

void RuntimeControl::WatchConsole(ConsoleSink sink) {
  console_ = NewWatch(tv::kConsoleSignal, [sink = std::move(sink)](sd_bus_message* signal) {
    const char* level = nullptr;
    const char* text = nullptr;
    const char* source = nullptr;
    if (sd_bus_message_read(signal, tv::kConsoleSignal.arguments, &level, &text, &source) >= 0)
      sink(level, text, source);
  });
}

void RuntimeControl::WatchCrashes(std::function<void()> sink) {
  crashes_ = NewWatch(tv::kCrashedSignal, [sink = std::move(sink)](sd_bus_message* /*signal*/) { sink(); });
}

void RuntimeControl::WatchInspector(std::function<void(bool is_attached)> sink) {
  inspector_ = NewWatch(tv::kInspectedSignal, [sink = std::move(sink)](sd_bus_message* signal) {
    int is_attached = 0;
    if (sd_bus_message_read(signal, tv::kInspectedSignal.arguments, &is_attached) >= 0)
      sink(is_attached != 0);
  });
}

void RuntimeControl::WatchClosing(std::function<void()> sink) {
  closing_ = NewWatch(tv::kClosedSignal, [sink = std::move(sink)](sd_bus_message* /*signal*/) { sink(); });
}

void RuntimeControl::WatchLoads(std::function<void()> sink) {
  loads_ = NewWatch(tv::kLoadedSignal, [sink = std::move(sink)](sd_bus_message* /*signal*/) { sink(); });
}

Result<std::string> RuntimeControl::Ask(const tv::ControlMethod& method,
                                        const std::vector<std::string>& arguments) const {
  Call call;
  if (const Status begun = call.Begin(app_id_ + tv::kControlNameSuffix, method, arguments); !begun)
    return Fail(begun.error());
  if (call.IsAnsweredWithin(timeout_)) {
    const auto reply = call.Reply();
    return reply ? Result<std::string>(ReadValue(*reply)) : Fail(reply.error());
  }
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  return Fail("The page did not respond within " + std::to_string(timeout_.count()) + " ms.");
}

Status RuntimeControl::Tell(const tv::ControlMethod& method,
                            const std::vector<std::string>& arguments) const {
  const auto answer = Ask(method, arguments);
  return answer ? Status() : Status(Fail(answer.error()));
}

Result<bool> RuntimeControl::EndHangingPage(std::chrono::milliseconds limit) {
  const std::string name = app_id_ + tv::kControlNameSuffix;
  Call sync;
  if (const Status begun = sync.Begin(name, tv::kSyncMethod, {}); !begun) return Fail(begun.error());
  if (sync.IsAnsweredWithin(limit) || IsInterrupted()) return false;
  Call status;
  if (const Status begun = status.Begin(name, tv::kGetStatusMethod, {}); !begun) return Fail(begun.error());
  if (!status.IsAnsweredWithin(timeout_)) return Fail("The web runtime (corvis-tv) does not respond.");
  const auto reply = status.Reply();
  if (!reply) return Fail(reply.error());
  const char* url = nullptr;
  int is_loading = 0;
  uint32_t process = 0;
  uint32_t crashes = 0;
  sd_bus_message_read(*reply, tv::kGetStatusMethod.reply, &url, &is_loading, &process, &crashes);
  return process != 0 && kill(static_cast<pid_t>(process), SIGKILL) == 0;
}

Status RuntimeControl::Load(const std::string& url) {
  return Tell(tv::kLoadMethod, {url});
}
Status RuntimeControl::Reload() {
  return Tell(tv::kReloadMethod);
}
Result<std::string> RuntimeControl::Evaluate(const std::string& expression) {
  return Ask(tv::kEvaluateMethod, {expression});
}

Result<std::string> RuntimeControl::CallPage(const std::string& function,
                                             const std::vector<std::string>& arguments) {
  return Evaluate(CallInPage(kPageAddress, function, arguments));
}
Result<std::string> RuntimeControl::Address() {
  const auto address = CallPage("address");
  return address ? PlainValue(*address) : address;
}
Status RuntimeControl::SetAddress(const std::string& url) {
  const auto done = CallPage("setAddress", {url});
  return done ? Status() : Status(Fail(done.error()));
}
Result<std::optional<std::string>> RuntimeControl::GoToPlace(const std::string& url) {
  const auto rest = CallPage("goToPlace", {url});
  if (!rest) return Fail(rest.error());
  if (*rest == "null") return std::optional<std::string>();
  return std::optional(PlainValue(*rest));
}
Result<bool> RuntimeControl::IsLoaded() {
  const auto state = CallPage("loadingState");
  if (!state) return Fail(state.error());
  return PlainValue(*state) == "complete";
}

Result<std::string> RuntimeControl::Items() {
  return Evaluate(CallAboutItems(kPageItems, "pageItems"));
}
Result<std::string> RuntimeControl::Activity() {
  return Evaluate(CallInPage(kPageRest, "activity", std::vector<std::string>()));
}

Result<std::string> RuntimeControl::Screenshot() {
  return Ask(tv::kScreenshotMethod);
}
Status RuntimeControl::PressKey(const std::string& name) {
  return Tell(tv::kPressKeyMethod, {name});
}
Status RuntimeControl::TypeText(const std::string& text) {
  return Tell(tv::kTypeTextMethod, {text});
}
Status RuntimeControl::Sync() {
  return Tell(tv::kSyncMethod);
}
Status RuntimeControl::SetPrivileges(const std::vector<std::string>& uris) {
  return Tell(tv::kSetPrivilegesMethod, uris);
}
Status RuntimeControl::ClearStorage() {
  return Tell(tv::kClearStorageMethod);
}
Status RuntimeControl::Quit() {
  return Tell(tv::kQuitMethod);
}

}  // namespace corvis::kit
