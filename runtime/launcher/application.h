// What an application is started with: where its pages come from, and the one origin that counts as its own.
#ifndef CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_
#define CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_

#include <memory>
#include <string>

#include "launcher/application_server.h"

namespace corvis::tv {

struct Application {
  // Of files, known when they are served.
  std::string uri;
  std::string origin;
  // The page and the folder to serve, with their links resolved; empty for a URL.
  std::string file;
  std::string folder;
};

// Finds out what `page` (a URL, a file URL, an HTML file or a folder) means. On failure the result has
// neither uri nor file, and `error` is a sentence.
Application FindApplication(const std::string& page, std::string& error);

// Serves an application of files; a URL needs no server. With `is_single_page`, paths that name no file give
// the page. Null and a sentence on failure, null and no sentence for a URL.
std::unique_ptr<ApplicationServer> ServeApplication(Application& application, bool is_single_page,
                                                    std::string& error);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_
