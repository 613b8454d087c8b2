// Converts the items' positions to window coordinates. An item's own position is relative to its document, so
// for an item in a frame the frame's position is added. Also finds out which items are shown.
#ifndef CORVIS_KIT_APP_ITEM_PLACES_H_
#define CORVIS_KIT_APP_ITEM_PLACES_H_

#include <optional>
#include <string>
#include <vector>

#include "app/items.h"

namespace corvis::kit {

// An item and its upper left corner in the window, in CSS pixels.
struct ItemPlace {
  Item item;
  double x = 0;
  double y = 0;
};

struct ItemPlaces {
  // The window's size in CSS pixels.
  double window_width = 0;
  double window_height = 0;
  // Whether the items come from the application's own list; such items have no size.
  bool is_own = false;
  std::vector<ItemPlace> places;
};

// A JavaScript expression that finds the frames' positions and what is shown; pass its value to
// ReadItemPlaces.
std::string PlacesExpression(const ItemList& list);

// Returns nothing if `value` is not a result of PlacesExpression.
std::optional<ItemPlaces> ReadItemPlaces(const ItemList& list, const std::string& value);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEM_PLACES_H_
