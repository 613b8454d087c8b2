// The media types of files.
#ifndef CORVIS_RUNTIME_LAUNCHER_CONTENT_TYPE_H_
#define CORVIS_RUNTIME_LAUNCHER_CONTENT_TYPE_H_

#include <string>

namespace corvis::tv {

// The Content-Type of a file, by the ending of its name; the same on every machine, whatever is installed.
std::string ContentTypeOf(const std::string& file);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_CONTENT_TYPE_H_
