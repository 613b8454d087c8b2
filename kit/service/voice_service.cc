// The service's port, and the conversation over it.
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

// How much of an answer a notice repeats.
constexpr size_t kNoticeBytes = 100;

std::string SendProblem(int result, const std::string& app_id) {
  switch (result) {
    case 0:
      return "";
    case MESSAGE_PORT_ERROR_MAX_EXCEEDED:
      return "The command is larger than a port takes; send less data.";
    case MESSAGE_PORT_ERROR_PORT_NOT_FOUND:
      return "The application " + app_id + " is not running, or its page has not called listen().";
    default:
      return "The bus refused the command (" + std::to_string(result) + "); is the run still alive?";
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

std::string VoiceService::Start() {
  setenv("NURVO_APP_ID", wire::kServiceId, 1);
  std::string problem = OpenPort();
  if (!problem.empty()) return problem;
  return event_publish_app_event(wire::kInitEvent, nullptr) == 0
             ? ""
             : "The start-up event can't be published; is the bus still there?";
}

std::string VoiceService::OpenPort() {
  port_id_ = message_port_register_local_port(wire::kPort, OnMessage, this);
  if (port_id_ > 0) return "";
  if (port_id_ == NURVO_DESKTOP_ERROR_APP_ID_TAKEN) {
    return "Another voice service runs on this bus already; end it first.";
  }
  return "There is no bus; run it through the command corvis, or within dbus-run-session.";
}

void VoiceService::ClosePort() {
  if (port_id_ > 0) message_port_unregister_local_port(std::exchange(port_id_, 0));
}

std::string VoiceService::Restart() {
  ClosePort();
  for (const std::string& app_id : std::exchange(apps_, {})) book_.Clear(app_id);
  arrived_.clear();
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
  // Who speaks is what the port tells, not what the message's data claims.
  const std::string app_id = remote_app_id == nullptr ? "" : remote_app_id;
  if (word == wire::kRegister) {
    self.Register(app_id);
  } else if (word == wire::kUnregister) {
    self.Unregister(app_id);
  } else if (word == wire::kResult || word == wire::kAppContext || word == wire::kPartialResult) {
    self.TakeAnswer(app_id, word, message);
  } else {
    self.notice_("A message of " + app_id + " with the unknown word \"" + word + "\" is ignored.");
  }
}

void VoiceService::Register(const std::string& app_id) {
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
  if (app_watch_add(app_id.c_str(), OnAppChange, this, &watch) == 0) watches_[app_id] = watch;
}

void VoiceService::OnAppChange(const char* app_id, bool is_running, void* service) {
  auto& self = *static_cast<VoiceService*>(service);
  if (is_running || !self.HasApp(app_id)) return;
  self.Unregister(app_id);
  self.notice_("The application " + std::string(app_id) + " has gone.");
}

void VoiceService::TakeAnswer(const std::string& app_id, const std::string& word, bundle* message) {
  constexpr int kDecimal = 10;
  const size_t total = std::strtoul(TextOf(message, wire::kTotalKey).c_str(), nullptr, kDecimal);
  for (Answer& answer : book_.Receive(app_id, word, TextOf(message, wire::kDataKey), total, Clock::now())) {
    HandOver(app_id, std::move(answer));
  }
}

void VoiceService::HandOver(const std::string& app_id, Answer answer) {
  const std::string text = answer.is_broken ? answer.problem : answer.data.substr(0, kNoticeBytes);
  if (answer.command_id == 0) {
    notice_("An answer of " + app_id + " that nobody waits for is ignored: " + text);
  } else if (std::find(awaited_.begin(), awaited_.end(), answer.command_id) == awaited_.end()) {
    notice_("The answer to " + answer.action + " came late, after " +
            std::to_string(Milliseconds(answer.took)) + " ms: " + text);
  } else {
    arrived_[answer.command_id] = std::move(answer);
  }
}

uint64_t VoiceService::Send(const std::string& app_id, const Command& command, std::string& problem) {
  const std::string data = command.is_bundle ? EncodeEntries(command.entries) : command.text;
  return Inject(app_id, {{wire::kCommandKey, command.action}, {wire::kDataKey, data}}, problem);
}

uint64_t VoiceService::Inject(const std::string& app_id, const Entries& entries, std::string& problem) {
  const auto value_of = [&entries](const char* key) {
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [key](const auto& pair) { return pair.first == key; });
    return entry == entries.end() ? nullptr : &entry->second;
  };
  const std::string* action = value_of(wire::kCommandKey);
  if (action == nullptr || value_of(wire::kDataKey) == nullptr) {
    problem = SendEntries(app_id, entries);
    return 0;
  }
  const uint64_t id = book_.Note(app_id, *action, Clock::now());
  problem = SendEntries(app_id, entries);
  if (problem.empty()) {
    awaited_.push_back(id);
    return id;
  }
  book_.Forget(app_id, id);
  return 0;
}

std::string VoiceService::SendEntries(const std::string& app_id, const Entries& entries) {
  const BundlePtr message = MakeBundle(entries);
  if (!message) return "The message can't be made: keys must differ, and none may be empty.";
  return SendProblem(message_port_send_message(app_id.c_str(), wire::kPort, message.get()), app_id);
}

Outcome VoiceService::Await(const std::string& app_id, uint64_t command_id,
                            std::chrono::milliseconds timeout) {
  const int registered_before = registrations(app_id);
  const bool was_registered = HasApp(app_id);
  const auto is_gone = [&] {
    return (was_registered && !HasApp(app_id)) || registrations(app_id) != registered_before;
  };
  const auto has_come = [&] { return arrived_.count(command_id) == 1; };
  WaitUntil([&] { return has_come() || is_gone(); }, timeout);
  awaited_.erase(std::remove(awaited_.begin(), awaited_.end(), command_id), awaited_.end());
  Outcome outcome;
  if (has_come()) {
    outcome.answer = std::move(arrived_[command_id]);
    outcome.is_answered = !outcome.answer.is_broken;
    outcome.problem = outcome.answer.problem;
    arrived_.erase(command_id);
  } else if (IsInterrupted()) {
    outcome.problem = "Interrupted.";
  } else if (is_gone()) {
    outcome.problem = "The page went away before it answered.";
  } else {
    outcome.problem = "There was no answer within " + std::to_string(timeout.count()) +
                      " ms; is a callback of the page still running?";
  }
  return outcome;
}

Outcome VoiceService::Say(const std::string& app_id, const Command& command,
                          std::chrono::milliseconds timeout) {
  Outcome outcome;
  const uint64_t id = Send(app_id, command, outcome.problem);
  return id == 0 ? outcome : Await(app_id, id, timeout);
}

}  // namespace corvis::kit
