// Calls of the control interface over the platform's bus connection.
#include "app/runtime_control.h"

#include <utility>

#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/sd_bus_ptr.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

constexpr const char* kPath = "/corvis/tv";
constexpr const char* kInterface = "corvis.tv.Control";

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

}  // namespace

// A call that is under way.
struct RuntimeControl::Pending {
  bool is_done = false;
  ControlResult result;

  static int OnReply(sd_bus_message* reply, void* data, sd_bus_error* /*error*/) {
    auto& self = *static_cast<Pending*>(data);
    const sd_bus_error* error = sd_bus_message_get_error(reply);
    self.is_done = true;
    self.result.is_ok = error == nullptr;
    if (error == nullptr) {
      self.result.value = ReadValue(reply);
    } else if (sd_bus_error_has_name(error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
               sd_bus_error_has_name(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0) {
      self.result.error = "The application's runtime is not on the bus; start it with corvis run.";
    } else {
      self.result.error = error->message;
    }
    return 1;
  }
};

struct RuntimeControl::Console {
  ConsoleSink sink;
  nurvo::SlotPtr match;

  static int OnSignal(sd_bus_message* signal, void* data, sd_bus_error* /*error*/) {
    const char* level = nullptr;
    const char* text = nullptr;
    const char* source = nullptr;
    if (sd_bus_message_read(signal, "sss", &level, &text, &source) >= 0) {
      static_cast<Console*>(data)->sink(level, text, source);
    }
    return 0;
  }
};

struct RuntimeControl::Crashes {
  std::function<void()> sink;
  nurvo::SlotPtr match;

  static int OnSignal(sd_bus_message* /*signal*/, void* data, sd_bus_error* /*error*/) {
    static_cast<Crashes*>(data)->sink();
    return 0;
  }
};

RuntimeControl::RuntimeControl(std::string app_id, std::chrono::milliseconds timeout)
    : app_id_(std::move(app_id)), timeout_(timeout) {}
RuntimeControl::~RuntimeControl() = default;

void RuntimeControl::WatchConsole(ConsoleSink sink) {
  console_ = std::make_unique<Console>();
  console_->sink = std::move(sink);
  sd_bus_slot* slot = nullptr;
  const std::string sender = app_id_ + ".runtime";
  if (nurvo_bus() != nullptr &&
      sd_bus_match_signal_async(nurvo_bus(), &slot, sender.c_str(), kPath, kInterface, "Console",
                                Console::OnSignal, nullptr, console_.get()) >= 0) {
    console_->match.reset(slot);
  }
}

void RuntimeControl::WatchCrashes(std::function<void()> sink) {
  crashes_ = std::make_unique<Crashes>();
  crashes_->sink = std::move(sink);
  sd_bus_slot* slot = nullptr;
  const std::string sender = app_id_ + ".runtime";
  if (nurvo_bus() != nullptr &&
      sd_bus_match_signal_async(nurvo_bus(), &slot, sender.c_str(), kPath, kInterface, "Crashed",
                                Crashes::OnSignal, nullptr, crashes_.get()) >= 0) {
    crashes_->match.reset(slot);
  }
}

ControlResult RuntimeControl::Call(const std::string& method, const std::vector<std::string>& arguments,
                                   const char* signature) {
  ControlResult failure{false, "", "There is no bus; run it through the command corvis."};
  sd_bus* bus = nurvo_bus();
  if (bus == nullptr) return failure;
  sd_bus_message* message = nullptr;
  const std::string name = app_id_ + ".runtime";
  if (sd_bus_message_new_method_call(bus, &message, name.c_str(), kPath, kInterface, method.c_str()) < 0)
    return failure;
  const nurvo::MessagePtr call(message);
  if (signature == std::string("as")) {
    std::vector<char*> texts;
    texts.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments) texts.push_back(const_cast<char*>(argument.c_str()));
    texts.push_back(nullptr);
    sd_bus_message_append_strv(message, texts.data());
  } else {
    for (const std::string& argument : arguments) sd_bus_message_append(message, "s", argument.c_str());
  }
  Pending pending;
  sd_bus_slot* slot = nullptr;
  const auto microseconds = static_cast<uint64_t>(std::chrono::microseconds(timeout_).count());
  if (sd_bus_call_async(bus, &slot, message, Pending::OnReply, &pending, microseconds) < 0) return failure;
  // Ends the call, should it still be under way, before `pending` goes.
  const nurvo::SlotPtr owner(slot);
  sd_bus_flush(bus);
  WaitUntil([&pending] { return pending.is_done; }, timeout_);
  if (pending.is_done) return pending.result;
  failure.error =
      "The runtime did not answer " + method + " within " + std::to_string(timeout_.count()) + " ms.";
  return failure;
}

ControlResult RuntimeControl::Load(const std::string& url) {
  return Call("Load", {url}, "s");
}
ControlResult RuntimeControl::Reload() {
  return Call("Reload", {}, "");
}
ControlResult RuntimeControl::Evaluate(const std::string& expression) {
  return Call("Evaluate", {expression}, "s");
}
ControlResult RuntimeControl::Screenshot() {
  return Call("Screenshot", {}, "");
}
ControlResult RuntimeControl::SetPrivileges(const std::vector<std::string>& uris) {
  return Call("SetPrivileges", uris, "as");
}
ControlResult RuntimeControl::Quit() {
  return Call("Quit", {}, "");
}

}  // namespace corvis::kit
