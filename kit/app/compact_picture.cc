// Scales with cairo and encodes with libwebp.
#include "app/compact_picture.h"

#include <webp/encode.h>

#include <algorithm>
#include <cmath>

#include "app/surface.h"

namespace corvis::kit {

namespace {

constexpr int kMostSide = 960;

struct Size {
  int width;
  int height;
};

Size SmallSize(cairo_surface_t* surface) {
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  const double scale = std::min(1.0, double{kMostSide} / std::max({width, height, 1}));
  const auto scaled = [scale](int side) { return std::max(1, static_cast<int>(std::lround(side * scale))); };
  return {scaled(width), scaled(height)};
}

// The image in the pixel format whose bytes are blue, green, red and unused.
SurfacePtr Scaled(cairo_surface_t* surface, const Size& size) {
  SurfacePtr small(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
  const ContextPtr context(cairo_create(small.get()));
  cairo_scale(context.get(), double(size.width) / std::max(1, cairo_image_surface_get_width(surface)),
              double(size.height) / std::max(1, cairo_image_surface_get_height(surface)));
  cairo_set_source_surface(context.get(), surface, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(context.get()), CAIRO_FILTER_GOOD);
  cairo_paint(context.get());
  cairo_surface_flush(small.get());
  return small;
}

// Empty if the image can't be encoded.
std::string Encoded(cairo_surface_t* surface, const WebPConfig& config) {
  WebPPicture picture;
  if (WebPPictureInit(&picture) == 0) return "";
  picture.use_argb = config.lossless;
  picture.width = cairo_image_surface_get_width(surface);
  picture.height = cairo_image_surface_get_height(surface);
  WebPMemoryWriter writer;
  WebPMemoryWriterInit(&writer);
  picture.writer = WebPMemoryWrite;
  picture.custom_ptr = &writer;
  const bool is_encoded = WebPPictureImportBGRX(&picture, cairo_image_surface_get_data(surface),
                                                cairo_image_surface_get_stride(surface)) != 0 &&
                          WebPEncode(&config, &picture) != 0;
  std::string bytes;
  if (is_encoded) bytes.assign(reinterpret_cast<const char*>(writer.mem), writer.size);
  WebPMemoryWriterClear(&writer);
  WebPPictureFree(&picture);
  return bytes;
}

// The fastest methods, because a run waits for the picture.
WebPConfig Lossless() {
  WebPConfig config;
  WebPConfigInit(&config);
  WebPConfigLosslessPreset(&config, 0);
  return config;
}

WebPConfig Lossy(float quality) {
  WebPConfig config;
  WebPConfigInit(&config);
  config.quality = quality;
  config.method = 2;
  return config;
}

}  // namespace

Result<std::string> CompactPicture(const std::string& png, size_t most_bytes) {
  const Result<SurfacePtr> decoded = ReadPng(png);
  if (!decoded) return Fail(decoded.error());
  const SurfacePtr small = Scaled(decoded->get(), SmallSize(decoded->get()));
  // Flat pages are small without loss; others would become several times as large.
  constexpr size_t kMostLossless = 12'000;
  std::string bytes = Encoded(small.get(), Lossless());
  if (!bytes.empty() && bytes.size() <= std::min(kMostLossless, most_bytes)) return bytes;
  for (const float quality : {75.F, 50.F, 25.F, 8.F}) {
    bytes = Encoded(small.get(), Lossy(quality));
    if (bytes.size() <= most_bytes) break;
  }
  if (bytes.empty()) return Fail("The picture can't be encoded as WebP.");
  return bytes;
}

}  // namespace corvis::kit
