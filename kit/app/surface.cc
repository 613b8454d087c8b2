// Reads and writes PNG with cairo.
#include "app/surface.h"

#include <cstring>

namespace corvis::kit {

Result<SurfacePtr> ReadPng(const std::string& png) {
  struct Source {
    const std::string& bytes;
    size_t at;
  } source{png, 0};
  const auto read = [](void* from, unsigned char* to, unsigned int count) {
    auto& at = *static_cast<Source*>(from);
    if (at.bytes.size() - at.at < count) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(to, at.bytes.data() + at.at, count);
    at.at += count;
    return CAIRO_STATUS_SUCCESS;
  };
  SurfacePtr surface(cairo_image_surface_create_from_png_stream(read, &source));
  const bool is_decoded = cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS;
  if (is_decoded && cairo_image_surface_get_width(surface.get()) > 0) return surface;
  return Fail("Expected a PNG screenshot of the page; what the runtime returned can't be decoded.");
}

std::string WritePng(cairo_surface_t* surface) {
  std::string png;
  const auto write = [](void* to, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
  };
  return cairo_surface_write_to_png_stream(surface, write, &png) == CAIRO_STATUS_SUCCESS ? png : "";
}

}  // namespace corvis::kit
