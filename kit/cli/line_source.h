// Lines from the user: at a prompt with editing, history and completion, or from standard input. The main
// loop runs on while a line is awaited.
#ifndef CORVIS_KIT_CLI_LINE_SOURCE_H_
#define CORVIS_KIT_CLI_LINE_SOURCE_H_

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvis::kit {

class LineSource {
 public:
  LineSource() = default;
  virtual ~LineSource() = default;
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;

  // The next line without its end; nothing at the end of input, and when waits end (service/main_loop.h).
  virtual std::optional<std::string> Next() = 0;
  // Prints lines without disturbing what is being typed.
  virtual void Show(const std::string& lines, std::FILE* stream = stdout) = 0;
};

// Lines from standard input: at a prompt where that and standard output are a terminal, where `words`
// complete what is typed; as they come otherwise.
std::unique_ptr<LineSource> OpenStandardInput(std::vector<std::string> words);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_LINE_SOURCE_H_
