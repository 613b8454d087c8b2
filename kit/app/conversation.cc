// Turns of the conversation.
#include "app/conversation.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

#include "app/json_text.h"
#include "language/phrases.h"
#include "language/raw_command.h"
#include "output/text_forms.h"
#include "app/item_picture.h"
#include "app/item_places.h"
#include "service/main_loop.h"

namespace corvis::kit {

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

std::string PrivilegeUri(const std::string& name) {
  constexpr const char* kBase = "http://" CORVIS_PRIVILEGE_HOST "/privilege/";
  return name.find("://") == std::string::npos ? kBase + name : name;
}

std::string DescribeItemsAnswer(const ItemList& list, const Answer& answer) {
  const auto milliseconds = [](Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
  };
  char text[160];
  int size = std::snprintf(text, sizeof(text), "%zu items; %zu bytes, %.1f ms", list.items.size(),
                           answer.data.size(), milliseconds(answer.took));
  std::string line(text, static_cast<size_t>(size));
  if (answer.pieces == 1) return line;
  size = std::snprintf(text, sizeof(text), " (%.1f ms to the first of %d pieces, %.1f ms to the last)",
                       milliseconds(answer.first_piece), answer.pieces,
                       milliseconds(answer.took - answer.first_piece));
  return line.append(text, static_cast<size_t>(size));
}

Conversation::Conversation(VoiceService& service, std::string app_id, std::chrono::milliseconds timeout)
    : service_(service), app_id_(std::move(app_id)), timeout_(timeout), runtime_(app_id_) {
  runtime_.WatchConsole(
      [this](const auto& level, const auto& text, const auto& source) { TakeConsole(level, text, source); });
  runtime_.WatchCrashes([this] { ++crashes_; });
}

void Conversation::set_timeout(std::chrono::milliseconds timeout) {
  timeout_ = timeout;
  runtime_.set_timeout(timeout);
}

void Conversation::TakeConsole(const std::string& level, const std::string& text, const std::string& source) {
  if (source == "api") {
    constexpr std::string_view kException = "_callback exception : ";
    if (text.compare(0, kException.size(), kException) == 0)
      exceptions_.push_back(text.substr(kException.size()));
    return registered_.TakeLine(text);
  }
  console_.push_back(level + ": " + text);
  if (console_.size() > kConsoleLines) console_.pop_front();
}

std::string Conversation::ExceptionOf(const Turn& turn, size_t exceptions_before) {
  // What the page writes comes on another road than its answer, and somewhat later.
  constexpr auto kTelling = std::chrono::milliseconds(100);
  if (turn.outcome.answer.data != "not_support") return "";
  const auto has_thrown = [&] { return exceptions_.size() > exceptions_before; };
  return WaitUntil(has_thrown, kTelling) ? exceptions_.back() : "";
}

std::string Conversation::WaitForApp(std::chrono::milliseconds timeout) {
  const auto is_there = [this] { return service_.HasApp(app_id_); };
  if (WaitUntil(is_there, timeout)) {
    WaitForLoad(timeout);
    // A page that has heard of two starts registers anew meanwhile; what is said to it then would be lost.
    if (WaitUntil(is_there, timeout)) return "";
  }
  if (IsInterrupted()) return "Interrupted.";
  std::string others;
  for (const std::string& other : service_.apps()) others += (others.empty() ? "" : ", ") + other;
  if (!others.empty())
    return "The application " + app_id_ + " has not registered, but " + others + " has; is --app right?";
  return "The application " + app_id_ + " has not registered: its page has not called listen() within " +
         std::to_string(timeout.count()) + " ms. " + WhyItMayNotListen();
}

std::string Conversation::WhyItMayNotListen() const {
  const auto is_error = [](const std::string& line) {
    const std::string level = line.substr(0, line.find(':'));
    return level == "error" || level == "uncaught";
  };
  const auto error = std::find_if(console_.begin(), console_.end(), is_error);
  return error == console_.end() ? "Does it hold the privileges?" : "Its console says: " + *error;
}

void Conversation::WaitForLoad(std::chrono::milliseconds timeout) {
  constexpr auto kInterval = std::chrono::milliseconds(20);
  const auto end = Clock::now() + timeout;
  for (;;) {
    const ControlResult state = runtime_.Evaluate("document.readyState");
    if (!state.is_ok || PlainValue(state.value) == "complete" || Clock::now() > end) return;
    WaitUntil([] { return false; }, kInterval);
  }
}

Turn Conversation::Send(const Command& command, const std::string& said) {
  Turn turn{said, command, true, {}};
  const int crashes_before = crashes_;
  turn.outcome = service_.Say(app_id_, command, timeout_);
  ExplainDeparture(turn.outcome, crashes_before);
  return turn;
}

void Conversation::ExplainDeparture(Outcome& outcome, int crashes_before) {
  if (outcome.is_answered) return;
  // The runtime tells of a crash a moment after the page has left the bus.
  constexpr auto kTelling = std::chrono::milliseconds(300);
  const auto has_crashed = [this, crashes_before] { return crashes_ > crashes_before; };
  if (!service_.HasApp(app_id_)) WaitUntil(has_crashed, kTelling);
  if (has_crashed())
    outcome.problem = "The page's process crashed before it answered; the runtime loads the page again.";
}

Turn Conversation::Say(const std::string& phrase) {
  if (const auto command = CommandOf(phrase)) return Send(*command, phrase);
  if (const auto title = TitleToSelect(phrase)) return SelectByTitle(phrase, *title);
  return NotSent(phrase, UnknownPhrase(phrase));
}

Turn Conversation::SelectByTitle(const std::string& phrase, const std::string& title) {
  std::string problem;
  const auto list = AskItems(problem);
  if (!list) return NotSent(phrase, problem);
  const std::vector<Item> all = ItemsTitled(*list, title);
  std::vector<Item> found;
  std::copy_if(all.begin(), all.end(), std::back_inserter(found),
               [](const Item& item) { return item.HasBox(); });
  if (found.empty()) found = all;
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
  auto list = ReadItems(items_turn_.outcome.answer.data);
  if (!list)
    problem = "The page answered with no list of items: " + items_turn_.outcome.answer.data.substr(0, 200);
  return list;
}

std::string Conversation::PictureOf(const ItemList& list, std::string& problem) {
  const ControlResult looked_up = runtime_.Evaluate(PlacesExpression(list));
  const std::optional<ItemPlaces> places = ReadItemPlaces(list, looked_up.value);
  problem = places ? "" : "The page doesn't say where its items are. " + looked_up.error;
  if (!places) return "";
  const ControlResult picture = runtime_.Screenshot();
  problem = picture.error;
  return picture.is_ok ? DrawItems(picture.value, *places, problem) : "";
}

std::string Conversation::WaitForArrival(const Arrival& arrival, int registered_before,
                                         Clock::time_point end) {
  const auto has_registered = [&] {
    return service_.HasApp(app_id_) && service_.registrations(app_id_) > registered_before;
  };
  if (!arrival.is_listening) {
    return WaitUntil(has_registered, arrival.quiet) ? "The application listens all the same." : "";
  }
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
  if (WaitUntil(has_registered, left)) return "";
  return "The application " + app_id_ +
         " has not registered again: its page has not called listen() within " +
         std::to_string(timeout_.count()) + " ms. " + WhyItMayNotListen();
}

std::string Conversation::Restart(const Arrival& arrival) {
  const int before = service_.registrations(app_id_);
  const auto end = Clock::now() + timeout_;
  const std::string problem = service_.Restart();
  return problem.empty() ? WaitForArrival(arrival, before, end) : problem;
}

std::string Conversation::Reload(const Arrival& arrival) {
  const int before = service_.registrations(app_id_);
  const auto end = Clock::now() + timeout_;
  const ControlResult result = runtime_.Reload();
  return result.is_ok ? WaitForArrival(arrival, before, end) : result.error;
}

std::string Conversation::Open(const std::string& url, const Arrival& arrival) {
  // A link to a place on the same page loads nothing.
  const ControlResult here = runtime_.Evaluate(
      "(function (url) {"
      "  if (!url.hash || url.href.split('#')[0] !== location.href.split('#')[0]) return url.href;"
      "  location.hash = url.hash;"
      "  return null;"
      "})(new URL(" +
      JsonText(url) + ", document.baseURI))");
  if (!here.is_ok || here.value == "null") return here.error;
  const int before = service_.registrations(app_id_);
  const auto end = Clock::now() + timeout_;
  const ControlResult result = runtime_.Load(PlainValue(here.value));
  return result.is_ok ? WaitForArrival(arrival, before, end) : result.error;
}

std::string Conversation::NoteBeginning(std::vector<std::string> privileges) {
  const ControlResult here = runtime_.Evaluate("location.href");
  home_ = PlainValue(here.value);
  privileges_ = std::move(privileges);
  return here.error;
}

std::string Conversation::BeginAnew() {
  const ControlResult granted = runtime_.SetPrivileges(privileges_);
  if (!granted.is_ok) return granted.error;
  if (home_.find('#') == std::string::npos) return Open(home_);
  const ControlResult placed = runtime_.Evaluate("history.replaceState(null, '', " + JsonText(home_) + ")");
  return placed.is_ok ? Reload() : placed.error;
}

}  // namespace corvis::kit
