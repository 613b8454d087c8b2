// The list of items that a script's statements check.
#ifndef CORVIS_KIT_SCRIPT_SCREEN_ITEMS_H_
#define CORVIS_KIT_SCRIPT_SCREEN_ITEMS_H_

#include <optional>

#include "app/conversation.h"
#include "app/items.h"
#include "base/result.h"

namespace corvis::kit {

// Consecutive statements share one list, until something is done that may change the page.
class ScreenItems {
 public:
  explicit ScreenItems(Conversation& conversation) : conversation_(conversation) {}

  // Drops all lists, at the start of a script.
  void Forget();
  // Marks the list as outdated.
  void Expire() { is_fresh_ = false; }

  // Updates the list if it is missing or outdated.
  Status Look();
  // Updates the list in any case.
  Status LookAgain();
  // Makes the current list the previous one; the next Look requests a new one.
  void Compare();

  // The current list. Requires a successful Look.
  const ItemList& now() const { return *now_; }
  // The previous list; null if there is none.
  const ItemList* before() const { return before_ ? &*before_ : nullptr; }

 private:
  Conversation& conversation_;
  std::optional<ItemList> now_;
  std::optional<ItemList> before_;
  bool is_fresh_ = false;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCREEN_ITEMS_H_
