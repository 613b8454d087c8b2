// Lines from the user: at a prompt with editing, history and completion, or from standard input. The main
// loop runs on while a line is awaited.
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

  // The next line without its end; nothing at the end of input, and when waits end (service/main_loop.h).
  virtual std::optional<std::string> Next() = 0;
  // Prints lines on standard output or standard error, without disturbing what is being typed.
  virtual void Show(const std::string& lines);
  virtual void ShowError(const std::string& lines);
  // Whether everything shown reached standard output.
  const Status& status() const { return output_.status(); }

 private:
  OutputFile output_ = OutputFile::Standard();
};

// What Tab does to a typed text.
struct Completion {
  // What follows the typed text in each word that begins with it; with a space where that is one word only.
  std::string insertion;
  // Those words. Worth a list when nothing is inserted.
  std::vector<std::string> words;
};

Completion Complete(const std::string& typed, const std::vector<std::string>& words);

// Lines from standard input: at a prompt where that and standard output are a terminal, where `words`
// complete what is typed; as they come otherwise.
std::unique_ptr<LineSource> OpenStandardInput(std::vector<std::string> words);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LINE_SOURCE_H_
