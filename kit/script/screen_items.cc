// Asking the page no more often than needed.
#include "script/screen_items.h"

#include <string>
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
  std::string problem;
  now_ = conversation_.AskItems(problem);
  is_fresh_ = now_.has_value();
  if (!is_fresh_) return Fail(problem);
  return {};
}

void ScreenItems::Compare() {
  before_ = std::exchange(now_, {});
}

}  // namespace corvis::kit
