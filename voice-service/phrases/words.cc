// Splitting what was said into words.
#include "phrases/words.h"

#include "support/quoted_text.h"
#include "support/text.h"

namespace corvis::voice {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\f\v";
constexpr std::string_view kPunctuation = ".,!?;";

std::string_view WithoutPunctuation(std::string_view word) {
  const size_t last = word.find_last_not_of(kPunctuation);
  return last == std::string_view::npos ? word : word.substr(0, last + 1);
}

Word PlainWord(std::string_view text) {
  return {std::string(text), Lower(WithoutPunctuation(text)), false};
}

// The quoted word at `position`, or no word when the quote has no end.
bool ReadQuotedWord(std::string_view said, size_t& position, Word& word) {
  TextError error;
  size_t end = position;
  if (!ReadQuoted(said, end, word.text, error)) return false;
  word.folded = Lower(word.text);
  word.is_quoted = true;
  position = end;
  return true;
}

bool isPlease(const Word& word) {
  return !word.is_quoted && word.folded == "please";
}

template <typename Get>
std::string JoinBy(Span words, Get get) {
  std::string text;
  for (size_t i = 0; i < words.count; ++i) {
    if (i > 0) text += ' ';
    text += get(words[i]);
  }
  return text;
}

}  // namespace

std::vector<Word> SplitWords(std::string_view said) {
  std::vector<Word> words;
  size_t position = 0;
  while ((position = said.find_first_not_of(kBlanks, position)) != std::string_view::npos) {
    Word word;
    if (said[position] != '"' || !ReadQuotedWord(said, position, word)) {
      const size_t end = std::min(said.find_first_of(kBlanks, position), said.size());
      word = PlainWord(said.substr(position, end - position));
      position = end;
    }
    words.push_back(std::move(word));
  }
  if (words.size() > 1 && isPlease(words.front())) words.erase(words.begin());
  if (words.size() > 1 && isPlease(words.back())) words.pop_back();
  if (!words.empty() && !words.back().is_quoted) {
    words.back().text = WithoutPunctuation(words.back().text);
  }
  return words;
}

std::string Join(Span words) {
  return JoinBy(words, [](const Word& word) { return word.text; });
}

std::string JoinFolded(Span words) {
  return JoinBy(words, [](const Word& word) { return word.folded; });
}

}  // namespace corvis::voice
