// From the path of a request to a file of the folder that is served.
#ifndef CORVIS_RUNTIME_LAUNCHER_SERVED_FOLDER_H_
#define CORVIS_RUNTIME_LAUNCHER_SERVED_FOLDER_H_

#include <string>

namespace corvis::tv {

struct ServedFolder {
  // Its absolute path, with its links resolved.
  std::string path;
  // The file given for a path that names no file and has no ending; empty: such a path is missing.
  std::string page;
};

// What a path leads to.
struct ServedFile {
  enum class Kind { kFile, kFolder, kMissing };
  Kind kind = Kind::kMissing;
  // Of a file, with its links resolved.
  std::string path;
  // Of a missing one: a sentence where its absence has a cause that is not seen in the folder.
  std::string reason;
};

// Looks up the path of a URL, percent-encoded as it came. A folder stands for its index.html, and is found as
// one where the path doesn't end with a slash. What lies outside of the folder, also through a link, is
// missing.
ServedFile FindServedFile(const ServedFolder& folder, const std::string& url_path);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_SERVED_FOLDER_H_
