// Asks the file system and GLib.
#include "cli/paths.h"

#include <glib.h>

#include <system_error>

namespace corvis::kit {

namespace fs = std::filesystem;

std::string AbsolutePath(const std::string& path) {
  std::error_code ignored;
  return fs::weakly_canonical(fs::absolute(path, ignored), ignored).string();
}

fs::path StateFolder() {
  return fs::path(g_get_user_state_dir()) / "corvis";
}

}  // namespace corvis::kit
