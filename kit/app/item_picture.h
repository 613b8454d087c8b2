// Draws the items of a page and their numbers onto a picture of it.
#ifndef CORVIS_KIT_APP_ITEM_PICTURE_H_
#define CORVIS_KIT_APP_ITEM_PICTURE_H_

#include <string>

#include "app/item_places.h"
#include "base/result.h"

namespace corvis::kit {

// Takes a PNG file's bytes and gives those of another, of the same size in pixels. A picture in one single
// color is a failure, because then the engine did not paint. Items that lie outside of the picture are left
// out.
Result<std::string> DrawItems(const std::string& png, const ItemPlaces& places);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEM_PICTURE_H_
