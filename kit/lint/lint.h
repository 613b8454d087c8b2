// Finds what would make voice fail on a page.
#ifndef CORVIS_KIT_LINT_LINT_H_
#define CORVIS_KIT_LINT_LINT_H_

#include <array>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "base/result.h"

namespace corvis::kit {

struct Finding {
  // The rule's name: "listen", "title", "label", "id", "item", "frame", "shadow", "hidden", "no-size",
  // "same-title", "answer", "size", "callback" or "promise".
  std::string rule;
  std::string sentence;
  // A selector, an item's number or a callback's name; empty for the page as a whole.
  std::string where;
  // The places on the screen: x, y, width and height in CSS pixels of the window.
  std::vector<std::array<double, 4>> boxes = {};
};

// The script that the runtime must run in the page before the page's own, or callbacks that return a promise
// are not found.
const char* LintPageScript();

// Checks the current page. With `is_calling`, also says a sample phrase for each registered action, so that
// the callbacks act on the page. Fails if the page can't be checked.
Result<std::vector<Finding>> Lint(Conversation& conversation, bool is_calling);

// A screenshot of the page as PNG, with each finding's box and its number, counted from 1.
Result<std::string> PictureOf(Conversation& conversation, const std::vector<Finding>& findings);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LINT_LINT_H_
