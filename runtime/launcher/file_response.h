// Answers GET and HEAD requests with a file.
#ifndef CORVIS_RUNTIME_LAUNCHER_FILE_RESPONSE_H_
#define CORVIS_RUNTIME_LAUNCHER_FILE_RESPONSE_H_

#include <libsoup/soup.h>

#include <string>

namespace corvis::tv {

// Answers with the file or the requested part of it (200, 206, 416), or that it has not changed (304). The
// file is sent in pieces on the main loop. Returns false, without an answer, if the file can't be read.
bool RespondWithFile(SoupServerMessage* message, const std::string& file);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_FILE_RESPONSE_H_
