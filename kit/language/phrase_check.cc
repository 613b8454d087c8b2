// Why texts are understood as they are, and which phrases get into each other's way.
#include <algorithm>
#include <map>
#include <set>

#include "language/phrase_matcher.h"
#include "language/phrasebook.h"

namespace corvis::kit {

namespace {

constexpr size_t kMostOthers = 3;
// Of each phrase. With more, some of all are looked at.
constexpr size_t kMostPhraseWordings = 3000;
constexpr size_t kMostChecked = 250;

std::string Count(size_t words) {
  return std::to_string(words) + (words == 1 ? " exact word" : " exact words");
}

// What a path could go on with: "[by]" is by or what follows.
std::string Expected(const Automaton& phrases, const PatternState& state) {
  std::string text;
  std::set<std::string> known;
  constexpr size_t kMost = 6;
  for (const StateId next : state.next) {
    const std::string& written = phrases.state(next).written;
    if (!known.insert(written).second || known.size() > kMost) continue;
    text += (text.empty() ? "" : ", ") + written;
  }
  if (known.size() > kMost) text += ", …";
  return state.is_last ? (text.empty() ? "nothing more" : text + " or nothing more") : text;
}

// For each phrase the path that got furthest.
std::map<uint32_t, const PathStep*> FurthestSteps(const Automaton& phrases, const Paths& paths) {
  std::map<uint32_t, const PathStep*> furthest;
  for (const PathStep& step : paths.steps) {
    const PathStep*& best = furthest[phrases.state(step.state).row];
    if (best == nullptr || step.exact > best->exact || (step.exact == best->exact && step.end > best->end))
      best = &step;
  }
  return furthest;
}

}  // namespace

Explanation Phrasebook::Explain(std::string_view text) const {
  Explanation explanation{Understand(text), {}};
  if (text.size() > kLongestText) return explanation;
  PhraseMatcher matcher(*grammar_, text);
  const Paths paths = matcher.WalkPhrases();
  const size_t count = matcher.words().size();
  std::map<size_t, size_t> complete;
  for (const PathEnd& end : paths.ends) {
    if (end.end == count) complete[end.row] = std::max(complete[end.row], end.exact);
  }
  std::vector<std::pair<size_t, Explanation::Other>> found;
  for (const auto& [row, exact] : complete) {
    if (row == explanation.understood->phrase) continue;
    const bool is_tie = exact == complete[explanation.understood->phrase];
    const std::string reason =
        "It matches, too, with " + Count(exact) + (is_tie ? ", but it comes later." : ".");
    found.push_back({count + exact, {row, reason}});
  }
  for (const auto& [row, step] : FurthestSteps(grammar_->phrases, paths)) {
    if (complete.count(row) > 0 || step->exact == 0) continue;
    const std::string came =
        step->end < count ? "not \"" + matcher.Original(step->end, count) + "\"" : "not the end";
    found.push_back(
        {step->exact,
         {row, "After \"" + matcher.Original(0, step->end) + "\" it expects " +
                   Expected(grammar_->phrases, grammar_->phrases.state(step->state)) + ", " + came + "."}});
  }
  std::stable_sort(found.begin(), found.end(),
                   [](const auto& one, const auto& other) { return one.first > other.first; });
  for (size_t i = 0; i < std::min(found.size(), kMostOthers); ++i)
    explanation.others.push_back(found[i].second);
  return explanation;
}

namespace {

// Texts of a phrase's wordings, with slots filled in.
std::vector<std::string> Wordings(const Grammar& grammar, const PhraseRow& row) {
  const auto all = Expand(row.pattern, kMostPhraseWordings, [&grammar](const Slot& slot) {
    // Words that no pattern has.
    return slot.kind == SlotKind::kWords ? std::string("\"?\"") : grammar.Example(slot);
  });
  std::vector<std::string> some;
  const size_t step = all.size() / kMostChecked + 1;
  for (size_t i = 0; i < all.size(); i += step) some.push_back(all[i]);
  return some;
}

class Checker {
 public:
  explicit Checker(const Grammar& grammar) : grammar_(grammar) {}

  std::vector<PhraseMistake> Check() {
    for (size_t row = 0; row < grammar_.rows.size(); ++row) CheckRow(row);
    return std::move(mistakes_);
  }

 private:
  void CheckRow(size_t row) {
    bool is_reached = false;
    // The first text that goes to another phrase, and the first one of each that fits no better.
    std::pair<size_t, std::string> taken{row, ""};
    std::map<size_t, std::string> doubles;
    for (const std::string& text : Wordings(grammar_, grammar_.rows[row])) {
      const std::set<size_t> best = BestRows(text);
      const size_t winner = best.empty() ? row : *best.begin();
      is_reached = is_reached || winner == row;
      if (winner == row) continue;
      if (taken.second.empty()) taken = {winner, text};
      if (best.count(row) > 0) doubles.emplace(winner, text);
    }
    if (!is_reached) {
      return Report(
          row, "This phrase is never reached: " + PlaceOf(taken.first) + " takes \"" + taken.second + "\".");
    }
    for (const auto& [winner, text] : doubles) {
      Report(row, "\"" + text + "\" belongs to " + PlaceOf(winner) + " as well, which comes first.");
    }
  }

  // The phrases that take a text with the most exact words.
  std::set<size_t> BestRows(const std::string& text) const {
    PhraseMatcher matcher(grammar_, text);
    std::set<size_t> best;
    size_t most = 0;
    for (const PathEnd& end : matcher.WalkPhrases().ends) {
      if (end.end != matcher.words().size() || end.exact < most) continue;
      if (end.exact > most) best.clear();
      most = end.exact;
      best.insert(end.row);
    }
    return best;
  }

  std::string PlaceOf(size_t row) const {
    const PhrasePlace& place = grammar_.rows[row].place;
    return place.file + ":" + std::to_string(place.line);
  }

  void Report(size_t row, const std::string& message) {
    mistakes_.push_back({grammar_.rows[row].place, 1, message});
  }

  const Grammar& grammar_;
  std::vector<PhraseMistake> mistakes_;
};

}  // namespace

std::vector<PhraseMistake> Phrasebook::Check() const {
  return Checker(*grammar_).Check();
}

}  // namespace corvis::kit
