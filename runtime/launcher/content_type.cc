// The table of file extensions and media types.
#include "launcher/content_type.h"

#include <filesystem>

#include "nurvo_desktop/glib_ptr.h"

namespace corvis::tv {

namespace {

constexpr struct {
  const char* ending;
  const char* type;
} kTypes[] = {{".html", "text/html"},
              {".htm", "text/html"},
              {".xhtml", "application/xhtml+xml"},
              {".js", "text/javascript"},
              {".mjs", "text/javascript"},
              {".css", "text/css"},
              {".json", "application/json"},
              {".map", "application/json"},
              {".webmanifest", "application/manifest+json"},
              {".wasm", "application/wasm"},
              {".xml", "application/xml"},
              {".txt", "text/plain"},
              {".csv", "text/csv"},
              {".md", "text/markdown"},
              {".pdf", "application/pdf"},
              {".svg", "image/svg+xml"},
              {".png", "image/png"},
              {".apng", "image/apng"},
              {".jpg", "image/jpeg"},
              {".jpeg", "image/jpeg"},
              {".webp", "image/webp"},
              {".avif", "image/avif"},
              {".gif", "image/gif"},
              {".bmp", "image/bmp"},
              {".ico", "image/vnd.microsoft.icon"},
              {".woff2", "font/woff2"},
              {".woff", "font/woff"},
              {".ttf", "font/ttf"},
              {".otf", "font/otf"},
              {".vtt", "text/vtt"},
              {".m3u8", "application/vnd.apple.mpegurl"},
              {".mpd", "application/dash+xml"},
              {".ts", "video/mp2t"},
              {".m4s", "video/iso.segment"},
              {".mp4", "video/mp4"},
              {".m4v", "video/mp4"},
              {".webm", "video/webm"},
              {".ogv", "video/ogg"},
              {".mkv", "video/x-matroska"},
              {".mov", "video/quicktime"},
              {".m4a", "audio/mp4"},
              {".aac", "audio/aac"},
              {".mp3", "audio/mpeg"},
              {".ogg", "audio/ogg"},
              {".oga", "audio/ogg"},
              {".opus", "audio/ogg"},
              {".weba", "audio/webm"},
              {".flac", "audio/flac"},
              {".wav", "audio/wav"}};

}  // namespace

std::string ContentTypeOf(const std::string& file) {
  const nurvo::GText ending(g_ascii_strdown(std::filesystem::path(file).extension().c_str(), -1));
  for (const auto& row : kTypes) {
    if (ending.get() == std::string(row.ending)) return row.type;
  }
  return "application/octet-stream";
}

}  // namespace corvis::tv
