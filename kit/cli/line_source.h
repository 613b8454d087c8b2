// Lines from the user: at a prompt with editing, history and completion, or from standard input. The main
// loop runs on while a line is awaited.
#ifndef CORVIS_KIT_CLI_LINE_SOURCE_H_
#define CORVIS_KIT_CLI_LINE_SOURCE_H_

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvis::kit {

class LineSource {
 public:
  virtual ~LineSource() = default;
  // The next line without its end; nothing at the end of input, and when the run was interrupted.
  virtual std::optional<std::string> Next() = 0;
  // Shows a sentence without disturbing what is being typed.
  virtual void Show(const std::string& sentence) = 0;

  // A prompt where standard input is a terminal, plain lines otherwise. `words` complete what is typed.
  static std::unique_ptr<LineSource> Open(std::vector<std::string> words);
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LINE_SOURCE_H_
