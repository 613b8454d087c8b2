// Splits the output of a process into lines.
#include "app/line_pipe.h"

#include <fcntl.h>
#include <glib-unix.h>
#include <unistd.h>

#include <string_view>
#include <utility>

namespace corvis::kit {

namespace {
// A longer line is passed on in parts.
constexpr size_t kLongestLine = 1U << 20U;
}  // namespace

LinePipe::~LinePipe() {
  Unwatch();
  if (descriptor_ >= 0) close(descriptor_);
}

int LinePipe::Open() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return -1;
  descriptor_ = ends[0];
  fcntl(descriptor_, F_SETFL, O_NONBLOCK);
  return ends[1];
}

void LinePipe::Watch() {
  source_ = g_unix_fd_add(
      descriptor_, GIOCondition(G_IO_IN | G_IO_HUP | G_IO_ERR),
      [](gint, GIOCondition, gpointer pipe) -> gboolean {
        static_cast<LinePipe*>(pipe)->Read();
        return static_cast<LinePipe*>(pipe)->source_ != 0;
      },
      this);
}

void LinePipe::Unwatch() {
  if (source_ != 0) g_source_remove(std::exchange(source_, 0));
}

bool LinePipe::Read() {
  char text[65536];
  const ssize_t size = read(descriptor_, text, sizeof(text));
  if (size > 0) Take(text, static_cast<size_t>(size));
  if (size == 0) Unwatch();
  return size > 0;
}

void LinePipe::Take(const char* text, size_t size) {
  std::string_view left(text, size);
  for (size_t end = 0; (end = left.find('\n')) != std::string_view::npos; left.remove_prefix(end + 1)) {
    line_ += left.substr(0, end);
    take_(std::exchange(line_, {}));
  }
  line_ += left;
  if (line_.size() >= kLongestLine) take_(std::exchange(line_, {}));
}

}  // namespace corvis::kit
