// Reads the tokens of one line of a voice script: words, texts, numbers and durations.
#ifndef CORVIS_KIT_SCRIPT_LINE_READER_H_
#define CORVIS_KIT_SCRIPT_LINE_READER_H_

#include <chrono>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "app/spoken_language.h"
#include "language/actions.h"

namespace corvis::kit {

// Keeps the first error and its column. After an error every read returns an empty value.
class LineReader {
 public:
  // `language` is the script's language at this line; a statement may change it.
  explicit LineReader(std::string_view line, SpokenLanguage* language = nullptr)
      : line_(line), language_(language) {
    SkipSpaces();
  }

  bool is_at_end() const { return at_ >= line_.size(); }
  bool has_failed() const { return !problem_.empty(); }
  const std::string& problem() const { return problem_; }
  int problem_column() const { return static_cast<int>(problem_at_) + 1; }

  // The next word, up to a space or tab; empty at the end of the line.
  std::string Word();
  // Consumes `word` if it is next, and returns whether it was.
  bool TakeWord(std::string_view word);
  // The next word; an error if it is none of `words`.
  std::string OneOf(std::initializer_list<const char*> words);
  // A text: "quoted" with the escapes \" \\ \n \t \r \x1b, or `raw`. With `may_be_bare` also an unquoted
  // word.
  std::string Text(bool may_be_bare = false);
  // The text between two `mark` characters; `\` escapes the mark.
  std::string Between(char mark);
  long Number();
  // "50 ms", "2 s", "2s".
  std::chrono::milliseconds Duration();
  // key="value" or key=value pairs up to the end of the line.
  Entries Pairs();
  // The rest of the line; an error if empty. `what` names it in the error message, for example "a phrase".
  std::string Rest(const char* what);

  // Whether a quoted text follows the next word.
  bool HasTextAfterWord() const;

  SpokenLanguage& language() const { return *language_; }

  char Peek() const { return is_at_end() ? '\0' : line_[at_]; }
  void Fail(const std::string& problem) { FailAt(at_, problem); }
  // Reports an error unless the line ends here.
  void End();

 private:
  void SkipSpaces();
  // The quoted text whose opening quotation mark is next.
  std::string QuotedText();
  // The character of an escape sequence; its letter is next.
  char Escaped();
  void FailAt(size_t at, const std::string& problem);

  std::string_view line_;
  SpokenLanguage* language_;
  size_t at_ = 0;
  std::string problem_;
  size_t problem_at_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_LINE_READER_H_
