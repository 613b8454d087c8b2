// The statements that check the items on the screen.
#include <fmt/format.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "output/text_forms.h"
#include "script/matcher.h"
#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

using ListCheck = std::function<Verdict(const ItemList& list)>;
using ItemCheck = std::function<Verdict(const Item& item)>;

// Checks the current list first and then new ones until the time limit, because the page may still be
// changing.
Verdict PollItems(Session& session, const ListCheck& check) {
  constexpr auto kInterval = std::chrono::milliseconds(100);
  bool is_first = true;
  return session.Poll(kInterval, [&]() -> Verdict {
    const Status looked = std::exchange(is_first, false) ? session.items.Look() : session.items.LookAgain();
    return looked ? check(session.items.now()) : Verdict(looked);
  });
}

void Look(Step& step, ListCheck check) {
  step.role = StepRole::kLooks;
  step.run = [check = std::move(check)](Session& session) { return PollItems(session, check); };
}

// Makes a step that checks the item with this number.
void LookAtItem(Step& step, long number, ItemCheck check) {
  Look(step, [number, check = std::move(check)](const ItemList& list) {
    for (const Item& item : list.items) {
      if (item.number == number) return check(item);
    }
    return Failed(list.items.empty()
                      ? fmt::format("There is no item {}; the screen has no items.", number)
                      : fmt::format("There is no item {}; the last is {}.", number, list.items.size() - 1));
  });
}

// count is N, count at least N
void ReadCount(LineReader& line, Step& step) {
  const bool is_at_least = line.OneOf({"is", "at"}) == "at";
  if (is_at_least) line.OneOf({"least"});
  const long number = line.Number();
  Look(step, [number, is_at_least](const ItemList& list) {
    const auto count = static_cast<long>(list.items.size());
    return Compared(is_at_least ? count >= number : count == number,
                    fmt::format("{}{} items", is_at_least ? "at least " : "", number),
                    fmt::format("{} items", count));
  });
}

// Counts the changes of the kind that `word` names; "none" counts all changes.
long CountChanges(const std::vector<ItemChange>& changes, const std::string& word) {
  constexpr std::pair<const char*, ItemChange::Kind> kKinds[] = {{"moved", ItemChange::Kind::kMoved},
                                                                 {"appeared", ItemChange::Kind::kAppeared},
                                                                 {"vanished", ItemChange::Kind::kVanished}};
  return std::count_if(changes.begin(), changes.end(), [&word, &kKinds](const ItemChange& change) {
    return word == "none" || std::any_of(std::begin(kKinds), std::end(kKinds), [&](const auto& kind) {
             return kind.first == word && kind.second == change.kind;
           });
  });
}

// changed none, changed moved N, changed appeared N, changed vanished N
void ReadChanged(LineReader& line, Step& step) {
  line.OneOf({"changed"});
  const std::string word = line.OneOf({"none", "moved", "appeared", "vanished"});
  const long number = word == "none" ? 0 : line.Number();
  const std::string expected = word == "none" ? "no change" : fmt::format("{} {}", number, word);
  step.role = StepRole::kLooks;
  step.run = [word, number, expected](Session& session) {
    session.items.Compare();
    if (session.items.before() == nullptr) {
      return Failed("There is nothing to compare with. Add an items or item statement before this one.");
    }
    return PollItems(session, [&](const ItemList& list) {
      const auto changes = CompareItems(*session.items.before(), list);
      return Compared(CountChanges(changes, word) == number, expected, Describe(changes));
    });
  };
}

// "TITLE" is N
void ReadNumberOfItem(LineReader& line, Step& step) {
  const std::string title = line.Text();
  line.OneOf({"is"});
  const long number = line.Number();
  Look(step, [title, number](const ItemList& list) {
    for (const Item& item : list.items) {
      if (item.title == title)
        return Compared(item.number == number, std::to_string(number), std::to_string(item.number));
    }
    return Failed("There is no item " + Quoted(title) + ".");
  });
}

// N focused, N visible, N hidden
ItemCheck ReadState(LineReader& line) {
  const std::pair<const char*, bool (*)(const Item&)> states[] = {
      {"focused", [](const Item& item) { return item.is_focused; }},
      {"visible", [](const Item& item) { return item.is_visible; }},
      {"hidden", [](const Item& item) { return !item.is_visible; }}};
  for (const auto& [name, holds] : states) {
    if (!line.TakeWord(name)) continue;
    const std::string state = name;
    return [state, holds = holds](const Item& item) { return Compared(holds(item), state, "not " + state); };
  }
  return {};
}

}  // namespace

void ReadItems(LineReader& line, Step& step) {
  if (line.TakeWord("count")) return ReadCount(line, step);
  ReadChanged(line, step);
}

void ReadItem(LineReader& line, Step& step) {
  if (line.Peek() == '"') return ReadNumberOfItem(line, step);
  const long number = line.Number();
  if (ItemCheck check = ReadState(line)) return LookAtItem(step, number, std::move(check));
  LookAtItem(step, number,
             [matcher = ReadMatcher(line)](const Item& item) { return Compared(matcher, item.title); });
}

}  // namespace corvis::kit
