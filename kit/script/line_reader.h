// Reads the words, texts, numbers and times of one line of a voice script.
#ifndef CORVIS_KIT_SCRIPT_LINE_READER_H_
#define CORVIS_KIT_SCRIPT_LINE_READER_H_

#include <chrono>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "language/actions.h"

namespace corvis::kit {

// The first thing that is wrong is kept, with the column where; what is read after that is empty.
class LineReader {
 public:
  explicit LineReader(std::string_view line) : line_(line) { SkipSpaces(); }

  bool is_at_end() const { return at_ >= line_.size(); }
  bool has_failed() const { return !problem_.empty(); }
  const std::string& problem() const { return problem_; }
  int problem_column() const { return static_cast<int>(problem_at_) + 1; }

  // The next word, up to a space or tab; empty at the end.
  std::string Word();
  // Takes `word` if it is next.
  bool TakeWord(std::string_view word);
  // The next word, which must be one of these.
  std::string OneOf(std::initializer_list<const char*> words);
  // "quoted" with \" \\ \n \t \r \x1b, or `raw`; a bare word where `may_be_bare`.
  std::string Text(bool may_be_bare = false);
  // The text between two marks; `\` in front of a mark makes it part of the text.
  std::string Between(char mark);
  long Number();
  // "50 ms", "2 s", "2s".
  std::chrono::milliseconds Duration();
  // key="value" or key=value, up to the end.
  Entries Pairs();
  // What is left of the line, which must not be empty; `what` is its name for the error, such as "a phrase".
  std::string Rest(const char* what);

  // Whether a text in quotation marks follows the next word.
  bool HasTextAfterWord() const;

  char Peek() const { return is_at_end() ? '\0' : line_[at_]; }
  void Fail(const std::string& problem) { FailAt(at_, problem); }
  // Fails unless the line ends here.
  void End();

 private:
  void SkipSpaces();
  // The text between quotation marks, of which the first is next.
  std::string QuotedText();
  // What the escape means whose letter is next.
  char Escaped();
  void FailAt(size_t at, const std::string& problem);

  std::string_view line_;
  size_t at_ = 0;
  std::string problem_;
  size_t problem_at_ = 0;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_LINE_READER_H_
