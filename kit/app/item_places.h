// Where the items of a page are on the whole screen. An item's own position counts in its document, so that
// of an item inside a frame says nothing of where the frame is.
#ifndef CORVIS_KIT_APP_ITEM_PLACES_H_
#define CORVIS_KIT_APP_ITEM_PLACES_H_

#include <optional>
#include <string>
#include <vector>

#include "app/items.h"

namespace corvis::kit {

// An item's box, in CSS pixels of the window.
struct ItemPlace {
  Item item;
  double x = 0;
  double y = 0;
};

struct ItemPlaces {
  // The window's width in CSS pixels.
  double window_width = 0;
  // Whether the application described the items itself: they have no size then.
  bool is_own = false;
  std::vector<ItemPlace> places;
};

// An expression for the page that looks up the frames' places; its value goes to ReadItemPlaces.
std::string PlacesExpression(const ItemList& list);

// Nothing when `value` is not what the expression gives.
std::optional<ItemPlaces> ReadItemPlaces(const ItemList& list, const std::string& value);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEM_PLACES_H_
