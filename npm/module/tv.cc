// Runs steps and emits their events.
#include "tv.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "language/raw_command.h"
#include "page.h"
#include "platform/bus.h"
#include "service/wire.h"

namespace corvis::simulator {

namespace {

constexpr auto kTimeout = std::chrono::milliseconds(5000);

// Converts to milliseconds, with microsecond resolution.
double Milliseconds(std::chrono::nanoseconds time) {
  constexpr double kThousand = 1000;
  return static_cast<double>(std::chrono::duration_cast<std::chrono::microseconds>(time).count()) / kThousand;
}

void Announce(const Json& event) {
  page_event(TextOf(event).c_str());
}

void TakeFailure(Json& event, const kit::Error& error) {
  event["status"] = "failed";
  event["message"] = error.message;
}

kit::Turn NotSent(const std::string& said, const std::string& problem) {
  return {said, {}, false, kit::Fail(problem), ""};
}

}  // namespace

std::string TextOf(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Tv::Tv(const std::string& app_id, const std::vector<std::string>& privileges)
    : service_([](const std::string& sentence) {
        Announce({{"event", "notice"}, {"text", sentence}});
      }),
      conversation_(service_, app_id, kTimeout) {
  const Acting service(kit::wire::kServiceId);
  // Can't fail on a bus in memory.
  static_cast<void>(service_.Start());
  SetPrivileges(privileges);
}

void Tv::SetPrivileges(const std::vector<std::string>& privileges) {
  std::vector<std::string> uris(privileges.size());
  std::transform(privileges.begin(), privileges.end(), uris.begin(), kit::PrivilegeUri);
  static_cast<void>(conversation_.SetPrivileges(uris));
}

kit::Status Tv::Speak(const std::string& phrase_file) {
  auto phrases = kit::Phrasebook::Open("", {{"language", phrase_file}});
  if (!phrases) return tl::unexpected(phrases.error());
  conversation_.set_phrases(std::move(*phrases));
  return {};
}

void Tv::Step(const char* statement, const std::string& argument, const Run& run) {
  const Acting service(kit::wire::kServiceId);
  const auto begin = kit::Clock::now();
  const std::string source = statement + (argument.empty() ? "" : " " + argument);
  Json event = {
      {"event", "step"}, {"statement", statement}, {"source", source}, {"status", "passed"}, {"ms", 0}};
  run(event);
  event["ms"] = Milliseconds(kit::Clock::now() - begin);
  Announce(event);
}

void Tv::AddTurn(Json& event, const kit::Turn& turn) {
  event["said"] = turn.said;
  if (turn.is_sent) {
    event["action"] = turn.command.action;
    event["data"] = DescribeData(turn.command);
  }
  if (!turn.answer) return TakeFailure(event, turn.answer.error());
  event["answer"] = turn.answer->data;
  event["answer_ms"] = Milliseconds(turn.answer->took);
  event["pieces"] = turn.answer->pieces;
  const std::string exception = conversation_.ExceptionOf(turn);
  if (!exception.empty()) event["exception"] = exception;
}

void Tv::Say(const std::string& phrase) {
  Speak("say", phrase, [&] { return conversation_.Say(phrase); });
}

void Tv::Send(const std::string& raw) {
  SendCommand(raw, kit::ParseRawCommand(raw));
}

void Tv::SendEntries(const std::string& action, const kit::Entries& entries) {
  const kit::Command command{action, "", entries, true};
  SendCommand(action + " " + DescribeData(command), command);
}

void Tv::SendCommand(const std::string& raw, const kit::Result<kit::Command>& command) {
  Speak("send", raw, [&] {
    const std::string problem = command ? kit::UnknownActionWarning(*command) : command.error().message;
    return problem.empty() ? conversation_.Send(*command, raw) : NotSent(raw, problem);
  });
}

void Tv::Speak(const char* statement, const std::string& said, const std::function<kit::Turn()>& speak) {
  Step(statement, said, [&](Json& event) { AddTurn(event, speak()); });
}

void Tv::Items(const std::string& title) {
  Step("items", title, [&](Json& event) {
    const auto list = conversation_.AskItems();
    AddTurn(event, conversation_.items_turn());
    if (!list) return TakeFailure(event, list.error());
    event["numbers"] = Json::array();
    for (const kit::Item& item :
         title.empty() ? list->items : ItemsTitled(*list, title, conversation_.phrases()))
      event["numbers"].push_back(item.number);
  });
}

void Tv::Restart() {
  Step("restart", "", [&](Json& event) {
    const kit::Status status = conversation_.Restart();
    if (!status) TakeFailure(event, status.error());
  });
}

std::vector<std::string> Tv::Phrases() const {
  std::vector<std::string> phrases;
  for (const std::string& action : conversation_.registered().own()) {
    const std::string phrase = conversation_.phrases().SampleFor(action);
    if (!phrase.empty()) phrases.push_back(phrase);
  }
  return phrases;
}

void Tv::DeliverAll() {
  while (Bus::Get().DeliverNext()) {
  }
}

}  // namespace corvis::simulator
