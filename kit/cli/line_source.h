// Reads the user's lines: from a prompt with editing, history and completion, or from plain standard input.
// The main loop keeps running while it waits for a line.
#ifndef CORVIS_KIT_CLI_LINE_SOURCE_H_
#define CORVIS_KIT_CLI_LINE_SOURCE_H_

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/result.h"
#include "output/output_file.h"

namespace corvis::kit {

class LineSource {
 public:
  LineSource() = default;
  virtual ~LineSource() = default;
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;

  // The next line without its newline. Returns nothing at the end of input or when waits are ended
  // (service/main_loop.h).
  virtual std::optional<std::string> Next() = 0;
  // Print lines on standard output or standard error without disturbing the line being typed. Everything but
  // newlines is escaped for terminals.
  virtual void Show(const std::string& lines);
  virtual void ShowError(const std::string& lines);
  // An error if writing to standard output has failed.
  const Status& status() const { return output_.status(); }

 private:
  OutputFile output_ = OutputFile::Standard();
};

// The effect of Tab on a typed text.
struct Completion {
  // The common continuation of all words that start with the typed text; ends in a space if there is only
  // one.
  std::string insertion;
  // Those words, to be listed if `insertion` is empty.
  std::vector<std::string> words;
};

Completion Complete(const std::string& typed, const std::vector<std::string>& words);

// Opens a prompt with `words` for completion if standard input and output are terminals, and plain standard
// input otherwise.
std::unique_ptr<LineSource> OpenStandardInput(std::vector<std::string> words);
// Opens plain standard input, even if it is a terminal.
std::unique_ptr<LineSource> OpenPlainInput();

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LINE_SOURCE_H_
