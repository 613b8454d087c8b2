// Resolves the operand of the command line to a URI and its origin.
#include "launcher/application.h"

#include <webkit2/webkit2.h>

#include <filesystem>
#include <memory>

#include "launcher/storage.h"
#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

namespace fs = std::filesystem;

Application FileApplication(const fs::path& path, std::string& error) {
  std::error_code code;
  const fs::path real = fs::canonical(path, code);
  if (code) {
    error = path.string() + " does not exist; expected a URL, an HTML file or a folder.";
    return {};
  }
  const bool is_folder = fs::is_directory(real, code);
  const fs::path file = is_folder ? real / "index.html" : real;
  if (!fs::is_regular_file(file, code)) {
    error =
        is_folder ? "The folder " + path.string() + " has no index.html." : path.string() + " is not a file.";
    return {};
  }
  // Routers and relative links find a folder's page where a web server has it.
  const nurvo::GText name(g_uri_escape_string(file.filename().c_str(), nullptr, TRUE));
  return {is_folder ? "/" : std::string("/") + name.get(), "", file.string(), file.parent_path().string()};
}

struct SecurityOriginDeleter {
  void operator()(WebKitSecurityOrigin* origin) const { webkit_security_origin_unref(origin); }
};
// The engine's type, because it normalizes origins such as "HTTP://LOCALHOST:80" and "http://127.1".
using SecurityOrigin = std::unique_ptr<WebKitSecurityOrigin, SecurityOriginDeleter>;

bool IsWeb(WebKitSecurityOrigin* origin) {
  const char* protocol = webkit_security_origin_get_protocol(origin);
  const char* host = webkit_security_origin_get_host(origin);
  const bool is_web = g_strcmp0(protocol, "http") == 0 || g_strcmp0(protocol, "https") == 0;
  return is_web && host != nullptr && *host != '\0';
}

}  // namespace

Application FindApplication(const std::string& page, std::string& error) {
  const nurvo::GText scheme(g_uri_parse_scheme(page.c_str()));
  if (!scheme) return FileApplication(page, error);
  const nurvo::GText file(g_filename_from_uri(page.c_str(), nullptr, nullptr));
  if (file) return FileApplication(file.get(), error);
  const SecurityOrigin origin(webkit_security_origin_new_for_uri(page.c_str()));
  if (IsWeb(origin.get()))
    return {page, nurvo::GText(webkit_security_origin_to_string(origin.get())).get(), "", ""};
  error = page + " can't be loaded; expected an http, https or file URL.";
  return {};
}

std::unique_ptr<ApplicationServer> ServeApplication(Application& application, const Options& options,
                                                    std::string& error) {
  if (application.folder.empty()) return nullptr;
  const std::string& profile = options.profile;
  const std::string place = ReadAuthority(profile);
  auto server = ApplicationServer::Start({application.folder, options.is_single_page ? application.file : ""},
                                         place, error);
  if (!server) {
    if (!place.empty()) error += " Does another run use the profile " + profile + "?";
    return nullptr;
  }
  if (place.empty() && !WriteAuthority(profile, server->authority())) {
    error = "The profile " + profile + " can't be written.";
    return nullptr;
  }
  application.origin = server->origin();
  application.uri = application.origin + application.uri;
  return server;
}

}  // namespace corvis::tv
