// Reports changes of files and folders, on the main loop.
#ifndef CORVIS_KIT_CLI_FILE_WATCH_H_
#define CORVIS_KIT_CLI_FILE_WATCH_H_

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace corvis::kit {

// Whether changes of a path don't count.
using PathFilter = std::function<bool(const std::string& path)>;

// Collects the changes of a moment, because editors save in several steps. Hidden files and folders and
// node_modules don't count.
class FileWatch {
 public:
  // `ignores` gets absolute paths.
  explicit FileWatch(PathFilter ignores = {});
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  // Watches a file, or a folder with all that is in it. A file may be missing for a while.
  void Add(const std::string& path);

  // The absolute paths that have changed, once no more changes come; empty while there are none. They are
  // reported once.
  std::set<std::string> TakeChanges();
  // Called on the main loop when TakeChanges has something.
  void set_on_change(std::function<void()> call) { on_change_ = std::move(call); }

 private:
  class Monitor;

  void AddFolder(const std::string& folder, bool is_recursive);
  void Note(const std::string& path);
  bool Counts(const std::string& path) const;

  PathFilter ignores_;
  std::function<void()> on_change_;
  // By folder.
  std::map<std::string, std::unique_ptr<Monitor>> monitors_;
  // Whole folders, and single files.
  std::vector<std::string> folders_;
  std::set<std::string> files_;
  std::set<std::string> changes_;
  unsigned timer_ = 0;
  bool is_calm_ = false;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_FILE_WATCH_H_
