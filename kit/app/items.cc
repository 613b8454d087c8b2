// Parses, prints, searches and compares lists of items.
#include "app/items.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "app/json_text.h"
#include "output/text_forms.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

std::string Text(const Json& object, const char* name) {
  const auto member = object.find(name);
  return member != object.end() && member->is_string() ? member->get<std::string>() : "";
}

bool Flag(const Json& object, const char* name, bool otherwise) {
  const auto member = object.find(name);
  return member != object.end() && member->is_boolean() ? member->get<bool>() : otherwise;
}

double Number(const Json& object, const char* name) {
  const auto member = object.find(name);
  return member != object.end() && member->is_number() ? member->get<double>() : 0;
}

// Converts to an item number; 0 if out of range.
long ItemNumber(double number) {
  constexpr double kLargest = 1e9;
  return number >= 0 && number <= kLargest ? static_cast<long>(number) : 0;
}

Item ReadItem(const Json& object, bool is_own, size_t position) {
  Item item;
  item.number = is_own ? static_cast<long>(position) : ItemNumber(Number(object, "id"));
  item.title = Text(object, "title");
  item.x = Number(object, is_own ? "positionX" : "x");
  item.y = Number(object, is_own ? "positionY" : "y");
  item.w = Number(object, "w");
  item.h = Number(object, "h");
  item.is_focused = Flag(object, is_own ? "bFocused" : "focused", false);
  item.is_visible = Flag(object, "visible", true);
  item.is_in_frame = Flag(object, "iframe", false);
  item.is_shown = item.is_visible && (is_own || item.HasBox());
  return item;
}

std::string Row(const Item& item) {
  char text[128];
  std::snprintf(text, sizeof(text), "%6ld  %6.0f %6.0f %6.0f %6.0f  %-7s %-7s %-5s  ", item.number, item.x,
                item.y, item.w, item.h, item.is_focused ? "focused" : "", item.is_shown ? "" : "hidden",
                item.is_in_frame ? "frame" : "");
  return text + ForTerminal(item.title) + "\n";
}

std::map<std::string, std::vector<Item>> ByTitle(const ItemList& list) {
  std::map<std::string, std::vector<Item>> titles;
  for (const Item& item : list.items) titles[item.title].push_back(item);
  return titles;
}

}  // namespace

std::optional<ItemList> ReadItems(const std::string& answer) {
  const auto parsed = ParseJson(answer);
  if (!parsed || !parsed->is_array()) return {};
  ItemList list;
  for (const Json& object : *parsed) {
    if (!object.is_object()) return {};
    list.is_own = list.is_own || object.contains("positionX");
    list.items.push_back(ReadItem(object, list.is_own, list.items.size()));
  }
  return list;
}

std::string ItemTable(const ItemList& list) {
  if (list.items.empty()) return "There is nothing to select on this screen.\n";
  std::string text = "number       x      y  width height                         title\n";
  for (const Item& item : list.items) text += Row(item);
  if (list.is_own)
    text += "The application describes its screen itself; these items can't be selected by number.\n";
  return text;
}

std::vector<Item> ItemsNamed(const ItemList& list, const std::string& title, const Phrasebook& phrases) {
  const std::string wanted = phrases.Folded(title);
  std::vector<Item> named;
  std::copy_if(list.items.begin(), list.items.end(), std::back_inserter(named),
               [&](const Item& item) { return phrases.Folded(item.title) == wanted; });
  return named;
}

std::vector<Item> ItemsTitled(const ItemList& list, const std::string& title, const Phrasebook& phrases) {
  const std::string wanted = phrases.Folded(title);
  std::vector<Item> found = ItemsNamed(list, title, phrases);
  if (!found.empty() || wanted.empty()) return found;
  std::copy_if(list.items.begin(), list.items.end(), std::back_inserter(found), [&](const Item& item) {
    return phrases.Folded(item.title).find(wanted) != std::string::npos;
  });
  return found;
}

std::vector<ItemChange> CompareItems(const ItemList& before, const ItemList& now) {
  std::vector<ItemChange> changes;
  auto old_items = ByTitle(before);
  for (const auto& [title, items] : ByTitle(now)) {
    auto& old = old_items[title];
    for (size_t i = 0; i < items.size(); ++i) {
      if (i >= old.size()) {
        changes.push_back({ItemChange::Kind::kAppeared, items[i], items[i].number});
      } else if (old[i].number != items[i].number) {
        changes.push_back({ItemChange::Kind::kMoved, items[i], old[i].number});
      }
    }
    old.erase(old.begin(), old.begin() + static_cast<long>(std::min(old.size(), items.size())));
  }
  for (const auto& [title, items] : old_items) {
    for (const Item& item : items) changes.push_back({ItemChange::Kind::kVanished, item, item.number});
  }
  std::sort(changes.begin(), changes.end(),
            [](const ItemChange& a, const ItemChange& b) { return a.item.number < b.item.number; });
  return changes;
}

std::string Describe(const std::vector<ItemChange>& changes) {
  if (changes.empty()) return "No item changed its number.\n";
  std::string text;
  for (const ItemChange& change : changes) {
    const std::string number = std::to_string(change.item.number);
    switch (change.kind) {
      case ItemChange::Kind::kMoved:
        text += std::to_string(change.old_number) + " -> " + number + "  moved     ";
        break;
      case ItemChange::Kind::kAppeared:
        text += number + "  appeared  ";
        break;
      case ItemChange::Kind::kVanished:
        text += number + "  vanished  ";
        break;
    }
    text += ForTerminal(change.item.title) + "\n";
  }
  return text;
}

}  // namespace corvis::kit
