// Maps the path of a request to a file of the served folder.
#ifndef CORVIS_RUNTIME_LAUNCHER_SERVED_FOLDER_H_
#define CORVIS_RUNTIME_LAUNCHER_SERVED_FOLDER_H_

#include <string>

namespace corvis::tv {

struct ServedFolder {
  // The absolute path, with links resolved.
  std::string path;
  // The file to serve for a path that names no file and has no extension. If empty, such paths are missing.
  std::string page;
};

// The result of a lookup.
struct ServedFile {
  enum class Kind { kFile, kFolder, kMissing };
  Kind kind = Kind::kMissing;
  // The path of the file, with links resolved.
  std::string path;
  // Why the file is missing, a sentence, if the folder's contents don't show the reason.
  std::string reason;
};

// Looks up the path of a URL, which is still percent-encoded. For a folder returns its index.html, or, if the
// path does not end with a slash, the folder itself. Everything outside the served folder, even through a
// link, is missing.
ServedFile FindServedFile(const ServedFolder& folder, const std::string& url_path);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_SERVED_FOLDER_H_
