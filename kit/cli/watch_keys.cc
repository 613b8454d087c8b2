// Reads keys without waiting for them.
#include "cli/watch_keys.h"

#include <glib-unix.h>
#include <unistd.h>

#include <utility>

namespace corvis::kit {

WatchKeys::WatchKeys() {
  termios state{};
  if (isatty(STDIN_FILENO) == 1 && tcgetattr(STDIN_FILENO, &state) == 0) {
    before_ = state;
    state.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &state);
  }
  source_ = g_unix_fd_add(
      STDIN_FILENO, GIOCondition(G_IO_IN | G_IO_HUP | G_IO_ERR | G_IO_NVAL),
      [](gint, GIOCondition, gpointer keys) -> gboolean {
        static_cast<WatchKeys*>(keys)->Read();
        return static_cast<WatchKeys*>(keys)->source_ != 0;
      },
      this);
}

WatchKeys::~WatchKeys() {
  if (source_ != 0) g_source_remove(source_);
  if (before_) tcsetattr(STDIN_FILENO, TCSANOW, &*before_);
}

void WatchKeys::Read() {
  char bytes[256];
  const ssize_t count = read(STDIN_FILENO, bytes, sizeof(bytes));
  if (count <= 0) {
    // Returning without the source removes it.
    source_ = 0;
    return;
  }
  for (const char byte : std::string(bytes, static_cast<size_t>(count))) {
    const bool is_end = byte == '\n';
    if (before_ || is_line_begin_) keys_ += byte;
    is_line_begin_ = is_end;
  }
}

std::optional<char> WatchKeys::Take() {
  if (keys_.empty()) return {};
  const char key = keys_.front();
  keys_.erase(0, 1);
  return key;
}

}  // namespace corvis::kit
