// Draws boxes and labels with cairo.
#include "app/item_picture.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "app/surface.h"

namespace corvis::kit {

namespace {

struct Color {
  double red;
  double green;
  double blue;
};
constexpr Color kPlain{0.05, 0.55, 0.95};
constexpr Color kFocused{1.0, 0.55, 0.0};
constexpr Color kProblem{0.85, 0.1, 0.1};
constexpr Color kWhite{1, 1, 1};

constexpr double kFontSize = 18;
constexpr double kMargin = 5;

void SetColor(cairo_t* context, const Color& color) {
  cairo_set_source_rgb(context, color.red, color.green, color.blue);
}

const Color& ColorOf(const Mark& mark) {
  switch (mark.kind) {
    case Mark::Kind::kFocused:
      return kFocused;
    case Mark::Kind::kProblem:
      return kProblem;
    case Mark::Kind::kPlain:
      break;
  }
  return kPlain;
}

// A white line under the colored one keeps the box readable on any page.
void DrawBox(cairo_t* context, const Mark& mark) {
  const double thickness = mark.kind == Mark::Kind::kFocused ? 5 : 3;
  for (const bool is_below : {true, false}) {
    cairo_set_line_width(context, is_below ? thickness + 2 : thickness);
    SetColor(context, is_below ? kWhite : ColorOf(mark));
    cairo_rectangle(context, mark.x, mark.y, mark.w, mark.h);
    cairo_stroke(context);
  }
}

// Draws the label centered on the box's upper left corner, or as close to it as fits in the picture.
void DrawLabel(cairo_t* context, const Mark& mark, double width, double height) {
  cairo_text_extents_t extents;
  cairo_text_extents(context, mark.label.c_str(), &extents);
  const double w = extents.x_advance + 2 * kMargin;
  const double h = kFontSize + kMargin;
  const double x = std::max(0.0, std::min(mark.x - w / 2, width - w));
  const double y = std::max(0.0, std::min(mark.y - h / 2, height - h));
  SetColor(context, kWhite);
  cairo_rectangle(context, x, y, w + 2, h + 2);
  cairo_fill(context);
  SetColor(context, ColorOf(mark));
  cairo_rectangle(context, x, y, w, h);
  cairo_fill(context);
  SetColor(context, kWhite);
  cairo_move_to(context, x + kMargin, y + h - kMargin - 1);
  cairo_show_text(context, mark.label.c_str());
}

void Draw(cairo_surface_t* surface, const std::vector<Mark>& marks, double scale) {
  const double width = cairo_image_surface_get_width(surface) / scale;
  const double height = cairo_image_surface_get_height(surface) / scale;
  const ContextPtr context(cairo_create(surface));
  cairo_scale(context.get(), scale, scale);
  cairo_select_font_face(context.get(), "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(context.get(), kFontSize);
  std::vector<Mark> shown;
  std::copy_if(marks.begin(), marks.end(), std::back_inserter(shown), [&](const Mark& mark) {
    return mark.x < width && mark.y < height && mark.x + mark.w >= 0 && mark.y + mark.h >= 0;
  });
  for (const Mark& mark : shown) DrawBox(context.get(), mark);
  // Labels come after all boxes, so that no box crosses a number.
  for (const Mark& mark : shown) DrawLabel(context.get(), mark, width, height);
}

}  // namespace

std::vector<Mark> MarksOf(const ItemPlaces& places) {
  std::vector<Mark> marks;
  for (const auto& [item, x, y] : places.places) {
    const auto kind = item.is_focused ? Mark::Kind::kFocused : Mark::Kind::kPlain;
    if (item.is_shown) marks.push_back({kind, std::to_string(item.number), x, y, item.w, item.h});
  }
  return marks;
}

Result<std::string> DrawMarks(const std::string& png, const std::vector<Mark>& marks, double window_width) {
  const Result<SurfacePtr> decoded = ReadPng(png);
  if (!decoded) return Fail(decoded.error());
  cairo_surface_t* surface = decoded->get();
  const int width = cairo_image_surface_get_width(surface);
  Draw(surface, marks, window_width > 0 ? width / window_width : 1);
  std::string drawn = WritePng(surface);
  if (drawn.empty()) return Fail("The picture can't be encoded as PNG.");
  return drawn;
}

}  // namespace corvis::kit
