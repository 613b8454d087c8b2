// The items on an application's screen, as it answers a content-context request.
#ifndef CORVIS_KIT_APP_ITEMS_H_
#define CORVIS_KIT_APP_ITEMS_H_

#include <optional>
#include <string>
#include <vector>

namespace corvis::kit {

struct Item {
  // By which an item selection names it. Items that an application describes itself have none and count from
  // 0.
  long number = 0;
  std::string title;
  // In CSS pixels, of the viewport of the item's own document.
  double x = 0;
  double y = 0;
  double w = 0;
  double h = 0;
  bool is_focused = false;
  bool is_visible = true;
  bool is_in_frame = false;

  // Something without a box is not on the screen, though it may be in the list.
  bool HasBox() const { return w > 0 && h > 0; }
};

struct ItemList {
  std::vector<Item> items;
  // Whether the application described them itself: then they can't be selected by number.
  bool is_own = false;
};

// Reads the answer, of the built-in map or of an application's own. Nothing when it is neither.
std::optional<ItemList> ReadItems(const std::string& answer);

// The items as a table, a line each, with a heading.
std::string ItemTable(const ItemList& list);

// The items whose title is `title` but for case; if there are none, those whose title contains it. No title
// contains an empty one.
std::vector<Item> ItemsTitled(const ItemList& list, const std::string& title);

// What changed between two lists, by title (the first of a title stands against the first, and so on).
struct ItemChange {
  // The item as it is now, or was when it vanished; `old_number` differs when it moved.
  enum class Kind { kMoved, kAppeared, kVanished } kind;
  Item item;
  long old_number = 0;
};
std::vector<ItemChange> CompareItems(const ItemList& before, const ItemList& now);

// "12 → 14 moved: Play", one line for each change.
std::string Describe(const std::vector<ItemChange>& changes);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEMS_H_
