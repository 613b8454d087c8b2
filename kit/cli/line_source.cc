// Reads lines with libedit on a terminal, and plain lines otherwise.
#include "cli/line_source.h"

#include <glib-unix.h>
#include <histedit.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cwchar>
#include <utility>

#include "output/text_forms.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

// Runs the main loop until standard input is readable or closed. Returns false if waits are ended first.
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

struct EditorCloser {
  void operator()(EditLine* editor) const { el_end(editor); }
};
struct HistoryCloser {
  void operator()(History* history) const { history_end(history); }
};

class EditedLines : public LineSource {
 public:
  explicit EditedLines(std::vector<std::string> words)
      : words_(std::move(words)),
        history_(history_init()),
        editor_(el_init("corvis", stdin, stdout, stderr)) {
    constexpr int kHistorySize = 500;
    HistEvent event;
    history(history_.get(), &event, H_SETSIZE, kHistorySize);
    history(history_.get(), &event, H_SETUNIQUE, 1);
    EditLine* editor = editor_.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(
        editor, EL_PROMPT, +[](EditLine*) { return const_cast<char*>("> "); });
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, history, history_.get());
    el_set(editor, EL_GETCFN, ReadCharacter);
    el_set(editor, EL_ADDFN, "complete-word", "Complete the word", OnComplete);
    el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
    el_set(editor, EL_SIGNAL, 0);
  }

  std::optional<std::string> Next() override {
    int count = 0;
    is_reading_ = true;
    const char* text = el_gets(editor_.get(), &count);
    is_reading_ = false;
    if (text == nullptr || count <= 0) {
      std::printf("\n");
      return {};
    }
    std::string line(text, static_cast<size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    HistEvent event;
    if (!line.empty()) history(history_.get(), &event, H_ENTER, line.c_str());
    return line;
  }

  void Show(const std::string& lines) override {
    MakeRoom();
    LineSource::Show(lines);
    DrawAgain();
  }
  void ShowError(const std::string& lines) override {
    MakeRoom();
    LineSource::ShowError(lines);
    DrawAgain();
  }

 private:
  // Clears the line being typed; DrawAgain restores it below the output.
  void MakeRoom() const {
    if (is_reading_) std::printf("\r\033[K");
    std::fflush(stdout);
  }
  void DrawAgain() {
    if (is_reading_) el_set(editor_.get(), EL_REFRESH);
  }

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

  static unsigned char OnComplete(EditLine* editor, int /*character*/) {
    EditedLines* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    const LineInfo* line = el_line(editor);
    const Completion completion = Complete(std::string(line->buffer, line->cursor), self->words_);
    if (completion.words.empty()) return CC_ERROR;
    if (!completion.insertion.empty()) {
      el_insertstr(editor, completion.insertion.c_str());
      return CC_REFRESH;
    }
    std::printf("\n");
    for (const std::string& word : completion.words) std::printf("  %s\n", word.c_str());
    return CC_REDISPLAY;
  }

  std::vector<std::string> words_;
  std::unique_ptr<History, HistoryCloser> history_;
  std::unique_ptr<EditLine, EditorCloser> editor_;
  bool is_reading_ = false;
};

}  // namespace

Completion Complete(const std::string& typed, const std::vector<std::string>& words) {
  Completion completion;
  for (const std::string& word : words) {
    if (word.compare(0, typed.size(), typed) == 0) completion.words.push_back(word);
  }
  if (completion.words.empty()) return completion;
  std::string common = completion.words[0];
  for (const std::string& word : completion.words) {
    common.resize(static_cast<size_t>(
        std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first - common.begin()));
  }
  completion.insertion = common.substr(typed.size()) + (completion.words.size() == 1 ? " " : "");
  return completion;
}

void LineSource::Show(const std::string& lines) {
  output_.Write(TextForTerminal(lines) + "\n");
}

void LineSource::ShowError(const std::string& lines) {
  std::fprintf(stderr, "%s\n", TextForTerminal(lines).c_str());
}

std::unique_ptr<LineSource> OpenStandardInput(std::vector<std::string> words) {
  if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1)
    return std::make_unique<EditedLines>(std::move(words));
  return OpenPlainInput();
}

std::unique_ptr<LineSource> OpenPlainInput() {
  return std::make_unique<PlainLines>();
}

}  // namespace corvis::kit
