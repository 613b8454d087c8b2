// The application to run: the source of its pages, and its origin.
#ifndef CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_
#define CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_

#include <memory>
#include <string>

#include "launcher/application_server.h"
#include "launcher/options.h"

namespace corvis::tv {

struct Application {
  // For files, a path until they are served.
  std::string uri;
  std::string origin;
  // The page and the folder to serve, with links resolved; empty for a URL.
  std::string file;
  std::string folder;
};

// Resolves `page`: a URL, a file URL, an HTML file or a folder. On failure the result has neither uri nor
// file, and `error` is an error message.
Application FindApplication(const std::string& page, std::string& error);

// Starts a server for an application's files, at the address stored in the profile, if any. Returns null and
// an error message on failure, and null without a message for a URL, which needs no server.
std::unique_ptr<ApplicationServer> ServeApplication(Application& application, const Options& options,
                                                    std::string& error);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_APPLICATION_H_
