// Serves the files of one folder under a URI scheme.
#ifndef CORVIS_RUNTIME_LAUNCHER_FOLDER_SCHEME_H_
#define CORVIS_RUNTIME_LAUNCHER_FOLDER_SCHEME_H_

#include <webkit2/webkit2.h>

#include <string>

namespace corvis::tv {

// From now on SCHEME://HOST/PATH gives the file PATH of `folder`, as a secure origin. What lies outside of
// the folder, also behind a link, is not found.
void ServeFolder(WebKitWebContext* context, const char* scheme, const std::string& folder);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_FOLDER_SCHEME_H_
