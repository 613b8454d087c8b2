// Writes with C streams and checks every result.
#include "output/output_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace corvis::kit {

void OutputFile::Closer::operator()(std::FILE* stream) const {
  if (stream != stdout) std::fclose(stream);
}

OutputFile OutputFile::Standard() {
  OutputFile file("");
  file.stream_.reset(stdout);
  return file;
}

void OutputFile::Open() {
  const std::filesystem::path folder = std::filesystem::path(name_).parent_path();
  // The error is ignored here, because opening the file reports it.
  std::error_code ignored;
  if (!folder.empty()) std::filesystem::create_directories(folder, ignored);
  stream_.reset(std::fopen(name_.c_str(), existing_ == Existing::kReplaced ? "wbe" : "wbxe"));
  Note(stream_ != nullptr);
}

void OutputFile::Note(bool is_ok) {
  if (is_ok || !status_) return;
  if (errno == EPIPE) {
    status_ = Fail("");
    return;
  }
  const std::string what = name_.empty() ? "Standard output" : "The file " + name_;
  status_ = Fail(what + " can't be written: " + std::strerror(errno) + ".");
}

void OutputFile::Write(std::string_view text) {
  if (stream_ == nullptr && status_) Open();
  if (!status_) return;
  std::FILE* stream = stream_.get();
  std::fwrite(text.data(), 1, text.size(), stream);
  // A line-buffered stream may accept a line that it then fails to write, so check after flushing.
  Note(std::fflush(stream) == 0 && std::ferror(stream) == 0);
}

Status OutputFile::Finish() {
  if (stream_.get() == stdout) {
    Note(std::fflush(stdout) == 0);
  } else if (stream_ != nullptr) {
    Note(std::fclose(stream_.release()) == 0);
  }
  return status_;
}

bool OutputFile::IsTerminal() const {
  return stream_ != nullptr && isatty(fileno(stream_.get())) == 1;
}

bool OutputFile::IsColorful() const {
  const char* refusal = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  const bool is_refused = refusal != nullptr && *refusal != '\0';
  const bool is_dumb = terminal != nullptr && std::strcmp(terminal, "dumb") == 0;
  return IsTerminal() && !is_refused && !is_dumb;
}

namespace {

Status WriteAll(OutputFile output, std::string_view bytes) {
  output.Write(bytes);
  return output.Finish();
}

}  // namespace

Status WriteOutputFile(const std::string& file, std::string_view bytes) {
  return WriteAll(OutputFile(file), bytes);
}

Status WriteStandardOutput(std::string_view text) {
  return WriteAll(OutputFile::Standard(), text);
}

}  // namespace corvis::kit
