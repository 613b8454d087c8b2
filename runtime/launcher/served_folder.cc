// Looks up files inside the folder, and explains why others are missing.
#include "launcher/served_folder.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

namespace fs = std::filesystem;

// The path relative to the folder; nothing for a malformed one, which no well-behaved client sends.
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

// Browsers remove `../` at the top of a path, so a missing file may be in a parent of the served folder.
ServedFile MissingOrAbove(const fs::path& folder, const fs::path& relative) {
  std::error_code ignored;
  for (fs::path above = folder.parent_path(); above.has_relative_path(); above = above.parent_path()) {
    if (!fs::is_regular_file(above / relative, ignored)) continue;
    return Missing("It is in " + above.string() + ", outside the served folder " + folder.string() +
                   "; move the page there or the file here.");
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
    return Missing("It is a link to a file outside the served folder " + folder.path + ".");
  const bool is_named_as_folder = relative->empty() || !relative->has_filename();
  return {is_folder && !is_named_as_folder ? ServedFile::Kind::kFolder : ServedFile::Kind::kFile,
          file.string(), ""};
}

}  // namespace corvis::tv
