// Reading languages, and understanding texts.
#include "language/phrasebook.h"

#include <algorithm>

#include "language/data.h"
#include "language/phrase_matcher.h"
#include "language/search_terms.h"
#include "language/suggestions.h"

namespace corvis::kit {

namespace {

// The words between those that are only polite.
struct Request {
  size_t begin;
  size_t end;
};

Request FindRequest(PhraseMatcher& matcher) {
  Request request{0, matcher.words().size()};
  for (const size_t end : matcher.PolitenessEnds(0)) {
    if (end < request.end) request.begin = std::max(request.begin, end);
  }
  constexpr size_t kLongestPoliteness = 8;
  const size_t first = std::max(request.begin + 1, request.end - std::min(request.end, kLongestPoliteness));
  for (size_t at = first; at < request.end; ++at) {
    const auto& ends = matcher.PolitenessEnds(at);
    if (std::find(ends.begin(), ends.end(), request.end) != ends.end()) return {request.begin, at};
  }
  return request;
}

// Nobody speaks quotation marks; they only say in writing what belongs together.
std::string Utterance(PhraseMatcher& matcher) {
  const Request request = FindRequest(matcher);
  std::string utterance = matcher.Original(request.begin, request.end);
  utterance.erase(std::remove(utterance.begin(), utterance.end(), '"'), utterance.end());
  return utterance;
}

std::string ValueOf(const std::string& name, const Entries& values) {
  const auto found =
      std::find_if(values.begin(), values.end(), [&](const auto& one) { return one.first == name; });
  return name.empty() || found == values.end() ? "" : found->second;
}

WantedItem ItemOf(const PhraseRow& row, const Entries& values) {
  const std::string place = ValueOf(row.place_slot, values);
  if (place.empty()) return {ValueOf(row.words_slot, values), 0};
  return {"", static_cast<long>(std::strtol(place.c_str(), nullptr, 10))};
}

constexpr std::string_view kItem = "{item}";

bool WantsItem(const PhraseRow& row) {
  return row.data.find(kItem) != std::string::npos ||
         std::any_of(row.entries.begin(), row.entries.end(),
                     [](const auto& entry) { return entry.second == kItem; });
}

Command MakeCommand(const Grammar& grammar, const PhraseRow& row, const Entries& values,
                    PhraseMatcher& matcher) {
  if (row.data == "{terms}") {
    return {row.action, "", SearchTerms(grammar, Utterance(matcher), ValueOf(row.words_slot, values)), true};
  }
  Command command{row.action, Fill(row.data, values), row.entries, row.is_bundle};
  for (auto& [key, value] : command.entries) value = Fill(value, values);
  return command;
}

// Of the paths that take all words, that with the most exact words, or else of the earliest row.
const PathEnd* Best(const std::vector<PathEnd>& ends, size_t count) {
  const PathEnd* best = nullptr;
  for (const PathEnd& end : ends) {
    if (end.end != count) continue;
    if (best == nullptr || end.exact > best->exact || (end.exact == best->exact && end.row < best->row))
      best = &end;
  }
  return best;
}

Understood MakeUnderstood(const Grammar& grammar, PhraseMatcher& matcher, const Paths& paths,
                          const PathEnd& end) {
  const PhraseRow& row = grammar.rows[end.row];
  Understood understood;
  understood.phrase = end.row;
  understood.slots = matcher.FilledSlots(grammar.phrases, paths, end);
  Entries values = matcher.Values(grammar.phrases, paths, end);
  values.emplace_back("item", kItem);
  understood.command = MakeCommand(grammar, row, values, matcher);
  if (WantsItem(row)) understood.item = ItemOf(row, values);
  return understood;
}

const LanguageText* FindLanguage(std::string_view tag) {
  const auto* end = kLanguages + kLanguageCount;
  const auto* found =
      std::find_if(kLanguages, end, [tag](const LanguageText& one) { return one.tag == tag; });
  return found == end ? nullptr : found;
}

tl::unexpected<Error> OtherLanguage(const std::string& file, const std::string& language,
                                    const std::string& wanted) {
  return Fail("The language of " + file + " is " + language + ", not " + wanted + ".", ErrorKind::kUsage);
}

}  // namespace

void Understood::SetItem(long number) {
  const auto set = [number](std::string& text) {
    const size_t at = text.find(kItem);
    if (at != std::string::npos) text.replace(at, kItem.size(), std::to_string(number));
  };
  set(command.text);
  for (auto& [key, value] : command.entries) set(value);
}

Phrasebook Phrasebook::Read(const std::vector<PhraseFile>& files, std::vector<PhraseMistake>& mistakes) {
  return Phrasebook(ReadPhraseFiles(files, mistakes));
}

Result<Phrasebook> Phrasebook::Open(const std::string& tag, const std::vector<PhraseFile>& files) {
  std::string wanted = tag;
  bool is_brought = false;
  for (const PhraseFile& file : files) {
    const std::string language = LanguageOf(file.text);
    if (wanted.empty()) wanted = language;
    is_brought = is_brought || (!language.empty() && language == wanted);
    if (language.empty() || language == wanted) continue;
    return OtherLanguage(file.name, language, wanted);
  }
  if (wanted.empty()) wanted = "en";
  std::vector<PhraseFile> all = files;
  const LanguageText* built_in = FindLanguage(wanted);
  if (built_in != nullptr) all.push_back({wanted + ".phrases", built_in->text});
  if (built_in == nullptr && !is_brought) {
    std::string known;
    for (const std::string& one : BuiltInLanguages()) known += (known.empty() ? "" : ", ") + one;
    return Fail("Unknown language \"" + wanted + "\". Use " + known +
                    ", or a phrase file that begins with \"language " + wanted + "\".",
                ErrorKind::kUsage);
  }
  std::vector<PhraseMistake> mistakes;
  Phrasebook book = Read(all, mistakes);
  if (mistakes.empty()) return book;
  std::string message;
  for (const PhraseMistake& mistake : mistakes) message += (message.empty() ? "" : "\n") + Describe(mistake);
  return Fail(message, ErrorKind::kUsage);
}

const Phrasebook& Phrasebook::English() {
  static const Phrasebook kEnglish = Open("en", {}).value();
  return kEnglish;
}

std::optional<Understood> Phrasebook::Understand(std::string_view text) const {
  if (text.size() > kLongestText) return {};
  PhraseMatcher matcher(*grammar_, text);
  const Paths paths = matcher.WalkPhrases();
  const PathEnd* best = Best(paths.ends, matcher.words().size());
  if (best == nullptr) return {};
  return MakeUnderstood(*grammar_, matcher, paths, *best);
}

std::string Phrasebook::UnknownPhrase(const std::string& text) const {
  if (text.size() > kLongestText) return "The phrase is longer than 16 KiB; expected what somebody can say.";
  const std::string similar = Suggest(text);
  return "Unknown phrase \"" + text + "\"." + (similar.empty() ? "" : " Did you mean \"" + similar + "\"?");
}

std::vector<Phrase> Phrasebook::phrases() const {
  std::vector<Phrase> phrases;
  for (const PhraseRow& row : grammar_->rows) {
    const std::string data = DescribeData({row.action, row.data, row.entries, row.is_bundle});
    phrases.push_back({row.written, row.action + (data.empty() ? "" : " " + data), row.place});
  }
  return phrases;
}

std::vector<std::string> Phrasebook::Samples() const {
  std::vector<std::string> samples;
  for (const PhraseRow& row : grammar_->rows) {
    samples.push_back(SampleOf(row.pattern, [this](const Slot& slot) { return grammar_->Example(slot); }));
  }
  return samples;
}

std::string Phrasebook::SampleFor(std::string_view action) const {
  for (const PhraseRow& row : grammar_->rows) {
    if (row.action == action)
      return SampleOf(row.pattern, [this](const Slot& slot) { return grammar_->Example(slot); });
  }
  return "";
}

std::string Phrasebook::Folded(std::string_view text) const {
  return Joined(SplitWords(grammar_->folding, text.substr(0, kLongestText), /*with_quotations=*/false));
}

std::string Phrasebook::WithoutPoliteness(std::string_view text) const {
  PhraseMatcher matcher(*grammar_, text.substr(0, kLongestText));
  const Request request = FindRequest(matcher);
  return matcher.Original(request.begin, request.end);
}

std::vector<std::string> BuiltInLanguages() {
  std::vector<std::string> tags;
  for (size_t i = 0; i < kLanguageCount; ++i) tags.emplace_back(kLanguages[i].tag);
  return tags;
}

std::string BuiltInLanguage(std::string_view locale) {
  const LanguageText* found = FindLanguage(locale.substr(0, locale.find_first_of("_-.@")));
  return found == nullptr ? "" : found->tag;
}

}  // namespace corvis::kit
