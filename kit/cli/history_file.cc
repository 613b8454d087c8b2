// Keeps one line of the prompt in one line of the file.
#include "cli/history_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string_view>

#include "cli/paths.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

constexpr mode_t kOnlyOwner = S_IRUSR | S_IWUSR;
// Nobody types that much; a larger file is read from its end.
constexpr off_t kMostBytes = 1 << 20;

class Descriptor {
 public:
  Descriptor(const std::string& file, int flags)
      : number_(open(file.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kOnlyOwner)) {
    struct stat status {};
    is_file_ = number_ >= 0 && fstat(number_, &status) == 0 && S_ISREG(status.st_mode);
    size_ = is_file_ ? status.st_size : 0;
  }
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool is_file() const { return is_file_; }

  std::string ReadEnd() const {
    std::string text(static_cast<size_t>(std::min(size_, kMostBytes)), '\0');
    const ssize_t count = pread(number_, text.data(), text.size(), size_ - static_cast<off_t>(text.size()));
    text.resize(count < 0 ? 0 : static_cast<size_t>(count));
    return text;
  }

  bool Write(std::string_view text) const {
    // A file of an older umask or of another program may be open to others.
    return is_file_ && fchmod(number_, kOnlyOwner) == 0 &&
           write(number_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  }

 private:
  const int number_;
  bool is_file_ = false;
  off_t size_ = 0;
};

// Leaves out what no prompt has written: a terminal would interpret it.
std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (size_t end = 0; (end = text.find('\n')) != std::string_view::npos; text.remove_prefix(end + 1)) {
    std::string line(text.substr(0, end));
    if (!line.empty() && ForTerminal(line) == line) lines.push_back(std::move(line));
  }
  return lines;
}

void Replace(const std::string& file, const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  const std::string fresh = file + "." + std::to_string(getpid());
  std::error_code ignored;
  if (Descriptor(fresh, O_WRONLY | O_CREAT | O_EXCL).Write(text)) {
    std::filesystem::rename(fresh, file, ignored);
  } else {
    std::filesystem::remove(fresh, ignored);
  }
}

// Creates a folder and those above it. Folders of the state are only for their user.
bool MakeFolder(const std::filesystem::path& folder) {
  if (folder.empty() || mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST) return !folder.empty();
  return errno == ENOENT && MakeFolder(folder.parent_path()) && mkdir(folder.c_str(), S_IRWXU) == 0;
}

}  // namespace

std::string HistoryFile::Place() {
  return StateFolder() / "history";
}

std::vector<std::string> HistoryFile::Read() const {
  const Descriptor opened(file_, O_RDONLY);
  if (!opened.is_file()) return {};
  std::vector<std::string> lines = LinesOf(opened.ReadEnd());
  if (lines.size() <= kMostLines) return lines;
  const bool is_long = lines.size() > 2 * kMostLines;
  lines.erase(lines.begin(), lines.end() - kMostLines);
  if (is_long) Replace(file_, lines);
  return lines;
}

void HistoryFile::Add(const std::string& line) const {
  if (file_.empty() || line.empty() || line[0] == ' ' || ForTerminal(line) != line) return;
  if (MakeFolder(std::filesystem::path(file_).parent_path()))
    Descriptor(file_, O_WRONLY | O_APPEND | O_CREAT).Write(line + "\n");
}

}  // namespace corvis::kit
