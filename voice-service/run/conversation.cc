// Turns of the conversation.
#include "run/conversation.h"

#include <utility>

#include "core/matcher.h"
#include "core/phrase_pattern.h"
#include "core/phrases.h"
#include "core/raw_command.h"
#include "service/main_loop.h"

namespace corvis::voice {

namespace {

constexpr size_t kConsoleLines = 40;

Turn NotSent(const std::string& said, const std::string& problem) {
  Turn turn;
  turn.said = said;
  turn.outcome.problem = problem;
  return turn;
}

std::string UnknownPhrase(const std::string& phrase) {
  const std::string similar = SimilarPhrase(phrase);
  return "Nothing is known for \"" + phrase + "\"; " +
         (similar.empty() ? "help lists the phrases."
                          : "did you mean \"" + similar + "\"? help lists the phrases.");
}

}  // namespace

Conversation::Conversation(VoiceService& service, std::string app_id, std::chrono::milliseconds timeout)
    : service_(service), app_id_(std::move(app_id)), timeout_(timeout), runtime_(app_id_) {
  runtime_.WatchConsole(
      [this](const auto& level, const auto& text, const auto& source) { TakeConsole(level, text, source); });
}

void Conversation::TakeConsole(const std::string& level, const std::string& text, const std::string& source) {
  if (source == "api") return registered_.TakeLine(text);
  console_.push_back(level + ": " + text);
  if (console_.size() > kConsoleLines) console_.pop_front();
}

std::string Conversation::WaitForApp(std::chrono::milliseconds timeout) {
  if (WaitUntil([this] { return service_.HasApp(app_id_); }, timeout)) return "";
  if (IsInterrupted()) return "Interrupted.";
  return "The application " + app_id_ + " has not registered: its page has not called listen() within " +
         std::to_string(timeout.count()) + " ms. Does it hold the privileges?";
}

Turn Conversation::Send(const Command& command, const std::string& said) {
  Turn turn{said, command, true, {}};
  turn.outcome = service_.Say(app_id_, command, timeout_);
  return turn;
}

Turn Conversation::Say(const std::string& phrase) {
  if (const auto command = CommandOf(phrase)) return Send(*command, phrase);
  const std::string plain = NormalisedPhrase(phrase);
  constexpr std::string_view kSelect = "select ";
  if (plain.compare(0, kSelect.size(), kSelect) == 0)
    return SelectByTitle(phrase, plain.substr(kSelect.size()));
  return NotSent(phrase, UnknownPhrase(phrase));
}

Turn Conversation::SelectByTitle(const std::string& phrase, const std::string& title) {
  std::string problem;
  const auto list = AskItems(problem);
  if (!list) return NotSent(phrase, problem);
  const std::vector<Item> found = ItemsTitled(*list, title);
  if (found.size() == 1) {
    Command command{"ACTION_ITEM_SELECTION", "", {{"id", std::to_string(found[0].number)}}, true};
    return Send(command, phrase);
  }
  if (found.empty())
    return NotSent(phrase, "No item on the screen is called \"" + title + "\"; items lists them.");
  problem = "Several items are called \"" + title + "\"; select one by its number:";
  for (const Item& item : found) problem += "\n  " + std::to_string(item.number) + "  " + item.title;
  return NotSent(phrase, problem);
}

std::optional<ItemList> Conversation::AskItems(std::string& problem) {
  items_turn_ = Send({"ACTION_REQUEST_CONTENT_CONTEXT", "", {}, false}, "what can i select");
  problem = items_turn_.outcome.problem;
  if (!items_turn_.outcome.is_answered) return {};
  const auto list = ReadItems(items_turn_.outcome.answer.data);
  if (!list)
    problem = "The page answered with no list of items: " + items_turn_.outcome.answer.data.substr(0, 200);
  return list;
}

std::string Conversation::WaitForNewRegistration(int registered_before) {
  const auto has_registered = [&] {
    return service_.HasApp(app_id_) && service_.registrations(app_id_) > registered_before;
  };
  if (WaitUntil(has_registered, timeout_)) return "";
  return "The application " + app_id_ + " has not registered again within " +
         std::to_string(timeout_.count()) + " ms.";
}

std::string Conversation::Restart() {
  const int before = service_.registrations(app_id_);
  const std::string problem = service_.Restart();
  return problem.empty() ? WaitForNewRegistration(before) : problem;
}

std::string Conversation::Reload() {
  const int before = service_.registrations(app_id_);
  const ControlResult result = runtime_.Reload();
  return result.is_ok ? WaitForNewRegistration(before) : result.error;
}

std::string Conversation::Open(const std::string& url) {
  const ControlResult here = runtime_.Evaluate("new URL(" + Quoted(url) + ", document.baseURI).href");
  if (!here.is_ok) return here.error;
  const int before = service_.registrations(app_id_);
  const ControlResult result = runtime_.Load(here.value.substr(1, here.value.size() - 2));
  return result.is_ok ? WaitForNewRegistration(before) : result.error;
}

}  // namespace corvis::voice
