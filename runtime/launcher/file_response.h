// A file as the answer to a GET or HEAD request.
#ifndef CORVIS_RUNTIME_LAUNCHER_FILE_RESPONSE_H_
#define CORVIS_RUNTIME_LAUNCHER_FILE_RESPONSE_H_

#include <libsoup/soup.h>

#include <string>

namespace corvis::tv {

// Answers with the file or the part of it that is asked for (200, 206, 416), or that it has not changed
// (304). The file goes out piece by piece, on the main loop. False when it can't be read; there is no answer
// then.
bool RespondWithFile(SoupServerMessage* message, const std::string& file);

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_LAUNCHER_FILE_RESPONSE_H_
