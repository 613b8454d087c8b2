// Locates items on the screen: item_places.js finds the frames in the page, this file reads its result.
#include "app/item_places.h"

#include <nlohmann/json.hpp>

#include "app/page_script.h"
#include "item_places_script.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

bool IsPlace(const Json& value) {
  return value.is_array() && value.size() == 3 && value[0].is_number() && value[1].is_number() &&
         value[2].is_boolean();
}

}  // namespace

std::string PlacesExpression(const ItemList& list) {
  Json boxes = Json::array();
  for (const Item& item : list.items) boxes.push_back({item.x, item.y, item.w, item.h});
  return CallAboutItems(kItemPlaces, "itemPlaces", Json::array({boxes}));
}

std::optional<ItemPlaces> ReadItemPlaces(const ItemList& list, const std::string& value) {
  const Json parsed = Json::parse(value, nullptr, /*allow_exceptions=*/false);
  if (!parsed.is_object() || !parsed.contains("frames") || !parsed["frames"].is_array()) return {};
  const auto width = parsed.find("width");
  if (width == parsed.end() || !width->is_number()) return {};
  ItemPlaces places;
  places.window_width = *width;
  const auto height = parsed.find("height");
  if (height != parsed.end() && height->is_number()) places.window_height = *height;
  places.is_own = list.is_own;
  const Json& frames = parsed["frames"];
  for (size_t i = 0; i < list.items.size(); ++i) {
    // An item that the page no longer contains keeps its own coordinates.
    const bool is_found = i < frames.size() && IsPlace(frames[i]);
    const double left = is_found ? frames[i][0].get<double>() : 0;
    const double top = is_found ? frames[i][1].get<double>() : 0;
    places.places.push_back({list.items[i], left + list.items[i].x, top + list.items[i].y});
    Item& item = places.places.back().item;
    item.is_shown = item.is_shown && (!is_found || frames[i][2].get<bool>());
  }
  return places;
}

}  // namespace corvis::kit
