// What somebody said, as words.
#ifndef CORVIS_VOICE_SERVICE_PHRASES_WORDS_H_
#define CORVIS_VOICE_SERVICE_PHRASES_WORDS_H_

#include <string>
#include <string_view>
#include <vector>

namespace corvis::voice {

struct Word {
  // As it was said.
  std::string text;
  // What patterns are compared with: lower case, without the punctuation around it.
  std::string folded;
  // Stood in quotes: one word whatever blanks it holds, and no pattern's word.
  bool is_quoted = false;
};

// A view of words that follow each other.
struct Span {
  const Word* first = nullptr;
  size_t count = 0;

  const Word& operator[](size_t i) const { return first[i]; }
  Span From(size_t begin) const { return {first + begin, count - begin}; }
  Span Until(size_t end) const { return {first, end}; }
};

// Splits at blanks; "please" at either end is left out. Punctuation at the end of the whole is not said.
std::vector<Word> SplitWords(std::string_view said);

inline Span All(const std::vector<Word>& words) {
  return {words.data(), words.size()};
}

// The words with one space between them.
std::string Join(Span words);
std::string JoinFolded(Span words);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_PHRASES_WORDS_H_
