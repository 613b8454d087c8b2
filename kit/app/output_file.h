// Files that a run leaves: reports, pictures, recordings.
#ifndef CORVIS_KIT_APP_OUTPUT_FILE_H_
#define CORVIS_KIT_APP_OUTPUT_FILE_H_

#include <string>

namespace corvis::kit {

// Writes the whole file, making its folder where it is missing. Returns a sentence on failure, empty on
// success.
std::string WriteOutputFile(const std::string& file, const std::string& bytes);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_OUTPUT_FILE_H_
