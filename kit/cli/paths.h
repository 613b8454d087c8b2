// Paths that several commands need.
#ifndef CORVIS_KIT_CLI_PATHS_H_
#define CORVIS_KIT_CLI_PATHS_H_

#include <filesystem>
#include <string>

namespace corvis::kit {

// The absolute path without symbolic links, as far as it exists.
std::string AbsolutePath(const std::string& path);

// The folder for what is kept between runs: $XDG_STATE_HOME/corvis, by default ~/.local/state/corvis. It need
// not exist.
std::filesystem::path StateFolder();

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_PATHS_H_
