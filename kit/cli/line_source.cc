// Chooses between a prompt and plain lines, and reads the latter.
#include "cli/line_source.h"

#include <glib-unix.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <utility>

#include "cli/edited_lines.h"
#include "output/text_forms.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

class PlainLines : public LineSource {
 public:
  std::optional<std::string> Next() override {
    for (size_t searched = 0;;) {
      const size_t end = buffer_.find('\n', searched);
      if (end != std::string::npos) {
        std::string line = buffer_.substr(0, end);
        buffer_.erase(0, end + 1);
        return line;
      }
      searched = buffer_.size();
      char bytes[4096];
      const ssize_t count = WaitForInput() ? read(STDIN_FILENO, bytes, sizeof(bytes)) : 0;
      if (count <= 0) return buffer_.empty() ? std::nullopt : std::optional(std::exchange(buffer_, {}));
      buffer_.append(bytes, static_cast<size_t>(count));
    }
  }

 private:
  std::string buffer_;
};

}  // namespace

bool WaitForInput() {
  constexpr auto kForGood = std::chrono::hours(24 * 20);
  bool has_input = false;
  const guint source = g_unix_fd_add(
      STDIN_FILENO, GIOCondition(G_IO_IN | G_IO_HUP | G_IO_ERR | G_IO_NVAL),
      [](gint, GIOCondition, gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_CONTINUE;
      },
      &has_input);
  WaitUntil([&has_input] { return has_input; }, kForGood);
  g_source_remove(source);
  return has_input && !IsInterrupted();
}

void LineSource::Show(const std::string& lines) {
  output_.Write(TextForTerminal(lines) + "\n");
}

void LineSource::ShowError(const std::string& lines) {
  std::fprintf(stderr, "%s\n", TextForTerminal(lines).c_str());
}

std::unique_ptr<LineSource> OpenStandardInput() {
  if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) return MakeEditedLines();
  return OpenPlainInput();
}

std::unique_ptr<LineSource> OpenPlainInput() {
  return std::make_unique<PlainLines>();
}

}  // namespace corvis::kit
