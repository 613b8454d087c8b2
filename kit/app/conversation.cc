// Sends commands, collects the answers, and explains why an answer is missing.
#include "app/conversation.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>

#include "app/item_picture.h"
#include "language/raw_command.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

constexpr size_t kConsoleLines = 40;

Turn NotSent(const std::string& said, const std::string& problem) {
  return {said, {}, false, Fail(problem), ""};
}

// The items that are on the screen; if there are none, all items.
std::vector<Item> WithBoxes(const std::vector<Item>& items) {
  std::vector<Item> found;
  std::copy_if(items.begin(), items.end(), std::back_inserter(found),
               [](const Item& item) { return item.HasBox(); });
  return found.empty() ? items : found;
}

// Keeps a page's text on one line of a message that has several.
std::string OneLine(std::string text) {
  const auto is_break = [](char c) { return c == '\n' || c == '\r'; };
  std::replace_if(text.begin(), text.end(), is_break, ' ');
  return text;
}

Result<Item> OneOf(const std::vector<Item>& items, const std::string& title) {
  if (items.size() == 1) return items[0];
  if (items.empty()) return Fail("No item on the screen is called \"" + title + "\"; items lists them.");
  std::string problem = "Several items are called \"" + title + "\"; select one by its number:";
  for (const Item& item : items) problem += "\n  " + std::to_string(item.number) + "  " + OneLine(item.title);
  return Fail(problem);
}

Result<Item> FindItem(const ItemList& list, const WantedItem& wanted, const Phrasebook& phrases) {
  if (wanted.place == 0) return OneOf(WithBoxes(ItemsTitled(list, wanted.title, phrases)), wanted.title);
  const std::vector<Item> shown = WithBoxes(list.items);
  if (wanted.place <= static_cast<long>(shown.size())) return shown[static_cast<size_t>(wanted.place) - 1];
  return Fail("There are " + std::to_string(shown.size()) + " items on the screen, not " +
              std::to_string(wanted.place) + "; items lists them.");
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
  runtime_.WatchLoads([this] { ++loads_; });
  runtime_.WatchCrashes([this] {
    ++crashes_;
    loads_before_crash_ = loads_;
    if (on_crash_) on_crash_();
  });
}

void Conversation::set_timeout(std::chrono::milliseconds timeout) {
  timeout_ = timeout;
  runtime_.set_timeout(timeout);
}

void Conversation::TakeConsole(const std::string& level, const std::string& text, const std::string& source) {
  if (on_console_) on_console_(level, text, source);
  if (console_recorder_) console_recorder_(level, text, source);
  if (source == "api") {
    callbacks_.TakeLine(text);
    return registered_.TakeLine(text);
  }
  console_.push_back(level + ": " + text);
  const bool is_uncaught = level == "uncaught" && page_error_.compare(0, level.size(), level) != 0;
  if (is_uncaught || (level == "error" && page_error_.empty())) page_error_ = console_.back();
  if (console_.size() > kConsoleLines) console_.pop_front();
}

std::string Conversation::ExceptionOf(const Turn& turn) {
  if (!turn.answer || turn.answer->data != "not_support") return "";
  // Console lines arrive over a different connection than the answer; wait until they are here.
  const Status heard = runtime_.Sync();
  return heard ? callbacks_.ExceptionOf(turn.command.action) : "";
}

Status Conversation::WaitForPage(std::chrono::milliseconds timeout) {
  const auto is_there = [this] { return loads_ > loads_before_crash_ || service_.HasApp(app_id_); };
  if (WaitUntil(is_there, timeout)) {
    WaitForLoad(timeout);
    if (!IsInterrupted()) return {};
  }
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  return Fail("The page has not loaded within " + std::to_string(timeout.count()) + " ms." + ConsoleError(),
              ErrorKind::kNoApplication);
}

void Conversation::WaitForRest() {
  constexpr auto kRest = std::chrono::milliseconds(250);
  constexpr auto kInterval = std::chrono::milliseconds(50);
  const auto end = Clock::now() + timeout_;
  auto quiet_since = Clock::now();
  std::string last;
  while (!IsInterrupted() && Clock::now() < end && Clock::now() - quiet_since < kRest) {
    const Result<std::string> now = runtime_.Activity();
    if (!now) return;
    if (*now != last) quiet_since = Clock::now();
    last = *now;
    RunFor(kInterval);
  }
}

Status Conversation::WaitForApp(std::chrono::milliseconds timeout) {
  const auto is_there = [this] { return service_.HasApp(app_id_); };
  if (WaitUntil(is_there, timeout)) {
    WaitForLoad(timeout);
    // A page that saw the service start twice re-registers in the meantime; a command sent then would be
    // lost.
    if (WaitUntil(is_there, timeout)) return {};
  }
  return Fail(WhyAbsent(timeout));
}

Error Conversation::WhyAbsent(std::chrono::milliseconds timeout) const {
  if (IsInterrupted()) return *WhyWaitsEnd();
  std::string others;
  for (const std::string& other : service_.apps()) others += (others.empty() ? "" : ", ") + other;
  const std::string sentence = others.empty()
                                   ? "has not registered: its page has not called listen() within " +
                                         std::to_string(timeout.count()) + " ms. " + WhyItMayNotListen()
                                   : "has not registered, but " + others + " has; is --app-id right?";
  return {"The application " + app_id_ + " " + sentence, ErrorKind::kNoApplication};
}

Status Conversation::CheckListening() {
  const auto is_there = [this] { return service_.HasApp(app_id_); };
  if (WaitUntil(is_there, waits_to_be_heard_ ? timeout_ : std::chrono::milliseconds(0))) return {};
  if (waits_to_be_heard_) return Fail(WhyAbsent(timeout_));
  return Fail("The application " + app_id_ + " is not running, or its page has not called listen() yet. " +
              WhyItMayNotListen());
}

std::string Conversation::ConsoleError() const {
  // The stack is not for a sentence.
  if (!page_error_.empty()) return " Its console says: " + page_error_.substr(0, page_error_.find('\n'));
  return "";
}

std::string Conversation::WhyItMayNotListen() const {
  const std::string error = ConsoleError();
  if (!error.empty()) return error.substr(1);
  const auto is_held = [this](const char* name) {
    return std::find(held_privileges_.begin(), held_privileges_.end(), PrivilegeUri(name)) !=
           held_privileges_.end();
  };
  return is_held("microphone") && is_held("voicecontrol") ? "Its console shows no error."
                                                          : "Does it hold the privileges?";
}

Status Conversation::SetPrivileges(std::vector<std::string> uris) {
  held_privileges_ = std::move(uris);
  return runtime_.SetPrivileges(held_privileges_);
}

void Conversation::WaitForLoad(std::chrono::milliseconds timeout) {
  constexpr auto kInterval = std::chrono::milliseconds(20);
  const auto end = Clock::now() + timeout;
  for (;;) {
    const Result<bool> is_loaded = runtime_.IsLoaded();
    if (!is_loaded || *is_loaded || (Clock::now() > end && !AreTimeLimitsSuspended())) return;
    // A load that ends by failing is not announced.
    HappensWithin([this, loads_before = loads_] { return loads_ != loads_before; }, kInterval);
  }
}

Turn Conversation::Send(const Command& command, const std::string& said) {
  Turn turn{said, command, true, {}, ""};
  if (const Status listening = CheckListening(); !listening) {
    turn.answer = Fail(listening.error());
    return turn;
  }
  crashes_before_ = crashes_;
  const Result<uint64_t> id = service_.Send(app_id_, command);
  turn.answer = id ? Await(*id, timeout_) : Result<Answer>(Fail(id.error()));
  return turn;
}

Result<uint64_t> Conversation::Inject(const Entries& entries) {
  crashes_before_ = crashes_;
  return service_.Inject(app_id_, entries);
}

Result<Answer> Conversation::Await(uint64_t command_id, std::chrono::milliseconds timeout) {
  Result<Answer> answer = service_.Await(app_id_, command_id, timeout);
  if (answer) return answer;
  // The page's departure and its crash arrive over different connections; wait for the crash report.
  if (!service_.HasApp(app_id_)) static_cast<void>(runtime_.Sync());
  if (crashes_ > crashes_before_)
    return Fail("The page's process crashed before it answered; the runtime reloads the page.");
  return answer;
}

Turn Conversation::Say(const std::string& phrase) {
  const auto understood = phrases().Understand(phrase);
  if (!understood) return SayTitle(phrase);
  return understood->item ? SayOfItem(phrase, *understood) : Send(understood->command, phrase);
}

Turn Conversation::SayOfItem(const std::string& phrase, Understood understood) {
  const Result<ItemList> list = AskItems();
  if (!list) return NotSent(phrase, list.error().message);
  const Result<Item> item = FindItem(*list, *understood.item, phrases());
  if (!item) return NotSent(phrase, item.error().message);
  understood.SetItem(item->number);
  Turn turn = Send(understood.command, phrase);
  if (understood.item->place > 0) turn.item = item->title;
  return turn;
}

Turn Conversation::SayTitle(const std::string& phrase) {
  const std::string unknown = phrases().UnknownPhrase(phrase) + " help lists the phrases.";
  const Result<ItemList> list = AskItems();
  if (!list) return NotSent(phrase, unknown);
  const std::vector<Item> items =
      WithBoxes(ItemsNamed(*list, phrases().WithoutPoliteness(phrase), phrases()));
  if (items.empty()) return NotSent(phrase, unknown);
  const Result<Item> item = OneOf(items, phrase);
  if (!item) return NotSent(phrase, item.error().message);
  Turn turn = Send({"ACTION_ITEM_SELECTION", "", {{"id", std::to_string(item->number)}}, true}, phrase);
  turn.item = item->title;
  return turn;
}

Result<ItemList> Conversation::AskItems() {
  items_turn_ = Send({"ACTION_REQUEST_CONTENT_CONTEXT", "", {}, false}, "what can i select");
  const Result<Answer>& answer = items_turn_.answer;
  if (!answer) return Fail(answer.error());
  if (auto list = ReadItems(answer->data)) return std::move(*list);
  return Fail("Expected a list of items; the page answered: " + OneLine(answer->data.substr(0, 200)));
}

Result<ItemList> Conversation::LookForItems() {
  const Result<std::string> seen = runtime_.Items();
  if (!seen) return Fail(seen.error());
  if (auto list = ReadItems(*seen)) return std::move(*list);
  return Fail("The page returned no list of items. Does it replace built-in functions of the browser?");
}

Result<ItemPlaces> Conversation::PlacesOf(const ItemList& list) {
  const Result<std::string> looked_up = runtime_.Evaluate(PlacesExpression(list));
  if (!looked_up) return Fail("Can't locate the items on the page. " + looked_up.error().message);
  std::optional<ItemPlaces> places = ReadItemPlaces(list, *looked_up);
  if (!places) return Fail("Can't locate the items: the page returned no positions.");
  return std::move(*places);
}

void Conversation::NoteHidden(ItemList& list) {
  const Result<ItemPlaces> places = PlacesOf(list);
  for (size_t i = 0; places && i < places->places.size(); ++i) list.items[i] = places->places[i].item;
}

Result<std::string> Conversation::PictureOf(const ItemList& list) {
  const Result<ItemPlaces> places = PlacesOf(list);
  if (!places) return Fail(places.error());
  const Result<std::string> picture = runtime_.Screenshot();
  if (!picture) return picture;
  return DrawMarks(*picture, MarksOf(*places), places->window_width);
}

Status Conversation::WaitForArrival(const Arrival& arrival, int registered_before, Clock::time_point end) {
  const auto has_registered = [&] {
    return service_.HasApp(app_id_) && service_.registrations(app_id_) > registered_before;
  };
  if (!arrival.is_listening) {
    if (!HappensWithin(has_registered, arrival.quiet)) return {};
    return Fail("Expected the application not to listen, but it has registered.");
  }
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
  if (WaitUntil(has_registered, left)) return {};
  if (IsInterrupted()) return Fail(*WhyWaitsEnd());
  return Fail("The application " + app_id_ +
              " has not registered again: its page has not called listen() within " +
              std::to_string(timeout_.count()) + " ms. " + WhyItMayNotListen());
}

template <typename Change>
Status Conversation::Arrive(const Arrival& arrival, Change change) {
  const int before = service_.registrations(app_id_);
  const auto end = Clock::now() + timeout_;
  page_error_.clear();
  if (const Status changed = change(); !changed) return changed;
  return WaitForArrival(arrival, before, end);
}

Status Conversation::StartAgain(const std::function<Status()>& start, std::chrono::milliseconds limit) {
  page_error_.clear();
  loads_before_crash_ = loads_;
  if (const Status started = start(); !started) return started;
  const bool is_loaded = WaitUntil([this] { return loads_ > loads_before_crash_; }, limit);
  return is_loaded ? Status() : WaitForPage(std::chrono::milliseconds(0));
}

Status Conversation::Restart(const Arrival& arrival) {
  return Arrive(arrival, [this] { return service_.Restart(); });
}

Status Conversation::Reload(const Arrival& arrival) {
  static_cast<void>(Recover());
  return Arrive(arrival, [this] { return runtime_.Reload(); });
}

Status Conversation::Open(const std::string& url, const Arrival& arrival) {
  static_cast<void>(Recover());
  const auto rest = runtime_.GoToPlace(url);
  if (!rest) return Fail(rest.error());
  if (!*rest) return {};
  return Arrive(arrival, [&] { return runtime_.Load(**rest); });
}

Status Conversation::NoteBeginning(std::vector<std::string> privileges, bool is_storage_kept) {
  const Result<std::string> here = runtime_.Address();
  if (!here) return Fail(here.error());
  home_ = *here;
  privileges_ = std::move(privileges);
  is_storage_kept_ = is_storage_kept;
  return {};
}

Status Conversation::Recover() {
  // A page that takes longer than this counts as hung, not as busy.
  constexpr auto kResponseTime = std::chrono::seconds(1);
  if (AreTimeLimitsSuspended()) return {};
  const int crashes_before = crashes_;
  const Result<bool> is_ended = runtime_.EndHangingPage(kResponseTime);
  if (!is_ended || !*is_ended) return {};
  WaitUntil([&] { return crashes_ > crashes_before; }, timeout_);
  return Fail("The page hung; its process was killed, and the runtime reloads the page.");
}

Status Conversation::BeginAnew() {
  // A hang belongs to the previous script's result, so the error is dropped here.
  if (!Recover()) static_cast<void>(WaitForPage(timeout_));
  if (held_privileges_ != privileges_) {
    if (const Status granted = runtime_.SetPrivileges(privileges_); !granted) return granted;
    held_privileges_ = privileges_;
  }
  // Unload the old page first, because it may store more data or keep a database open.
  if (const Status left = runtime_.Load("about:blank"); !left) return left;
  if (!is_storage_kept_) {
    if (const Status cleared = runtime_.ClearStorage(); !cleared) return cleared;
  }
  // What is said from now on is for the new page.
  page_error_.clear();
  WaitUntil([this] { return !service_.HasApp(app_id_); }, timeout_);
  return runtime_.Load(home_);
}

}  // namespace corvis::kit
