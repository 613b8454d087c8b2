// Paths inside the folder, and why others are not.
#include "launcher/served_folder.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

namespace fs = std::filesystem;

// The path below the folder; nothing for one that no client writes that means well.
std::optional<fs::path> RelativePath(const std::string& url_path) {
  const nurvo::GText plain(g_uri_unescape_string(url_path.c_str(), "/"));
  if (!plain) return {};
  const fs::path relative = fs::path(plain.get()).relative_path();
  if (std::find(relative.begin(), relative.end(), "..") != relative.end()) return {};
  return relative;
}

bool IsInside(const fs::path& file, const fs::path& folder) {
  const fs::path inside = file.lexically_relative(folder);
  return !inside.empty() && *inside.begin() != "..";
}

ServedFile Missing(const std::string& reason = "") {
  return {ServedFile::Kind::kMissing, "", reason};
}

// A path with `../` at the folder's top arrives without it: the file may lie above.
ServedFile MissingOrAbove(const fs::path& folder, const fs::path& relative) {
  std::error_code ignored;
  for (fs::path above = folder.parent_path(); above.has_relative_path(); above = above.parent_path()) {
    if (!fs::is_regular_file(above / relative, ignored)) continue;
    return Missing("It lies in " + above.string() + ", outside of " + folder.string() +
                   ", which is served; put the page there, or the file here.");
  }
  return Missing();
}

}  // namespace

ServedFile FindServedFile(const ServedFolder& folder, const std::string& url_path) {
  const std::optional<fs::path> relative = RelativePath(url_path);
  if (!relative) return Missing();
  std::error_code code;
  fs::path file = fs::canonical(folder.path / *relative, code);
  const bool is_folder = !code && fs::is_directory(file, code);
  if (is_folder) file = fs::canonical(file / "index.html", code);
  if (code || !fs::is_regular_file(file, code)) {
    if (!folder.page.empty() && !relative->has_extension()) return {ServedFile::Kind::kFile, folder.page, ""};
    return is_folder ? Missing() : MissingOrAbove(folder.path, *relative);
  }
  if (!IsInside(file, folder.path))
    return Missing("It is a link that leads out of " + folder.path + ", which is served.");
  const bool is_named_as_folder = relative->empty() || !relative->has_filename();
  return {is_folder && !is_named_as_folder ? ServedFile::Kind::kFolder : ServedFile::Kind::kFile,
          file.string(), ""};
}

}  // namespace corvis::tv
