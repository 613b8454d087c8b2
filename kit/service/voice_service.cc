// Implements the service on its message port: registrations, commands and answers.
#include "service/voice_service.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "nurvo/message_port.h"
#include "nurvo_desktop/bus.h"
#include "nurvo_desktop/event_publish.h"
#include "service/bundles.h"
#include "service/main_loop.h"
#include "service/wire.h"

namespace corvis::kit {

namespace {

// Notices quote at most this much of an answer.
constexpr size_t kNoticeBytes = 100;

Status SendStatus(int result, const std::string& app_id) {
  switch (result) {
    case 0:
      return {};
    case MESSAGE_PORT_ERROR_MAX_EXCEEDED:
      return Fail("The command is larger than a message port accepts; send less data.");
    case MESSAGE_PORT_ERROR_PORT_NOT_FOUND:
      return Fail("The application " + app_id + " is not running, or its page has not called listen().");
    default:
      return Fail("The bus refused the command (" + std::to_string(result) + "); is the run still alive?");
  }
}

long Milliseconds(Clock::duration time) {
  return static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

VoiceService::~VoiceService() {
  ClosePort();
  for (const auto& [app_id, watch] : watches_) app_watch_remove(watch);
}

Status VoiceService::Start() {
  setenv("NURVO_APP_ID", wire::kServiceId, 1);
  if (const Status opened = OpenPort(); !opened) return opened;
  if (event_publish_app_event(wire::kInitEvent, nullptr) == 0) return {};
  return Fail("The start-up event can't be published; is the bus still running?", ErrorKind::kNoEnvironment);
}

Status VoiceService::OpenPort() {
  port_id_ = message_port_register_local_port(wire::kPort, OnMessage, this);
  if (port_id_ > 0) return {};
  const bool is_taken = port_id_ == NURVO_DESKTOP_ERROR_APP_ID_TAKEN;
  return Fail(
      is_taken ? "Another voice service is already running on this bus; end it first."
               : "The bus can't be reached; run it through the command corvis, or within dbus-run-session.",
      ErrorKind::kNoEnvironment);
}

void VoiceService::ClosePort() {
  if (port_id_ > 0) message_port_unregister_local_port(std::exchange(port_id_, 0));
}

Status VoiceService::Restart() {
  ClosePort();
  for (const std::string& app_id : std::exchange(apps_, {})) book_.Clear(app_id);
  awaited_.clear();
  answer_bytes_ = 0;
  return Start();
}

bool VoiceService::HasApp(const std::string& app_id) const {
  return std::find(apps_.begin(), apps_.end(), app_id) != apps_.end();
}

int VoiceService::registrations(const std::string& app_id) const {
  const auto count = registrations_.find(app_id);
  return count == registrations_.end() ? 0 : count->second;
}

void VoiceService::OnMessage(int /*port_id*/, const char* remote_app_id, const char* /*remote_port*/,
                             bool /*is_trusted*/, bundle* message, void* service) {
  auto& self = *static_cast<VoiceService*>(service);
  const std::string word = TextOf(message, wire::kCommandKey);
  // The sender's platform supplies the application id; on this private bus every sender is trusted.
  const std::string app_id = remote_app_id == nullptr ? "" : remote_app_id;
  if (word == wire::kRegister) {
    self.Register(app_id);
  } else if (word == wire::kUnregister) {
    self.Unregister(app_id);
  } else if (word == wire::kResult || word == wire::kAppContext || word == wire::kPartialResult) {
    self.TakeAnswer(app_id, word, message);
  } else {
    self.Report("Ignored a message from " + app_id + " with the unknown word \"" + word + "\".");
  }
}

void VoiceService::Report(const std::string& sentence) {
  ++notices_;
  if (notices_ <= kMostNotices) notice_(sentence);
  if (notices_ == kMostNotices) notice_("Further notices are suppressed until the next command.");
}

void VoiceService::Register(const std::string& app_id) {
  if (registrations_.size() >= kMostApps && registrations_.count(app_id) == 0)
    return Report("The application " + app_id + " is ignored: too many applications are registered.");
  Unregister(app_id);
  apps_.push_back(app_id);
  ++registrations_[app_id];
  Watch(app_id);
}

void VoiceService::Unregister(const std::string& app_id) {
  apps_.erase(std::remove(apps_.begin(), apps_.end(), app_id), apps_.end());
  book_.Clear(app_id);
}

void VoiceService::Watch(const std::string& app_id) {
  if (watches_.count(app_id) == 1) return;
  app_watch_h watch = nullptr;
  if (app_watch_add(app_id.c_str(), OnAppChange, this, &watch) == 0) {
    watches_[app_id] = watch;
  } else {
    Report("The bus can't be watched for the departure of the application " + app_id + ".");
  }
}

void VoiceService::OnAppChange(const char* app_id, bool is_running, void* service) {
  auto& self = *static_cast<VoiceService*>(service);
  if (is_running || !self.HasApp(app_id)) return;
  self.Unregister(app_id);
  self.Report("The application " + std::string(app_id) + " has gone.");
}

void VoiceService::TakeAnswer(const std::string& app_id, const std::string& word, bundle* message) {
  constexpr int kDecimal = 10;
  const size_t total = std::strtoul(TextOf(message, wire::kTotalKey).c_str(), nullptr, kDecimal);
  for (Answer& answer : book_.Receive(app_id, word, TextOf(message, wire::kDataKey), total, Clock::now())) {
    HandOver(app_id, std::move(answer));
  }
}

void VoiceService::HandOver(const std::string& app_id, Answer answer) {
  if (ignored_.erase(answer.command_id) == 1) return;
  const std::string text = answer.is_broken() ? answer.problem : answer.data.substr(0, kNoticeBytes);
  if (answer.command_id == 0) {
    Report("Ignored an unexpected answer from " + app_id + ": " + text);
  } else if (awaited_.count(answer.command_id) == 0) {
    Report("The answer to " + answer.action + " arrived late, after " +
           std::to_string(Milliseconds(answer.took)) + " ms: " + text);
  } else {
    Keep(std::move(answer));
  }
}

void VoiceService::Keep(Answer answer) {
  answer_bytes_ += answer.data.size();
  const uint64_t id = answer.command_id;
  awaited_[id] = std::move(answer);
  while (answer_bytes_ > kMostAnswerBytes && awaited_.begin()->first != id) Release(awaited_.begin()->first);
}

std::optional<Answer> VoiceService::Release(uint64_t command_id) {
  std::optional<Answer> answer = std::exchange(awaited_[command_id], {});
  awaited_.erase(command_id);
  if (answer) answer_bytes_ -= answer->data.size();
  return answer;
}

Result<uint64_t> VoiceService::Send(const std::string& app_id, const Command& command) {
  const std::string data = command.is_bundle ? EncodeEntries(command.entries) : command.text;
  return Inject(app_id, {{wire::kCommandKey, command.action}, {wire::kDataKey, data}});
}

Result<uint64_t> VoiceService::Inject(const std::string& app_id, const Entries& entries) {
  const auto value_of = [&entries](const char* key) {
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [key](const auto& pair) { return pair.first == key; });
    return entry == entries.end() ? nullptr : &entry->second;
  };
  notices_ = 0;
  const std::string* action = value_of(wire::kCommandKey);
  const bool is_command = action != nullptr && value_of(wire::kDataKey) != nullptr;
  const uint64_t id = is_command ? book_.Note(app_id, *action, Clock::now()) : 0;
  const Status sent = SendEntries(app_id, entries);
  if (!sent && is_command) book_.Forget(app_id, id);
  if (!sent) return Fail(sent.error());
  if (is_command) awaited_[id];
  if (awaited_.size() > kMostAwaited) Release(awaited_.begin()->first);
  return id;
}

void VoiceService::Ignore(uint64_t command_id) {
  // If the answer has already arrived, releasing it is enough.
  if (!Release(command_id)) ignored_.insert(command_id);
  if (ignored_.size() > kMostAwaited) ignored_.erase(ignored_.begin());
}

Status VoiceService::SendEntries(const std::string& app_id, const Entries& entries) {
  const nurvo::BundlePtr message = MakeBundle(entries);
  if (!message) return Fail("The message can't be built: keys must be unique and not empty.");
  return SendStatus(message_port_send_message(app_id.c_str(), wire::kPort, message.get()), app_id);
}

Result<Answer> VoiceService::Await(const std::string& app_id, uint64_t command_id,
                                   std::chrono::milliseconds timeout) {
  const int registered_before = registrations(app_id);
  const bool was_registered = HasApp(app_id);
  const auto is_gone = [&] {
    return (was_registered && !HasApp(app_id)) || registrations(app_id) != registered_before;
  };
  const auto has_come = [&] {
    const auto found = awaited_.find(command_id);
    return found != awaited_.end() && found->second.has_value();
  };
  WaitUntil([&] { return has_come() || is_gone(); }, timeout);
  std::optional<Answer> answer = Release(command_id);
  if (answer && answer->is_broken()) return Fail(answer->problem);
  if (answer) return std::move(*answer);
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  if (is_gone()) return Fail("The page went away before it answered.");
  return Fail("There was no answer within " + std::to_string(timeout.count()) +
              " ms; is a callback of the page still running?");
}

Result<Answer> VoiceService::Say(const std::string& app_id, const Command& command,
                                 std::chrono::milliseconds timeout) {
  const Result<uint64_t> id = Send(app_id, command);
  if (!id) return Fail(id.error());
  return Await(app_id, *id, timeout);
}

}  // namespace corvis::kit
