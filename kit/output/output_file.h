// Writes the files of a run (reports, screenshots, recordings) and standard output. Failures are kept until
// they are reported.
#ifndef CORVIS_KIT_OUTPUT_OUTPUT_FILE_H_
#define CORVIS_KIT_OUTPUT_OUTPUT_FILE_H_

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/result.h"

namespace corvis::kit {

// A file to which text is appended. Each write is flushed at once.
class OutputFile {
 public:
  // Writes to standard output, which stays open.
  static OutputFile Standard();
  // How to treat an existing file.
  enum class Existing { kReplaced, kRefused };
  // Writes to a file of this name. The first write creates it, and its folder if necessary.
  explicit OutputFile(std::string file, Existing existing = Existing::kReplaced)
      : name_(std::move(file)), existing_(existing) {}

  // Appends a text. Does nothing after a failure.
  void Write(std::string_view text);
  // The first failure so far. It has an empty message if the reader of a pipe has closed it.
  const Status& status() const { return status_; }
  // Closes the file and returns the first failure.
  Status Finish();

  bool IsTerminal() const;
  // Whether it is a terminal and the user wants colors there (NO_COLOR, TERM).
  bool IsColorful() const;

 private:
  struct Closer {
    void operator()(std::FILE* stream) const;
  };
  void Open();
  void Note(bool is_ok);

  // Empty for standard output.
  std::string name_;
  Existing existing_;
  std::unique_ptr<std::FILE, Closer> stream_;
  Status status_;
};

// Writes a whole file and creates its folder if necessary.
Status WriteOutputFile(const std::string& file, std::string_view bytes);

// Writes a whole text to standard output.
Status WriteStandardOutput(std::string_view text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_OUTPUT_FILE_H_
