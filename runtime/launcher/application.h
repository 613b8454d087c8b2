// What an application is started with: where its pages come from, and the one origin that counts as its own.
#ifndef CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_
#define CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_

#include <string>

namespace corvis::tv {

// The scheme under which files are served, each application as an origin of its own.
constexpr const char* kFileScheme = "app";

struct Application {
  std::string uri;
  std::string origin;
  // The folder that is served, with its links resolved; empty for a URL.
  std::string folder;
};

// Finds out what `page` (a URL, a file URL, an HTML file or a folder) means. On failure the result's uri is
// empty and `error` a sentence.
Application FindApplication(const std::string& page, const std::string& app_id, std::string& error);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_
