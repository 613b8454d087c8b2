// Paths through automatons, and the values of slots.
#include "language/phrase_matcher.h"

#include <algorithm>
#include <cmath>

namespace corvis::kit {

namespace {

bool IsDigits(std::string_view text, size_t least, size_t most) {
  return text.size() >= least && text.size() <= most &&
         text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Of at most nine digits.
double ParseDigits(std::string_view digits) {
  long number = 0;
  for (const char c : digits) number = number * 10 + (c - '0');
  return static_cast<double>(number);
}

std::string Text(double number) {
  return std::to_string(std::lround(number));
}

constexpr size_t kMostDigits = 6;

// "1:30" and "1:02:03" in seconds.
std::optional<double> ClockSeconds(std::string_view text) {
  constexpr int kMinute = 60;
  double seconds = 0;
  int fields = 0;
  for (; fields < 3 && !text.empty(); ++fields) {
    const size_t colon = std::min(text.find(':'), text.size());
    const std::string_view field = text.substr(0, colon);
    if (!IsDigits(field, 1, kMostDigits) || (fields > 0 && ParseDigits(field) >= kMinute)) return {};
    seconds = seconds * kMinute + ParseDigits(field);
    text.remove_prefix(std::min(colon + 1, text.size()));
  }
  return text.empty() && fields >= 2 ? std::optional(seconds) : std::nullopt;
}

// "1.5" and "1,5".
std::optional<double> Fraction(std::string_view text) {
  const size_t point = std::min(text.find_first_of(".,"), text.size() - 1);
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = text.substr(point + 1);
  if (!IsDigits(whole, 1, kMostDigits) || !IsDigits(fraction, 1, kMostDigits)) return {};
  double unit = 1;
  for (size_t i = 0; i < fraction.size(); ++i) unit *= 10;
  return ParseDigits(whole) + ParseDigits(fraction) / unit;
}

bool IsIsoDate(std::string_view text) {
  return text.size() == 10 && text[4] == '-' && text[7] == '-' && IsDigits(text.substr(0, 4), 4, 4) &&
         IsDigits(text.substr(5, 2), 2, 2) && IsDigits(text.substr(8), 2, 2);
}

// "1990s" has a first and a last year; of other dates both are the same.
SlotReading DateReading(size_t end, const std::string& text) {
  constexpr size_t kYear = 4;
  if (text.size() != kYear + 1 || text.back() != 's' || !IsDigits(text.substr(0, kYear), kYear, kYear)) {
    return {end, 0, text, text};
  }
  const std::string first = text.substr(0, kYear);
  return {end, 0, first, std::to_string(std::stoi(first) + 9)};
}

// The last letter of a word.
char32_t LastLetter(const std::string& word) {
  const auto letters = LetterFolding().Fold(word);
  return letters.empty() ? 0 : letters.back().code;
}

}  // namespace

PhraseMatcher::PhraseMatcher(const Grammar& grammar, std::string_view text)
    : grammar_(grammar), text_(text), words_(SplitWords(grammar.folding, text)) {
  for (const Word& word : words_) {
    ids_.push_back(word.is_quotation ? kNoWord : grammar.vocabulary.Find(word.text));
    // Digits of two words are not those of one.
    if (!letters_.empty() && IsDigit(letters_.back()) && IsDigit(word.text[0])) letters_ += ' ';
    starts_.push_back(letters_.size());
    letters_ += word.text;
  }
}

bool PhraseMatcher::IsWord(const PatternState& state, size_t at) const {
  if (at >= ids_.size() || ids_[at] != state.word) return false;
  return state.after == AfterEnding::kAny || at == 0 ||
         MayFollow(LastLetter(words_[at - 1].text), state.after);
}

// Takes the words in their order; what was reached up to each word is kept until its turn.
class PhraseMatcher::Walker {
 public:
  Walker(PhraseMatcher& matcher, const Automaton& automaton, size_t base)
      : matcher_(matcher),
        automaton_(automaton),
        base_(base),
        is_for_phrases_(&automaton == &matcher.grammar_.phrases) {}

  void Begin(size_t at) {
    const size_t exact = at - base_;
    if (at < matcher_.ids_.size() && matcher_.ids_[at] != kNoWord) {
      for (const StateId id : automaton_.FirstWith(matcher_.ids_[at])) Enter(id, at, -1, exact);
    }
    for (const StateId id : automaton_.first_slots()) Enter(id, at, -1, exact);
  }

  Paths Walk() {
    // It grows meanwhile.
    for (size_t i = 0; i < reached_.size(); ++i) {  // NOLINT(modernize-loop-convert)
      std::vector<int> here = std::move(reached_[i]);
      KeepBest(here);
      for (const int step : here) Continue(step);
    }
    return std::move(paths_);
  }

 private:
  // Of several ways to the same state, the one with the most exact words.
  void KeepBest(std::vector<int>& here) const {
    const auto key = [this](int step) {
      return std::pair(paths_.steps[step].state, paths_.steps[step].is_politeness);
    };
    std::sort(here.begin(), here.end(), [&](int one, int other) {
      if (key(one) != key(other)) return key(one) < key(other);
      const size_t exact = paths_.steps[one].exact;
      const size_t other_exact = paths_.steps[other].exact;
      return exact != other_exact ? exact > other_exact : one < other;
    });
    here.erase(
        std::unique(here.begin(), here.end(), [&](int one, int other) { return key(one) == key(other); }),
        here.end());
  }

  void Continue(int index) {
    const PathStep step = paths_.steps[index];
    const PatternState& state = automaton_.state(step.state);
    if (state.is_last) paths_.ends.push_back({state.row, step.end, step.exact, index});
    const bool is_for_any = state.IsForAnyWords() && !step.is_politeness;
    if (is_for_any && step.end < matcher_.words_.size()) {
      Reach({step.state, step.begin, step.end + 1, step.before, step.exact, false});
    }
    if (is_for_phrases_ && !step.is_politeness) SkipPoliteness(index, step, is_for_any);
    for (const StateId next : state.next) {
      // Polite words in front of any words may belong to these.
      if (!step.is_politeness || !automaton_.state(next).IsForAnyWords())
        Enter(next, step.end, index, step.exact);
    }
  }

  void SkipPoliteness(int index, const PathStep& step, bool is_for_any) {
    for (const size_t end : matcher_.PolitenessEnds(step.end)) {
      if (is_for_any && end != matcher_.words_.size()) continue;
      Reach({step.state, step.end, end, index, step.exact + end - step.end, true});
    }
  }

  void Enter(StateId id, size_t at, int before, size_t exact) {
    const PatternState& state = automaton_.state(id);
    if (!state.IsSlot()) {
      if (matcher_.IsWord(state, at)) Reach({id, at, at + 1, before, exact + 1, false});
    } else if (at < matcher_.words_.size()) {
      if (state.IsForAnyWords()) return Reach({id, at, at + 1, before, exact, false});
      for (const SlotReading& reading : matcher_.Read(*state.slot, at)) {
        Reach({id, at, reading.end, before, exact + reading.end - at, false});
      }
    }
  }

  void Reach(const PathStep& step) {
    const size_t i = step.end - base_;
    if (reached_.size() <= i) reached_.resize(i + 1);
    reached_[i].push_back(static_cast<int>(paths_.steps.size()));
    paths_.steps.push_back(step);
  }

  PhraseMatcher& matcher_;
  const Automaton& automaton_;
  size_t base_;
  bool is_for_phrases_;
  Paths paths_;
  // Steps by where they end, counted from the base.
  std::vector<std::vector<int>> reached_;
};

Paths PhraseMatcher::WalkFrom(const Automaton& automaton, const std::vector<size_t>& begins, size_t base) {
  Walker walker(*this, automaton, base);
  for (const size_t begin : begins) walker.Begin(begin);
  return walker.Walk();
}

Paths PhraseMatcher::WalkPhrases() {
  std::vector<size_t> begins = {0};
  for (const size_t end : PolitenessEnds(0)) begins.push_back(end);
  return WalkFrom(grammar_.phrases, begins, 0);
}

const std::vector<size_t>& PhraseMatcher::PolitenessEnds(size_t begin) {
  const auto [at, is_new] = politeness_.try_emplace(begin);
  if (is_new) {
    for (const PathEnd& end : Walk(grammar_.politeness, begin).ends) at->second.push_back(end.end);
  }
  return at->second;
}

std::vector<FilledSlot> PhraseMatcher::FilledSlots(const Automaton& automaton, const Paths& paths,
                                                   const PathEnd& end) {
  std::vector<FilledSlot> slots;
  for (int at = end.step; at >= 0; at = paths.steps[at].before) {
    const PathStep& step = paths.steps[at];
    const PatternState& state = automaton.state(step.state);
    if (!state.IsSlot() || step.is_politeness) continue;
    const std::string said = Original(step.begin, step.end);
    slots.push_back({state.slot->name, said, said, ""});
    if (state.IsForAnyWords()) continue;
    const SlotReadings readings = Read(*state.slot, step.begin);
    const auto reading = std::find_if(readings.begin(), readings.end(),
                                      [&step](const auto& one) { return one.end == step.end; });
    slots.back().value = reading->text;
    slots.back().last = reading->last;
  }
  std::reverse(slots.begin(), slots.end());
  return slots;
}

Entries PhraseMatcher::Values(const Automaton& automaton, const Paths& paths, const PathEnd& end) {
  Entries values;
  for (const FilledSlot& slot : FilledSlots(automaton, paths, end)) {
    values.emplace_back(slot.name, slot.value);
    if (slot.last.empty()) continue;
    values.insert(values.end(), {{slot.name + ".first", slot.value}, {slot.name + ".last", slot.last}});
  }
  return values;
}

SlotReadings PhraseMatcher::Read(const Slot& slot, size_t begin) {
  SlotReadings readings = ReadKind(slot.kind, begin);
  const auto is_outside = [&slot](const SlotReading& reading) {
    return reading.number < static_cast<double>(slot.least) ||
           reading.number > static_cast<double>(slot.most);
  };
  if (slot.kind == SlotKind::kNumber)
    readings.erase(std::remove_if(readings.begin(), readings.end(), is_outside), readings.end());
  return readings;
}

const SlotReadings& PhraseMatcher::ReadKind(SlotKind kind, size_t begin) {
  const auto [at, is_new] = readings_.try_emplace({kind, begin});
  if (!is_new || begin >= words_.size() || words_[begin].is_quotation) return at->second;
  SlotReadings readings;
  switch (kind) {
    case SlotKind::kWords:
      break;
    case SlotKind::kNumber:
      readings = ReadNumbers(begin);
      break;
    case SlotKind::kAmount:
      readings = ReadAmounts(begin);
      break;
    case SlotKind::kPlace:
      readings = ReadList(grammar_.places, begin);
      break;
    case SlotKind::kMonth:
      readings = ReadMonths(begin);
      break;
    case SlotKind::kYear:
      readings = ReadYear(begin);
      break;
    case SlotKind::kDecade:
      readings = ReadDecades(begin);
      break;
    case SlotKind::kTime:
      readings = ReadTimes(begin);
      break;
    case SlotKind::kDate:
      readings = ReadDates(begin);
      break;
    case SlotKind::kPeriod:
      for (const SlotReading& date : ReadKind(SlotKind::kDate, begin)) {
        if (date.text != date.last) readings.push_back(date);
      }
      break;
  }
  // The reference stays valid while others are added.
  return at->second = std::move(readings);
}

SlotReadings PhraseMatcher::ReadList(const WordList& list, size_t begin) {
  const WordList* numbers = &list == &grammar_.numbers ? nullptr : &grammar_.numbers;
  SlotReadings readings;
  for (const NumberReading& number : list.Read(letters_, starts_[begin], numbers)) {
    // Only whole words count.
    const auto at = std::lower_bound(starts_.begin(), starts_.end(), number.end);
    const size_t end = at - starts_.begin();
    const size_t word_end = starts_[end - 1] + words_[end - 1].text.size();
    if (word_end == number.end) readings.push_back({end, number.value, Text(number.value), ""});
  }
  return readings;
}

SlotReadings PhraseMatcher::ReadNumbers(size_t begin) {
  SlotReadings readings = ReadList(grammar_.numbers, begin);
  const auto has_fraction = [](const SlotReading& one) { return one.number != std::floor(one.number); };
  readings.erase(std::remove_if(readings.begin(), readings.end(), has_fraction), readings.end());
  return readings;
}

SlotReadings PhraseMatcher::ReadAmounts(size_t begin) {
  SlotReadings readings = ReadList(grammar_.amounts, begin);
  for (const SlotReading& number : ReadList(grammar_.numbers, begin)) readings.push_back(number);
  if (const auto fraction = Fraction(words_[begin].text))
    readings.push_back({begin + 1, *fraction, words_[begin].text, ""});
  return readings;
}

SlotReadings PhraseMatcher::ReadMonths(size_t begin) {
  static const char* const kNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};
  SlotReadings readings = ReadList(grammar_.months, begin);
  for (SlotReading& month : readings) month.text = kNames[(std::lround(month.number) + 11) % 12];
  return readings;
}

SlotReadings PhraseMatcher::ReadYear(size_t begin) const {
  const std::string& text = words_[begin].text;
  if (!IsDigits(text, 4, 4)) return {};
  return {{begin + 1, ParseDigits(text), text, ""}};
}

SlotReadings PhraseMatcher::ReadDecades(size_t begin) {
  constexpr long kFirstYear = 1000;
  constexpr long kLastYear = 9990;
  constexpr long kLastOfThisCentury = 20;
  SlotReadings readings;
  for (SlotReading reading : ReadNumbers(begin)) {
    long year = std::lround(reading.number);
    // Of two digits it is one of the last century, but for 0 to 20.
    if (year < 100) year += year <= kLastOfThisCentury ? 2000 : 1900;
    if (year % 10 != 0 || year < kFirstYear || year > kLastYear) continue;
    reading.text = std::to_string(year);
    readings.push_back(reading);
  }
  return readings;
}

double PhraseMatcher::NumberOf(const Automaton& automaton, const Paths& paths, const PathEnd& end,
                               const Sum& sum) {
  double number = 0;
  for (const Term& term : sum) {
    if (term.slot.empty()) number += term.factor;
  }
  for (int at = end.step; at >= 0; at = paths.steps[at].before) {
    const PathStep& step = paths.steps[at];
    const PatternState& state = automaton.state(step.state);
    if (!state.IsSlot()) continue;
    const SlotReadings readings = Read(*state.slot, step.begin);
    const auto reading =
        std::find_if(readings.begin(), readings.end(), [&](const auto& one) { return one.end == step.end; });
    for (const Term& term : sum) {
      if (reading != readings.end() && term.slot == state.slot->name) number += term.factor * reading->number;
    }
  }
  return number;
}

SlotReadings PhraseMatcher::ReadTimes(size_t begin) {
  const Paths paths = Walk(grammar_.time, begin);
  SlotReadings readings;
  // Of two rows that end at one place, the earlier one counts.
  std::map<size_t, PathEnd> best;
  for (const PathEnd& end : paths.ends) {
    const auto [at, is_new] = best.emplace(end.end, end);
    if (!is_new && end.row < at->second.row) at->second = end;
  }
  for (const auto& [at, end] : best) {
    const double seconds = NumberOf(grammar_.time, paths, end, grammar_.time_sums[end.row]);
    readings.push_back({at, seconds, Text(seconds), ""});
  }
  const auto clock = ClockSeconds(words_[begin].text);
  if (clock) readings.push_back({begin + 1, *clock, Text(*clock), ""});
  return readings;
}

SlotReadings PhraseMatcher::ReadDates(size_t begin) {
  const Paths paths = Walk(grammar_.dates, begin);
  SlotReadings readings;
  for (const PathEnd& end : paths.ends) {
    readings.push_back(
        DateReading(end.end, Fill(grammar_.date_texts[end.row], Values(grammar_.dates, paths, end))));
  }
  const std::string& text = words_[begin].text;
  if (IsIsoDate(text)) readings.push_back({begin + 1, 0, text, text});
  return readings;
}

}  // namespace corvis::kit
