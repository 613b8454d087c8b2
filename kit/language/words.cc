// Splitting texts into words.
#include "language/words.h"

#include <algorithm>

namespace corvis::kit {

namespace {

bool IsDigit(char32_t code) {
  return code >= '0' && code <= '9';
}
bool IsOneOf(char32_t code, std::u32string_view letters) {
  return letters.find(code) != std::u32string_view::npos;
}
bool IsPunctuation(char32_t code) {
  return IsOneOf(code, U".,!?;:()[]{}");
}
bool IsLetter(char32_t code) {
  return code != ' ' && code != '"' && code != '\'' && code != '-' && !IsDigit(code) && !IsPunctuation(code);
}
bool IsWordLetter(char32_t code) {
  return IsLetter(code) && !IsWordByItself(code);
}

class Splitter {
 public:
  Splitter(std::vector<Letter> letters, bool with_quotations) : letters_(std::move(letters)) {
    if (with_quotations) FindClosingMarks();
  }

  std::vector<Word> Split() {
    while (at_ < letters_.size()) {
      if (!TakeQuotation() && !TakeNumber() && !TakePoint() && !TakeLetters()) {
        is_spaced_ = is_spaced_ || Code(at_) == ' ';
        ++at_;
      }
    }
    return std::move(words_);
  }

 private:
  char32_t Code(size_t at) const { return at < letters_.size() ? letters_[at].code : ' '; }

  // An apostrophe closes a quotation where no word goes on after it.
  void FindClosingMarks() {
    double_close_.resize(letters_.size() + 1, letters_.size());
    single_close_ = double_close_;
    for (size_t at = letters_.size(); at-- > 0;) {
      const bool closes = Code(at) == '\'' && !IsWordLetter(Code(at + 1)) && !IsDigit(Code(at + 1));
      double_close_[at] = Code(at) == '"' ? at : double_close_[at + 1];
      single_close_[at] = closes ? at : single_close_[at + 1];
    }
  }

  bool TakeQuotation() {
    const char32_t mark = Code(at_);
    const bool may_open = mark == '"' || (mark == '\'' && (at_ == 0 || !IsWordLetter(Code(at_ - 1))));
    if (!may_open || double_close_.empty()) return false;
    const size_t close = (mark == '"' ? double_close_ : single_close_)[at_ + 1];
    if (close >= letters_.size()) return false;
    const size_t begin = at_++;
    while (at_ < close && Code(at_) == ' ') ++at_;
    if (at_ == close) return true;
    Add(begin, close + 1, /*is_quotation=*/true);
    return true;
  }

  // "21", "1.5", "1:02:03", "1990-05-17".
  bool TakeNumber() {
    if (!IsDigit(Code(at_))) return false;
    size_t end = at_ + 1;
    while (IsDigit(Code(end)) || (IsOneOf(Code(end), U".,:-") && IsDigit(Code(end + 1)))) ++end;
    Add(at_, end);
    return true;
  }

  bool TakePoint() {
    if (Code(at_) != '.' || at_ == 0 || !IsDigit(Code(at_ - 1))) return false;
    const size_t next = Code(at_ + 1) == ' ' ? at_ + 2 : at_ + 1;
    if (!IsLetter(Code(next)) && !IsDigit(Code(next))) return false;
    Add(at_, at_ + 1);
    return true;
  }

  bool TakeLetters() {
    if (!IsLetter(Code(at_))) return false;
    size_t end = at_ + 1;
    if (!IsWordByItself(Code(at_))) {
      while (IsWordLetter(Code(end))) ++end;
      if (Code(end) == '\'') ++end;
    }
    Add(at_, end);
    return true;
  }

  void Add(size_t begin, size_t end, bool is_quotation = false) {
    Word word{"",         letters_[begin].begin, letters_[end - 1].end,
              is_spaced_, is_quotation,          IsWordByItself(Code(begin))};
    // Brackets around a word stay in the text of slots.
    if (begin > 0 && IsOneOf(Code(begin - 1), U"([{")) word.begin = letters_[begin - 1].begin;
    if (IsOneOf(Code(end), U")]}")) word.end = letters_[end].end;
    for (size_t i = begin; i < end; ++i) AppendUtf8(word.text, letters_[i].code);
    words_.push_back(std::move(word));
    is_spaced_ = false;
    at_ = end;
  }

  std::vector<Letter> letters_;
  size_t at_ = 0;
  bool is_spaced_ = true;
  // For each place, where the next mark is that closes a quotation.
  std::vector<size_t> double_close_;
  std::vector<size_t> single_close_;
  std::vector<Word> words_;
};

bool IsInsideLetter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

// Without the quotation marks at its ends.
std::string_view InnerText(std::string_view quotation) {
  quotation.remove_prefix(1);
  while (!quotation.empty() && IsInsideLetter(quotation.front())) quotation.remove_prefix(1);
  while (!quotation.empty() && IsInsideLetter(quotation.back())) quotation.remove_suffix(1);
  quotation.remove_suffix(quotation.empty() ? 0 : 1);
  return quotation;
}

// With one ASCII space for all spaces that follow each other, and none at the ends.
std::string Tidy(std::string_view text) {
  std::string tidy;
  size_t copied = 0;
  for (const Letter& letter : LetterFolding().Fold(text)) {
    if (letter.code != ' ') continue;
    tidy.append(text.substr(copied, letter.begin - copied));
    if (!tidy.empty() && tidy.back() != ' ') tidy += ' ';
    copied = letter.end;
  }
  tidy.append(text.substr(copied));
  if (!tidy.empty() && tidy.back() == ' ') tidy.pop_back();
  return tidy;
}

}  // namespace

std::vector<Word> SplitWords(const LetterFolding& folding, std::string_view text, bool with_quotations) {
  return Splitter(folding.Fold(text), with_quotations).Split();
}

std::string Joined(const std::vector<Word>& words) {
  std::string text;
  for (const Word& word : words) text += (text.empty() ? "" : " ") + word.text;
  return text;
}

std::string Original(std::string_view text, const std::vector<Word>& words, size_t begin, size_t end) {
  if (begin == end) return "";
  const std::string_view part = text.substr(words[begin].begin, words[end - 1].end - words[begin].begin);
  return Tidy(end - begin == 1 && words[begin].is_quotation ? InnerText(part) : part);
}

}  // namespace corvis::kit
