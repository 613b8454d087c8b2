// Reads words from the first to the last; at each place the longest pattern of [search] counts.
#include "language/search_terms.h"

#include <algorithm>
#include <map>
#include <optional>

#include "language/phrase_matcher.h"

namespace corvis::kit {

namespace {

class TermReader {
 public:
  TermReader(const Grammar& grammar, std::string_view text) : grammar_(grammar), matcher_(grammar, text) {}

  std::map<std::string, std::string> Read() {
    const size_t count = matcher_.words().size();
    while (at_ < count) {
      if (TakeRow()) continue;
      has_title_ = has_title_ || open_ == nullptr;
      ++at_;
    }
    EndWords();
    return std::move(terms_);
  }

 private:
  struct Found {
    const SearchRow* row;
    Entries values;
    size_t end;
  };

  bool TakeRow() {
    const auto found = Find();
    if (!found) return false;
    const SearchRow& row = *found->row;
    if (row.terms.empty()) {
      at_ = found->end;
      return true;
    }
    Entries values = found->values;
    if (!row.before.empty()) {
      values.emplace_back(row.before, matcher_.Original(begin_, at_));
      has_title_ = false;
    }
    EndWords();
    at_ = begin_ = last_end_ = found->end;
    if (row.after.empty()) {
      SetTerms(row, values);
    } else {
      open_ = &row;
      open_values_ = values;
    }
    return true;
  }

  std::optional<Found> Find() {
    const Paths paths = matcher_.Walk(grammar_.search, at_);
    std::optional<Found> best;
    for (const PathEnd& end : paths.ends) {
      const SearchRow& row = grammar_.search_rows[end.row];
      const bool is_better = !best || end.end > best->end || (end.end == best->end && &row < best->row);
      if (!is_better || !MayEnd(end.end)) continue;
      Found found{&row, matcher_.Values(grammar_.search, paths, end), end.end};
      if (Counts(found)) best = std::move(found);
    }
    return best;
  }

  // Where words have no spaces between them, a pattern must not be found within a word.
  bool MayBegin() const {
    const Word& word = matcher_.words()[at_];
    return !word.is_letter || word.is_spaced || at_ == last_end_;
  }
  bool MayEnd(size_t end) {
    if (end == matcher_.words().size()) return true;
    const Word& next = matcher_.words()[end];
    return !next.is_letter || next.is_spaced || !matcher_.Walk(grammar_.search, end).ends.empty();
  }

  bool Counts(const Found& found) const {
    const SearchRow& row = *found.row;
    const bool is_plain = row.before.empty() && row.after.empty() && found.values.empty();
    if (open_ != nullptr && (is_plain || !row.before.empty() || row.is_unless_title)) return false;
    // Particles follow the words of their slot without a space.
    if (row.before.empty() ? !MayBegin() : begin_ == at_) return false;
    if (!row.after.empty() && found.end == matcher_.words().size()) return false;
    return !row.is_unless_title || (!has_title_ && terms_.count("title") == 0);
  }

  // Ends the words since the last pattern: those of its slot, or of the title.
  void EndWords() {
    if (open_ != nullptr) {
      open_values_.emplace_back(open_->after, matcher_.Original(begin_, at_));
      SetTerms(*open_, open_values_);
      open_ = nullptr;
    } else if (has_title_) {
      Append("title", matcher_.Original(begin_, at_));
    }
    has_title_ = false;
  }

  void SetTerms(const SearchRow& row, const Entries& values) {
    for (const auto& [name, value] : row.terms) {
      if (name != "title" && name != "cast") terms_[name].clear();
      Append(name, Fill(value, values));
    }
  }

  void Append(const std::string& name, const std::string& words) {
    std::string& term = terms_[name];
    term += (term.empty() || words.empty() ? "" : " ") + words;
  }

  const Grammar& grammar_;
  PhraseMatcher matcher_;
  size_t at_ = 0;
  // Where the words begin that belong to no pattern yet, and whether one of them means more than "some" does.
  size_t begin_ = 0;
  bool has_title_ = false;
  // Where the last pattern ended.
  size_t last_end_ = 0;
  // A pattern whose slot takes words up to the next pattern with a slot.
  const SearchRow* open_ = nullptr;
  Entries open_values_;
  std::map<std::string, std::string> terms_;
};

}  // namespace

Entries SearchTerms(const Grammar& grammar, const std::string& utterance, const std::string& words) {
  std::map<std::string, std::string> terms = TermReader(grammar, words).Read();
  Entries entries = {{"utterance", utterance}};
  for (const char* name : {"title", "genre", "cast", "content_type", "from", "to"}) {
    if (!terms[name].empty()) entries.emplace_back(name, terms[name]);
  }
  entries.emplace_back("raw", words);
  return entries;
}

}  // namespace corvis::kit
