// Draws the items' boxes and number labels with cairo.
#include "app/item_picture.h"

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <vector>

#include "nurvo_desktop/owned.h"

namespace corvis::kit {

namespace {

using SurfacePtr = nurvo::Owned<cairo_surface_t, cairo_surface_destroy>;
using ContextPtr = nurvo::Owned<cairo_t, cairo_destroy>;

struct Color {
  double red;
  double green;
  double blue;
};
constexpr Color kPlain{0.05, 0.55, 0.95};
constexpr Color kFocused{1.0, 0.55, 0.0};
constexpr Color kHidden{0.55, 0.55, 0.6};
constexpr Color kWhite{1, 1, 1};

constexpr double kFontSize = 18;
constexpr double kMargin = 5;

SurfacePtr ReadPng(const std::string& png) {
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
  return SurfacePtr(cairo_image_surface_create_from_png_stream(read, &source));
}

std::string WritePng(cairo_surface_t* surface) {
  std::string png;
  const auto write = [](void* to, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
  };
  return cairo_surface_write_to_png_stream(surface, write, &png) == CAIRO_STATUS_SUCCESS ? png : "";
}

bool IsOneColor(cairo_surface_t* surface) {
  const int width = cairo_image_surface_get_width(surface);
  const int height = cairo_image_surface_get_height(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  const unsigned char* bytes = cairo_image_surface_get_data(surface);
  uint32_t first = 0;
  std::memcpy(&first, bytes, sizeof(first));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      uint32_t pixel = 0;
      std::memcpy(&pixel, bytes + static_cast<ptrdiff_t>(y) * stride + static_cast<ptrdiff_t>(x) * 4,
                  sizeof(pixel));
      if (pixel != first) return false;
    }
  }
  return true;
}

void SetColor(cairo_t* context, const Color& color) {
  cairo_set_source_rgb(context, color.red, color.green, color.blue);
}

const Color& ColorOf(const Item& item) {
  return item.is_focused ? kFocused : item.is_visible ? kPlain : kHidden;
}

// A white line under the colored one keeps the box readable on any page.
void DrawBox(cairo_t* context, const ItemPlace& place) {
  const double thickness = place.item.is_focused ? 5 : 3;
  const double dashes[] = {8, 6};
  for (const bool is_below : {true, false}) {
    cairo_set_dash(context, dashes, place.item.is_visible || is_below ? 0 : 2, 0);
    cairo_set_line_width(context, is_below ? thickness + 2 : thickness);
    SetColor(context, is_below ? kWhite : ColorOf(place.item));
    cairo_rectangle(context, place.x, place.y, place.item.w, place.item.h);
    cairo_stroke(context);
  }
}

// Whether any part of the item is in the picture. Items from an application's own list have a position but no
// size.
bool IsInPicture(const ItemPlace& place, bool is_own, double width, double height) {
  const Item& item = place.item;
  const bool has_area = is_own || item.HasBox();
  return has_area && place.x < width && place.y < height && place.x + item.w >= 0 && place.y + item.h >= 0;
}

// Draws the number centered on the box's upper left corner, or as close to it as fits in the picture.
void DrawLabel(cairo_t* context, const ItemPlace& place, double width, double height) {
  const std::string text = std::to_string(place.item.number);
  cairo_text_extents_t extents;
  cairo_text_extents(context, text.c_str(), &extents);
  const double w = extents.x_advance + 2 * kMargin;
  const double h = kFontSize + kMargin;
  const double x = std::max(0.0, std::min(place.x - w / 2, width - w));
  const double y = std::max(0.0, std::min(place.y - h / 2, height - h));
  SetColor(context, kWhite);
  cairo_rectangle(context, x, y, w + 2, h + 2);
  cairo_fill(context);
  SetColor(context, ColorOf(place.item));
  cairo_rectangle(context, x, y, w, h);
  cairo_fill(context);
  SetColor(context, kWhite);
  cairo_move_to(context, x + kMargin, y + h - kMargin - 1);
  cairo_show_text(context, text.c_str());
}

void Draw(cairo_surface_t* surface, const ItemPlaces& places, double scale) {
  const double width = cairo_image_surface_get_width(surface) / scale;
  const double height = cairo_image_surface_get_height(surface) / scale;
  const ContextPtr context(cairo_create(surface));
  cairo_scale(context.get(), scale, scale);
  cairo_select_font_face(context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(context.get(), kFontSize);
  std::vector<ItemPlace> shown;
  std::copy_if(places.places.begin(), places.places.end(), std::back_inserter(shown),
               [&](const auto& place) { return IsInPicture(place, places.is_own, width, height); });
  for (const ItemPlace& place : shown) DrawBox(context.get(), place);
  // Labels come after all boxes, so that no box crosses a number.
  for (const ItemPlace& place : shown) DrawLabel(context.get(), place, width, height);
}

}  // namespace

Result<std::string> DrawItems(const std::string& png, const ItemPlaces& places) {
  const SurfacePtr surface = ReadPng(png);
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
    return Fail("Expected a PNG screenshot of the page; what the runtime returned can't be decoded.");
  const int width = cairo_image_surface_get_width(surface.get());
  if (width == 0 || IsOneColor(surface.get()))
    return Fail(
        "The screenshot of the page is one single color: the page is still empty, or the engine can't "
        "paint.");
  const double scale = places.window_width > 0 ? width / places.window_width : 1;
  Draw(surface.get(), places, scale);
  std::string drawn = WritePng(surface.get());
  if (drawn.empty()) return Fail("The picture can't be encoded as PNG.");
  return drawn;
}

}  // namespace corvis::kit
