// Steps and their events.
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

// Milliseconds to the microsecond.
double Milliseconds(std::chrono::nanoseconds time) {
  constexpr double kThousand = 1000;
  return static_cast<double>(std::chrono::duration_cast<std::chrono::microseconds>(time).count()) / kThousand;
}

void Announce(const Json& event) {
  page_event(TextOf(event).c_str());
}

void Fail(Json& event, const std::string& problem) {
  if (problem.empty()) return;
  event["status"] = "failed";
  event["message"] = problem;
}

kit::Turn NotSent(const std::string& said, const std::string& problem) {
  kit::Turn turn;
  turn.said = said;
  turn.outcome.problem = problem;
  return turn;
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
  service_.Start();
  SetPrivileges(privileges);
}

void Tv::SetPrivileges(const std::vector<std::string>& privileges) {
  std::vector<std::string> uris(privileges.size());
  std::transform(privileges.begin(), privileges.end(), uris.begin(), kit::PrivilegeUri);
  conversation_.runtime().SetPrivileges(uris);
}

Json Tv::Step(const char* statement, const std::string& argument, const Run& run) {
  const Acting service(kit::wire::kServiceId);
  const auto begin = kit::Clock::now();
  const std::string source = statement + (argument.empty() ? "" : " " + argument);
  Json event = {
      {"event", "step"}, {"statement", statement}, {"source", source}, {"status", "passed"}, {"ms", 0}};
  run(event);
  event["ms"] = Milliseconds(kit::Clock::now() - begin);
  Announce(event);
  return event;
}

void Tv::AddTurn(Json& event, const kit::Turn& turn, size_t exceptions_before) {
  event["said"] = turn.said;
  if (turn.is_sent) {
    event["action"] = turn.command.action;
    event["data"] = DescribeData(turn.command);
  }
  if (turn.outcome.is_answered) {
    event["answer"] = turn.outcome.answer.data;
    event["answer_ms"] = Milliseconds(turn.outcome.answer.took);
    event["pieces"] = turn.outcome.answer.pieces;
  }
  const std::string exception = conversation_.ExceptionOf(turn, exceptions_before);
  if (!exception.empty()) event["exception"] = exception;
  Fail(event, turn.outcome.problem);
}

Json Tv::Say(const std::string& phrase) {
  return Speak("say", phrase, [&] { return conversation_.Say(phrase); });
}

Json Tv::Send(const std::string& raw) {
  return SendCommand(raw, kit::ParseRawCommand(raw));
}

Json Tv::SendEntries(const std::string& action, const kit::Entries& entries) {
  const kit::Command command{action, "", entries, true};
  return SendCommand(action + " " + DescribeData(command), command);
}

Json Tv::SendCommand(const std::string& raw, const kit::Result<kit::Command>& command) {
  return Speak("send", raw, [&] {
    const std::string problem = command ? kit::UnknownActionWarning(*command) : command.error().message;
    return problem.empty() ? conversation_.Send(*command, raw) : NotSent(raw, problem);
  });
}

Json Tv::Speak(const char* statement, const std::string& said, const std::function<kit::Turn()>& speak) {
  return Step(statement, said, [&](Json& event) {
    const size_t exceptions_before = conversation_.exceptions().size();
    AddTurn(event, speak(), exceptions_before);
  });
}

Json Tv::Items(const std::string& title) {
  return Step("items", title, [&](Json& event) {
    std::string problem;
    const auto list = conversation_.AskItems(problem);
    AddTurn(event, conversation_.items_turn(), conversation_.exceptions().size());
    Fail(event, problem);
    if (!list) return;
    event["numbers"] = Json::array();
    for (const kit::Item& item : title.empty() ? list->items : ItemsTitled(*list, title))
      event["numbers"].push_back(item.number);
  });
}

Json Tv::Restart() {
  return Step("restart", "", [&](Json& event) { Fail(event, conversation_.Restart()); });
}

void Tv::DeliverAll() {
  while (Bus::Get().DeliverNext()) {
  }
}

}  // namespace corvis::simulator
