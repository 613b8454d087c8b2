// Creates the run's folder and its contents.
#include "launcher/run_folder.h"

#include <cstdlib>
#include <filesystem>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {
constexpr const char* kPolicyName = "/policy";
}  // namespace

RunFolder::RunFolder() {
  const nurvo::GText path(g_dir_make_tmp("corvis-tv.XXXXXX", nullptr));
  if (path) path_ = path.get();
}

RunFolder::~RunFolder() {
  if (path_.empty()) return;
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

bool RunFolder::WritePolicy(const std::string& app_id, const std::vector<std::string>& privileges) const {
  std::string text;
  for (const std::string& privilege : privileges) {
    // A space or newline would let it grant further privileges, even to another application.
    if (privilege.find_first_of(" \t\n") != std::string::npos) return false;
    text.append(app_id).append(" ").append(privilege).append("\n");
  }
  // Replaces the file atomically, so that a reader sees either the old policy or the new one.
  return g_file_set_contents((path_ + kPolicyName).c_str(), text.c_str(), static_cast<gssize>(text.size()),
                             nullptr);
}

void RunFolder::SetEnvironment(const std::string& app_id) const {
  setenv("NURVO_APP_ID", app_id.c_str(), 1);
  setenv("NURVO_POLICY", (path_ + kPolicyName).c_str(), 1);
  for (const char* name : {"XDG_CACHE_HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"})
    setenv(name, path_.c_str(), 1);
  // Don't look for the desktop's accessibility services, and don't require a graphics card.
  setenv("NO_AT_BRIDGE", "1", 1);
  setenv("GIO_USE_VFS", "local", 1);
  setenv("GSETTINGS_BACKEND", "memory", 1);
  setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
  // HLS streams play as on a TV; the engine's default leaves them to scripts.
  setenv("WEBKIT_GST_ENABLE_HLS_SUPPORT", "1", 1);
  setenv("WEBKIT_DISABLE_COMPOSITING_MODE", "1", 1);
}

}  // namespace corvis::tv
