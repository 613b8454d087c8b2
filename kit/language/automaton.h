// Patterns as one automaton over words: what can come first, and what can follow each word and slot of a
// pattern.
#ifndef CORVIS_KIT_LANGUAGE_AUTOMATON_H_
#define CORVIS_KIT_LANGUAGE_AUTOMATON_H_

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

#include "language/notation.h"
#include "language/words.h"

namespace corvis::kit {

using WordId = uint32_t;
using StateId = uint32_t;
constexpr WordId kNoWord = 0;

// The words of all patterns of a language.
class Vocabulary {
 public:
  WordId Add(const std::string& word);
  // kNoWord for a word that no pattern has.
  WordId Find(const std::string& word) const;
  // By their ids; the first is no word.
  const std::vector<std::string>& words() const { return words_; }

 private:
  std::unordered_map<std::string, WordId> ids_;
  std::vector<std::string> words_ = {""};
};

// The words of texts in patterns. Pieces bring the same texts again and again.
class PatternWords {
 public:
  PatternWords(const LetterFolding& folding, Vocabulary& vocabulary)
      : folding_(folding), vocabulary_(vocabulary) {}
  const std::vector<Word>& Split(const std::string& text);
  Vocabulary& vocabulary() { return vocabulary_; }

 private:
  const LetterFolding& folding_;
  Vocabulary& vocabulary_;
  std::unordered_map<std::string, std::vector<Word>> split_;
};

// A word or a slot of a pattern.
struct PatternState {
  uint32_t row = 0;
  WordId word = kNoWord;
  // Null for a word.
  const Slot* slot = nullptr;
  AfterEnding after = AfterEnding::kAny;
  // Whether the pattern may begin or end here.
  bool is_first = false;
  bool is_last = false;
  std::vector<StateId> next;
  // As it is written, and whether with a space in front.
  std::string written;
  bool is_spaced = false;

  bool IsSlot() const { return slot != nullptr; }
  bool IsForAnyWords() const { return IsSlot() && slot->kind == SlotKind::kWords; }
};

class Automaton {
 public:
  Automaton() = default;
  Automaton(Automaton&& other) = default;
  Automaton& operator=(Automaton&& other) = default;

  // Adds the pattern of a row. The error message; empty when the pattern fits.
  std::string Add(uint32_t row, const Pattern& pattern, PatternWords& words);

  const PatternState& state(StateId id) const { return states_[id]; }
  size_t size() const { return states_.size(); }
  const std::vector<StateId>& FirstWith(WordId word) const;
  const std::vector<StateId>& first_slots() const { return first_slots_; }

 private:
  friend class PatternAdder;

  std::vector<PatternState> states_;
  // Those of the states; a deque leaves them where they are.
  std::deque<Slot> slots_;
  std::unordered_map<WordId, std::vector<StateId>> first_words_;
  std::vector<StateId> first_slots_;
  size_t transitions_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_AUTOMATON_H_
