// Files that a run writes: reports, pictures, recordings; and standard output. A write that fails is never
// forgotten.
#ifndef CORVIS_KIT_OUTPUT_OUTPUT_FILE_H_
#define CORVIS_KIT_OUTPUT_OUTPUT_FILE_H_

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "base/result.h"

namespace corvis::kit {

// A text that grows. Whoever reads it sees each write at once.
class OutputFile {
 public:
  // Writes to standard output, which stays open.
  static OutputFile Standard();
  // What becomes of a file that is there already.
  enum class Existing { kReplaced, kRefused };
  // Writes to a file of this name. The file, and its folder where that is missing, is made by the first
  // write.
  explicit OutputFile(std::string file, Existing existing = Existing::kReplaced)
      : name_(std::move(file)), existing_(existing) {}

  // After a failure, which Finish reports, nothing more is written.
  void Write(std::string_view text);
  // Whether everything that was written so far reached the file. The first failure counts; that whoever read
  // a pipe has gone is one without a message.
  const Status& status() const { return status_; }
  // The same once the file is closed.
  Status Finish();

  bool IsTerminal() const;

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

// Writes a whole file, making its folder where that is missing.
Status WriteOutputFile(const std::string& file, std::string_view bytes);

// Writes a whole text to standard output.
Status WriteStandardOutput(std::string_view text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_OUTPUT_OUTPUT_FILE_H_
