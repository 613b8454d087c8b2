// Finds what would make voice fail on a page.
#ifndef CORVIS_KIT_LINT_LINT_H_
#define CORVIS_KIT_LINT_LINT_H_

#include <string>
#include <vector>

#include "app/conversation.h"
#include "base/result.h"

namespace corvis::kit {

struct Finding {
  // The rule's name: "listen", "title", "label", "id", "item", "frame", "shadow", "same-title", "answer",
  // "size" or "callback".
  std::string rule;
  std::string sentence;
  // A selector, an item's number or a callback's name; empty for the page as a whole.
  std::string where;
};

// Checks the current page. With `is_calling`, also says a sample phrase for each registered action, so that
// the callbacks act on the page. Fails if the page can't be checked.
Result<std::vector<Finding>> Lint(Conversation& conversation, bool is_calling);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LINT_LINT_H_
