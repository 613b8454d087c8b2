// The items on an application's screen, as reported in its answer to a content-context request.
#ifndef CORVIS_KIT_APP_ITEMS_H_
#define CORVIS_KIT_APP_ITEMS_H_

#include <optional>
#include <string>
#include <vector>

#include "language/phrasebook.h"

namespace corvis::kit {

struct Item {
  // The number that selects the item. Items from an application's own list have none and are counted from 0.
  long number = 0;
  std::string title;
  // In CSS pixels, relative to the viewport of the item's own document.
  double x = 0;
  double y = 0;
  double w = 0;
  double h = 0;
  bool is_focused = false;
  bool is_visible = true;
  bool is_in_frame = false;
  // Whether a viewer can see it, after scrolling. That its frames are hidden is noted by
  // Conversation::NoteHidden.
  bool is_shown = true;

  // An item without a box is not on the screen, though it may be in the list.
  bool HasBox() const { return w > 0 && h > 0; }
};

struct ItemList {
  std::vector<Item> items;
  // Whether the list is the application's own; its items can't be selected by number.
  bool is_own = false;
};

// Parses an answer, whether from the built-in element map or the application. Returns nothing if it is no
// list.
std::optional<ItemList> ReadItems(const std::string& answer);

// The items as a table with a header line.
std::string ItemTable(const ItemList& list);

// The items whose title equals `title` by the language's comparison of letters; if there are none, those
// whose title contains it. An empty `title` is contained in none.
std::vector<Item> ItemsTitled(const ItemList& list, const std::string& title, const Phrasebook& phrases);
// Only the items whose title equals `title`.
std::vector<Item> ItemsNamed(const ItemList& list, const std::string& title, const Phrasebook& phrases);

// A change between two lists. Items are matched by title; of equal titles the first matches the first, etc.
struct ItemChange {
  // `item` is the current state, or the last one if it vanished; `old_number` differs if it moved.
  enum class Kind { kMoved, kAppeared, kVanished } kind;
  Item item;
  long old_number = 0;
};
std::vector<ItemChange> CompareItems(const ItemList& before, const ItemList& now);

// One line per change, such as "12 -> 14  moved     Play".
std::string Describe(const std::vector<ItemChange>& changes);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_ITEMS_H_
