// Calls of the control interface over the platform's bus connection.
#include "app/runtime_control.h"

#include <string_view>
#include <utility>

#include "corvis_tv/control.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/sd_bus_ptr.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

using nurvo::MessagePtr;
using nurvo::SlotPtr;

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
  for (const std::string& text : texts) list.push_back(const_cast<char*>(text.c_str()));
  list.push_back(nullptr);
  return sd_bus_message_append_strv(call, list.data());
}

Status WithoutValue(const Result<std::string>& result) {
  return result ? Status() : Status(Fail(result.error()));
}

}  // namespace

// A call that is under way.
struct RuntimeControl::Pending {
  bool is_done = false;
  Result<std::string> result;

  static int OnReply(sd_bus_message* reply, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<Pending*>(data);
    const sd_bus_error* error = sd_bus_message_get_error(reply);
    self.is_done = true;
    if (error == nullptr) {
      self.result = ReadValue(reply);
    } else if (IsAbsence(error)) {
      self.result = Fail("The application's runtime is not on the bus; start it with corvis run.",
                         ErrorKind::kNoEnvironment);
    } else {
      self.result = Fail(error->message);
    }
    return 1;
  }
};

// A signal that somebody listens to.
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

Result<std::string> RuntimeControl::Call(const tv::ControlMethod& method, const Arguments& arguments) const {
  const auto no_bus = Fail("The run's bus can't be reached.", ErrorKind::kNoEnvironment);
  sd_bus* bus = nurvo_bus();
  if (bus == nullptr) return no_bus;
  sd_bus_message* message = nullptr;
  const std::string name = app_id_ + tv::kControlNameSuffix;
  if (sd_bus_message_new_method_call(bus, &message, name.c_str(), tv::kControlPath, tv::kControlInterface,
                                     method.name) < 0) {
    return no_bus;
  }
  const MessagePtr call(message);
  if (AppendArguments(message, method.arguments, arguments) < 0)
    return Fail(std::string("The arguments of ") + method.name +
                " are no texts for the bus; they must be UTF-8.");
  Pending pending;
  sd_bus_slot* slot = nullptr;
  if (sd_bus_call_async(bus, &slot, message, Pending::OnReply, &pending, UINT64_MAX) < 0) return no_bus;
  // Ends the call, should it still be under way, before `pending` goes.
  const SlotPtr owner(slot);
  WaitUntil([&pending] { return pending.is_done; }, timeout_);
  if (pending.is_done) return pending.result;
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  return Fail("The page did not respond within " + std::to_string(timeout_.count()) + " ms.");
}

Status RuntimeControl::Load(const std::string& url) {
  return WithoutValue(Call(tv::kLoadMethod, {url}));
}
Status RuntimeControl::Reload() {
  return WithoutValue(Call(tv::kReloadMethod, {}));
}
Result<std::string> RuntimeControl::Evaluate(const std::string& expression) {
  return Call(tv::kEvaluateMethod, {expression});
}
Result<std::string> RuntimeControl::Screenshot() {
  return Call(tv::kScreenshotMethod, {});
}
Status RuntimeControl::Sync() {
  return WithoutValue(Call(tv::kSyncMethod, {}));
}
Status RuntimeControl::SetPrivileges(const std::vector<std::string>& uris) {
  return WithoutValue(Call(tv::kSetPrivilegesMethod, uris));
}
Status RuntimeControl::Quit() {
  return WithoutValue(Call(tv::kQuitMethod, {}));
}

}  // namespace corvis::kit
