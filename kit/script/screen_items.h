// The items on the screen, as the statements of a script look at them.
#ifndef CORVIS_KIT_SCRIPT_SCREEN_ITEMS_H_
#define CORVIS_KIT_SCRIPT_SCREEN_ITEMS_H_

#include <optional>

#include "app/conversation.h"
#include "app/items.h"
#include "base/result.h"

namespace corvis::kit {

// Statements that follow each other look at one list.
class ScreenItems {
 public:
  explicit ScreenItems(Conversation& conversation) : conversation_(conversation) {}

  // A script begins.
  void Forget();
  // Something was done that may have changed the page.
  void Expire() { is_fresh_ = false; }

  // The list of before, unless something was done since.
  Status Look();
  // Asks the page.
  Status LookAgain();
  // The list becomes the one to compare with, and the page will be asked for another.
  void Compare();

  // What the last look gave that succeeded.
  const ItemList& now() const { return *now_; }
  // What Compare has set aside; null when there was no list.
  const ItemList* before() const { return before_ ? &*before_ : nullptr; }

 private:
  Conversation& conversation_;
  std::optional<ItemList> now_;
  std::optional<ItemList> before_;
  bool is_fresh_ = false;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SCREEN_ITEMS_H_
