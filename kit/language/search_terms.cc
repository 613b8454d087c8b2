// Marks such as "with" and "from", dates, and words for genres and kinds of content.
#include "language/search_terms.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "language/phrase_pattern.h"

namespace corvis::kit {

namespace {

using Words = std::map<std::string, const char*>;

const Words& Genres() {
  static const Words kGenres = {{"comedy", "comedy"},
                                {"comedies", "comedy"},
                                {"drama", "drama"},
                                {"dramas", "drama"},
                                {"thriller", "thriller"},
                                {"thrillers", "thriller"},
                                {"western", "western"},
                                {"westerns", "western"},
                                {"horror", "horror"},
                                {"romance", "romance"},
                                {"action", "action"},
                                {"animation", "animation"},
                                {"crime", "crime"},
                                {"fantasy", "fantasy"},
                                {"science fiction", "science fiction"},
                                {"sci-fi", "science fiction"},
                                {"sci fi", "science fiction"},
                                {"documentary", "documentary"},
                                {"documentaries", "documentary"}};
  return kGenres;
}

const Words& ContentTypes() {
  static const Words kTypes = {{"movie", "movie"},   {"movies", "movie"}, {"film", "movie"},
                               {"films", "movie"},   {"show", "show"},    {"shows", "show"},
                               {"series", "series"}, {"song", "music"},   {"songs", "music"},
                               {"music", "music"},   {"clips", "video"},  {"videos", "video"}};
  return kTypes;
}

// The key of the words that follow a mark.
const Words& Marks() {
  static const Words kMarks = {
      {"with", "cast"}, {"starring", "cast"}, {"called", "title"}, {"titled", "title"}};
  return kMarks;
}

// Which ends of a range a date behind these words gives.
enum class Range { kFrom, kTo, kBetween, kWithin };
const std::map<std::string, Range>& DateMarks() {
  static const std::map<std::string, Range> kMarks = {
      {"from", Range::kFrom},       {"since", Range::kFrom}, {"after", Range::kFrom},
      {"to", Range::kTo},           {"until", Range::kTo},   {"before", Range::kTo},
      {"between", Range::kBetween}, {"in", Range::kWithin},  {"of", Range::kWithin}};
  return kMarks;
}

template <typename Value>
const Value* Find(const std::map<std::string, Value>& map, const std::string& key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : &found->second;
}

void Append(std::string& text, const std::string& word) {
  text += (text.empty() ? "" : " ") + word;
}

bool IsDigits(const std::string& word, size_t least, size_t most) {
  return word.size() >= least && word.size() <= most &&
         std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsYear(const std::string& word) {
  return IsDigits(word, 4, 4);
}

bool IsMonth(const std::string& word) {
  static const std::set<std::string> kMonths = {"january",   "february", "march",    "april",
                                                "may",       "june",     "july",     "august",
                                                "september", "october",  "november", "december"};
  return kMonths.count(word) == 1;
}

// "1990-05-17".
bool IsDate(const std::string& word) {
  constexpr size_t kLength = 10;
  return word.size() == kLength && word[4] == '-' && word[7] == '-' && IsYear(word.substr(0, 4)) &&
         IsDigits(word.substr(5, 2), 2, 2) && IsDigits(word.substr(8), 2, 2);
}

// The first year of "90s" and "1990s"; those of two digits belong to the last century, but for "00s" to
// "20s".
std::optional<int> Decade(const std::string& word) {
  if (word.size() < 3 || word.back() != 's') return {};
  const std::string digits = word.substr(0, word.size() - 1);
  if (digits.back() != '0') return {};
  if (IsYear(digits)) return std::stoi(digits);
  if (!IsDigits(digits, 2, 2)) return {};
  const int year = std::stoi(digits);
  return year <= 20 ? 2000 + year : 1900 + year;
}

struct Dates {
  std::string first;
  // The same as the first unless a decade was said.
  std::string last;
};

// Reads what somebody searches for, word by word.
class TermReader {
 public:
  explicit TermReader(const std::string& text) {
    for (const std::string& word : SplitWords(text)) {
      words_.push_back(word);
      plain_.push_back(NormalisedPhrase(word));
    }
  }

  std::map<std::string, std::string> ReadAll() {
    while (at_ < words_.size()) {
      if (!TakeRange() && !TakeMark()) TakeWord();
    }
    DropFillers(found_["title"]);
    return std::move(found_);
  }

 private:
  // A word that marks a date counts only when one follows: "from France" is no range.
  bool TakeRange() {
    const Range* range = Find(DateMarks(), plain_[at_]);
    if (range == nullptr) return false;
    // "to" marks the end of a range only: "back to 1955" is a title.
    if (plain_[at_] == "to" && found_.count("from") == 0) return false;
    // "Summer of 1942" and "Death in 1990" are titles as well.
    if (*range == Range::kWithin && (!key_.empty() || found_.count("title") == 1)) return false;
    const size_t before = at_++;
    const auto dates = TakeDates();
    auto second = dates;
    if (dates && *range == Range::kBetween) second = TakeSecond();
    if (!dates || !second) {
      at_ = before;
      return false;
    }
    const bool is_decade = dates->first != dates->last;
    if (*range != Range::kTo) found_["from"] = plain_[before] == "after" ? dates->last : dates->first;
    if (*range != Range::kFrom || (is_decade && plain_[before] == "from")) {
      found_["to"] = plain_[before] == "before" ? second->first : second->last;
    }
    key_.clear();
    return true;
  }

  // The "and 2000" of "between 1990 and 2000".
  std::optional<Dates> TakeSecond() {
    if (at_ == words_.size() || plain_[at_] != "and") return {};
    ++at_;
    return TakeDates();
  }

  // A year, a decade, a date; "May 1990", "17 May 1990".
  std::optional<Dates> TakeDates() {
    size_t end = at_;
    if (WordAt(end) == "the") ++end;
    if (WordAt(end) == "year") ++end;
    if (const auto decade = Decade(WordAt(end))) {
      at_ = end + 1;
      return Dates{std::to_string(*decade), std::to_string(*decade + 9)};
    }
    const size_t begin = end;
    if (IsDigits(WordAt(end), 1, 2) && IsMonth(WordAt(end + 1))) ++end;
    if (IsMonth(WordAt(end))) ++end;
    if (!IsYear(WordAt(end)) && (end != begin || !IsDate(WordAt(end)))) return {};
    std::string date;
    for (size_t i = begin; i < end; ++i) Append(date, words_[i]);
    Append(date, plain_[end]);
    at_ = end + 1;
    return Dates{date, date};
  }

  bool TakeMark() {
    const auto* key = Find(Marks(), plain_[at_]);
    if (key == nullptr || at_ + 1 == words_.size()) return false;
    key_ = *key;
    ++at_;
    return true;
  }

  void TakeWord() {
    const size_t at = at_++;
    if (!key_.empty()) return Append(found_[key_], words_[at]);
    const auto* genre = Find(Genres(), plain_[at] + " " + WordAt(at_));
    if (genre != nullptr) ++at_;
    if (genre == nullptr) genre = Find(Genres(), plain_[at]);
    const auto* type = Find(ContentTypes(), plain_[at]);
    if (genre != nullptr) {
      found_["genre"] = *genre;
    } else if (type != nullptr) {
      found_["content_type"] = *type;
    } else {
      Append(found_["title"], words_[at]);
    }
  }

  // What is left of "some of the movies" is no title.
  static void DropFillers(std::string& title) {
    static const std::set<std::string> kFillers = {"a", "an", "and", "any", "of", "some", "the"};
    for (const std::string& word : SplitWords(title)) {
      if (kFillers.count(NormalisedPhrase(word)) == 0) return;
    }
    title.clear();
  }

  std::string WordAt(size_t at) const { return at < plain_.size() ? plain_[at] : ""; }

  // As they were said, and without case.
  std::vector<std::string> words_;
  std::vector<std::string> plain_;
  size_t at_ = 0;
  // Where plain words go; empty unless a mark was read.
  std::string key_;
  std::map<std::string, std::string> found_;
};

}  // namespace

Entries SearchTerms(const std::string& phrase, const std::string& words) {
  std::map<std::string, std::string> found = TermReader(words).ReadAll();
  // Nobody speaks quotation marks; they only say in writing what belongs together.
  std::string utterance = phrase;
  utterance.erase(std::remove(utterance.begin(), utterance.end(), '"'), utterance.end());
  Entries entries = {{"utterance", utterance}};
  for (const char* name : {"title", "genre", "cast", "content_type", "from", "to"}) {
    if (!found[name].empty()) entries.emplace_back(name, TidyPhrase(found[name]));
  }
  entries.emplace_back("raw", words);
  return entries;
}

}  // namespace corvis::kit
