// The lines typed at the prompts of earlier runs, in a file of the user's state folder.
#ifndef CORVIS_KIT_CLI_HISTORY_FILE_H_
#define CORVIS_KIT_CLI_HISTORY_FILE_H_

#include <string>
#include <vector>

namespace corvis::kit {

// History is a convenience: if the file can't be read or written, the prompt works without it. Several
// prompts may add to the same file at once.
class HistoryFile {
 public:
  // The number of lines that are kept.
  static constexpr size_t kMostLines = 1000;

  // In the state folder.
  static std::string Place();

  // With an empty name nothing is kept.
  explicit HistoryFile(std::string file) : file_(std::move(file)) {}

  // The latest lines, oldest first. Shortens a file that has grown to more than twice of what is kept.
  std::vector<std::string> Read() const;
  // Appends a line. The file and its folder are only for this user. A line that starts with a space is not
  // kept, as in shells.
  void Add(const std::string& line) const;

 private:
  std::string file_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_HISTORY_FILE_H_
