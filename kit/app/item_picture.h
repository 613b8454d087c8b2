// Draws the items of a page and their numbers onto a screenshot of it.
#ifndef CORVIS_KIT_APP_ITEM_PICTURE_H_
#define CORVIS_KIT_APP_ITEM_PICTURE_H_

#include <string>

#include "app/item_places.h"
#include "base/result.h"

namespace corvis::kit {

// Takes a PNG and returns a PNG of the same size. Fails if the input is a single color, because the engine
// has not painted then. Skips items outside the picture.
Result<std::string> DrawItems(const std::string& png, const ItemPlaces& places);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEM_PICTURE_H_
