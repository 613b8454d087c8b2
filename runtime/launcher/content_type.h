// Determines the media types of files.
#ifndef CORVIS_RUNTIME_LAUNCHER_CONTENT_TYPE_H_
#define CORVIS_RUNTIME_LAUNCHER_CONTENT_TYPE_H_

#include <string>

namespace corvis::tv {

// The Content-Type of a file, by the extension of its name. Does not depend on what the machine has
// installed.
std::string ContentTypeOf(const std::string& file);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_CONTENT_TYPE_H_
