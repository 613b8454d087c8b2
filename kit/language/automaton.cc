// Patterns become states by what may come first and last in each of their parts (Glushkov's construction).
#include "language/automaton.h"

#include <algorithm>

namespace corvis::kit {

namespace {

// Of one automaton: what a hostile phrase file may cost.
constexpr size_t kMostTransitions = 2'000'000;
// Of the parts of one word: ein[e[m|n|r|s]].
constexpr size_t kMostWordWordings = 500;

// The states with which a part of a pattern may begin and end, and whether it may be left out.
struct Ends {
  std::vector<StateId> first;
  std::vector<StateId> last;
  bool is_optional = true;
};

void Append(std::vector<StateId>& list, const std::vector<StateId>& more) {
  list.insert(list.end(), more.begin(), more.end());
}

}  // namespace

WordId Vocabulary::Add(const std::string& word) {
  const auto [at, is_new] = ids_.emplace(word, words_.size());
  if (is_new) words_.push_back(word);
  return at->second;
}

WordId Vocabulary::Find(const std::string& word) const {
  const auto found = ids_.find(word);
  return found == ids_.end() ? kNoWord : found->second;
}

const std::vector<Word>& PatternWords::Split(const std::string& text) {
  const auto [at, is_new] = split_.try_emplace(text);
  if (is_new) at->second = SplitWords(folding_, text, /*with_quotations=*/false);
  return at->second;
}

// Adds one pattern.
class PatternAdder {
 public:
  PatternAdder(Automaton& automaton, uint32_t row, PatternWords& words)
      : automaton_(automaton), row_(row), words_(words) {}

  std::string Add(const Pattern& pattern) {
    const Ends ends = AddSequence(pattern);
    if (!message_.empty()) return message_;
    if (ends.is_optional) return "The pattern has no word that has to be said.";
    for (const StateId id : ends.last) automaton_.states_[id].is_last = true;
    for (const StateId id : ends.first) {
      PatternState& state = automaton_.states_[id];
      state.is_first = true;
      (state.IsSlot() ? automaton_.first_slots_ : automaton_.first_words_[state.word]).push_back(id);
    }
    return "";
  }

 private:
  Ends AddSequence(const Pattern& pattern) {
    Ends ends;
    for (size_t at = 0; at < pattern.size() && message_.empty();) {
      // Parts without spaces between them are one word, or several if the language splits them: back[ward],
      // l'(heure).
      size_t after = at + 1;
      while (after < pattern.size() && !pattern[after].is_spaced && !IsSeparate(pattern[at]) &&
             !IsSeparate(pattern[after])) {
        ++after;
      }
      Join(ends, after - at == 1 ? AddPart(pattern[at])
                                 : AddCompound(Pattern(&pattern[at], &pattern[at] + (after - at))));
      at = after;
    }
    return ends;
  }

  // Slots, particles and the words of scripts without regular spaces need no space in front to be words of
  // their own.
  bool IsSeparate(const Part& part) {
    if (part.IsSlot() || part.text.find('/') != std::string::npos) return true;
    const auto is_separate = [this](const Part& one) { return IsSeparate(one); };
    const auto& words = words_.Split(part.text);
    return (!words.empty() && words.front().is_letter && words.back().is_letter) ||
           std::any_of(part.choices.begin(), part.choices.end(), [&](const Pattern& choice) {
             return std::any_of(choice.begin(), choice.end(), is_separate);
           });
  }

  Ends AddPart(const Part& part) {
    if (part.IsSlot()) return AddSlot(part);
    if (part.choices.empty()) return AddText(part.text, part.is_spaced);
    Ends ends;
    ends.is_optional = part.is_optional;
    for (const Pattern& choice : part.choices) Merge(ends, AddSequence(choice));
    return ends;
  }

  Ends AddCompound(const Pattern& parts) {
    Ends ends;
    ends.is_optional = false;
    const auto wordings = Expand(parts, kMostWordWordings + 1, SlotName);
    if (wordings.size() > kMostWordWordings) message_ = "A word with brackets has too many wordings.";
    for (const std::string& wording : wordings) {
      if (wording.empty()) {
        ends.is_optional = true;
      } else {
        Merge(ends, AddText(wording, parts[0].is_spaced));
      }
    }
    return ends;
  }

  // A text, maybe of several words, or of two particles: 을/를.
  Ends AddText(const std::string& text, bool is_spaced) {
    const size_t slash = text.find('/');
    if (slash == std::string::npos) return AddWords(text, is_spaced, AfterEnding::kAny);
    Ends ends = AddWords(text.substr(0, slash), is_spaced, AfterEnding::kConsonant);
    Merge(ends, AddWords(text.substr(slash + 1), is_spaced, AfterEnding::kVowel));
    return ends;
  }

  Ends AddWords(const std::string& text, bool is_spaced, AfterEnding after) {
    Ends ends;
    for (const Word& word : words_.Split(text)) {
      PatternState state;
      state.word = words_.vocabulary().Add(word.text);
      state.after = ends.first.empty() ? after : AfterEnding::kAny;
      state.written = text.substr(word.begin, word.end - word.begin);
      state.is_spaced = ends.first.empty() ? is_spaced : word.is_spaced;
      Join(ends, AddState(std::move(state)));
    }
    if (ends.is_optional) message_ = "Expected a word instead of \"" + text + "\".";
    return ends;
  }

  Ends AddSlot(const Part& part) {
    PatternState state;
    state.slot = &automaton_.slots_.emplace_back(part.slot);
    state.written = SlotName(part.slot);
    state.is_spaced = part.is_spaced;
    return AddState(std::move(state));
  }

  Ends AddState(PatternState state) {
    const auto id = static_cast<StateId>(automaton_.states_.size());
    state.row = row_;
    automaton_.states_.push_back(std::move(state));
    return {{id}, {id}, false};
  }

  // `ends` becomes those of both parts, one after the other.
  void Join(Ends& ends, const Ends& more) {
    automaton_.transitions_ += ends.last.size() * more.first.size();
    if (automaton_.transitions_ > kMostTransitions) {
      message_ = "The patterns up to here have too many wordings.";
      return;
    }
    for (const StateId id : ends.last) Append(automaton_.states_[id].next, more.first);
    if (ends.is_optional) Append(ends.first, more.first);
    if (!more.is_optional) ends.last.clear();
    Append(ends.last, more.last);
    ends.is_optional = ends.is_optional && more.is_optional;
  }

  // `ends` becomes those of one part or the other.
  static void Merge(Ends& ends, const Ends& other) {
    Append(ends.first, other.first);
    Append(ends.last, other.last);
    ends.is_optional = ends.is_optional || other.is_optional;
  }

  Automaton& automaton_;
  uint32_t row_;
  PatternWords& words_;
  std::string message_;
};

std::string Automaton::Add(uint32_t row, const Pattern& pattern, PatternWords& words) {
  return PatternAdder(*this, row, words).Add(pattern);
}

const std::vector<StateId>& Automaton::FirstWith(WordId word) const {
  static const std::vector<StateId> kNone;
  const auto found = first_words_.find(word);
  return found == first_words_.end() ? kNone : found->second;
}

}  // namespace corvis::kit
