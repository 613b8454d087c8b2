// Draws boxes with labels onto a screenshot of a page: its items and their numbers, or other places on it.
#ifndef CORVIS_KIT_APP_ITEM_PICTURE_H_
#define CORVIS_KIT_APP_ITEM_PICTURE_H_

#include <string>
#include <vector>

#include "app/item_places.h"
#include "base/result.h"

namespace corvis::kit {

// A box to draw, in CSS pixels of the window.
struct Mark {
  enum class Kind { kPlain, kFocused, kProblem } kind;
  // In ASCII.
  std::string label;
  double x = 0;
  double y = 0;
  double w = 0;
  double h = 0;
};

// The items that are shown, with their numbers.
std::vector<Mark> MarksOf(const ItemPlaces& places);

// Takes a PNG and returns a PNG of the same size. `window_width` is the picture's width in CSS pixels. Skips
// marks outside the picture.
Result<std::string> DrawMarks(const std::string& png, const std::vector<Mark>& marks, double window_width);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEM_PICTURE_H_
