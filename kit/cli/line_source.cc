// A prompt by libedit, and plain lines.
#include "cli/line_source.h"

#include <glib-unix.h>
#include <histedit.h>
#include <unistd.h>

#include <cstdio>
#include <cwchar>
#include <utility>

#include "service/main_loop.h"

namespace corvis::kit {

namespace {

constexpr auto kForever = std::chrono::hours(24 * 20);

// Lets the main loop run until standard input has something. False when interrupted.
bool WaitForInput() {
  bool has_input = false;
  const guint source = g_unix_fd_add(
      STDIN_FILENO, GIOCondition(G_IO_IN | G_IO_HUP | G_IO_ERR),
      [](gint, GIOCondition, gpointer data) -> gboolean {
        *static_cast<bool*>(data) = true;
        return G_SOURCE_CONTINUE;
      },
      &has_input);
  WaitUntil([&has_input] { return has_input; }, kForever);
  g_source_remove(source);
  return has_input && !IsInterrupted();
}

class PlainLines : public LineSource {
 public:
  std::optional<std::string> Next() override {
    for (;;) {
      const size_t end = buffer_.find('\n');
      if (end != std::string::npos) {
        std::string line = buffer_.substr(0, end);
        buffer_.erase(0, end + 1);
        return line;
      }
      char bytes[4096];
      const ssize_t count = WaitForInput() ? read(STDIN_FILENO, bytes, sizeof(bytes)) : 0;
      if (count <= 0) return buffer_.empty() ? std::nullopt : std::optional(std::exchange(buffer_, {}));
      buffer_.append(bytes, static_cast<size_t>(count));
    }
  }

  void Show(const std::string& sentence) override { std::printf("%s\n", sentence.c_str()); }

 private:
  std::string buffer_;
};

class Prompt : public LineSource {
 public:
  explicit Prompt(std::vector<std::string> words)
      : words_(std::move(words)),
        editor_(el_init("corvis-voice", stdin, stdout, stderr)),
        history_(history_init()) {
    HistEvent event;
    constexpr int kHistorySize = 500;
    history(history_, &event, H_SETSIZE, kHistorySize);
    history(history_, &event, H_SETUNIQUE, 1);
    el_set(editor_, EL_CLIENTDATA, this);
    el_set(
        editor_, EL_PROMPT, +[](EditLine*) { return const_cast<char*>("> "); });
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, history, history_);
    el_set(editor_, EL_GETCFN, ReadCharacter);
    el_set(editor_, EL_ADDFN, "complete-word", "Complete the word", Complete);
    el_set(editor_, EL_BIND, "^I", "complete-word", nullptr);
    el_set(editor_, EL_SIGNAL, 0);
  }
  ~Prompt() override {
    history_end(history_);
    el_end(editor_);
  }
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  std::optional<std::string> Next() override {
    int count = 0;
    is_reading_ = true;
    const char* text = el_gets(editor_, &count);
    is_reading_ = false;
    if (text == nullptr || count <= 0) {
      std::printf("\n");
      return {};
    }
    std::string line(text, static_cast<size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    HistEvent event;
    if (!line.empty()) history(history_, &event, H_ENTER, line.c_str());
    return line;
  }

  void Show(const std::string& sentence) override {
    if (!is_reading_) {
      std::printf("%s\n", sentence.c_str());
      return;
    }
    std::printf("\r\033[K%s\n", sentence.c_str());
    std::fflush(stdout);
    el_set(editor_, EL_REFRESH);
  }

 private:
  static int ReadCharacter(EditLine* /*editor*/, wchar_t* character) {
    std::mbstate_t state{};
    for (;;) {
      char byte = 0;
      if (!WaitForInput() || read(STDIN_FILENO, &byte, 1) != 1) return 0;
      const size_t used = std::mbrtowc(character, &byte, 1, &state);
      if (used == static_cast<size_t>(-2)) continue;
      if (used == static_cast<size_t>(-1)) *character = L'?';
      return 1;
    }
  }

  static unsigned char Complete(EditLine* editor, int /*character*/) {
    Prompt* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    const LineInfo* line = el_line(editor);
    const std::string typed(line->buffer, line->cursor);
    std::vector<std::string> found;
    for (const std::string& word : self->words_) {
      if (word.compare(0, typed.size(), typed) == 0) found.push_back(word);
    }
    if (found.empty()) return CC_ERROR;
    if (found.size() > 1) return self->CompleteCommon(typed, found);
    el_insertstr(editor, (found[0].substr(typed.size()) + " ").c_str());
    return CC_REFRESH;
  }

  // Inserts what all candidates have in common; lists them when that is nothing.
  unsigned char CompleteCommon(const std::string& typed, const std::vector<std::string>& found) {
    std::string common = found[0];
    for (const std::string& word : found) {
      while (word.compare(0, common.size(), common) != 0) common.pop_back();
    }
    if (common.size() > typed.size()) {
      el_insertstr(editor_, common.substr(typed.size()).c_str());
      return CC_REFRESH;
    }
    std::printf("\n");
    for (const std::string& word : found) std::printf("  %s\n", word.c_str());
    return CC_REDISPLAY;
  }

  std::vector<std::string> words_;
  EditLine* editor_;
  History* history_;
  bool is_reading_ = false;
};

}  // namespace

std::unique_ptr<LineSource> LineSource::Open(std::vector<std::string> words) {
  if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1)
    return std::make_unique<Prompt>(std::move(words));
  return std::make_unique<PlainLines>();
}

}  // namespace corvis::kit
