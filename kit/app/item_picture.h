// Draws the items of a page and their numbers onto a picture of it.
#ifndef CORVIS_KIT_APP_ITEM_PICTURE_H_
#define CORVIS_KIT_APP_ITEM_PICTURE_H_

#include <string>

#include "app/item_places.h"

namespace corvis::kit {

// Takes a PNG file's bytes and gives those of another, of the same size in pixels. On failure gives nothing
// and sets `problem` to a sentence; a picture in one single colour is a failure, because then the engine did
// not paint. Items that lie outside of the picture are left out.
std::string DrawItems(const std::string& png, const ItemPlaces& places, std::string& problem);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEM_PICTURE_H_
