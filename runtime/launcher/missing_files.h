// Adds the reason why a file is missing, which only the server knows, to the page's line about it.
#ifndef CORVIS_RUNTIME_LAUNCHER_MISSING_FILES_H_
#define CORVIS_RUNTIME_LAUNCHER_MISSING_FILES_H_

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "support/timer.h"

namespace corvis::tv {

class MissingFiles {
 public:
  // `write` receives a line about a file of which the page reports nothing.
  explicit MissingFiles(std::function<void(const std::string& line)> write) : write_(std::move(write)) {}

  // A request for `path`, which is missing for a reason, a sentence.
  void Note(const std::string& path, const std::string& reason);
  // A line of the page's console, with the reason if it reports such a request.
  std::string WithReason(const std::string& line);

 private:
  void WriteUnreported();

  std::function<void(const std::string& line)> write_;
  // The reasons by path, and the paths of which the page has reported nothing yet.
  std::map<std::string, std::string> reasons_;
  std::set<std::string> unreported_;
  Timer timer_{[this] { WriteUnreported(); }};
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_MISSING_FILES_H_
