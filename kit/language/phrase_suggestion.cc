// Suggestions for texts that are not understood: paths through the phrases on which words may be mistyped.
#include <algorithm>
#include <tuple>

#include "language/phrase_matcher.h"
#include "language/phrasebook.h"
#include "language/suggestions.h"

namespace corvis::kit {

namespace {

// Longer texts get no suggestion: they are pasted, not said.
constexpr size_t kLongestMistyped = 200;
constexpr size_t kMostCandidates = 16;

// One way through a pattern, up to some word of the text.
struct Guess {
  StateId state;
  size_t end;
  // The guess before; negative for the first.
  int before;
  size_t begin;
  size_t mistakes;
  // How many bytes the words of the pattern have.
  size_t fixed;
};

// A path that might have been meant. Those that keep the words of all slots come first.
struct Candidate {
  bool is_example;
  size_t mistakes;
  size_t fixed;
  int guess;
};

class Corrector {
 public:
  Corrector(const Grammar& grammar, const std::string& text) : grammar_(grammar), matcher_(grammar, text) {
    reached_.resize(matcher_.words().size() + 1);
    for (const Word& word : matcher_.words()) corrections_.push_back(CorrectionsOf(word));
  }

  // The best first.
  std::vector<std::string> Suggestions() {
    for (StateId id = 0; id < grammar_.phrases.size(); ++id) {
      if (grammar_.phrases.state(id).is_first) Enter(id, 0, -1, 0, 0);
    }
    for (size_t at = 0; at < reached_.size(); ++at) ContinueFrom(at);
    std::sort(candidates_.begin(), candidates_.end(), [](const Candidate& one, const Candidate& other) {
      const auto rank = [](const Candidate& c) {
        return std::tuple(c.is_example, c.mistakes, -static_cast<int>(c.fixed), c.guess);
      };
      return rank(one) < rank(other);
    });
    std::vector<std::string> texts;
    for (const Candidate& candidate : candidates_) {
      if (texts.size() == kMostCandidates) break;
      texts.push_back(TextOf(candidate));
    }
    return texts;
  }

 private:
  using Corrections = std::vector<std::pair<WordId, size_t>>;

  Corrections CorrectionsOf(const Word& word) const {
    Corrections corrections;
    const auto& words = grammar_.vocabulary.words();
    for (WordId id = 1; id < words.size() && !word.is_quotation; ++id) {
      if (words[id] == word.text) {
        corrections.emplace_back(id, 0);
      } else if (word.is_letter) {
        if (DifferInOneJamo(word.text, words[id])) corrections.emplace_back(id, 1);
      } else if (const auto mistakes = Mistakes(word.text, words[id])) {
        corrections.emplace_back(id, *mistakes);
      }
    }
    return corrections;
  }

  size_t LengthOf(size_t begin, size_t end) const {
    size_t length = 0;
    for (; begin < end; ++begin) length += matcher_.words()[begin].text.size();
    return length;
  }

  void Enter(StateId id, size_t at, int before, size_t mistakes, size_t fixed) {
    const PatternState& state = grammar_.phrases.state(id);
    if (!state.IsSlot()) {
      if (at == corrections_.size()) return;
      for (const auto& [word, more] : corrections_[at]) {
        if (word == state.word)
          Reach({id, at + 1, before, at, mistakes + more, fixed + LengthOf(at, at + 1)});
      }
      return;
    }
    if (at < corrections_.size() && state.IsForAnyWords()) Reach({id, at + 1, before, at, mistakes, fixed});
    const SlotReadings readings = state.IsForAnyWords() ? SlotReadings() : matcher_.Read(*state.slot, at);
    for (const SlotReading& reading : readings) Reach({id, reading.end, before, at, mistakes, fixed});
    // What doesn't fit into a slot at the end is replaced by an example. "Das Boot" shares too little with
    // "das {place}" for that.
    const bool is_missing = state.IsForAnyWords() ? at == corrections_.size() : readings.empty();
    if (!is_missing || fixed <= LengthOf(at, corrections_.size()) || !state.is_last) return;
    guesses_.push_back({id, at, before, at, mistakes, fixed});
    candidates_.push_back({true, mistakes, fixed, static_cast<int>(guesses_.size()) - 1});
  }

  void Reach(const Guess& guess) {
    reached_[guess.end].push_back(static_cast<int>(guesses_.size()));
    guesses_.push_back(guess);
  }

  void ContinueFrom(size_t at) {
    std::vector<int> here = std::move(reached_[at]);
    const auto rank = [this](int index) {
      const Guess& guess = guesses_[index];
      return std::tuple(guess.state, guess.mistakes, -static_cast<int>(guess.fixed), index);
    };
    std::sort(here.begin(), here.end(), [&](int one, int other) { return rank(one) < rank(other); });
    for (size_t i = 0; i < here.size(); ++i) {
      if (i == 0 || guesses_[here[i]].state != guesses_[here[i - 1]].state) Continue(here[i]);
    }
  }

  void Continue(int index) {
    const Guess guess = guesses_[index];
    const PatternState& state = grammar_.phrases.state(guess.state);
    if (state.is_last && guess.end == corrections_.size() && guess.mistakes > 0) {
      candidates_.push_back({false, guess.mistakes, guess.fixed, index});
    }
    if (state.IsForAnyWords() && guess.end < corrections_.size()) {
      Reach({guess.state, guess.end + 1, guess.before, guess.begin, guess.mistakes, guess.fixed});
    }
    for (const StateId next : state.next) Enter(next, guess.end, index, guess.mistakes, guess.fixed);
  }

  std::string TextOf(const Candidate& candidate) const {
    std::vector<int> path;
    for (int at = candidate.guess; at >= 0; at = guesses_[at].before) path.insert(path.begin(), at);
    std::string text;
    for (const int at : path) {
      const Guess& guess = guesses_[at];
      const PatternState& state = grammar_.phrases.state(guess.state);
      const bool is_example = candidate.is_example && at == candidate.guess;
      const std::string said =
          is_example ? grammar_.Example(*state.slot) : matcher_.Original(guess.begin, guess.end);
      text += (state.is_spaced && !text.empty() ? " " : "") + (state.IsSlot() ? said : state.written);
    }
    return text;
  }

  const Grammar& grammar_;
  PhraseMatcher matcher_;
  std::vector<Corrections> corrections_;
  std::vector<Guess> guesses_;
  std::vector<std::vector<int>> reached_;
  std::vector<Candidate> candidates_;
};

}  // namespace

std::string Phrasebook::Suggest(std::string_view text) const {
  if (text.size() > kLongestMistyped) return "";
  for (const std::string& suggestion : Corrector(*grammar_, WithoutPoliteness(text)).Suggestions()) {
    if (Understand(suggestion)) return suggestion;
  }
  return "";
}

}  // namespace corvis::kit
