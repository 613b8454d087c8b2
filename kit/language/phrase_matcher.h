// One text against the patterns of a language.
#ifndef CORVIS_KIT_LANGUAGE_PHRASE_MATCHER_H_
#define CORVIS_KIT_LANGUAGE_PHRASE_MATCHER_H_

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "language/grammar.h"

namespace corvis::kit {

// A slot's value in words of the text: up to which word, as a number and as it goes into data.
struct SlotReading {
  size_t end;
  double number;
  std::string text;
  // Of a date: its last year or day; the same as the text unless it is a period.
  std::string last;
};
using SlotReadings = std::vector<SlotReading>;

// A state of an automaton that took some words; one link of a path through a pattern.
struct PathStep {
  StateId state;
  size_t begin;
  size_t end;
  // The step before; negative for the first.
  int before;
  // How many words up to here are words of the pattern, or numbers and times, and not just any words.
  size_t exact;
  // Whether these words are polite ones between two states.
  bool is_politeness;
};

// Where a pattern may end.
struct PathEnd {
  uint32_t row;
  size_t end;
  size_t exact;
  int step;
};

// The paths through an automaton that begin at one word. Time and memory are linear in the number of words.
struct Paths {
  std::vector<PathStep> steps;
  // For each end and row the one with the most exact words.
  std::vector<PathEnd> ends;
};

class PhraseMatcher {
 public:
  PhraseMatcher(const Grammar& grammar, std::string_view text);

  const std::vector<Word>& words() const { return words_; }
  std::string Original(size_t begin, size_t end) const { return kit::Original(text_, words_, begin, end); }

  // The paths of phrases through the whole text, or as far as they go.
  Paths WalkPhrases();
  // Those of an automaton without slots for any words.
  Paths Walk(const Automaton& automaton, size_t begin) { return WalkFrom(automaton, {begin}, begin); }
  // The slots that a path fills.
  std::vector<FilledSlot> FilledSlots(const Automaton& automaton, const Paths& paths, const PathEnd& end);
  // Their values by their names; a date has three.
  Entries Values(const Automaton& automaton, const Paths& paths, const PathEnd& end);

  // What a slot could take from this word on. Not for slots for any words.
  SlotReadings Read(const Slot& slot, size_t begin);
  bool IsWord(const PatternState& state, size_t at) const;
  // Where polite words that begin here may end.
  const std::vector<size_t>& PolitenessEnds(size_t begin);

 private:
  class Walker;
  Paths WalkFrom(const Automaton& automaton, const std::vector<size_t>& begins, size_t base);

  const SlotReadings& ReadKind(SlotKind kind, size_t begin);
  SlotReadings ReadList(const WordList& list, size_t begin);
  SlotReadings ReadNumbers(size_t begin);
  SlotReadings ReadAmounts(size_t begin);
  SlotReadings ReadMonths(size_t begin);
  SlotReadings ReadYear(size_t begin) const;
  SlotReadings ReadDecades(size_t begin);
  SlotReadings ReadTimes(size_t begin);
  SlotReadings ReadDates(size_t begin);
  double NumberOf(const Automaton& automaton, const Paths& paths, const PathEnd& end, const Sum& sum);

  const Grammar& grammar_;
  std::string_view text_;
  std::vector<Word> words_;
  std::vector<WordId> ids_;
  // The words without spaces, for numbers; and where each begins in it.
  std::string letters_;
  std::vector<size_t> starts_;
  std::map<std::pair<SlotKind, size_t>, SlotReadings> readings_;
  std::map<size_t, std::vector<size_t>> politeness_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_PHRASE_MATCHER_H_
