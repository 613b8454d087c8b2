// Reads the lines that a process prints to a pipe, on the main loop.
#ifndef CORVIS_KIT_APP_LINE_PIPE_H_
#define CORVIS_KIT_APP_LINE_PIPE_H_

#include <functional>
#include <string>

namespace corvis::kit {

class LinePipe {
 public:
  // `take` receives each line without its newline; a very long one in parts.
  explicit LinePipe(std::function<void(const std::string& line)> take) : take_(std::move(take)) {}
  ~LinePipe();
  LinePipe(const LinePipe&) = delete;
  LinePipe& operator=(const LinePipe&) = delete;

  // Opens the pipe. Returns the end to write to, which is the caller's to close, or -1.
  int Open();
  // Reads on the main loop from now on, or no longer.
  void Watch();
  void Unwatch();
  // Reads what there is. Returns false when nothing more can be read at the moment.
  bool Read();

  int descriptor() const { return descriptor_; }

 private:
  void Take(const char* text, size_t size);

  std::function<void(const std::string& line)> take_;
  int descriptor_ = -1;
  unsigned source_ = 0;
  // The current line, still incomplete.
  std::string line_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_LINE_PIPE_H_
