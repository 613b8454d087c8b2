// Requests for files of the application's folder.
#include "launcher/folder_scheme.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

namespace fs = std::filesystem;

// The file that a request's path names, when it lies inside the folder.
std::optional<fs::path> FileOf(const fs::path& folder, const char* path) {
  const nurvo::GText plain(g_uri_unescape_string(path, nullptr));
  if (!plain) return {};
  std::error_code code;
  fs::path file = fs::canonical(folder / fs::path(plain.get()).relative_path(), code);
  if (!code && fs::is_directory(file, code)) file = fs::canonical(file / "index.html", code);
  if (code || !fs::is_regular_file(file, code)) return {};
  const fs::path inside = file.lexically_relative(folder);
  if (inside.empty() || *inside.begin() == "..") return {};
  return file;
}

std::string MimeType(const fs::path& file, const char* begin, size_t size) {
  // The shared MIME database is not installed everywhere, and scripts of a wrong type are not run.
  static constexpr struct {
    const char* ending;
    const char* type;
  } kTypes[] = {{".html", "text/html"},
                {".htm", "text/html"},
                {".js", "text/javascript"},
                {".mjs", "text/javascript"},
                {".css", "text/css"},
                {".json", "application/json"},
                {".svg", "image/svg+xml"},
                {".png", "image/png"},
                {".jpg", "image/jpeg"},
                {".jpeg", "image/jpeg"},
                {".webp", "image/webp"},
                {".gif", "image/gif"},
                {".wasm", "application/wasm"},
                {".woff2", "font/woff2"},
                {".woff", "font/woff"},
                {".txt", "text/plain"},
                {".xhtml", "application/xhtml+xml"}};
  for (const auto& row : kTypes) {
    if (file.extension() == row.ending) return row.type;
  }
  const nurvo::GText type(
      g_content_type_guess(file.c_str(), reinterpret_cast<const guchar*>(begin), size, nullptr));
  const nurvo::GText mime(g_content_type_get_mime_type(type.get()));
  return mime ? mime.get() : "application/octet-stream";
}

void Answer(WebKitURISchemeRequest* request, const std::string& folder) {
  const std::optional<fs::path> file = FileOf(folder, webkit_uri_scheme_request_get_path(request));
  gchar* content = nullptr;
  gsize size = 0;
  if (!file || !g_file_get_contents(file->c_str(), &content, &size, nullptr)) {
    const nurvo::GErrorPtr error(g_error_new(G_IO_ERROR, G_IO_ERROR_NOT_FOUND,
                                             "The application has no file %s",
                                             webkit_uri_scheme_request_get_path(request)));
    webkit_uri_scheme_request_finish_error(request, error.get());
    return;
  }
  const std::string type = MimeType(*file, content, size);
  const nurvo::GObjectPtr<GInputStream> stream(
      g_memory_input_stream_new_from_data(content, static_cast<gssize>(size), g_free));
  webkit_uri_scheme_request_finish(request, stream.get(), static_cast<gint64>(size), type.c_str());
}

}  // namespace

void ServeFolder(WebKitWebContext* context, const char* scheme, const std::string& folder) {
  webkit_web_context_register_uri_scheme(
      context, scheme,
      [](WebKitURISchemeRequest* request, gpointer data) {
        Answer(request, *static_cast<std::string*>(data));
      },
      new std::string(folder), [](gpointer data) { delete static_cast<std::string*>(data); });
  WebKitSecurityManager* security = webkit_web_context_get_security_manager(context);
  webkit_security_manager_register_uri_scheme_as_secure(security, scheme);
  webkit_security_manager_register_uri_scheme_as_cors_enabled(security, scheme);
}

}  // namespace corvis::tv
