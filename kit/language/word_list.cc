// Number words are found letter by letter, so that compounds need no list of their own.
#include "language/word_list.h"

#include <algorithm>
#include <charconv>

namespace corvis::kit {

namespace {

// "Nine hundred and ninety-nine" takes two; nothing sensible takes more than this.
constexpr int kDeepestNesting = 4;
constexpr size_t kMostEntryWordings = 1000;
constexpr size_t kMostReadings = 32;
constexpr long kGreatestListed = 1'000'000;

// A slot, in an expanded pattern: no letter is the same.
constexpr char kSlotMark = '{';

NumberReadings ReadDigits(std::string_view text, size_t begin) {
  long number = 0;
  const char* const end = text.data() + text.size();
  const char* const first = text.data() + begin;
  const auto [after, error] = std::from_chars(first, end, number);
  if (after == first || *first == '-' || error != std::errc() || number > kGreatestListed) return {};
  return {{static_cast<size_t>(after - text.data()), static_cast<double>(number)}};
}

}  // namespace

std::string NumberLetters(const LetterFolding& folding, std::string_view text) {
  std::string letters;
  for (const Letter& letter : folding.Fold(text)) {
    if (letter.code != ' ' && letter.code != '-') AppendUtf8(letters, letter.code);
  }
  return letters;
}

std::string WordList::Add(const Pattern& pattern, double value, const LetterFolding& folding) {
  Slot slot;
  const auto wordings = Expand(pattern, kMostEntryWordings + 1, [&slot](const Slot& found) {
    slot = found;
    return std::string(1, kSlotMark);
  });
  if (wordings.size() > kMostEntryWordings) return "The pattern has too many wordings.";
  for (const std::string& wording : wordings) {
    Entry entry{NumberLetters(folding, wording), value};
    const size_t at = entry.letters.find(kSlotMark);
    if (entry.letters.empty() || at != entry.letters.rfind(kSlotMark))
      return "Expected words and at most one slot.";
    const bool is_ending = at == 0;
    if (at != std::string::npos) {
      if (slot.kind != SlotKind::kNumber || entry.letters.size() == 1 ||
          (!is_ending && at + 1 != entry.letters.size())) {
        return "Expected a slot for a number at the beginning or at the end, for example {1-99}.";
      }
      entry.letters.erase(at, 1);
      entry.least = slot.least;
      entry.most = slot.most;
    }
    (is_ending ? endings_ : words_).push_back(std::move(entry));
  }
  return "";
}

void WordList::Sort() {
  const auto before = [](const Entry& one, const Entry& other) { return one.letters < other.letters; };
  std::sort(words_.begin(), words_.end(), before);
  std::sort(endings_.begin(), endings_.end(), before);
}

void WordList::ForEachAt(const Entries& entries, std::string_view text, size_t begin,
                         const std::function<void(const Entry& entry, size_t end)>& visit) {
  auto first = entries.begin();
  auto last = entries.end();
  for (size_t at = begin; at < text.size() && first != last; ++at) {
    // Those that go on with this letter.
    const size_t depth = at - begin;
    const auto letter = static_cast<unsigned char>(text[at]);
    const auto letter_of = [depth](const Entry& entry) {
      return entry.letters.size() > depth ? static_cast<unsigned char>(entry.letters[depth]) : -1;
    };
    first = std::lower_bound(first, last, letter,
                             [&](const Entry& entry, int one) { return letter_of(entry) < one; });
    last = std::upper_bound(first, last, letter,
                            [&](int one, const Entry& entry) { return one < letter_of(entry); });
    for (auto entry = first; entry != last && entry->letters.size() == depth + 1; ++entry)
      visit(*entry, at + 1);
  }
}

NumberReadings WordList::Read(std::string_view text, size_t begin, const WordList* numbers) const {
  return ReadNested(text, begin, numbers, 0);
}

NumberReadings WordList::ReadNested(std::string_view text, size_t begin, const WordList* numbers,
                                    int depth) const {
  const WordList& in_slots = numbers != nullptr ? *numbers : *this;
  if (depth == kDeepestNesting) return {};
  NumberReadings readings = numbers == nullptr ? ReadDigits(text, begin) : NumberReadings();
  const auto add = [&readings](size_t end, double value) {
    if (readings.size() < kMostReadings) readings.push_back({end, value});
  };
  const auto fits = [](const Entry& entry, double value) {
    return value >= static_cast<double>(entry.least) && value <= static_cast<double>(entry.most);
  };
  ForEachAt(words_, text, begin, [&](const Entry& entry, size_t end) {
    if (!entry.HasSlot()) return add(end, entry.value);
    for (const NumberReading& rest : in_slots.ReadNested(text, end, nullptr, depth + 1)) {
      if (fits(entry, rest.value)) add(rest.end, entry.value + rest.value);
    }
  });
  if (endings_.empty()) return readings;
  const NumberReadings before =
      numbers == nullptr ? readings : in_slots.ReadNested(text, begin, nullptr, depth + 1);
  for (const NumberReading& one : before) {
    ForEachAt(endings_, text, one.end, [&](const Entry& entry, size_t end) {
      if (fits(entry, one.value)) add(end, entry.value + one.value);
    });
  }
  return readings;
}

}  // namespace corvis::kit
