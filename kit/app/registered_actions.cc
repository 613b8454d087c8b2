// Parses the script API's log lines "Clear Callbacks", "Register Callback for …" and "Register User
// function".
#include "app/registered_actions.h"

#include <algorithm>
#include <string_view>

namespace corvis::kit {

void RegisteredActions::TakeLine(const std::string& line) {
  constexpr std::string_view kCandidate = "Register Callback for ";
  if (line == "Clear Callbacks") {
    is_known_ = true;
    own_.clear();
  } else if (line.compare(0, kCandidate.size(), kCandidate) == 0) {
    candidate_ = line.substr(kCandidate.size());
  } else if (line == "Register User function") {
    own_.push_back(candidate_);
  }
}

bool RegisteredActions::Has(const std::string& action) const {
  return action == "ACTION_ITEM_SELECTION" || action == "ACTION_REQUEST_CONTENT_CONTEXT" ||
         std::find(own_.begin(), own_.end(), action) != own_.end();
}

}  // namespace corvis::kit
