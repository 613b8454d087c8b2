// Caches the list of items, so that the page is asked only when it may have changed.
#include "script/screen_items.h"

#include <utility>

namespace corvis::kit {

void ScreenItems::Forget() {
  now_.reset();
  before_.reset();
}

Status ScreenItems::Look() {
  return is_fresh_ && now_ ? Status() : LookAgain();
}

Status ScreenItems::LookAgain() {
  Result<ItemList> list = conversation_.AskItems();
  is_fresh_ = list.has_value();
  if (!list) return Fail(list.error());
  now_ = std::move(*list);
  return {};
}

void ScreenItems::Compare() {
  before_ = std::exchange(now_, {});
}

}  // namespace corvis::kit
