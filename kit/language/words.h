// A text as the words that are compared with those of phrases.
#ifndef CORVIS_KIT_LANGUAGE_WORDS_H_
#define CORVIS_KIT_LANGUAGE_WORDS_H_

#include <string>
#include <string_view>
#include <vector>

#include "language/letters.h"

namespace corvis::kit {

struct Word {
  // Folded, without the punctuation around it.
  std::string text;
  // Where it is in the original text; of a quotation, with its quotation marks.
  size_t begin;
  size_t end;
  // Whether a space is in front of it (or nothing is).
  bool is_spaced;
  // Words in quotation marks are one word, which only a slot for any words takes.
  bool is_quotation;
  // Whether it is a letter of a script without regular spaces.
  bool is_letter;
};

// Words end at spaces, after apostrophes (l'|heure), at hyphens and between letters and digits; syllables of
// Hangul and letters of other scripts without regular spaces are words by themselves. The point of "2. Platz"
// is a word. Without quotations, quotation marks are punctuation.
std::vector<Word> SplitWords(const LetterFolding& folding, std::string_view text,
                             bool with_quotations = true);

// The words' texts with one space between them: equal for texts that are compared as equal.
std::string Joined(const std::vector<Word>& words);

// The part of the text that the words were made of, with single spaces; of one quotation, what is in it.
std::string Original(std::string_view text, const std::vector<Word>& words, size_t begin, size_t end);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_WORDS_H_
