// The folding tables, decoded once.
#include "language/letters.h"

#include <algorithm>
#include <array>

#include "language/data.h"

namespace corvis::kit {

namespace {

constexpr char32_t kNoLetter = 0xFFFD;
constexpr char32_t kAsciiEnd = 0x80;

// The arithmetic of Hangul: a syllable is a leading consonant, a vowel and maybe a final consonant.
constexpr char32_t kLead = 0x1100, kVowel = 0x1161, kFinal = 0x11A7, kSyllable = 0xAC00;
constexpr char32_t kLeads = 19, kVowels = 21, kFinals = 28, kSyllables = kLeads * kVowels * kFinals;

// Unicode's limit for marks on one letter. More are not put into order, so that no text takes long.
constexpr size_t kMostMarks = 30;

// Reads the numbers of the generated tables.
class TableReader {
 public:
  TableReader(const unsigned char* bytes, size_t size) : at_(bytes), end_(bytes + size) {}
  bool HasMore() const { return at_ != end_; }
  unsigned Number() {
    unsigned number = 0;
    for (int shift = 0;; shift += 7) {
      number |= (*at_ & 0x7FU) << shift;
      if ((*at_++ & 0x80U) == 0) return number;
    }
  }

 private:
  const unsigned char* at_;
  const unsigned char* end_;
};

struct Folded {
  char32_t from;
  // Where the letters are in the table's text.
  unsigned begin;
  unsigned size;
};

struct FoldTable {
  std::vector<Folded> letters;
  std::u32string text;
};

FoldTable ReadFoldTable() {
  FoldTable table;
  TableReader reader(kFoldedLetters, kFoldedLettersSize);
  char32_t from = 0;
  int distance = 0;
  while (reader.HasMore()) {
    const unsigned step = reader.Number();
    from += step / 2;
    const bool is_one = step % 2 == 0;
    const unsigned number = reader.Number();
    table.letters.push_back({from, static_cast<unsigned>(table.text.size()), is_one ? 1 : number});
    if (is_one) {
      distance += number % 2 == 0 ? static_cast<int>(number / 2) : -static_cast<int>(number / 2) - 1;
      table.text += static_cast<char32_t>(from + distance);
    } else {
      for (unsigned i = 0; i < number; ++i) table.text += static_cast<char32_t>(reader.Number());
    }
  }
  return table;
}

std::u32string_view FoldedLetter(const char32_t& code) {
  static const FoldTable kTable = ReadFoldTable();
  const auto found = std::lower_bound(kTable.letters.begin(), kTable.letters.end(), code,
                                      [](const Folded& one, char32_t other) { return one.from < other; });
  if (found == kTable.letters.end() || found->from != code) return {&code, 1};
  return std::u32string_view(kTable.text).substr(found->begin, found->size);
}

struct MarkRange {
  char32_t begin;
  char32_t end;
  unsigned mark_class;
};

std::vector<MarkRange> ReadMarkRanges() {
  std::vector<MarkRange> ranges;
  TableReader reader(kMarkClasses, kMarkClassesSize);
  for (char32_t at = 0; reader.HasMore();) {
    const char32_t begin = at + reader.Number();
    at = begin + reader.Number();
    ranges.push_back({begin, at, reader.Number()});
  }
  return ranges;
}

// Zero for what is no combining mark.
unsigned MarkClass(char32_t code) {
  static const std::vector<MarkRange> kRanges = ReadMarkRanges();
  if (code < kRanges.front().begin) return 0;
  const auto after = std::upper_bound(kRanges.begin(), kRanges.end(), code,
                                      [](char32_t one, const MarkRange& range) { return one < range.begin; });
  return code < (after - 1)->end ? (after - 1)->mark_class : 0;
}

// How many bytes follow the first one of a letter, with the bits that the first one has.
struct Utf8Lead {
  size_t more;
  char32_t bits;
};

Utf8Lead ReadLead(unsigned char byte) {
  if (byte < kAsciiEnd) return {0, byte};
  if (byte >= 0xC2 && byte < 0xE0) return {1, byte & 0x1FU};
  if (byte >= 0xE0 && byte < 0xF0) return {2, byte & 0x0FU};
  if (byte >= 0xF0 && byte < 0xF5) return {3, byte & 0x07U};
  return {0, kNoLetter};
}

bool IsWellFormed(char32_t code, size_t more) {
  constexpr std::array<char32_t, 4> kLeast = {0, 0x80, 0x800, 0x10000};
  return code >= kLeast[more] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Letter Decode(std::string_view text, size_t at) {
  const Utf8Lead lead = ReadLead(static_cast<unsigned char>(text[at]));
  char32_t code = lead.bits;
  for (size_t i = 1; i <= lead.more; ++i) {
    const unsigned byte = at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0;
    if ((byte & 0xC0U) != 0x80) return {kNoLetter, at, at + 1};
    code = code << 6U | (byte & 0x3FU);
  }
  if (!IsWellFormed(code, lead.more)) return {kNoLetter, at, at + 1};
  return {code, at, at + 1 + lead.more};
}

// The syllable that `last` and `code` make together, or 0.
char32_t ComposedHangul(char32_t last, char32_t code) {
  if (last - kLead < kLeads && code - kVowel < kVowels) {
    return kSyllable + ((last - kLead) * kVowels + code - kVowel) * kFinals;
  }
  const bool may_end = last - kSyllable < kSyllables && (last - kSyllable) % kFinals == 0;
  return may_end && code > kFinal && code - kFinal < kFinals ? last + code - kFinal : 0;
}

// Puts the last mark where it belongs among the marks of its letter.
void OrderMarks(std::vector<Letter>& letters) {
  const unsigned mark_class = MarkClass(letters.back().code);
  size_t at = letters.size() - 1;
  const size_t least = at - std::min(at, kMostMarks);
  while (at > least && MarkClass(letters[at - 1].code) > mark_class) --at;
  std::rotate(letters.begin() + static_cast<ptrdiff_t>(at), letters.end() - 1, letters.end());
}

}  // namespace

void LetterFolding::Add(std::string_view letter, std::string_view text) {
  std::u32string from;
  std::u32string to;
  // Without the language's own letters: replacements of replacements could grow without end.
  for (const Letter& folded : LetterFolding().Fold(text)) to += folded.code;
  for (const Letter& folded : LetterFolding().Fold(letter)) from += folded.code;
  if (from.size() > 1) own_[from] = to;
  if (!letter.empty()) own_[std::u32string(1, Decode(letter, 0).code)] = to;
}

std::vector<Letter> LetterFolding::Fold(std::string_view text) const {
  std::vector<Letter> letters;
  letters.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const Letter letter = Decode(text, at);
    at = letter.end;
    const auto own = FindOwn({letter.code});
    if (own != own_.end()) {
      for (const char32_t code : own->second) letters.push_back({code, letter.begin, letter.end});
    } else if (letter.code < kAsciiEnd && letter.code > ' ' && letter.code != '`') {
      const bool is_capital = letter.code >= 'A' && letter.code <= 'Z';
      letters.push_back({is_capital ? letter.code - 'A' + 'a' : letter.code, letter.begin, letter.end});
    } else {
      for (const char32_t code : FoldedLetter(letter.code)) Append(letters, {code, letter.begin, letter.end});
    }
  }
  return letters;
}

LetterFolding::Own::const_iterator LetterFolding::FindOwn(const std::u32string& letters) const {
  return own_.empty() ? own_.end() : own_.find(letters);
}

void LetterFolding::Append(std::vector<Letter>& letters, Letter letter) const {
  const char32_t last = letters.empty() ? 0 : letters.back().code;
  if (const char32_t syllable = ComposedHangul(last, letter.code)) {
    letters.back() = {syllable, letters.back().begin, letter.end};
    return;
  }
  const bool is_mark = MarkClass(letter.code) != 0;
  const auto own = is_mark ? FindOwn({last, letter.code}) : FindOwn({letter.code});
  if (own != own_.end()) {
    if (is_mark) {
      letter.begin = letters.back().begin;
      letters.pop_back();
    }
    for (const char32_t code : own->second) letters.push_back({code, letter.begin, letter.end});
    return;
  }
  letters.push_back(letter);
  if (is_mark) OrderMarks(letters);
}

void AppendUtf8(std::string& text, char32_t code) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0U | code >> 6U);
  } else if (code < 0x10000) {
    append(0xE0U | code >> 12U);
    append(0x80U | (code >> 6U & 0x3FU));
  } else {
    append(0xF0U | code >> 18U);
    append(0x80U | (code >> 12U & 0x3FU));
    append(0x80U | (code >> 6U & 0x3FU));
  }
  append(0x80U | (code & 0x3FU));
}

bool IsWordByItself(char32_t code) {
  // Thai to Lao, Myanmar, Khmer, kana, Han, Hangul, Han again.
  constexpr std::pair<char32_t, char32_t> kScripts[] = {{0x0E00, 0x0EFF}, {0x1000, 0x109F},  {0x1780, 0x17FF},
                                                        {0x3041, 0x30FF}, {0x3400, 0x4DBF},  {0x4E00, 0x9FFF},
                                                        {0xAC00, 0xD7A3}, {0x20000, 0x3FFFF}};
  return code >= kScripts[0].first &&
         std::any_of(std::begin(kScripts), std::end(kScripts),
                     [code](auto& script) { return code >= script.first && code <= script.second; });
}

bool MayFollow(char32_t last, AfterEnding after) {
  constexpr char32_t kRieul = 8;
  // The final consonants of yeong, il, i, sam, sa, o, yuk, chil, pal and gu, as digits are said.
  constexpr std::array<char32_t, 10> kDigits = {21, kRieul, 0, 16, 0, 0, 1, kRieul, kRieul, 0};
  const bool is_digit = last >= '0' && last <= '9';
  const bool is_hangul = last - kSyllable < kSyllables;
  if (after == AfterEnding::kAny || (!is_digit && !is_hangul)) return true;
  const char32_t final = is_digit ? kDigits[last - '0'] : (last - kSyllable) % kFinals;
  // Of some pairs, the second is said after this consonant, too: 으로/로.
  return final == kRieul || (final != 0) == (after == AfterEnding::kConsonant);
}

bool DifferInOneJamo(std::string_view one, std::string_view other) {
  constexpr size_t kBytes = 3;
  if (one.size() != kBytes || other.size() != kBytes) return false;
  const char32_t a = Decode(one, 0).code - kSyllable;
  const char32_t b = Decode(other, 0).code - kSyllable;
  if (a >= kSyllables || b >= kSyllables) return false;
  const int leads = a / kFinals / kVowels != b / kFinals / kVowels ? 1 : 0;
  const int vowels = a / kFinals % kVowels != b / kFinals % kVowels ? 1 : 0;
  return leads + vowels + (a % kFinals != b % kFinals ? 1 : 0) == 1;
}

}  // namespace corvis::kit
