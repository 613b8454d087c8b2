// Reads the user's lines: from a prompt with editing, history and completion, or from plain standard input.
// The main loop keeps running while it waits for a line.
#ifndef CORVIS_KIT_CLI_LINE_SOURCE_H_
#define CORVIS_KIT_CLI_LINE_SOURCE_H_

#include <memory>
#include <optional>
#include <string>

#include "base/result.h"
#include "cli/completion.h"
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
  // The same as Show, but on a terminal one page after the other.
  virtual void ShowPages(const std::string& lines) { Show(lines); }
  // Sets what Tab offers at a prompt. An empty one offers nothing.
  virtual void set_completer(const Completer& /*completer*/) {}
  // An error if writing to standard output has failed.
  const Status& status() const { return output_.status(); }

 private:
  OutputFile output_ = OutputFile::Standard();
};

// Opens a prompt if standard input and output are terminals, and plain standard input otherwise.
std::unique_ptr<LineSource> OpenStandardInput();
// Opens plain standard input, even if it is a terminal.
std::unique_ptr<LineSource> OpenPlainInput();

// Runs the main loop until standard input is readable or closed. Returns false if waits are ended first.
bool WaitForInput();

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LINE_SOURCE_H_
