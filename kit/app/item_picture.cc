// Boxes and labels, by cairo.
#include "app/item_picture.h"

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

namespace corvis::kit {

namespace {

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;

struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using ContextPtr = std::unique_ptr<cairo_t, ContextDeleter>;

struct Colour {
  double red;
  double green;
  double blue;
};
constexpr Colour kPlain{0.05, 0.55, 0.95};
constexpr Colour kFocused{1.0, 0.55, 0.0};
constexpr Colour kHidden{0.55, 0.55, 0.6};
constexpr Colour kWhite{1, 1, 1};

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

bool IsOneColour(cairo_surface_t* surface) {
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

void SetColour(cairo_t* context, const Colour& colour) {
  cairo_set_source_rgb(context, colour.red, colour.green, colour.blue);
}

const Colour& ColourOf(const Item& item) {
  return item.is_focused ? kFocused : item.is_visible ? kPlain : kHidden;
}

// A white line below the coloured one keeps the box readable on any page.
void DrawBox(cairo_t* context, const ItemPlace& place) {
  const double thickness = place.item.is_focused ? 5 : 3;
  const double dashes[] = {8, 6};
  for (const bool is_below : {true, false}) {
    cairo_set_dash(context, dashes, place.item.is_visible || is_below ? 0 : 2, 0);
    cairo_set_line_width(context, is_below ? thickness + 2 : thickness);
    SetColour(context, is_below ? kWhite : ColourOf(place.item));
    cairo_rectangle(context, place.x, place.y, place.item.w, place.item.h);
    cairo_stroke(context);
  }
}

// Whether anything of the item is in the picture. What an application describes itself has a place and no
// box.
bool IsInPicture(const ItemPlace& place, bool is_own, double width, double height) {
  const Item& item = place.item;
  const bool has_area = is_own || item.HasBox();
  return has_area && place.x < width && place.y < height && place.x + item.w >= 0 && place.y + item.h >= 0;
}

// The number, astride the box's upper left corner or as near to it as the picture allows.
void DrawLabel(cairo_t* context, const ItemPlace& place, double width, double height) {
  const std::string text = std::to_string(place.item.number);
  cairo_text_extents_t extents;
  cairo_text_extents(context, text.c_str(), &extents);
  const double w = extents.x_advance + 2 * kMargin;
  const double h = kFontSize + kMargin;
  const double x = std::max(0.0, std::min(place.x - w / 2, width - w));
  const double y = std::max(0.0, std::min(place.y - h / 2, height - h));
  SetColour(context, kWhite);
  cairo_rectangle(context, x, y, w + 2, h + 2);
  cairo_fill(context);
  SetColour(context, ColourOf(place.item));
  cairo_rectangle(context, x, y, w, h);
  cairo_fill(context);
  SetColour(context, kWhite);
  cairo_move_to(context, x + kMargin, y + h - kMargin - 1);
  cairo_show_text(context, text.c_str());
}

}  // namespace

std::string DrawItems(const std::string& png, const ItemPlaces& places, std::string& problem) {
  const SurfacePtr surface = ReadPng(png);
  problem = "The picture of the page can't be read.";
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return "";
  const int width = cairo_image_surface_get_width(surface.get());
  problem =
      "The picture of the page has one single colour: the page shows nothing yet, or its engine can't paint.";
  if (width == 0 || IsOneColour(surface.get())) return "";
  const double scale = places.window_width > 0 ? width / places.window_width : 1;
  const double height = cairo_image_surface_get_height(surface.get()) / scale;
  const ContextPtr context(cairo_create(surface.get()));
  cairo_scale(context.get(), scale, scale);
  cairo_select_font_face(context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(context.get(), kFontSize);
  std::vector<ItemPlace> shown;
  std::copy_if(places.places.begin(), places.places.end(), std::back_inserter(shown),
               [&](const auto& place) { return IsInPicture(place, places.is_own, width / scale, height); });
  for (const ItemPlace& place : shown) DrawBox(context.get(), place);
  // After the boxes, so that none crosses a number.
  for (const ItemPlace& place : shown) DrawLabel(context.get(), place, width / scale, height);
  std::string drawn = WritePng(surface.get());
  problem = drawn.empty() ? "The picture can't be written." : "";
  return drawn;
}

}  // namespace corvis::kit
