// From what stands on the command line to a URI and its origin.
#include "launcher/application.h"

#include <filesystem>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

namespace fs = std::filesystem;

Application FileApplication(const fs::path& path, const std::string& app_id, std::string& error) {
  std::error_code code;
  const fs::path real = fs::canonical(path, code);
  if (code) {
    error = "There is no " + path.string() + "; give a URL, an HTML file or a folder.";
    return {};
  }
  const bool is_folder = fs::is_directory(real, code);
  const fs::path file = is_folder ? real / "index.html" : real;
  if (!fs::is_regular_file(file, code)) {
    error =
        is_folder ? "The folder " + path.string() + " has no index.html." : path.string() + " is no file.";
    return {};
  }
  const std::string origin = std::string(kFileScheme) + "://" + app_id;
  const nurvo::GText name(g_uri_escape_string(file.filename().c_str(), nullptr, TRUE));
  return {origin + "/" + name.get(), origin, file.parent_path().string()};
}

}  // namespace

Application FindApplication(const std::string& page, const std::string& app_id, std::string& error) {
  const nurvo::GText scheme(g_uri_parse_scheme(page.c_str()));
  if (!scheme) return FileApplication(page, app_id, error);
  if (std::string(scheme.get()) == "file") {
    const nurvo::GText path(g_filename_from_uri(page.c_str(), nullptr, nullptr));
    if (path) return FileApplication(path.get(), app_id, error);
  }
  const nurvo::GUriPtr uri(g_uri_parse(page.c_str(), G_URI_FLAGS_PARSE_RELAXED, nullptr));
  const std::string name = scheme.get();
  const char* host = uri ? g_uri_get_host(uri.get()) : nullptr;
  if (host == nullptr || *host == '\0' || (name != "http" && name != "https")) {
    error = page + " is no URL that can be loaded; there are http, https and file.";
    return {};
  }
  const int port = g_uri_get_port(uri.get());
  const bool is_default = port == -1 || port == (name == "http" ? 80 : 443);
  return {page, name + "://" + host + (is_default ? "" : ":" + std::to_string(port)), ""};
}

}  // namespace corvis::tv
