// The sections of phrase files, by a table.
#include "language/phrase_file.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "language/raw_command.h"
#include "language/suggestions.h"

namespace corvis::kit {

namespace {

constexpr size_t kLargestFile = size_t{1} << 20U;
constexpr size_t kLongestLine = 4096;
constexpr size_t kMostMistakes = 100;

// A part of a line, with the column of its first byte, from 0.
struct Span {
  std::string_view text;
  size_t column = 0;
};

Span Trimmed(Span span) {
  const size_t first = std::min(span.text.find_first_not_of(' '), span.text.size());
  const size_t last = span.text.find_last_not_of(' ');
  return {span.text.substr(first, last == std::string_view::npos ? 0 : last + 1 - first),
          span.column + first};
}

// "pattern -> value", or a pattern alone.
struct Line {
  PhrasePlace place;
  Span pattern;
  Span value;
  bool has_arrow = false;
};

Line SplitAtArrow(const PhrasePlace& place, std::string_view text) {
  for (const std::string_view arrow : {"->", "→"}) {
    const size_t at = text.find(arrow);
    if (at == std::string_view::npos) continue;
    const size_t after = at + arrow.size();
    return {place, Trimmed({text.substr(0, at), 0}), Trimmed({text.substr(after), after}), true};
  }
  return {place, Trimmed({text, 0}), {}, false};
}

// The slots that a pattern has, by their names.
void CollectSlots(const Pattern& pattern, std::map<std::string, Slot>& slots) {
  for (const Part& part : pattern) {
    if (part.IsSlot()) slots[part.slot.name] = part.slot;
    for (const Pattern& choice : part.choices) CollectSlots(choice, slots);
  }
}

bool IsWordsSlot(const Part& part) {
  return part.IsSlot() && part.slot.kind == SlotKind::kWords;
}

// "20", "0.5"; nothing for anything else.
std::optional<double> Number(std::string_view text) {
  constexpr size_t kMostDigits = 9;
  const size_t point = std::min(text.find('.'), text.size());
  double number = 0;
  double unit = 1;
  for (size_t at = 0; at < text.size(); ++at) {
    if (at == point) continue;
    if (text[at] < '0' || text[at] > '9') return {};
    number = number * 10 + (text[at] - '0');
    if (at > point) unit *= 10;
  }
  const size_t digits = text.size() - (point < text.size() ? 1 : 0);
  return digits > 0 && digits <= kMostDigits ? std::optional(number / unit) : std::nullopt;
}

class FileReader {
 public:
  explicit FileReader(std::vector<PhraseMistake>& mistakes) : mistakes_(mistakes) {}

  void Split(const PhraseFile& file);
  Grammar Build();

 private:
  using Build_ = void (FileReader::*)(const Line& line);
  struct Section {
    std::string_view name;
    Build_ build;
    bool needs_arrow;
  };
  static const std::vector<Section>& Sections();

  void Fail(const Line& line, size_t column, const std::string& message);
  void TakeHeader(const Line& line, std::string_view text);
  std::string TakeSection(const Line& line, std::string_view text);

  void AddLetters(const Line& line);
  void AddPiece(const Line& line);
  void AddExample(const Line& line);
  void AddPoliteness(const Line& line);
  void AddNumber(const Line& line) { AddToList(line, grammar_.numbers); }
  void AddAmount(const Line& line) { AddToList(line, grammar_.amounts); }
  void AddPlace(const Line& line) { AddToList(line, grammar_.places); }
  void AddMonth(const Line& line) { AddToList(line, grammar_.months); }
  void AddTime(const Line& line);
  void AddDate(const Line& line);
  void AddSearch(const Line& line);
  void AddPhrase(const Line& line);

  void AddToList(const Line& line, WordList& list);
  bool ReadPattern(const Line& line, Pattern& pattern);
  // Adds the pattern to an automaton, as the row after `rows` others.
  bool AddPattern(const Line& line, const Pattern& pattern, size_t rows, Automaton& automaton);
  // Whether all slots of the pattern are of kinds that contain no other slots.
  bool HasSimpleSlots(const Line& line, const Pattern& pattern);
  // Whether each {name} of the value is a slot of the pattern.
  bool HasSlots(const Line& line, const Pattern& pattern, std::vector<std::string> more);
  bool ReadSum(const Line& line, Sum& sum);
  bool ReadTerms(const Line& line, std::string_view text, Entries& terms);

  std::vector<PhraseMistake>& mistakes_;
  Grammar grammar_;
  PatternWords words_{grammar_.folding, grammar_.vocabulary};
  Pieces pieces_;
  std::map<std::string, std::vector<Line>> lines_;
};

// In the order in which they are read: patterns need the letters and the pieces.
const std::vector<FileReader::Section>& FileReader::Sections() {
  static const std::vector<Section> kSections = {
      {"letters", &FileReader::AddLetters, true},  {"pieces", &FileReader::AddPiece, true},
      {"examples", &FileReader::AddExample, true}, {"politeness", &FileReader::AddPoliteness, false},
      {"numbers", &FileReader::AddNumber, true},   {"amounts", &FileReader::AddAmount, true},
      {"places", &FileReader::AddPlace, true},     {"months", &FileReader::AddMonth, true},
      {"time", &FileReader::AddTime, true},        {"dates", &FileReader::AddDate, true},
      {"search", &FileReader::AddSearch, false},   {"phrases", &FileReader::AddPhrase, true}};
  return kSections;
}

void FileReader::Fail(const Line& line, size_t column, const std::string& message) {
  if (mistakes_.size() < kMostMistakes)
    mistakes_.push_back({line.place, static_cast<int>(column) + 1, message});
}

void FileReader::Split(const PhraseFile& file) {
  Line line{{file.name, 1}, {}, {}};
  if (file.text.size() > kLargestFile) return Fail(line, 0, "The file is larger than 1 MiB.");
  std::string section;
  std::map<std::string, std::vector<Line>> lines;
  const std::string_view all = file.text;
  for (size_t begin = 0; begin < all.size(); ++line.place.line) {
    const size_t end = std::min(all.find('\n', begin), all.size());
    std::string_view text = all.substr(begin, end - begin);
    begin = end + 1;
    if (line.place.line == 1 && text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
    const Span trimmed = Trimmed({text, 0});
    if (trimmed.text.empty() || trimmed.text[0] == '#') continue;
    if (text.size() > kLongestLine) {
      Fail(line, kLongestLine, "The line is longer than 4096 bytes.");
    } else if (trimmed.text[0] == '[' && trimmed.text.back() == ']' &&
               trimmed.text.find_first_of(" |(") == std::string_view::npos) {
      section = TakeSection(line, trimmed.text.substr(1, trimmed.text.size() - 2));
    } else if (section.empty()) {
      TakeHeader(line, trimmed.text);
    } else {
      lines[section].push_back(SplitAtArrow(line.place, text));
    }
  }
  for (const auto& [name, more] : lines) {
    // Of pieces, the last one read counts.
    auto& all_lines = lines_[name];
    all_lines.insert(name == "pieces" ? all_lines.begin() : all_lines.end(), more.begin(), more.end());
  }
}

void FileReader::TakeHeader(const Line& line, std::string_view text) {
  constexpr std::string_view kLanguage = "language ";
  if (text.substr(0, kLanguage.size()) != kLanguage) {
    return Fail(line, 0, "Expected \"language TAG NAME\" or a section, for example [phrases].");
  }
  const std::string_view rest = Trimmed({text.substr(kLanguage.size()), 0}).text;
  const size_t space = std::min(rest.find(' '), rest.size());
  grammar_.tag = rest.substr(0, space);
  if (space < rest.size()) grammar_.name = rest.substr(space + 1);
}

std::string FileReader::TakeSection(const Line& line, std::string_view text) {
  std::vector<std::string> names;
  for (const Section& section : Sections()) {
    if (section.name == text) return std::string(text);
    names.emplace_back(section.name);
  }
  Fail(line, 0, "Unknown section [" + std::string(text) + "]." + DidYouMean(text, names));
  // What follows is not read.
  return "?";
}

Grammar FileReader::Build() {
  for (const Section& section : Sections()) {
    for (const Line& line : lines_[std::string(section.name)]) {
      if (section.needs_arrow && (!line.has_arrow || line.value.text.empty())) {
        Fail(line, line.pattern.column + line.pattern.text.size(), "Expected -> and what the words mean.");
      } else {
        (this->*section.build)(line);
      }
    }
  }
  for (WordList* list : {&grammar_.numbers, &grammar_.amounts, &grammar_.places, &grammar_.months})
    list->Sort();
  return std::move(grammar_);
}

bool FileReader::ReadPattern(const Line& line, Pattern& pattern) {
  PatternReader reader(line.pattern.text, pieces_);
  pattern = reader.Read();
  if (reader.message().empty()) return true;
  Fail(line, line.pattern.column + reader.at(), reader.message());
  return false;
}

bool FileReader::AddPattern(const Line& line, const Pattern& pattern, size_t rows, Automaton& automaton) {
  const std::string message = automaton.Add(static_cast<uint32_t>(rows), pattern, words_);
  if (!message.empty()) Fail(line, line.pattern.column, message);
  return message.empty();
}

bool FileReader::HasSimpleSlots(const Line& line, const Pattern& pattern) {
  std::map<std::string, Slot> slots;
  CollectSlots(pattern, slots);
  const auto wrong = std::find_if(slots.begin(), slots.end(), [](const auto& one) {
    return one.second.kind == SlotKind::kWords || one.second.kind >= SlotKind::kTime;
  });
  if (wrong == slots.end()) return true;
  Fail(line, line.pattern.column,
       "The slot {" + wrong->first +
           "} must be one for a number, an amount, a place, a month, a year or a decade here.");
  return false;
}

bool FileReader::HasSlots(const Line& line, const Pattern& pattern, std::vector<std::string> more) {
  std::map<std::string, Slot> slots;
  CollectSlots(pattern, slots);
  for (const auto& [name, slot] : slots) {
    more.push_back(name);
    if (slot.kind == SlotKind::kDate || slot.kind == SlotKind::kPeriod) {
      more.insert(more.end(), {name + ".first", name + ".last"});
    }
  }
  const std::string_view value = line.value.text;
  for (size_t open = value.find('{'); open != std::string_view::npos; open = value.find('{', open + 1)) {
    const size_t close = value.find('}', open);
    const std::string name(
        value.substr(open + 1, close == std::string_view::npos ? close : close - open - 1));
    if (close != std::string_view::npos && std::find(more.begin(), more.end(), name) != more.end()) continue;
    Fail(line, line.value.column + open, "The pattern has no slot {" + name + "}." + DidYouMean(name, more));
    return false;
  }
  return true;
}

void FileReader::AddLetters(const Line& line) {
  // Longer replacements would let a short file make any text huge.
  constexpr size_t kLongestReplacement = 16;
  if (line.value.text.size() > kLongestReplacement)
    return Fail(line, line.value.column, "Expected at most 16 bytes of letters.");
  for (std::string_view rest = line.pattern.text; !rest.empty();) {
    const size_t end = std::min(rest.find(' '), rest.size());
    if (end > 0) grammar_.folding.Add(rest.substr(0, end), line.value.text);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

void FileReader::AddPiece(const Line& line) {
  const std::string_view name = line.pattern.text;
  if (name.size() < 3 || name.front() != '<' || name.back() != '>') {
    return Fail(line, line.pattern.column, "Expected the name of a piece, for example <movie>.");
  }
  PatternReader reader(line.value.text, pieces_);
  Pattern pattern = reader.Read();
  if (!reader.message().empty()) return Fail(line, line.value.column + reader.at(), reader.message());
  pieces_[std::string(name.substr(1, name.size() - 2))] = std::move(pattern);
  grammar_.pieces[std::string(name)] = line.value.text;
}

void FileReader::AddExample(const Line& line) {
  const std::string_view name = line.pattern.text;
  if (name.size() < 3 || name.front() != '{' || name.back() != '}') {
    return Fail(line, line.pattern.column, "Expected a slot, for example {time}.");
  }
  grammar_.examples.emplace(name.substr(1, name.size() - 2), line.value.text);
}

void FileReader::AddPoliteness(const Line& line) {
  Pattern pattern;
  if (ReadPattern(line, pattern) && HasSimpleSlots(line, pattern))
    AddPattern(line, pattern, 0, grammar_.politeness);
}

void FileReader::AddToList(const Line& line, WordList& list) {
  Pattern pattern;
  if (!ReadPattern(line, pattern)) return;
  const auto value = Number(line.value.text);
  if (!value) return Fail(line, line.value.column, "Expected a number.");
  const std::string message = list.Add(pattern, *value, grammar_.folding);
  if (!message.empty()) Fail(line, line.pattern.column, message);
}

bool FileReader::ReadSum(const Line& line, Sum& sum) {
  std::string_view rest = line.value.text;
  while (true) {
    const size_t plus = std::min(rest.find('+'), rest.size());
    const std::string_view term = Trimmed({rest.substr(0, plus), 0}).text;
    const size_t open = std::min(term.find('{'), term.size());
    const std::string_view factor = Trimmed({term.substr(0, open), 0}).text;
    // A slot alone counts once.
    const auto number = Number(factor.empty() && open < term.size() ? "1" : factor);
    Term read{number.value_or(0), ""};
    if (open < term.size()) read.slot = term.substr(open + 1, term.size() - open - 2);
    if (!number || (open < term.size() && term.back() != '}')) {
      Fail(line, line.value.column, "Expected a sum, for example 60 {minutes} + 30.");
      return false;
    }
    sum.push_back(read);
    if (plus == rest.size()) return true;
    rest.remove_prefix(plus + 1);
  }
}

void FileReader::AddTime(const Line& line) {
  Pattern pattern;
  Sum sum;
  const bool is_right = ReadPattern(line, pattern) && HasSimpleSlots(line, pattern) &&
                        HasSlots(line, pattern, {}) && ReadSum(line, sum) &&
                        AddPattern(line, pattern, grammar_.time_sums.size(), grammar_.time);
  if (is_right) grammar_.time_sums.push_back(std::move(sum));
}

void FileReader::AddDate(const Line& line) {
  Pattern pattern;
  const bool is_right = ReadPattern(line, pattern) && HasSimpleSlots(line, pattern) &&
                        HasSlots(line, pattern, {}) &&
                        AddPattern(line, pattern, grammar_.date_texts.size(), grammar_.dates);
  if (is_right) grammar_.date_texts.emplace_back(line.value.text);
}

bool FileReader::ReadTerms(const Line& line, std::string_view text, Entries& terms) {
  static const std::vector<std::string> kNames = {"title", "genre", "cast", "content_type", "from", "to"};
  const auto command = ParseRawCommand("ACTION_SEARCH " + std::string(text));
  if (!command || !command->is_bundle) {
    Fail(line, line.value.column, "Expected search terms, for example genre=comedy.");
    return false;
  }
  terms = command->entries;
  const auto wrong = std::find_if(terms.begin(), terms.end(), [](const auto& term) {
    return std::find(kNames.begin(), kNames.end(), term.first) == kNames.end();
  });
  if (wrong == terms.end()) return true;
  Fail(line, line.value.column,
       "Unknown search term \"" + wrong->first + "\"." + DidYouMean(wrong->first, kNames));
  return false;
}

void FileReader::AddSearch(const Line& line) {
  constexpr std::string_view kUnlessTitle = " unless title";
  SearchRow row;
  Pattern pattern;
  if (!ReadPattern(line, pattern) || !HasSlots(line, pattern, {})) return;
  std::string_view terms = line.value.text;
  if (terms.size() > kUnlessTitle.size() &&
      terms.substr(terms.size() - kUnlessTitle.size()) == kUnlessTitle) {
    row.is_unless_title = true;
    terms.remove_suffix(kUnlessTitle.size());
  }
  if (line.has_arrow && !ReadTerms(line, terms, row.terms)) return;
  if (IsWordsSlot(pattern.front())) {
    row.before = pattern.front().slot.name;
    pattern.erase(pattern.begin());
  }
  if (!pattern.empty() && IsWordsSlot(pattern.back())) {
    row.after = pattern.back().slot.name;
    pattern.pop_back();
  }
  std::map<std::string, Slot> slots;
  CollectSlots(pattern, slots);
  for (const auto& [name, slot] : slots) {
    if (slot.kind == SlotKind::kWords)
      return Fail(line, line.pattern.column, "The slot {" + name + "} must be at an end of the pattern.");
  }
  if (AddPattern(line, pattern, grammar_.search_rows.size(), grammar_.search)) {
    grammar_.search_rows.push_back(std::move(row));
  }
}

void FileReader::AddPhrase(const Line& line) {
  PhraseRow row;
  row.place = line.place;
  row.written = line.pattern.text;
  if (!ReadPattern(line, row.pattern) || !HasSlots(line, row.pattern, {"item", "terms"})) return;
  const auto command = ParseRawCommand(line.value.text);
  if (!command) return Fail(line, line.value.column, command.error().message);
  const ActionInfo* action = FindAction(command->action);
  if (action == nullptr) {
    return Fail(line, line.value.column,
                "Unknown action " + command->action + "." + DidYouMeanAction(command->action));
  }
  row.action = command->action;
  row.data = command->text;
  row.entries = command->entries;
  row.is_bundle = command->is_bundle;
  std::map<std::string, Slot> slots;
  CollectSlots(row.pattern, slots);
  for (const auto& [name, slot] : slots) {
    if (slot.kind == SlotKind::kWords) row.words_slot = name;
    if (slot.kind == SlotKind::kPlace) row.place_slot = name;
  }
  if (AddPattern(line, row.pattern, grammar_.rows.size(), grammar_.phrases))
    grammar_.rows.push_back(std::move(row));
}

}  // namespace

std::string Describe(const PhraseMistake& mistake) {
  return mistake.place.file + ":" + std::to_string(mistake.place.line) + ":" +
         std::to_string(mistake.column) + ": " + mistake.message;
}

Grammar ReadPhraseFiles(const std::vector<PhraseFile>& files, std::vector<PhraseMistake>& mistakes) {
  FileReader reader(mistakes);
  for (const PhraseFile& file : files) reader.Split(file);
  return reader.Build();
}

std::string LanguageOf(std::string_view text) {
  std::vector<PhraseMistake> ignored;
  FileReader reader(ignored);
  // The reader keeps views of the text until it has built.
  const PhraseFile header{"", std::string(text.substr(0, text.find("\n[")))};
  reader.Split(header);
  return reader.Build().tag;
}

std::string Grammar::Example(const Slot& slot) const {
  const auto found = examples.find(slot.name);
  if (found != examples.end()) return found->second;
  if (slot.kind == SlotKind::kNumber) return std::to_string(std::max(slot.least, std::min(3L, slot.most)));
  return SlotName(slot);
}

std::string Fill(const std::string& text, const Entries& values) {
  std::string filled;
  for (size_t at = 0; at < text.size();) {
    const size_t open = std::min(text.find('{', at), text.size());
    const size_t close = text.find('}', open);
    filled += text.substr(at, open - at);
    if (close == std::string::npos) return filled + text.substr(open);
    const std::string name = text.substr(open + 1, close - open - 1);
    const auto value =
        std::find_if(values.begin(), values.end(), [&](const auto& one) { return one.first == name; });
    if (value != values.end()) filled += value->second;
    at = close + 1;
  }
  return filled;
}

}  // namespace corvis::kit
