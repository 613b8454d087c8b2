// Edits lines with libedit.
#include "cli/edited_lines.h"

#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cwchar>
#include <sstream>
#include <utility>

#include "cli/history_file.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

constexpr const char* kPrompt = "> ";
constexpr wchar_t kControlC = 3;

struct EditorCloser {
  void operator()(EditLine* editor) const { el_end(editor); }
};
struct HistoryCloser {
  void operator()(History* history) const { history_end(history); }
};

struct TerminalSize {
  int rows = 24;
  int columns = 80;
};

TerminalSize SizeOfTerminal() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return {};
  return {size.ws_row, size.ws_col};
}

// The rows of a terminal that a line takes.
int RowsOf(const std::string& line, int columns) {
  return std::max(1, (static_cast<int>(line.size()) + columns - 1) / columns);
}

class EditedLines : public LineSource {
 public:
  EditedLines()
      : kept_(HistoryFile::Place()),
        history_(history_init()),
        editor_(el_init("corvis", stdin, stdout, stderr)) {
    ReadHistory();
    EditLine* editor = editor_.get();
    el_set(editor, EL_CLIENTDATA, this);
    el_set(
        editor, EL_PROMPT, +[](EditLine*) { return const_cast<char*>(kPrompt); });
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, history, history_.get());
    el_set(editor, EL_GETCFN, ReadCharacter);
    el_set(editor, EL_ADDFN, "complete-word", "Complete the word", OnComplete);
    el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
    // While a line is typed, these are keys and not signals.
    el_set(editor, EL_SETTY, "-d", "-isig", nullptr);
    el_set(editor, EL_ADDFN, "interrupt-line", "Clear the line, or interrupt", OnInterrupt);
    el_set(editor, EL_BIND, "^C", "interrupt-line", nullptr);
    el_set(editor, EL_ADDFN, "quit-run", "End the run", OnQuit);
    el_set(editor, EL_BIND, "^\\", "quit-run", nullptr);
    el_set(editor, EL_ADDFN, "suspend-run", "Stop until the shell continues", OnSuspend);
    el_set(editor, EL_BIND, "^Z", "suspend-run", nullptr);
    el_set(editor, EL_SIGNAL, 0);
  }

  std::optional<std::string> Next() override {
    int count = 0;
    el_resize(editor_.get());
    is_reading_ = true;
    const char* text = el_gets(editor_.get(), &count);
    is_reading_ = false;
    if (text == nullptr || count <= 0) {
      std::printf("\n");
      return {};
    }
    std::string line(text, static_cast<size_t>(count));
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    Keep(line);
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
  void ShowPages(const std::string& lines) override {
    // In between keys the terminal is in the state of a running command.
    el_set(editor_.get(), EL_PREP_TERM, 1);
    PrintPages(lines);
    el_set(editor_.get(), EL_PREP_TERM, 0);
  }
  void set_completer(const Completer& completer) override { completer_ = completer; }

 private:
  void ReadHistory() {
    HistEvent event;
    history(history_.get(), &event, H_SETSIZE, static_cast<int>(HistoryFile::kMostLines));
    history(history_.get(), &event, H_SETUNIQUE, 1);
    for (const std::string& line : kept_.Read()) history(history_.get(), &event, H_ENTER, line.c_str());
  }

  void Keep(const std::string& line) {
    HistEvent event;
    if (line.empty()) return;
    const bool is_repeated = history(history_.get(), &event, H_FIRST) == 0 && line == event.str;
    history(history_.get(), &event, H_ENTER, line.c_str());
    if (!is_repeated) kept_.Add(line);
  }

  // Clears the line being typed, which may take several rows; DrawAgain restores it below the output.
  void MakeRoom() const {
    if (is_reading_) {
      for (int row = RowOfCursor(); row > 0; --row) std::printf("\033[A");
      std::printf("\r\033[J");
    }
    std::fflush(stdout);
  }
  void DrawAgain() const {
    if (is_reading_) el_set(editor_.get(), EL_REFRESH);
  }

  int RowOfCursor() const {
    const LineInfoW* line = el_wline(editor_.get());
    int column = static_cast<int>(std::char_traits<char>::length(kPrompt));
    for (const wchar_t* letter = line->buffer; letter != line->cursor; ++letter)
      column += std::max(0, wcwidth(*letter));
    return column / SizeOfTerminal().columns;
  }

  // Returns the wide character that was read, or nothing at the end.
  static std::optional<wchar_t> ReadKey() {
    std::mbstate_t state{};
    for (;;) {
      char byte = 0;
      wchar_t character = L'?';
      if (!WaitForInput() || read(STDIN_FILENO, &byte, 1) != 1) return {};
      const size_t used = std::mbrtowc(&character, &byte, 1, &state);
      if (used == static_cast<size_t>(-2)) continue;
      return used == static_cast<size_t>(-1) ? L'?' : character;
    }
  }

  static int ReadCharacter(EditLine* /*editor*/, wchar_t* character) {
    const std::optional<wchar_t> key = ReadKey();
    *character = key.value_or(0);
    return key ? 1 : 0;
  }

  void PrintPages(const std::string& lines) {
    std::istringstream left(lines);
    std::string page;
    int rows = 0;
    for (std::string line; std::getline(left, line);) {
      const TerminalSize size = SizeOfTerminal();
      const int more = RowsOf(line, size.columns);
      if (rows > 0 && rows + more >= size.rows) {
        LineSource::Show(std::exchange(page, {}));
        if (!IsNextPageWanted()) return;
        rows = 0;
      }
      page += (rows > 0 ? "\n" : "") + line;
      rows += more;
    }
    LineSource::Show(page);
  }

  static bool IsNextPageWanted() {
    std::printf("-- Space: next page, q: end --");
    std::fflush(stdout);
    const std::optional<wchar_t> key = ReadKey();
    std::printf("\r\033[K");
    return key && *key != L'q' && *key != L'Q' && *key != kControlC;
  }

  static EditedLines* Of(EditLine* editor) {
    EditedLines* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return self;
  }

  static unsigned char OnComplete(EditLine* editor, int /*character*/) {
    const LineInfo* line = el_line(editor);
    const std::string typed(line->buffer, line->cursor);
    EditedLines& self = *Of(editor);
    if (!self.completer_) return CC_ERROR;
    const Completion completion = Complete(typed, self.completer_(typed));
    if (completion.words.empty()) return CC_ERROR;
    if (!completion.insertion.empty()) {
      el_insertstr(editor, completion.insertion.c_str());
      return CC_REFRESH;
    }
    self.List(completion.words);
    return CC_NORM;
  }

  void List(const std::vector<std::string>& words) {
    std::string lines;
    for (const std::string& word : words) lines += (lines.empty() ? "  " : "\n  ") + ForTerminal(word);
    std::printf("\n");
    PrintPages(lines);
    DrawAgain();
  }

  static unsigned char OnInterrupt(EditLine* editor, int /*character*/) {
    const LineInfoW* line = el_wline(editor);
    const auto length = static_cast<int>(line->lastchar - line->buffer);
    if (length == 0) {
      // The supervisor takes it like any other signal.
      kill(getpid(), SIGINT);
      return CC_NORM;
    }
    std::printf("^C\n");
    el_cursor(editor, static_cast<int>(line->lastchar - line->cursor));
    el_deletestr(editor, length);
    Of(editor)->DrawAgain();
    return CC_NORM;
  }

  static unsigned char OnQuit(EditLine* /*editor*/, int /*character*/) {
    kill(getpid(), SIGQUIT);
    return CC_NORM;
  }

  // The shell gets a terminal in its usual state, and this the one that it needs.
  static unsigned char OnSuspend(EditLine* editor, int /*character*/) {
    el_set(editor, EL_PREP_TERM, 0);
    kill(0, SIGTSTP);
    el_set(editor, EL_PREP_TERM, 1);
    std::printf("\n");
    Of(editor)->DrawAgain();
    return CC_NORM;
  }

  const HistoryFile kept_;
  Completer completer_;
  std::unique_ptr<History, HistoryCloser> history_;
  std::unique_ptr<EditLine, EditorCloser> editor_;
  bool is_reading_ = false;
};

}  // namespace

std::unique_ptr<LineSource> MakeEditedLines() {
  return std::make_unique<EditedLines>();
}

}  // namespace corvis::kit
