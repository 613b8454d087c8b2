// What would make voice fail on a page.
#ifndef CORVIS_KIT_LINT_LINT_H_
#define CORVIS_KIT_LINT_LINT_H_

#include <string>
#include <vector>

#include "app/conversation.h"
#include "base/result.h"

namespace corvis::kit {

struct Finding {
  // A word to group and filter by: "listen", "title", "label", "id", "item", "frame", "shadow", "same-title",
  // "answer", "size" or "callback".
  std::string rule;
  std::string sentence;
  // A selector or an item's number; empty for the page as a whole.
  std::string where;
};

// Looks at the page that the runtime shows. With `is_calling`, each callback that it registered is called,
// too, with data as a phrase for its action gives; they act on the page. Fails when the page can't be looked
// at.
Result<std::vector<Finding>> Lint(Conversation& conversation, bool is_calling);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LINT_LINT_H_
