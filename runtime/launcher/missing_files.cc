// Finds the path in lines such as "Can't load a/b.png: status 404 (Not Found); asked for by …".
#include "launcher/missing_files.h"

#include <utility>

namespace corvis::tv {

namespace {

// A page reports a failed request within this time.
constexpr guint kReportTimeMs = 2000;

std::string PathIn(const std::string& line) {
  constexpr const char kStart[] = "Can't load ";
  constexpr size_t kLength = sizeof(kStart) - 1;
  if (line.compare(0, kLength, kStart) != 0) return "";
  return "/" + line.substr(kLength, line.find_first_of(":?#", kLength) - kLength);
}

}  // namespace

void MissingFiles::Note(const std::string& path, const std::string& reason) {
  reasons_[path] = reason;
  unreported_.insert(path);
  if (!timer_.is_running()) timer_.Start(kReportTimeMs);
}

std::string MissingFiles::WithReason(const std::string& line) {
  const auto known = reasons_.find(PathIn(line));
  if (known == reasons_.end()) return line;
  unreported_.erase(known->first);
  return line + " " + known->second;
}

void MissingFiles::WriteUnreported() {
  for (const std::string& path : std::exchange(unreported_, {}))
    write_(path + " is missing. " + reasons_[path]);
}

}  // namespace corvis::tv
