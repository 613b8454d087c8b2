// Words that mean numbers: "twenty-one", "zweihundert…", "third", "May".
#ifndef CORVIS_KIT_LANGUAGE_WORD_LIST_H_
#define CORVIS_KIT_LANGUAGE_WORD_LIST_H_

#include <string>
#include <string_view>
#include <vector>

#include "language/letters.h"
#include "language/notation.h"

namespace corvis::kit {

// The letters by which number words are found: folded, without the spaces and hyphens between their parts.
std::string NumberLetters(const LetterFolding& folding, std::string_view text);

// A number at some place of a text, and where it ends. Places count bytes.
struct NumberReading {
  size_t end;
  double value;
};
using NumberReadings = std::vector<NumberReading>;

class WordList {
 public:
  // Adds all wordings of a pattern. A slot at its beginning or end is for another number, which is added to
  // the value: "two hundred {1-99} -> 200", "{1-20}einhalb -> 0.5". The error message; empty when it fits.
  std::string Add(const Pattern& pattern, double value, const LetterFolding& folding);
  // After the last Add.
  void Sort();

  // The numbers that begin at `begin` of a text made by NumberLetters. `numbers` are those of slots, which
  // are found in digits as well; null for the list itself.
  NumberReadings Read(std::string_view text, size_t begin, const WordList* numbers) const;

 private:
  struct Entry {
    std::string letters;
    double value = 0;
    // The numbers that fit into the slot; none if `most` is less than `least`.
    long least = 1;
    long most = 0;
    bool HasSlot() const { return least <= most; }
  };
  using Entries = std::vector<Entry>;

  static void ForEachAt(const Entries& entries, std::string_view text, size_t begin,
                        const std::function<void(const Entry& entry, size_t end)>& visit);
  NumberReadings ReadNested(std::string_view text, size_t begin, const WordList* numbers, int depth) const;

  // Those whose slot is at the end, or that have none; and those whose slot is at the beginning.
  Entries words_;
  Entries endings_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_WORD_LIST_H_
